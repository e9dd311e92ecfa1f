#include "halyard/packages/package_actions.hpp"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/packages/package_caches.hpp"
#include "halyard/packages/package_commands.hpp"
#include "halyard/packages/package_live_run.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

/// A program that an action needs.
struct Program {
  std::string_view name;
  std::string_view missingKey;
  std::string_view formula;  ///< of the hint how to install it
};

constexpr Program podProgram = {"pod", "cocoapods_not_installed", "cocoapods"};
constexpr Program carthageProgram = {"carthage", "carthage_not_installed", "carthage"};

struct LiveAction {
  PackageTool tool;
  std::string_view titleKey;
  std::string_view confirmKey;
  std::string_view command;
  std::string_view successKey;
  std::string_view failureKey;  ///< empty: the title, and that it failed
  PackageTable (*seed)();
  const Program* program = nullptr;
};

PackageTable pinTable() { return packageTable(pinnedPackages()); }
PackageTable podTable() { return packageTable(lockedPods()); }
PackageTable frameworkTable() { return packageTable(lockedFrameworks()); }

constexpr LiveAction resolvePackagesAction = {PackageTool::spm,
                                              "spm_resolve_packages",
                                              "resolve_spm_dependencies_confirm",
                                              PackageCommand::resolvePackages,
                                              "packages_resolved",
                                              "spm_packages_could_not_be_resolved",
                                              pinTable};
constexpr LiveAction updatePackagesAction = {PackageTool::spm,
                                             "spm_update_packages",
                                             "spm_update_packages_confirm",
                                             PackageCommand::updatePackages,
                                             "packages_resolved",
                                             "spm_packages_could_not_be_resolved",
                                             pinTable};
constexpr LiveAction installPodsAction = {PackageTool::cocoaPods,
                                          "pods_install",
                                          "pods_install_confirm",
                                          PackageCommand::installPods,
                                          "pm_sync_pod_ok",
                                          {},
                                          podTable,
                                          &podProgram};
constexpr LiveAction updatePodsAction = {PackageTool::cocoaPods,
                                         "pods_update",
                                         "pods_update_confirm",
                                         PackageCommand::updatePods,
                                         "pm_sync_pod_ok",
                                         {},
                                         podTable,
                                         &podProgram};
constexpr LiveAction bootstrapAction = {PackageTool::carthage,
                                        "carthage_bootstrap",
                                        "carthage_bootstrap_confirm",
                                        PackageCommand::bootstrapFrameworks,
                                        "pm_sync_carthage_ok",
                                        {},
                                        frameworkTable,
                                        &carthageProgram};
constexpr LiveAction updateFrameworksAction = {PackageTool::carthage,
                                               "carthage_update_frameworks",
                                               "carthage_update_frameworks_confirm",
                                               PackageCommand::updateFrameworks,
                                               "pm_sync_carthage_ok",
                                               {},
                                               frameworkTable,
                                               &carthageProgram};

void begin(std::string_view titleKey) {
  printActionHeader(localized(titleKey), {});
  printLine();
}

bool isThere(const Program& program) {
  if (packageToolExists(program.name)) return true;
  printErrorDetail(localized(program.missingKey), {}, {},
                   localizedFormat("hint_install_with_brew_var", program.formula));
  return false;
}

std::string failureText(const LiveAction& action) {
  if (!action.failureKey.empty()) return std::string(localized(action.failureKey));
  return fmt::format("{}: {}", localized(action.titleKey), localized("failed"));
}

void perform(const LiveAction& action) {
  begin(action.titleKey);
  const bool isPossible = action.program == nullptr || isThere(*action.program);
  if (isPossible && confirm(localized(action.confirmKey))) {
    const bool succeeded = runPackagesLive({.tool = action.tool,
                                            .title = std::string(localized(action.titleKey)),
                                            .command = std::string(action.command),
                                            .successText = std::string(localized(action.successKey)),
                                            .failureText = failureText(action),
                                            .seed = action.seed});
    // The choice after a failure has led back already; an abort does so by itself.
    if (!operationAborted()) setSuppressBackPrompt(!succeeded);
  }
  waitForBack();
}

/// A command whose output is shown as it comes.
void performPrinted(std::string_view titleKey, const Program& program, std::string_view command) {
  begin(titleKey);
  if (isThere(program)) {
    const std::int32_t status = runLive(std::string(command));
    const std::string_view title = localized(titleKey);
    if (!operationAborted()) printResult(title, status == 0 ? ResultStyle::success : ResultStyle::failure);
  }
  waitForBack();
}

void printText(std::string_view text) {
  for (const std::string_view line : splitLines(text)) {
    printLine("  " + displaySafe(line.ends_with('\r') ? line.substr(0, line.size() - 1) : line));
  }
}

