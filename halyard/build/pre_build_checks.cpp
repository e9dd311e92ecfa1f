#include "halyard/build/pre_build_checks.hpp"

#include <array>
#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>

#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_flows.hpp"
#include "halyard/packages/package_commands.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

int each(int findings) { return findings; }
int none(int) { return 0; }
int oneForAll(int findings) { return findings > 0 ? 1 : 0; }

constexpr auto checks = std::to_array<PreBuildCheck>({
    {.tool = "swiftlint",
     .command = "swiftlint lint --quiet 2>/dev/null | wc -l | tr -d ' '",
     .cleanKey = "swiftlint_no_errors",
     .findingKey = "swiftlint_var_findings",
     .missingKey = "swiftlint_not_installed_skipped",
     .issues = each},
    {.tool = {},
     .command = R"(grep -rn 'TODO\|FIXME\|HACK' --include='*.swift' . 2>/dev/null | grep -v '.build/' | )"
                "grep -v 'DerivedData' | wc -l | tr -d ' '",
     .cleanKey = "no_todo_fixme_hack_comments",
     .findingKey = "todo_fixme_hack_var_open_comments",
     .missingKey = {},
     .issues = none},
    {.tool = {},
     .command = "grep -rn '![^=!]' --include='*.swift' . 2>/dev/null | grep -v '.build/' | grep -v 'DerivedData' | "
                "grep -v '//' | wc -l | tr -d ' '",
     .cleanKey = "no_force_unwraps_2",
     .findingKey = "force_unwraps_var_occurrences",
     .missingKey = {},
     .issues = none},
    {.tool = {},
     .command = R"(grep -rn '<<<<<<<\|=======' --include='*.swift' . 2>/dev/null | grep -v '.build/' | )"
                "wc -l | tr -d ' '",
     .cleanKey = "no_conflict_markers",
     .findingKey = "conflict_markers_found_please_resolve",
     .missingKey = {},
     .kind = FindingKind::error,
     .issues = oneForAll},
});

void printFinding(const PreBuildCheck& check, int findings) {
  const std::string text = localizedFormat(check.findingKey, findings);
  check.kind == FindingKind::error ? printError(text) : printWarning(text);
}

/// Prints the check's line and gives the issues that it found.
int performCheck(const PreBuildCheck& check) {
  if (!check.tool.empty() && !packageToolExists(check.tool)) {
    printWarning(localized(check.missingKey));
    return 0;
  }
  const int findings = findingsCount(run(check.command));
  if (findings > 0) {
    printFinding(check, findings);
  } else {
    printSuccess(localized(check.cleanKey));
  }
  return check.issues(findings);
}

}  // namespace

std::span<const PreBuildCheck> preBuildChecks() { return checks; }

int findingsCount(std::string_view output) {
  const std::string_view text = trimmed(output);
  int count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber && count > 0 ? count : 0;
}

void runPreBuildChecks() {
  printActionHeader(localized("pre_build_checks"),
                    localized("runs_quick_quality_checks_swiftlint_analysis_search_for"));
  printLine();
  std::int64_t issues = 0;
  for (const PreBuildCheck& check : checks) issues += performCheck(check);
  if (issues == 0) {
    printSuccess(localized("all_pre_build_checks_passed"));
  } else {
    printWarning(localizedFormat("there_are_var_issues_please_review", issues));
  }
  waitForBack();
}

}  // namespace halyard
