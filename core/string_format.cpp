// Formats with the placeholders of the platform's strings: %@, %d, %lld, %5.1f, %2$@ and the like.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include <fmt/format.h>

#include "core/string_catalog.hpp"

namespace halyard {

namespace {

struct Placeholder {
  std::size_t position = 0;  ///< from 1; 0: the next argument
  bool leftAligned = false;
  bool zeroPadded = false;
  bool signedAlways = false;
  int width = 0;
  std::optional<int> precision;
  char conversion = 0;
};

// Wider fields than any screen come only from a damaged catalog.
constexpr int largestField = 512;

int readNumber(std::string_view text, std::size_t& at) {
  int number = 0;
  while (at < text.size() && text[at] >= '0' && text[at] <= '9') {
    number = std::min(number * 10 + (text[at] - '0'), largestField);
    ++at;
  }
  return number;
}

/// Reads what stands behind a percent sign and moves `at` past it; nothing, and `at` as it was, where it's no
/// placeholder.
std::optional<Placeholder> readPlaceholder(std::string_view text, std::size_t& at) {
  Placeholder placeholder;
  std::size_t next = at;
  const std::size_t digits = next;
  const int position = readNumber(text, next);
  if (position > 0 && next < text.size() && text[next] == '$') {
    placeholder.position = static_cast<std::size_t>(position);
    ++next;
  } else {
    next = digits;
  }
  for (; next < text.size() && std::string_view("-0+ ").find(text[next]) != std::string_view::npos; ++next) {
    placeholder.leftAligned |= text[next] == '-';
    placeholder.zeroPadded |= text[next] == '0';
    placeholder.signedAlways |= text[next] == '+';
  }
  placeholder.width = readNumber(text, next);
  if (next < text.size() && text[next] == '.') {
    ++next;
    placeholder.precision = readNumber(text, next);
  }
  while (next < text.size() && std::string_view("hlqzt").find(text[next]) != std::string_view::npos) ++next;
  if (next >= text.size() || std::string_view("@sdiuxXfFgGeE").find(text[next]) == std::string_view::npos) {
    return std::nullopt;
  }
  placeholder.conversion = text[next];
  at = next + 1;
  return placeholder;
}

std::string plain(const FormatArgument& argument) {
  return std::visit([](const auto& value) { return fmt::format("{}", value); }, argument);
}

std::string floating(const Placeholder& placeholder, double value) {
  const int precision = placeholder.precision.value_or(6);
  switch (placeholder.conversion) {
    case 'g':
    case 'G': return fmt::format("{:.{}g}", value, std::max(precision, 1));
    case 'e':
    case 'E': return fmt::format("{:.{}e}", value, precision);
    default: return fmt::format("{:.{}f}", value, precision);
  }
}

std::string converted(const Placeholder& placeholder, const FormatArgument& argument) {
  const bool isFloating = std::string_view("fFgGeE").find(placeholder.conversion) != std::string_view::npos;
  if (const auto* integer = std::get_if<std::int64_t>(&argument)) {
    if (isFloating) return floating(placeholder, static_cast<double>(*integer));
    if (placeholder.conversion == 'x') return fmt::format("{:x}", static_cast<std::uint64_t>(*integer));
    if (placeholder.conversion == 'X') return fmt::format("{:X}", static_cast<std::uint64_t>(*integer));
    return fmt::format("{}", *integer);
  }
  if (const auto* number = std::get_if<double>(&argument)) {
    return isFloating && std::isfinite(*number) ? floating(placeholder, *number) : plain(argument);
  }
  return plain(argument);
}

void appendPadded(std::string& result, const Placeholder& placeholder, std::string text) {
  const bool isNumber = placeholder.conversion != '@' && placeholder.conversion != 's';
  if (isNumber && placeholder.signedAlways && !text.starts_with('-')) text.insert(text.begin(), '+');
  const auto width = static_cast<std::size_t>(placeholder.width);
  const std::size_t missing = width > text.size() ? width - text.size() : 0;
  if (placeholder.leftAligned) {
    result.append(text).append(missing, ' ');
  } else if (placeholder.zeroPadded && isNumber) {
    const std::size_t sign = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
    result.append(text, 0, sign).append(missing, '0').append(text, sign);
  } else {
    result.append(missing, ' ').append(text);
  }
}

}  // namespace

std::string formatted(std::string_view format, const FormatArgument* arguments, std::size_t count) {
  std::string result;
  result.reserve(format.size() + 16);
  std::size_t nextArgument = 0;
  for (std::size_t at = 0; at < format.size();) {
    const std::size_t percent = std::min(format.find('%', at), format.size());
    result.append(format, at, percent - at);
    if (percent == format.size()) break;
    at = percent + 1;
    if (at < format.size() && format[at] == '%') {
      result += '%';
      ++at;
    } else if (const auto placeholder = readPlaceholder(format, at)) {
      const std::size_t index = placeholder->position > 0 ? placeholder->position - 1 : nextArgument++;
      if (index < count) appendPadded(result, *placeholder, converted(*placeholder, arguments[index]));
    } else {
      result += '%';
    }
  }
  return result;
}

}  // namespace halyard