struct ListEntry {
  std::string_view name;
  std::string_view version;
  std::string_view url = {};
};

void printList(const std::vector<ListEntry>& entries, std::string_view noneKey) {
  if (entries.empty()) printInfo(localized(noneKey));
  int nameWidth = 0;
  int versionWidth = 0;
  for (const ListEntry& entry : entries) {
    nameWidth = std::max(nameWidth, visibleWidth(displaySafe(entry.name)));
    versionWidth = std::max(versionWidth, visibleWidth(displaySafe(entry.version)));
  }
  for (const ListEntry& entry : entries) {
    std::string line =
        fmt::format("  {}›{} {}  {}{}{}", Color::dim, Color::reset, padVisible(displaySafe(entry.name), nameWidth),
                    Color::boldBlue, displaySafe(entry.version), Color::reset);
    if (!entry.url.empty()) {
      line += std::string(static_cast<std::size_t>(versionWidth - visibleWidth(displaySafe(entry.version))), ' ');
      line += fmt::format("  {}{}{}", Color::dim, displaySafe(entry.url), Color::reset);
    }
    printLine(line);
  }
}

void printPins() {
  const std::vector<SPMPackageInfo> pins = pinnedPackages();
  std::vector<ListEntry> entries;
  for (const SPMPackageInfo& pin : pins) entries.push_back({pin.identity, pin.version, pin.url});
  printList(entries, "spm_no_dependencies_found");
}

/// Pods or frameworks.
template <typename Info>
void showList(std::string_view titleKey, const std::vector<Info>& infos, std::string_view noneKey) {
  begin(titleKey);
  std::vector<ListEntry> entries;
  for (const Info& info : infos) entries.push_back({info.name, info.version});
  printList(entries, noneKey);
  waitForBack();
}

void showFile(std::string_view titleKey, const char* file, std::string_view command, std::string_view missingKey) {
  begin(titleKey);
  if (packageFileExists(file)) {
    printText(run(std::string(command)));
  } else {
    printInfo(localized(missingKey));
  }
  waitForBack();
}

}  // namespace

void showPackageGraph() {
  begin("spm_show_package_graph");
  const std::string graph =
      runQuiet(std::string(localized("spm_show_package_graph")), std::string(PackageCommand::showPackageGraph));
  if (graph.empty() || graph.find("error:") != std::string::npos) {
    printPins();
  } else {
    printText(graph);
  }
  waitForBack();
}

void showPackageResolved() {
  begin("spm_show_package_resolved");
  const std::string file = run(std::string(packageResolvedToShowSearch));
  if (file.empty()) {
    printInfo(localized("no_package_resolved_found"));
  } else {
    printText(run(PackageCommand::showPackageResolved(file)));
  }
  waitForBack();
}

void resolveSPMPackages() { perform(resolvePackagesAction); }

void updateSPMPackages() { perform(updatePackagesAction); }

void cleanSPMCache() {
  begin("spm_clean_cache");
  offerPackageCacheDeletion({.hasSPM = true});
  waitForBack();
}

void showPods() { showList("pods_show_dependencies", lockedPods(), "pods_no_dependencies_found"); }

void showPodfileLock() {
  showFile("pods_show_podfile_lock", "Podfile.lock", PackageCommand::showPodfileLock, "no_podfile_lock_found");
}

void installPods() { perform(installPodsAction); }

void updatePods() { perform(updatePodsAction); }

void cleanPodCache() { performPrinted("pods_clean_cache", podProgram, PackageCommand::cleanPodCache); }

void showFrameworks() { showList("carthage_show_dependencies", lockedFrameworks(), "carthage_no_dependencies_found"); }

void showCartfileResolved() {
  showFile("carthage_show_cartfile_resolved", "Cartfile.resolved", PackageCommand::showCartfileResolved,
           "no_cartfile_resolved_found");
}

void bootstrapFrameworks() { perform(bootstrapAction); }

void updateFrameworks() { perform(updateFrameworksAction); }

void showOutdatedFrameworks() {
  performPrinted("carthage_outdated", carthageProgram, PackageCommand::outdatedFrameworks);
}

void buildFrameworks() { performPrinted("carthage_build", carthageProgram, PackageCommand::buildFrameworks); }

void cleanFrameworkBuilds() {
  begin("carthage_clean_build_dir");
  runQuiet(std::string(localized("carthage_clean_build_dir")), std::string(PackageCommand::cleanFrameworkBuilds));
  printResult(localized("carthage_clean_build_dir"), ResultStyle::success);
  waitForBack();
}

}  // namespace halyard
