#include "halyard/testruns/test_result.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/diagnostics.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

// Of messages: what no screen has room for is for the log.
constexpr std::size_t longestMessage = 400;
constexpr std::size_t longestName = 160;
constexpr std::size_t shownErrorLines = 50;
constexpr std::size_t hintWidth = 70;

struct Suite {
  std::string_view name;
  int passed = 0;
  std::vector<const FailedTest*> failed = {};
};

/// In the order in which they first show.
std::vector<Suite> suitesOf(const TestRunData& data) {
  std::vector<Suite> suites;
  std::unordered_map<std::string_view, std::size_t> places;
  const auto suiteOf = [&](std::string_view name) -> Suite& {
    const auto [place, isNew] = places.try_emplace(name, suites.size());
    if (isNew) suites.push_back({name});
    return suites[place->second];
  };
  for (const PassedTest& test : data.passed) ++suiteOf(test.suite).passed;
  for (const FailedTest& test : data.failed) suiteOf(test.suite).failed.push_back(&test);
  return suites;
}

template <typename... Arguments>
void add(std::string& drawn, fmt::format_string<Arguments...> format, Arguments&&... arguments) {
  fmt::format_to(std::back_inserter(drawn), format, std::forward<Arguments>(arguments)...);
}

std::string shownName(std::string_view name) {
  return name.empty() ? std::string("—") : shortened(shownToolText(name), longestName);
}

std::string shownMessage(std::string_view message) {
  const std::string_view line = trimmed(message.substr(0, message.find('\n')));
  return shortened(shownToolText(line), longestMessage);
}

/// Without the "-[Module.Suite test] : " that XCTest puts before its messages: the line above says that already.
std::string_view withoutTestName(std::string_view message) {
  constexpr std::string_view nameEnd = "] : ";
  if (!message.starts_with("-[")) return message;
  const std::size_t end = message.find(nameEnd);
  return end == std::string_view::npos ? message : message.substr(end + nameEnd.size());
}

std::string heading(std::string_view title) {
  const int rest = Layout::contentWidth - visibleWidth(title);
  return fmt::format("\n{}── {} {}{}\n", Color::blue, title, repeated("─", rest), Color::reset);
}

void addTitle(std::string& drawn, std::string_view color, std::string_view symbol, std::string_view text) {
  add(drawn, "  {}{} {}{}\n", color, symbol, text, Color::reset);
}

void addErrors(std::string& drawn, const TestRunData& data) {
  if (data.errorCount == 0) return;
  addTitle(drawn, Color::boldRed, "✗", localizedFormat("build_errors_found_var", data.errorCount));
  const std::size_t shown = std::min(data.errorLines.size(), shownErrorLines);
  for (std::size_t i = 0; i < shown; ++i) {
    add(drawn, "    {}›{} {}\n", Color::dim, Color::reset, shownMessage(data.errorLines[i]));
  }
  if (shown < data.errorLines.size()) {
    add(drawn, "    {}{}{}\n", Color::dim, localizedFormat("dialog_items_more", data.errorLines.size() - shown),
        Color::reset);
  }
}

void addPassedSuites(std::string& drawn, const std::vector<Suite>& suites) {
  if (std::ranges::none_of(suites, [](const Suite& suite) { return suite.failed.empty(); })) return;
  addTitle(drawn, Color::boldGreen, "✓", localized("test_classes_passed"));
  for (const Suite& suite : suites) {
    if (!suite.failed.empty()) continue;
    add(drawn, "    {}  {}{} {}{}\n", shownName(suite.name), Color::green, suite.passed, localized("passed"),
        Color::reset);
  }
}

void addFailedTest(std::string& drawn, const FailedTest& test) {
  add(drawn, "      {}✗{} {}  {}({:.3f} s){}\n", Color::red, Color::reset, shownName(test.name), Color::dim,
      test.duration, Color::reset);
  if (test.errors.empty()) return;
  add(drawn, "        {}{}{}\n", Color::red, shownMessage(withoutTestName(test.errors.front())), Color::reset);
}

