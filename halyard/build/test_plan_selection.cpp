#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/build/selection_prompt.hpp"
#include "halyard/build/test_plan_list.hpp"
#include "halyard/exec/with_spinner.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct TestPlanLists {
  std::vector<TestPlan> ofScheme;
  std::vector<TestPlan> ofFolder;

  [[nodiscard]] std::size_t size() const { return ofScheme.size() + ofFolder.size(); }
};

TestPlanLists loadTestPlans() {
  return withSpinner(std::string(localized("loading_test_plans_detail")), [] {
    TestPlanLists lists;
    lists.ofScheme = schemeTestPlans(selectedTestScheme().empty() ? selectedScheme() : selectedTestScheme());
    lists.ofFolder = fileTestPlans(lists.ofScheme);
    return lists;
  });
}

std::string planRow(std::size_t index, const TestPlan& plan) {
  std::string text = displaySafe(plan.name);
  if (plan.isDefault) text += fmt::format("  {}· {}{}", Color::dim, localized("test_plan_default_mark"), Color::reset);
  return listRow(index, text, plan.name == selectedTestPlan()) + "\n";
}

void printTestPlans(const TestPlanLists& lists) {
  printLine();
  std::string rows;
  for (std::size_t i = 0; i < lists.ofScheme.size(); ++i) rows += planRow(i, lists.ofScheme[i]);
  print(rows);
  if (lists.size() == 0) printInfo(localized("no_test_plans_found"));
  if (!lists.ofFolder.empty()) {
    printLine();
    printSection(localized("testplan_file_only_section"));
    rows.clear();
    for (std::size_t i = 0; i < lists.ofFolder.size(); ++i) {
      rows += planRow(lists.ofScheme.size() + i, lists.ofFolder[i]);
    }
    print(rows);
  }
  printLine();
  printLine("  " + listOrder('t', localized("use_test_scheme_instead")) + "  " +
            listOrder('x', localized("menu_back")));
}

void clearTestPlan() {
  setSelectedTestPlan({});
  setSelectedTestPlanIsFromScheme(false);
  keepPreferences();
  printSuccess(localized("test_plan_cleared"));
}

/// The test scheme must list the plan, or xcodebuild refuses it.
void switchToSchemeOf(const TestPlan& plan) {
  const std::string scheme =
      withSpinner(std::string(localized("loading_test_plans_detail")), [&] { return schemeWithTestPlan(plan.name); });
  if (scheme.empty()) return;
  setSelectedTestScheme(scheme);
  printInfo(localizedFormat("test_scheme_switched_for_testplan", displaySafe(scheme)));
}

void useTestPlan(const TestPlan& plan, bool isFromScheme) {
  setSelectedTestPlan(plan.name);
  setSelectedTestPlanIsFromScheme(isFromScheme);
  printSuccess(
      fmt::format("{}: {}{}{}", localized("select_test_plan"), Color::bold, displaySafe(plan.name), Color::reset));
  if (!isFromScheme) switchToSchemeOf(plan);
  keepPreferences();
}

ListAnswer chooseTestPlan(const TestPlanLists& lists) {
  const ListPrompt prompt{
      .labelKey = "select_test_plan", .rowCount = lists.size(), .showsClearHint = true, .orders = "-t"};
  printTestPlans(lists);
  for (;;) {
    const ListAnswer answer = askList(prompt);
    if (answer.kind != ListAnswer::Kind::invalid) return answer;
    printTestPlans(lists);
    printInvalidSelection();
  }
}

}  // namespace

void selectTestPlan() {
  printActionHeader(localized("select_test_plan"), localized("select_test_plan_description"));
  detectProject();
  const TestPlanLists lists = loadTestPlans();
  const ListAnswer answer = chooseTestPlan(lists);
  if (answer.kind == ListAnswer::Kind::left) return;
  if (answer.kind == ListAnswer::Kind::order && answer.order == 't') {
    clearTestPlan();
    return selectTestScheme();
  }
  if (answer.kind == ListAnswer::Kind::order) {
    clearTestPlan();
  } else {
    const bool isFromScheme = answer.row < lists.ofScheme.size();
    useTestPlan(isFromScheme ? lists.ofScheme[answer.row] : lists.ofFolder[answer.row - lists.ofScheme.size()],
                isFromScheme);
  }
  waitForBack();
}

}  // namespace halyard
