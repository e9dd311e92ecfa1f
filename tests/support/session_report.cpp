#include "tests/support/session_report.hpp"

#include <algorithm>
#include <cstddef>

#include <fmt/format.h>

#include "core/text.hpp"

namespace halyard {

namespace {

// Columns for the report's own purpose: continuation bytes take none.
std::size_t columnsOf(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

std::string padded(std::string text, std::size_t columns) {
  const std::size_t own = columnsOf(text);
  if (own < columns) text.append(columns - own, ' ');
  return text;
}

std::size_t widest(const std::vector<std::string>& lines) {
  std::size_t width = 8;
  for (const std::string& line : lines) width = std::max(width, columnsOf(line));
  return width;
}

}  // namespace

std::string escapedOutput(std::string_view bytes) {
  std::string result;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    switch (byte) {
      case '\x1b': result += "\\e"; break;
      case '\r': result += "\\r"; break;
      case '\t': result += "\\t"; break;
      case '\n': result += "\\n\n"; break;
      default:
        if (byte < 0x20 || byte == 0x7f) {
          result += fmt::format("\\x{:02x}", byte);
        } else {
          result += character;
        }
    }
  }
  if (isValidUtf8(result)) return result;
  std::string plain;
  for (const char character : result) {
    const auto byte = static_cast<unsigned char>(character);
    plain += byte < 0x80 ? std::string(1, character) : fmt::format("\\x{:02x}", byte);
  }
  return plain;
}

std::vector<std::string> screenLines(std::string_view text) {
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    std::string line(text.substr(start, end - start));
    line.erase(line.find_last_not_of(' ') + 1);
    lines.push_back(line);
    start = end + 1;
  }
  while (!lines.empty() && lines.back().empty()) lines.pop_back();
  return lines;
}

std::string sideBySide(const std::vector<std::string>& expected, const std::vector<std::string>& actual) {
  const std::size_t width = widest(expected);
  std::string result = fmt::format("    {} | actual\n", padded("expected", width));
  for (std::size_t index = 0; index < std::max(expected.size(), actual.size()); ++index) {
    const std::string left = index < expected.size() ? expected[index] : "";
    const std::string right = index < actual.size() ? actual[index] : "";
    result += fmt::format("{:2}{} {} | {}\n", index, left == right ? ' ' : '!', padded(left, width), right);
  }
  return result;
}

std::string framedScreen(const std::vector<std::string>& rows) {
  const std::size_t width = widest(rows);
  std::string result;
  for (std::size_t index = 0; index < rows.size(); ++index) {
    result += fmt::format("{:2} |{}|\n", index, padded(rows[index], width));
  }
  return result;
}

}  // namespace halyard