void addFailedSuites(std::string& drawn, const std::vector<Suite>& suites) {
  if (std::ranges::all_of(suites, [](const Suite& suite) { return suite.failed.empty(); })) return;
  addTitle(drawn, Color::boldRed, "✗", localized("test_classes_failed"));
  for (const Suite& suite : suites) {
    if (suite.failed.empty()) continue;
    add(drawn, "    {}{}{}  {}{} {}{}", Color::bold, shownName(suite.name), Color::reset, Color::red,
        suite.failed.size(), localized("failed"), Color::reset);
    if (suite.passed > 0) add(drawn, "  {}{} {}{}", Color::dim, suite.passed, localized("passed"), Color::reset);
    drawn += '\n';
    for (const FailedTest* test : suite.failed) addFailedTest(drawn, *test);
  }
}

void addTechnicalFailure(std::string& drawn) {
  addTitle(drawn, Color::boldYellow, "⚠", localized("test_technical_failure"));
  std::string_view hint = localized("test_technical_failure_hint");
  while (!hint.empty()) {
    std::size_t end = graphemePrefix(hint, hintWidth);
    if (end < hint.size()) end = std::min(hint.rfind(' ', end), end);
    add(drawn, "    {}{}{}\n", Color::dim, trimmedBlanks(hint.substr(0, end)), Color::reset);
    hint.remove_prefix(end);
    hint = trimmedBlanks(hint);
  }
}

struct BannerForm {
  std::string_view titleKey;
  std::string_view symbol;
  std::string_view color;
  std::string_view ruleColor;
};

constexpr BannerForm buildFailedForm = {"test_banner_build_failed", "❌", Color::boldRed, Color::red};
constexpr BannerForm passedForm = {"test_banner_passed", "✅", Color::boldGreen, Color::green};
constexpr BannerForm failedForm = {"test_banner_failed", "❌", Color::boldRed, Color::red};

const BannerForm& bannerForm(const TestRunData& data, int errors) {
  if (classify(data) == TestRunOutcome::success) return passedForm;
  // The tool announces a failed build of a test run as a failed test.
  const bool buildFailed = data.buildFailed || errors > 0;
  return buildFailed && data.passed.empty() && data.failed.empty() ? buildFailedForm : failedForm;
}

std::string centered(std::string_view text) {
  const int free = Layout::contentWidth - visibleWidth(text);
  return std::string(static_cast<std::size_t>(std::max(free, 0)) / 2, ' ') + std::string(text);
}

}  // namespace

std::string drawBuildTestResult(const TestRunData& data) {
  const std::vector<Suite> suites = suitesOf(data);
  std::string drawn = heading(localized("build_test_result"));
  addErrors(drawn, data);
  addPassedSuites(drawn, suites);
  addFailedSuites(drawn, suites);
  if (data.warnCount > 0) {
    addTitle(drawn, Color::boldYellow, "⚠", localizedFormat("build_warnings_found_var", data.warnCount));
  }
  if (classify(data) == TestRunOutcome::technicalFailure) addTechnicalFailure(drawn);
  return drawn;
}

void printBuildTestResult(const TestRunData& data) { print(drawBuildTestResult(data)); }

std::string drawTestBanner(const TestRunData& data, int errors, int warnings) {
  const BannerForm& form = bannerForm(data, errors);
  const std::string bar = fmt::format("  {}{}{}\n", form.color, repeated("═", Layout::contentWidth), Color::reset);
  std::string drawn = "\n" + bar;
  add(drawn, "  {}{}{}\n", form.color, centered(fmt::format("{}  {}", form.symbol, localized(form.titleKey))),
      Color::reset);
  add(drawn, "  {}{}{}\n", form.ruleColor, repeated("─", Layout::contentWidth), Color::reset);
  add(drawn, "    {}✗ {}{}\n", Color::red, localizedFormat("build_errors_found_var", errors), Color::reset);
  add(drawn, "    {}⚠ {}{}\n", Color::yellow, localizedFormat("build_warnings_found_var", warnings), Color::reset);
  return drawn + bar;
}

void printTestBanner(const TestRunData& data, int errors, int warnings) {
  print(drawTestBanner(data, errors, warnings));
}

}  // namespace halyard
