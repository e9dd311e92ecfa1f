#include "halyard/build/selection_prompt.hpp"

#include <charconv>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/device/device_selection.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/keys.hpp"
#include "halyard/terminal/line_input.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

std::string promptText(const ListPrompt& prompt) {
  std::string text =
      fmt::format("{}▶{} {}{}{}", Color::boldBlue, Color::reset, Color::bold, localized(prompt.labelKey), Color::reset);
  if (prompt.rowCount > 0) text += fmt::format(" [1–{}]", prompt.rowCount);
  if (prompt.showsClearHint) {
    text += fmt::format("  {}{}{}", Color::dim, localized("enter_dash_to_clear"), Color::reset);
  }
  return text + fmt::format(" {}[RETURN]{} ", Color::purple, Color::reset);
}

}  // namespace

ListAnswer readListAnswer(std::string_view line, const ListPrompt& prompt) {
  const std::string answer = lowercased(trimmed(line));
  if (answer.empty() || answer == "x") return {};
  if (answer.size() == 1 && prompt.orders.find(answer.front()) != std::string_view::npos) {
    return {.kind = ListAnswer::Kind::order, .order = answer.front()};
  }
  std::size_t number = 0;
  const char* const last = answer.data() + answer.size();
  const auto [end, error] = std::from_chars(answer.data(), last, number);
  if (error != std::errc() || end != last || number < 1 || number > prompt.rowCount) {
    return {.kind = ListAnswer::Kind::invalid};
  }
  return {.kind = ListAnswer::Kind::row, .row = number - 1};
}

ListAnswer askList(const ListPrompt& prompt) {
  flushPendingInput();
  print(promptText(prompt));
  flushOutput();
  const auto line = readLine();
  return line ? readListAnswer(*line, prompt) : ListAnswer{};
}

std::string listRow(std::size_t index, std::string_view text, bool isCurrent) {
  std::string row = fmt::format("  {}[{:02}]{} {}", Color::boldBlue, index + 1, Color::reset, text);
  if (isCurrent) row += fmt::format("  {}◀{}", Color::boldBlue, Color::reset);
  return row;
}

std::string listOrder(char order, std::string_view label) {
  return fmt::format("{}[{}]{} {}", Color::boldBlue, order, Color::reset, label);
}

void printInvalidSelection() { printError(localized("invalid_selection")); }

}  // namespace halyard
