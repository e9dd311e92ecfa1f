#include "halyard/cache/artifact_actions.hpp"

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/cache/cache_locations.hpp"
#include "halyard/cache/cache_removal.hpp"
#include "halyard/cache/cache_sizes.hpp"
#include "halyard/cache/cache_steps.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/with_spinner.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct Removal {
  std::string_view command;
  std::string_view path;  ///< below the project's folder
};

struct ArtifactRow {
  std::string_view titleKey;
  std::string_view descriptionKey;
  std::string_view measured;  ///< below the project's folder
  std::string_view questionKey;
  std::string_view successKey;
  std::array<Removal, 2> removals;
};

constexpr ArtifactRow pods = {.titleKey = "delete_pods_artifacts",
                              .descriptionKey = "delete_pods_artifacts_description",
                              .measured = "/Pods",
                              .questionKey = "delete_pods_artifacts_var_confirm",
                              .successKey = "pods_artifacts_deleted",
                              .removals = {{{"rm -rf ", "/Pods"}, {"rm -f ", "/Podfile.lock"}}}};
constexpr ArtifactRow carthage = {.titleKey = "delete_carthage_artifacts",
                                  .descriptionKey = "delete_carthage_artifacts_description",
                                  .measured = "/Carthage",
                                  .questionKey = "delete_carthage_artifacts_var_confirm",
                                  .successKey = "carthage_artifacts_deleted",
                                  .removals = {{{"rm -rf ", "/Carthage/Build"}, {"rm -rf ", "/Carthage/Checkouts"}}}};

std::string projectFolder() {
  const std::string folder = std::filesystem::path(projectPath()).parent_path().string();
  return folder.empty() ? "." : folder;
}

/// A link that a project brings along may lead anywhere: what it leads to isn't the project's.
bool reachesThroughLink(const std::string& folder, const Removal& removal) {
  const std::string parent = std::filesystem::path(removal.path).parent_path().string();
  return parent != "/" && isSymbolicLink(folder + parent);
}

void deleteArtifacts(const ArtifactRow& row) {
  const std::string folder = projectFolder();
  const std::string size = withSpinner(std::string(localized("calculating_size_detail")),
                                       [&] { return pathSize(folder + std::string(row.measured)); });
  if (operationAborted() || !confirmDialog({}, localizedFormat(row.questionKey, size), DialogSeverity::destructive)) {
    return;
  }
  for (const Removal& removal : row.removals) {
    const std::string path = folder + std::string(removal.path);
    if (operationAborted()) return;
    if (reachesThroughLink(folder, removal)) return printLinkKept(folder + std::string(row.measured));
    runQuiet(std::string(localized(row.titleKey)), std::string(removal.command) + pathWord(path));
  }
  printSuccess(localized(row.successKey));
}

void perform(const ArtifactRow& row) {
  printActionHeader(localized(row.titleKey), localized(row.descriptionKey));
  printLine();
  if (projectPath().empty()) {
    printErrorDetail(localized("no_xcode_project_found"), {}, {}, localized("hint_press_a_to_select_directory"));
  } else {
    deleteArtifacts(row);
  }
  waitForBack();
}

}  // namespace

void deletePodsArtifacts() { perform(pods); }

void deleteCarthageArtifacts() { perform(carthage); }

}  // namespace halyard
