#include "core/text.hpp"

#include <algorithm>
#include <cstdint>
#include <memory>

#include <simdjson.h>
#include <unicode/brkiter.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

namespace halyard {

namespace {

bool isAscii(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0x80U) != 0; });
}

// A carriage return followed by a line feed is one cluster, so such text is left to the library.
bool isPlain(std::string_view text) { return isAscii(text) && text.find('\r') == std::string_view::npos; }

/// One iterator per thread: making one costs far more than using it.
icu::BreakIterator* clusterIterator() {
  thread_local const std::unique_ptr<icu::BreakIterator> iterator = [] {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> made(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    return U_SUCCESS(status) ? std::move(made) : nullptr;
  }();
  return iterator.get();
}

/// Calls `take(begin, end)` for each cluster until it returns false.
template <typename Take>
void eachCluster(std::string_view text, Take take) {
  UErrorCode status = U_ZERO_ERROR;
  UText source = UTEXT_INITIALIZER;
  utext_openUTF8(&source, text.data(), static_cast<std::int64_t>(text.size()), &status);
  icu::BreakIterator* iterator = clusterIterator();
  if (U_SUCCESS(status) && iterator != nullptr) {
    iterator->setText(&source, status);
    std::int32_t begin = iterator->first();
    for (std::int32_t end = iterator->next(); end != icu::BreakIterator::DONE; end = iterator->next()) {
      if (!take(static_cast<std::size_t>(begin), static_cast<std::size_t>(end))) break;
      begin = end;
    }
  }
  utext_close(&source);
}

/// Works on windows of one scalar at either end, so a text of any length is trimmed without being walked.
std::string_view trimmedBy(std::string_view text, bool (*isSpace)(UChar32)) {
  while (!text.empty()) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto window = static_cast<std::int32_t>(std::min<std::size_t>(text.size(), U8_MAX_LENGTH));
    std::int32_t next = 0;
    UChar32 scalar = 0;
    U8_NEXT(bytes, next, window, scalar);
    if (scalar < 0 || !isSpace(scalar)) break;
    text.remove_prefix(static_cast<std::size_t>(next));
  }
  while (!text.empty()) {
    const auto window = static_cast<std::int32_t>(std::min<std::size_t>(text.size(), U8_MAX_LENGTH));
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data() + text.size()) - window;
    std::int32_t previous = window;
    UChar32 scalar = 0;
    U8_PREV(bytes, 0, previous, scalar);
    if (scalar < 0 || !isSpace(scalar)) break;
    text.remove_suffix(static_cast<std::size_t>(window - previous));
  }
  return text;
}

void appendScalar(std::string& text, UChar32 scalar) {
  char encoded[U8_MAX_LENGTH];
  std::int32_t length = 0;
  U8_APPEND_UNSAFE(encoded, length, scalar);
  text.append(encoded, static_cast<std::size_t>(length));
}

constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// Characters without a shape of their own that change how their neighbours are shown.
bool misleads(UChar32 scalar) {
  return (scalar >= 0x202A && scalar <= 0x202E) || (scalar >= 0x2066 && scalar <= 0x2069) || scalar == 0x200E ||
         scalar == 0x200F || scalar == 0x061C || scalar == 0x2028 || scalar == 0x2029 || scalar == 0xFEFF;
}

void appendSafe(std::string& safe, UChar32 scalar) {
  if (scalar == '\t') {
    safe += ' ';
  } else if (scalar >= 0 && scalar < 0x20) {
    appendScalar(safe, 0x2400 + scalar);
  } else if (scalar == 0x7F) {
    appendScalar(safe, 0x2421);
  } else if (scalar < 0 || (scalar >= 0x80 && scalar < 0xA0) || misleads(scalar)) {
    safe += replacement;
  } else {
    appendScalar(safe, scalar);
  }
}

template <typename Map>
std::string mapped(std::string_view text, Map map) {
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  UErrorCode status = U_ZERO_ERROR;
  map(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())), sink, status);
  return U_SUCCESS(status) ? result : std::string(text);
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  return trimmedBy(text, [](UChar32 scalar) { return u_isUWhiteSpace(scalar) != 0; });
}

