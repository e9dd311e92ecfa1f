#include "halyard/terminal/control_sequences.hpp"

#include <algorithm>
#include <cstdint>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "halyard/terminal/cursor.hpp"

namespace halyard {

namespace {

bool isLetter(char byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z'); }

bool isParameter(char byte) { return (byte >= '0' && byte <= '9') || byte == ';'; }

bool isZeroWidth(UChar32 scalar) {
  const auto mask = U_GET_GC_MASK(scalar);
  return (mask & (U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK | U_GC_CC_MASK)) != 0;
}

bool isWide(UChar32 scalar) {
  const int width = u_getIntPropertyValue(scalar, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH;
}

}  // namespace

std::size_t controlSequenceLength(std::string_view text) {
  if (text.size() < 3 || text[0] != Cursor::escape || text[1] != '[') return 0;
  std::size_t at = 2;
  while (at < text.size() && isParameter(text[at])) ++at;
  return at < text.size() && isLetter(text[at]) ? at + 1 : 0;
}

std::size_t colorSequenceLength(std::string_view text) {
  const std::size_t length = controlSequenceLength(text);
  return length != 0 && text[length - 1] == 'm' ? length : 0;
}

int scalarCells(char32_t scalar) {
  if (scalar >= 0x20 && scalar < 0x7F) return 1;
  // Box drawing and block elements fill most of a frame.
  if (scalar >= 0x2500 && scalar < 0x25A0) return 1;
  if (isZeroWidth(static_cast<UChar32>(scalar))) return 0;
  return isWide(static_cast<UChar32>(scalar)) ? 2 : 1;
}

ScalarPiece scalarAt(std::string_view text) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto window = static_cast<std::int32_t>(std::min<std::size_t>(text.size(), U8_MAX_LENGTH));
  std::int32_t next = 0;
  UChar32 scalar = 0;
  U8_NEXT(bytes, next, window, scalar);
  if (scalar < 0) return {};
  return {static_cast<std::size_t>(next), scalarCells(static_cast<char32_t>(scalar))};
}

std::string_view cellPrefix(std::string_view text, int columns) {
  int used = 0;
  std::size_t at = 0;
  while (at < text.size()) {
    const ScalarPiece piece = scalarAt(text.substr(at));
    if (used + piece.cells > columns) break;
    used += piece.cells;
    at += piece.length;
  }
  return text.substr(0, at);
}

int cellWidth(std::string_view text) {
  int used = 0;
  for (std::size_t at = 0; at < text.size();) {
    const ScalarPiece piece = scalarAt(text.substr(at));
    used += piece.cells;
    at += piece.length;
  }
  return used;
}

}  // namespace halyard
