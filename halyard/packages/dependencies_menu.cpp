#include "halyard/packages/dependencies_menu.hpp"

#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/xcodebuild_service.hpp"
#include "halyard/packages/dependencies_overview_screen.hpp"
#include "halyard/packages/numbered_rows.hpp"
#include "halyard/packages/package_actions.hpp"
#include "halyard/packages/package_live.hpp"
#include "halyard/packages/package_resolving.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct MenuRow {
  std::string_view key;
  void (*action)();
  bool DetectedPackageManagers::*needs = nullptr;
};

// What the overview's page doesn't hold stands here.
constexpr auto menuRows = std::to_array<MenuRow>({
    {"dependencies_overview", showDependenciesOverview},
    {"resolve_dependencies", resolveAllDependencies},
    {"carthage_outdated", showOutdatedFrameworks, &DetectedPackageManagers::hasCarthage},
    {"carthage_build", buildFrameworks, &DetectedPackageManagers::hasCarthage},
});

std::vector<const MenuRow*> shownRows() {
  const DetectedPackageManagers managers = DetectedPackageManagers::detect();
  std::vector<const MenuRow*> rows;
  for (const MenuRow& row : menuRows) {
    if (row.needs == nullptr || managers.*row.needs) rows.push_back(&row);
  }
  return rows;
}

void printMenu(const std::vector<const MenuRow*>& rows) {
  printActionHeader(localized("dependencies"), {});
  printLine();
  for (std::size_t i = 0; i < rows.size(); ++i) printLine(numberedRow(i + 1, localized(rows[i]->key)));
  printLine();
  printLine(numberedRow(0, localized("menu_back")));
  printLine();
}

std::string currentFolder() {
  std::error_code ignored;
  return std::filesystem::current_path(ignored).string();
}

/// The folder that holds the project: where the versions of its packages are looked for.
std::string projectFolder() {
  const std::string folder = std::filesystem::path(projectPath()).parent_path().string();
  return folder.empty() ? "." : folder;
}

bool requireProject() {
  detectProject();
  if (!projectPath().empty()) return true;
  printErrorDetail(localized("no_xcode_project_found"),
                   std::string(localized("current_path")) + " " + displaySafe(currentFolder()),
                   localized("neither_xcworkspace_nor_xcodeproj_found_in_the_current"),
                   localized("run_the_tool_in_your_project_s_root_directory"));
  return false;
}

void printDetected(const DetectedPackageManagers& managers) {
  printLine("  " + std::string(localized("detected_package_managers")));
  const auto printManager = [](bool isUsed, PackageTool tool) {
    if (isUsed) printLine("  • " + std::string(packageToolTitle(tool)));
  };
  printManager(managers.hasSPM, PackageTool::spm);
  printManager(managers.hasPods, PackageTool::cocoaPods);
  printManager(managers.hasCarthage, PackageTool::carthage);
}

bool resolve(const DetectedPackageManagers& managers) {
  return resolvePackages(
      {.managers = managers,
       .packagesCommand = XcodebuildService::resolvePackagesCommand(selectedScheme(), privateDerivedDataPath()),
       .projectFolder = projectFolder(),
       .beginPhase = [](std::string_view name) { BuildTimeline::beginPhase(std::string(name), "📦"); },
       .endPhase = [](bool succeeded) { BuildTimeline::endPhase(succeeded); }});
}

}  // namespace

void showDependenciesMenu() {
  for (;;) {
    const std::vector<const MenuRow*> rows = shownRows();
    printMenu(rows);
    const std::string answer = readChoice();
    if (leavesMenu(answer)) return;
    if (const std::size_t row = rowChosen(answer, rows.size()); row > 0) rows[row - 1]->action();
  }
}

void resolveAllDependencies() {
  printActionHeader(localized("resolve_dependencies"), localized("resolve_dependencies_description"));
  printLine();
  if (!requireProject()) return waitForBack();
  const DetectedPackageManagers managers = DetectedPackageManagers::detect();
  if (!managers.any()) {
    printInfo(localized("no_package_managers_detected"));
    return waitForBack();
  }
  printDetected(managers);
  if (confirm(localized("resolve_dependencies_confirm"))) {
    BuildTimeline::begin(std::string(localized("resolve_dependencies")));
    resolve(managers);
    BuildTimeline::end();
  }
  waitForBack();
}

bool resolveDetectedDependencies() {
  detectProject();
  return resolve(DetectedPackageManagers::detect());
}

}  // namespace halyard
