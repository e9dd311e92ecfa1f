#include "halyard/browser/file_patterns.hpp"

#include <algorithm>
#include <array>
#include <cstring>

#include <fnmatch.h>

#include "core/text.hpp"
#include "halyard/platform/utf8_locale.hpp"

namespace halyard {

namespace {

static_assert(FNM_CASEFOLD == 16);

bool hasWildcard(std::string_view text) { return text.find_first_of("*?") != std::string_view::npos; }

char folded(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char each) { return static_cast<signed char>(each) >= 0; });
}

/// fnmatch(3) goes by the locale of its thread.
bool matchesBySystem(const char* pattern, const char* name) {
  const Utf8LocaleScope scope;
  return fnmatch(pattern, name, FNM_CASEFOLD) == 0;
}

/// Whether the piece, in which "?" stands for any character, is what the name holds at this place.
bool holdsAt(std::string_view name, std::size_t place, std::string_view piece) {
  for (std::size_t index = 0; index < piece.size(); ++index) {
    if (piece[index] != '?' && piece[index] != folded(name[place + index])) return false;
  }
  return true;
}

}  // namespace

std::string expandFilePattern(std::string_view text) {
  text = trimmedBlanks(text);
  if (hasWildcard(text)) return std::string(text);
  return text.empty() ? "*.*" : std::string(text) + "*.*";
}

std::string expandDirectoryPattern(std::string_view text) {
  text = trimmedBlanks(text);
  if (hasWildcard(text)) return std::string(text);
  return text.empty() ? "*" : "*" + std::string(text) + "*";
}

NamePattern::NamePattern(std::string pattern) : pattern_(std::move(pattern)) {
  isPlain_ = isAscii(pattern_) && pattern_.find_first_of(std::string_view("[\\\0", 3)) == std::string::npos;
  if (!isPlain_) return;
  pieces_.emplace_back();
  for (const char character : pattern_) {
    character == '*' ? void(pieces_.emplace_back()) : pieces_.back().push_back(folded(character));
  }
}

bool NamePattern::matches(const char* name) const {
  const std::string_view text(name);
  // Beyond ASCII a character may fold into ASCII, and "?" is more than a byte.
  return isPlain_ && isAscii(text) ? matchesAscii(text) : matchesBySystem(pattern_.c_str(), name);
}

bool NamePattern::matchesAscii(std::string_view name) const {
  const std::string& first = pieces_.front();
  const std::string& last = pieces_.back();
  if (name.size() < first.size() || !holdsAt(name, 0, first)) return false;
  if (pieces_.size() == 1) return name.size() == first.size();
  if (name.size() < first.size() + last.size() || !holdsAt(name, name.size() - last.size(), last)) return false;
  // Each piece between two stars at its first place: what is left for the others is then longest.
  std::size_t place = first.size();
  const std::size_t end = name.size() - last.size();
  for (std::size_t index = 1; index + 1 < pieces_.size(); ++index) {
    const std::string& piece = pieces_[index];
    while (place + piece.size() <= end && !holdsAt(name, place, piece)) ++place;
    if (place + piece.size() > end) return false;
    place += piece.size();
  }
  return true;
}

std::string lowercasedExtension(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos ? std::string() : lowercased(name.substr(dot + 1));
}

}  // namespace halyard
