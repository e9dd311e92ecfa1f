#include "halyard/build/build_result.hpp"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "halyard/build/diagnostics.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr std::array<std::string_view, 4> successMarkers = {
    "** BUILD SUCCEEDED **",
    "** TEST BUILD SUCCEEDED **",
    "** TEST SUCCEEDED **",
    "** TEST EXECUTE SUCCEEDED **",
};

void printColoredRule(std::string_view color, std::string_view piece) {
  printLine(fmt::format("{}{}{}", color, repeated(piece, Layout::ruleWidth), Color::reset));
}

void printCount(std::string_view color, std::string_view symbol, std::string_view key, int count) {
  printLine(fmt::format("  {}{} {}{}", color, symbol, localizedFormat(key, count), Color::reset));
}

void printErrorCount(int count) { printCount(Color::boldRed, "✗", "build_errors_found_var", count); }

void printWarningCount(int count) { printCount(Color::boldYellow, "⚠", "build_warnings_found_var", count); }

std::string durationDetail(const BuildResult& result) {
  return fmt::format("{}: {}", localized("duration"), result.duration);
}

void printSucceeded(const BuildResult& result) {
  printColoredRule(Color::boldGreen, "═");
  printResult("BUILD SUCCEEDED", ResultStyle::success, durationDetail(result));
  printColoredRule(Color::green, "─");
  if (result.warnings == 0) {
    printLine(fmt::format("  {}{}{}", Color::dim, localized("no_build_warnings_found"), Color::reset));
  } else {
    printWarningCount(result.warnings);
    printDiagnostics(result.warningLines, false);
  }
  printColoredRule(Color::boldGreen, "═");
}

void printFailedBlock(const std::vector<std::string>& lines, bool isError) {
  if (lines.empty()) return;
  printColoredRule(Color::red, "─");
  printDiagnostics(lines, isError);
}

void printFailed(const BuildResult& result) {
  printColoredRule(Color::boldRed, "═");
  printResult("BUILD FAILED", ResultStyle::failure, durationDetail(result));
  if (result.errors > 0 || result.warnings > 0) printColoredRule(Color::red, "─");
  if (result.errors > 0) printErrorCount(result.errors);
  if (result.warnings > 0) printWarningCount(result.warnings);
  printFailedBlock(result.errorLines, true);
  printFailedBlock(result.warningLines, false);
  printColoredRule(Color::boldRed, "═");
}

}  // namespace

bool buildSucceeded(std::string_view output, std::int32_t status) {
  return status == 0 && std::ranges::any_of(successMarkers, [output](std::string_view marker) {
           return output.find(marker) != std::string_view::npos;
         });
}

void printBuildResult(const BuildResult& result) {
  printLine();
  if (result.success) {
    printSucceeded(result);
  } else {
    printFailed(result);
  }
}

}  // namespace halyard