std::string_view trimmedBlanks(std::string_view text) {
  return trimmedBy(text, [](UChar32 scalar) { return scalar == ' ' || scalar == '\t'; });
}

bool isValidUtf8(std::string_view bytes) { return simdjson::validate_utf8(bytes.data(), bytes.size()); }

std::string decodedText(std::string_view bytes) {
  if (isValidUtf8(bytes)) return std::string(bytes);
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const char byte : bytes) appendScalar(text, static_cast<unsigned char>(byte));
  return text;
}

std::size_t graphemeCount(std::string_view text) {
  if (isPlain(text)) return text.size();
  std::size_t count = 0;
  eachCluster(text, [&](std::size_t, std::size_t) { return ++count, true; });
  return count;
}

std::size_t graphemePrefix(std::string_view text, std::size_t count) {
  if (isPlain(text)) return std::min(count, text.size());
  std::size_t offset = 0;
  eachCluster(text, [&](std::size_t, std::size_t end) {
    if (count == 0) return false;
    --count;
    offset = end;
    return true;
  });
  return offset;
}

std::size_t lastGraphemeStart(std::string_view text) {
  if (isPlain(text)) return text.empty() ? 0 : text.size() - 1;
  std::size_t start = 0;
  eachCluster(text, [&](std::size_t begin, std::size_t) { return start = begin, true; });
  return start;
}

std::vector<std::string_view> graphemes(std::string_view text) {
  std::vector<std::string_view> clusters;
  eachCluster(text, [&](std::size_t begin, std::size_t end) {
    clusters.push_back(text.substr(begin, end - begin));
    return true;
  });
  return clusters;
}

std::string shortened(std::string_view text, std::size_t count) {
  if (graphemeCount(text) <= count) return std::string(text);
  return count == 0 ? std::string() : std::string(text.substr(0, graphemePrefix(text, count - 1))) + "…";
}

std::string shortenedFront(std::string_view text, std::size_t count) {
  const std::size_t total = graphemeCount(text);
  if (total <= count) return std::string(text);
  return count == 0 ? std::string() : "…" + std::string(text.substr(graphemePrefix(text, total - count + 1)));
}

std::string caseFolded(std::string_view text) {
  return mapped(text, [](icu::StringPiece piece, icu::ByteSink& sink, UErrorCode& status) {
    icu::CaseMap::utf8Fold(0, piece, sink, nullptr, status);
  });
}

std::string lowercased(std::string_view text) {
  return mapped(text, [](icu::StringPiece piece, icu::ByteSink& sink, UErrorCode& status) {
    icu::CaseMap::utf8ToLower("", 0, piece, sink, nullptr, status);
  });
}

std::string uppercased(std::string_view text) {
  return mapped(text, [](icu::StringPiece piece, icu::ByteSink& sink, UErrorCode& status) {
    icu::CaseMap::utf8ToUpper("", 0, piece, sink, nullptr, status);
  });
}

std::string displaySafe(std::string_view text) {
  std::string safe;
  safe.reserve(text.size());
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto length = static_cast<std::int32_t>(text.size());
  for (std::int32_t at = 0; at < length;) {
    UChar32 scalar = 0;
    U8_NEXT(bytes, at, length, scalar);
    appendSafe(safe, scalar);
  }
  return safe;
}

bool replaceAll(std::string& text, std::string_view what, std::string_view with) {
  if (what.empty() || text.find(what) == std::string::npos) return false;
  std::string result;
  std::size_t from = 0;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, from)) {
    result.append(text, from, at - from).append(with);
    from = at + what.size();
  }
  text = result.append(text, from);
  return true;
}

std::vector<std::string_view> splitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  for (;;) {
    const std::size_t end = text.find('\n');
    lines.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return lines;
    text.remove_prefix(end + 1);
  }
}

}  // namespace halyard
