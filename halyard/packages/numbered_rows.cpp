#include "halyard/packages/numbered_rows.hpp"

#include <charconv>

#include <fmt/format.h>

#include "halyard/terminal/colors.hpp"

namespace halyard {

std::string numberedRow(std::size_t number, std::string_view label, std::string_view detail) {
  const std::string mark = number == 0 ? std::string("x") : fmt::format("{:02}", number);
  std::string row = fmt::format("  {}[{}]{} {}", Color::boldBlue, mark, Color::reset, label);
  if (!detail.empty()) row += fmt::format("   {}{}{}", Color::dim, detail, Color::reset);
  return row;
}

std::size_t rowChosen(std::string_view answer, std::size_t count) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(answer.data(), answer.data() + answer.size(), number);
  const bool isRow = error == std::errc() && end == answer.data() + answer.size() && number <= count;
  return isRow ? number : 0;
}

bool leavesMenu(std::string_view answer) { return answer == "x" || answer == "q" || answer == "0"; }

}  // namespace halyard
