#include "halyard/build/target_names.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace halyard {

namespace {

// Words that stand where a target's name stands in other lines: variants, architectures, a tool.
constexpr std::array<std::string_view, 6> nonTargetWords = {
    "normal", "arm64", "arm64e", "x86_64", "armv7", "com.apple.xcode.tools.swift.compiler",
};

constexpr std::array<std::string_view, 4> bundleSuffixes = {".framework", ".app", ".appex", ".xctest"};

enum class NamePlace : std::uint8_t { piece, product };

struct NameRule {
  std::string_view prefix;
  std::size_t pieceIndex;
  NamePlace place;
};

constexpr NameRule nameRules[] = {
    {"SwiftEmitModule ", 3, NamePlace::piece}, {"SwiftDriver ", 1, NamePlace::piece},
    {"SwiftCompile ", 3, NamePlace::piece},    {"Ld ", 1, NamePlace::product},
    {"Merge ", 1, NamePlace::product},
};

/// The next piece between blanks, taken off the line; empty at its end.
std::string_view takePiece(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  const std::string_view piece = line.substr(0, line.find(' '));
  line.remove_prefix(piece.size());
  return piece;
}

std::string_view pieceAt(std::string_view line, std::size_t index) {
  std::string_view piece = takePiece(line);
  for (; index > 0 && !piece.empty(); --index) piece = takePiece(line);
  return piece;
}

bool isCandidate(std::string_view name) {
  return !name.empty() && !name.starts_with('/') && !name.ends_with('\\') &&
         std::ranges::find(nonTargetWords, name) == nonTargetWords.end();
}

std::string_view withoutTrailingSlashes(std::string_view path) {
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  return path;
}

std::string_view parentDirectory(std::string_view path) {
  path = withoutTrailingSlashes(path);
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? std::string_view{} : path.substr(0, std::max<std::size_t>(slash, 1));
}

std::string_view withoutExtension(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos || dot == 0 ? name : name.substr(0, dot);
}

/// The name of the target that links this product: that of the bundle around it, else the file's own.
std::string_view productTarget(std::string_view path) {
  const std::string_view bundle = lastPathComponent(parentDirectory(path));
  for (const std::string_view suffix : bundleSuffixes) {
    if (bundle.ends_with(suffix)) return bundle.substr(0, bundle.size() - suffix.size());
  }
  const std::string_view name = withoutExtension(lastPathComponent(path));
  return name.starts_with('-') ? std::string_view{} : name;
}

std::optional<std::string_view> namedInBrackets(std::string_view line) {
  constexpr std::string_view opening = "(in target '";
  const std::size_t found = line.find(opening);
  if (found == std::string_view::npos) return std::nullopt;
  line.remove_prefix(found + opening.size());
  const std::size_t quote = line.find('\'');
  if (quote == std::string_view::npos || quote == 0) return std::nullopt;
  return line.substr(0, quote);
}

}  // namespace

std::optional<std::string_view> extractTargetName(std::string_view line) {
  for (const NameRule& rule : nameRules) {
    if (!line.starts_with(rule.prefix)) continue;
    const std::string_view piece = pieceAt(line, rule.pieceIndex);
    // A path with escaped blanks is cut here, and what is cut off would be another name.
    if (rule.place == NamePlace::product && piece.ends_with('\\')) continue;
    const std::string_view name = rule.place == NamePlace::product ? productTarget(piece) : piece;
    if (isCandidate(name)) return name;
  }
  return namedInBrackets(line);
}

std::string_view resourceDetail(std::string_view line) {
  if (line.starts_with("CopySwiftLibs")) return "Swift-Bibliotheken";
  std::string_view detail;
  std::size_t count = 0;
  for (std::string_view piece = takePiece(line); !piece.empty(); piece = takePiece(line), ++count) {
    if (piece.starts_with('/') || piece.find('.') != std::string_view::npos) detail = piece;
  }
  return count < 2 ? std::string_view{} : lastPathComponent(detail);
}

std::string_view lastPathComponent(std::string_view path) {
  path = withoutTrailingSlashes(path);
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos || path.size() == 1 ? path : path.substr(slash + 1);
}

}  // namespace halyard
