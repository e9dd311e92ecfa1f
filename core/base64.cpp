#include "core/base64.hpp"

#include <array>
#include <cstdint>

namespace halyard {

namespace {

/// A group has 24 bits; the bit above them marks one that holds a character of no value.
constexpr std::uint32_t invalid = 1U << 24U;

using ValueTable = std::array<std::uint32_t, 256>;

constexpr ValueTable valuesShifted(unsigned bits) {
  ValueTable values{};
  values.fill(invalid);
  constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (std::size_t i = 0; i < alphabet.size(); ++i) {
    values[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint32_t>(i) << bits;
  }
  return values;
}

/// One table per place in the group: the catalog is a megabyte of this at each start, and four look-ups without a shift
/// or a branch between them are what the processor does fastest.
constexpr ValueTable first = valuesShifted(18);
constexpr ValueTable second = valuesShifted(12);
constexpr ValueTable third = valuesShifted(6);
constexpr ValueTable fourth = valuesShifted(0);

/// What a fast parser may read beyond the end; with it, the decoded document needn't be copied once more.
constexpr std::size_t roomBehind = 64;

std::string withoutLineEnds(std::string_view text) {
  std::string joined;
  joined.reserve(text.size());
  for (const char c : text) {
    if (c != '\n' && c != '\r') joined += c;
  }
  return joined;
}

std::uint32_t groupOf(const unsigned char* in) { return first[in[0]] | second[in[1]] | third[in[2]] | fourth[in[3]]; }

void put(std::uint32_t group, char* out) {
  out[0] = static_cast<char>(group >> 16U & 0xFFU);
  out[1] = static_cast<char>(group >> 8U & 0xFFU);
  out[2] = static_cast<char>(group & 0xFFU);
}

}  // namespace

std::optional<std::string> base64Decoded(std::string_view text) {
  if (text.find('\n') != std::string_view::npos || text.find('\r') != std::string_view::npos) {
    return base64Decoded(withoutLineEnds(text));
  }
  if (text.size() % 4 != 0) return std::nullopt;
  if (text.empty()) return std::string();
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3 + roomBehind);
  bytes.resize(text.size() / 4 * 3);
  const auto* in = reinterpret_cast<const unsigned char*>(text.data());
  const auto* const lastGroup = in + text.size() - 4;
  char* out = bytes.data();
  std::uint32_t seen = 0;
  for (; in != lastGroup; in += 4, out += 3) {
    const std::uint32_t group = groupOf(in);
    seen |= group;
    put(group, out);
  }
  const std::size_t padding = !text.ends_with('=') ? 0 : text.ends_with("==") ? 2 : 1;
  unsigned char last[4] = {in[0], in[1], in[2], in[3]};
  for (std::size_t i = 4 - padding; i < 4; ++i) last[i] = 'A';
  const std::uint32_t group = groupOf(last);
  put(group, out);
  if (((seen | group) & invalid) != 0) return std::nullopt;
  bytes.resize(bytes.size() - padding);
  return bytes;
}

}  // namespace halyard
