#include "halyard/testruns/coverage_actions.hpp"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/exec/with_spinner.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/keys.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/testruns/coverage_data.hpp"
#include "halyard/testruns/coverage_drawing.hpp"
#include "halyard/testruns/coverage_tree.hpp"

namespace halyard {

namespace {

void printHeader(std::string_view key, std::string_view descriptionKey) {
  printActionHeader(localized(key), localized(descriptionKey));
  printLine();
}

void printReportHeader() { printHeader("coverage_report", "coverage_report_description"); }

/// What was loaded; nothing, and that told, where there is none.
template <typename Load>
auto loaded(Load load) -> decltype(load()) {
  auto result = withSpinner(std::string(localized("coverage_loading")), load);
  if (operationAborted()) return std::nullopt;
  if (!result) printWarning(localized("coverage_no_data"));
  return result;
}

std::optional<std::vector<CoverageTarget>> loadTargets() {
  auto targets = loadCoverage();
  return targets && targets->empty() ? std::nullopt : targets;
}

void printKeys(bool offersFiles) {
  printLine();
  print("  ");
  if (offersFiles) print(fmt::format("{}[d]{} {}   ", Color::boldBlue, Color::reset, localized("coverage_show_files")));
  print(fmt::format("{}[x]{} {} ", Color::boldBlue, Color::reset, localized("menu_back")));
  flushOutput();
}

/// True: show the files. False: leave.
bool asksForFiles() {
  for (;;) {
    const std::string key = lowercased(readKeyChar());
    if (key == "d") return true;
    if (key == "x" || inputEnded()) return false;
  }
}

void waitForLeaving() {
  for (;;) {
    if (lowercased(readKeyChar()) == "x" || inputEnded()) return;
  }
}

struct LoadedTree {
  std::vector<CoverageTarget> targets;  // the nodes point into it
  CoverageNode root;
};

std::optional<LoadedTree> loadTree() {
  auto targets = loadTargets();
  if (!targets) return std::nullopt;
  std::error_code failed;
  const std::string root = std::filesystem::current_path(failed).string();
  const std::vector<std::string> files = readSwiftFiles(run(swiftFilesCommand()));
  LoadedTree tree{*std::move(targets), {}};
  tree.root = coverageTree(files, root, tree.targets);
  return tree;
}

}  // namespace

void showCoverageReport() {
  setOperationAborted(false);
  printReportHeader();
  const auto targets = loaded(loadTargets);
  if (!targets) return waitForBack();
  flushPendingInput();
  print(drawCoverageTable(*targets, false));
  printKeys(true);
  if (!asksForFiles()) return printLine();
  printReportHeader();
  print(drawCoverageTable(*targets, true));
  printKeys(false);
  waitForLeaving();
  printLine();
}

void showCoverageTree() {
  setOperationAborted(false);
  printHeader("coverage_tree_action", "coverage_tree_description");
  if (const auto tree = loaded(loadTree)) {
    printSection(localized("config_project_structure_section"));
    print(drawCoverageTree(tree->root));
  }
  waitForBack();
}

}  // namespace halyard
