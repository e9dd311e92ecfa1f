#include "halyard/terminal/typed_text.hpp"

#include <cstdint>
#include <optional>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "core/text.hpp"

namespace halyard {

namespace {

/// The byte behind a scalar from 128 to 255.
std::optional<std::uint8_t> byteBeyondAscii(std::string_view character) {
  if (character.size() != 2) return {};
  const auto lead = static_cast<std::uint8_t>(character[0]);
  if (lead != 0xC2 && lead != 0xC3) return {};
  return static_cast<std::uint8_t>((lead & 0x03U) << 6U | (static_cast<std::uint8_t>(character[1]) & 0x3FU));
}

std::size_t sequenceLength(char first) {
  const auto lead = static_cast<std::uint8_t>(first);
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : 1;
}

void typeByte(std::string& text, TypedBytes& typed, std::uint8_t byte, std::string_view character,
              TypedCharacterRule rule) {
  const bool isContinuation = (byte & 0xC0U) == 0x80U;
  if (!isContinuation || typed.bytes.empty()) typed = {{}, text.size()};
  typed.bytes += static_cast<char>(byte);
  text += rule(character);
  const std::size_t length = sequenceLength(typed.bytes.front());
  if (typed.bytes.size() < length) return;
  if (length > 1 && isValidUtf8(typed.bytes)) {
    text.resize(typed.lengthBefore);
    text += rule(typed.bytes);
  }
  typed = {};
}

}  // namespace

void typeCharacter(std::string& text, TypedBytes& typed, std::string_view character, TypedCharacterRule rule) {
  if (const auto byte = byteBeyondAscii(character)) return typeByte(text, typed, *byte, character, rule);
  typed = {};
  if (character == "\x7f" || character == "\b") {
    text.resize(lastGraphemeStart(text));
  } else {
    text += rule(character);
  }
}

bool isLetterDigitOr(std::string_view character, std::string_view others) {
  if (character.size() == 1 && others.find(character) != std::string_view::npos) return true;
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(character.data());
  const auto size = static_cast<std::int32_t>(character.size());
  std::int32_t at = 0;
  UChar32 scalar = U_SENTINEL;
  if (size > 0) U8_NEXT(bytes, at, size, scalar);
  return scalar >= 0 && at == size && (u_isalpha(scalar) != 0 || u_isdigit(scalar) != 0);
}

}  // namespace halyard
