#include "core/base64.hpp"

#include <array>
#include <cstdint>

namespace halyard {

namespace {

constexpr std::uint8_t invalid = 0xFF;

constexpr std::array<std::uint8_t, 256> valueOfCharacter = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(invalid);
  constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (std::size_t i = 0; i < alphabet.size(); ++i) {
    values[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
  }
  return values;
}();

std::string withoutLineEnds(std::string_view text) {
  std::string joined;
  joined.reserve(text.size());
  for (const char c : text) {
    if (c != '\n' && c != '\r') joined += c;
  }
  return joined;
}

}  // namespace

std::optional<std::string> base64Decoded(std::string_view text) {
  if (text.find_first_of("\r\n") != std::string_view::npos) return base64Decoded(withoutLineEnds(text));
  if (text.size() % 4 != 0) return std::nullopt;
  std::size_t padding = 0;
  while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=') ++padding;
  std::string bytes(text.size() / 4 * 3, '\0');
  char* out = bytes.data();
  const auto* in = reinterpret_cast<const unsigned char*>(text.data());
  std::uint8_t seen = 0;
  for (std::size_t at = 0; at < text.size(); at += 4) {
    const bool last = at + 4 == text.size();
    const std::uint8_t a = valueOfCharacter[in[at]];
    const std::uint8_t b = valueOfCharacter[in[at + 1]];
    const std::uint8_t c = last && padding == 2 ? std::uint8_t{0} : valueOfCharacter[in[at + 2]];
    const std::uint8_t d = last && padding >= 1 ? std::uint8_t{0} : valueOfCharacter[in[at + 3]];
    seen = static_cast<std::uint8_t>(seen | a | b | c | d);
    const std::uint32_t group = static_cast<std::uint32_t>(a) << 18U | static_cast<std::uint32_t>(b) << 12U |
                                static_cast<std::uint32_t>(c) << 6U | d;
    *out++ = static_cast<char>(group >> 16U);
    *out++ = static_cast<char>(group >> 8U & 0xFFU);
    *out++ = static_cast<char>(group & 0xFFU);
  }
  // A value has six bits; the mark of an invalid character has all eight.
  if ((seen & 0x80U) != 0) return std::nullopt;
  bytes.resize(bytes.size() - padding);
  return bytes;
}

}  // namespace halyard
