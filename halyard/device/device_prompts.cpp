#include "halyard/device/device_prompts.hpp"

#include <charconv>
#include <system_error>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/line_input.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

void printMenuRow(std::string_view mark, std::string_view label, bool current) {
  printLine(fmt::format("  {}[{}]{} {}{}", Color::boldBlue, mark, Color::reset, label,
                        current ? fmt::format("  {}◀{}", Color::boldBlue, Color::reset) : std::string()));
}

std::string rowMark(std::size_t index) { return fmt::format("{:02}", index + 1); }

std::optional<std::size_t> chosenIndex(std::string_view answer, std::size_t rowCount) {
  std::size_t number = 0;
  const char* const end = answer.data() + answer.size();
  const auto [stop, error] = std::from_chars(answer.data(), end, number);
  if (error != std::errc() || stop != end || number < 1 || number > rowCount) return std::nullopt;
  return number - 1;
}

bool isLeaving(std::string_view answer) { return answer == "x" || answer == "q" || answer == "0"; }

void printInvalidChoice(std::string_view answer) {
  if (!answer.empty() && !answer.starts_with("__redraw")) printError(localized("invalid_selection"));
}

std::string readLetter() {
  print(fmt::format("  {}▶{} {}{}{} {}[RETURN]{} ", Color::boldBlue, Color::reset, Color::bold, localized("choice"),
                    Color::reset, Color::purple, Color::reset));
  flushOutput();
  const std::optional<std::string> line = readLine();
  const bool aborted = operationAborted();
  setOperationAborted(false);
  return !line || aborted ? "x" : lowercased(trimmed(*line));
}

}  // namespace halyard
