#include "halyard/shell/directory_setup.hpp"

#include <array>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/core_caches.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/usable_home.hpp"
#include "halyard/packages/detection.hpp"
#include "halyard/shell/preferences.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/file_browser.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr auto checklist = std::to_array<std::string_view>({
    "dir_setup_step_browse",
    "dir_setup_step_clean_caches",
    "dir_setup_step_deps",
    "dir_setup_step_scheme",
    "dir_setup_step_test_target",
    "dir_setup_step_device",
});

DirectorySetupSteps& installedSteps() {
  static DirectorySetupSteps steps;
  return steps;
}

/// The set-up can be entered from a sub-menu of an action that a digit started; that digit is no answer to its
/// questions.
class QuestionsAreAsked {
 public:
  QuestionsAreAsked() : wasHotkey_(launchedByHotkey()) { setLaunchedByHotkey(false); }
  ~QuestionsAreAsked() {
    setLaunchedByHotkey(wasHotkey_);
    setSuppressBackPrompt(false);  // a "no" to one question doesn't end the set-up
  }
  QuestionsAreAsked(const QuestionsAreAsked&) = delete;
  QuestionsAreAsked& operator=(const QuestionsAreAsked&) = delete;

 private:
  bool wasHotkey_;
};

void printHeader() {
  printActionHeader(localized("working_directory"), localized("dir_setup_description"));
  printLine();
  printLine("  " + std::string(localized("dir_setup_checklist_hint")));
  for (const std::string_view step : checklist) printBullet(localized(step));
  printLine();
}

bool isProjectFile(std::string_view path) { return path.ends_with(".xcworkspace") || path.ends_with(".xcodeproj"); }

void enterProject(const std::string& chosen) {
  const bool isProject = isProjectFile(caseFolded(chosen));
  const std::string folder = isProject ? std::filesystem::path(chosen).parent_path().string() : chosen;
  // A plain folder can be chosen too: then its project, if it has one, is found there.
  setSelectedProjectFilePath(isProject ? chosen : "");
  setSelectedWorkingDirectory(folder);
  std::error_code ignored;
  std::filesystem::current_path(folder, ignored);
  setSelectedScheme({});
  setSelectedTestScheme({});
  setSelectedTestPlan({});
  setSelectedTestPlanIsFromScheme(false);
  setSelectedBundleID({});
  setCachedPlatforms({});
  setCachedPlatformsScheme({});
  setCachedTestPlatforms({});
  setCachedTestPlatformsScheme({});
  savePreferences();
  detectProject();
  printSuccess(localizedFormat("dir_project_selected", displaySafe(chosen)));
}

void offerCacheDeletion() {
  if (!confirm(localized("guided_clean_delete_caches_question"))) return;
  if (!requireUsableHome()) return;
  for (const CacheStep& step : coreCacheSteps()) runQuiet(step.label, step.command);
  printSuccess(localized("caches_deleted_spm_preserved"));
}

struct Step {
  void (*perform)();
  std::string_view nameKey;
};

/// False where one of them isn't there yet. An abort ends the row.
bool performSteps(std::initializer_list<Step> steps) {
  bool allAvailable = true;
  for (const Step& step : steps) {
    if (operationAborted()) break;
    if (step.perform != nullptr) {
      step.perform();
      continue;
    }
    printInfo(std::string(localized(step.nameKey)) + ": " + std::string(localized("not_available_yet")));
    allAvailable = false;
  }
  return allAvailable;
}

bool spmCacheIsGone() {
  const FileSystemProviding& files = *AppDependencies::current().fileSystemClient;
  return !files.fileExists(files.homeDirectoryPath() + std::string(PackageManagerCachePath::spm.substr(1)));
}

bool wantsDependenciesResolved(const DetectedPackageManagers& managers) {
  if (!managers.any()) {
    printInfo(localized("dir_resolve_deps_no_pm"));
    return false;
  }
  if (!spmCacheIsGone()) return confirm(localizedFormat("dir_resolve_deps_question_var", managers.displayNames()));
  printInfo(localizedFormat("dir_resolve_deps_auto_resolving_var", managers.displayNames()));
  return true;
}

}  // namespace

void installDirectorySetupSteps(const DirectorySetupSteps& steps) { installedSteps() = steps; }

void runDirectorySetup() {
  printHeader();
  const std::optional<std::string> chosen =
      browseFiles(localized("select_project_or_workspace"), {".xcworkspace", ".xcodeproj"});
  if (!chosen) return;
  const DirectorySetupSteps& steps = installedSteps();
  bool allAvailable = true;
  {
    const QuestionsAreAsked guard;
    printHeader();  // the browser took the whole screen
    enterProject(*chosen);
    offerCacheDeletion();
    if (wantsDependenciesResolved(DetectedPackageManagers::detect())) {
      allAvailable = performSteps({{steps.resolveDependencies, "dir_setup_step_deps"}});
    }
    allAvailable &= performSteps({{steps.selectScheme, "dir_setup_step_scheme"},
                                  {steps.selectTestScheme, "dir_setup_step_test_target"},
                                  {steps.selectDevice, "dir_setup_step_device"}});
  }
  // What isn't available stands on this screen, not on one of a step's own.
  if (!allAvailable) waitForBack();
  setOperationAborted(false);
}

}  // namespace halyard
