#include "halyard/cache/deletion_actions.hpp"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/core_caches.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/cache/cache_list.hpp"
#include "halyard/cache/cache_locations.hpp"
#include "halyard/cache/cache_removal.hpp"
#include "halyard/cache/cache_sizes.hpp"
#include "halyard/cache/cache_steps.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/exec/usable_home.hpp"
#include "halyard/exec/with_spinner.hpp"
#include "halyard/packages/detection.hpp"
#include "halyard/simulator/simulator_commands.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct DeletionRow {
  SingleDeletion which;
  std::optional<CachePlace> place;  ///< none: the project's build folder
  std::string_view titleKey;
  std::string_view descriptionKey;
  std::string_view questionKey;
  std::string_view successKey;
  std::string_view listKey = {};  ///< of those that tell beforehand what goes
  std::string_view afterKey = {};
};

constexpr auto deletionRows = std::to_array<DeletionRow>({
    {.which = SingleDeletion::projectBuildFolder,
     .place = {},
     .titleKey = "delete_capstan_build",
     .descriptionKey = "delete_capstan_build_description",
     .questionKey = "delete_capstan_build_var_confirm",
     .successKey = "capstan_build_deleted",
     .listKey = "cache_list_desc_capstan_build",
     .afterKey = "cache_list_after_capstan_build"},
    {.which = SingleDeletion::derivedData,
     .place = CachePlace::derivedData,
     .titleKey = "delete_derived_data",
     .descriptionKey = "delete_derived_data_description",
     .questionKey = "delete_derived_data_var_confirm",
     .successKey = "derived_data_deleted",
     .listKey = "cache_list_desc_derived_data_all",
     .afterKey = "cache_list_after_derived_data_all"},
    {.which = SingleDeletion::simulators,
     .place = CachePlace::simulatorDevices,
     .titleKey = "delete_simulators",
     .descriptionKey = "delete_simulators_description",
     .questionKey = "delete_simulators_confirm",
     .successKey = "simulators_deleted"},
    {.which = SingleDeletion::moduleCache,
     .place = CachePlace::moduleCache,
     .titleKey = "delete_module_cache",
     .descriptionKey = "delete_module_cache_description",
     .questionKey = "delete_module_cache_var_confirm",
     .successKey = "module_cache_deleted"},
    {.which = SingleDeletion::simulatorCache,
     .place = CachePlace::simulatorCache,
     .titleKey = "delete_simulator_cache",
     .descriptionKey = "delete_simulator_cache_description",
     .questionKey = "delete_simulator_cache_var_confirm",
     .successKey = "simulator_cache_deleted"},
    {.which = SingleDeletion::swiftPMCache,
     .place = CachePlace::swiftPMCache,
     .titleKey = "delete_spm_cache",
     .descriptionKey = "delete_spm_cache_description",
     .questionKey = "delete_spm_cache_var_confirm",
     .successKey = "spm_cache_deleted"},
    {.which = SingleDeletion::xcodeCaches,
     .place = CachePlace::xcodeCaches,
     .titleKey = "delete_xcode_caches",
     .descriptionKey = "delete_xcode_caches_description",
     .questionKey = "delete_xcode_caches_var_confirm",
     .successKey = "xcode_caches_deleted"},
    {.which = SingleDeletion::cocoaPodsCache,
     .place = CachePlace::cocoaPods,
     .titleKey = "delete_cocoapods_cache",
     .descriptionKey = "delete_cocoapods_cache_description",
     .questionKey = "delete_cocoapods_cache_var_confirm",
     .successKey = "cocoapods_cache_deleted"},
    {.which = SingleDeletion::carthageCache,
     .place = CachePlace::carthage,
     .titleKey = "delete_carthage_cache",
     .descriptionKey = "delete_carthage_cache_description",
     .questionKey = "delete_carthage_cache_var_confirm",
     .successKey = "carthage_cache_deleted"},
});

constexpr bool rowsStandInOrder() {
  for (std::size_t i = 0; i < deletionRows.size(); ++i) {
    if (static_cast<std::size_t>(deletionRows[i].which) != i) return false;
  }
  return true;
}
static_assert(rowsStandInOrder());

/// A text about the project's build folder names it.
std::string title(const DeletionRow& row) {
  if (row.place) return std::string(localized(row.titleKey));
  return localizedFormat(row.titleKey, displaySafe(privateDerivedDataDisplay()));
}

std::string question(const DeletionRow& row, std::string_view size) {
  if (row.place) return localizedFormat(row.questionKey, size);
  return localizedFormat(row.questionKey, displaySafe(privateDerivedDataDisplay()), size);
}

std::string command(const DeletionRow& row) {
  if (!row.place) return "rm -rf " + shellQuote(privateDerivedDataPath());
  if (*row.place == CachePlace::simulatorDevices) return simulatorCommand(SimulatorCommand::deleteAll);
  return deletionCommand(*row.place);
}

CacheListRow projectListRow() {
  const std::string name = displaySafe(privateDerivedDataName());
  return {.label = name, .path = std::string(cacheLocation(CachePlace::derivedData).path) + "/" + name};
}

void printList(const DeletionRow& row) {
  if (row.listKey.empty()) return;
  printCacheList(localized(row.listKey), {row.place ? cacheListRow(*row.place) : projectListRow()});
  printAfterNote(localized(row.afterKey));
}

void performSingle(const DeletionRow& row) {
  if (!requireUsableHome()) return;
  printList(row);
  const std::string path = row.place ? cachePath(*row.place) : privateDerivedDataPath();
  const std::string size =
      withSpinner(std::string(localized("calculating_size_detail")), [&] { return pathSize(path); });
  if (operationAborted()) return;
  if (!confirmDialog({}, question(row, size), DialogSeverity::destructive)) return;
  performCacheSteps(
      {{.label = title(row), .command = command(row), .success = std::string(localized(row.successKey))}});
}

std::vector<CacheListRow> coreListRows() {
  return {projectListRow(), cacheListRow(CachePlace::moduleCache), cacheListRow(CachePlace::simulatorCache),
          cacheListRow(CachePlace::xcodeCaches)};
}

std::vector<CacheListRow> listRows(const DetectedPackageManagers& managers) {
  std::vector<CacheListRow> rows = coreListRows();
  if (managers.hasSPM) rows.push_back(cacheListRow(CachePlace::swiftPMCache));
  if (managers.hasPods) rows.push_back(cacheListRow(CachePlace::cocoaPods));
  if (managers.hasCarthage) rows.push_back(cacheListRow(CachePlace::carthage));
  return rows;
}

void begin(std::string_view titleKey, std::string_view descriptionKey) {
  printActionHeader(localized(titleKey), localized(descriptionKey));
  printLine();
}

}  // namespace

void runSingleDeletion(SingleDeletion which) {
  const DeletionRow& row = deletionRows.at(static_cast<std::size_t>(which));
  printActionHeader(title(row), localized(row.descriptionKey));
  printLine();
  performSingle(row);
  waitForBack();
}

void deleteProjectBuildFolder() { runSingleDeletion(SingleDeletion::projectBuildFolder); }

void deleteDerivedData() { runSingleDeletion(SingleDeletion::derivedData); }

void deleteCachesWithoutPackageManagers() {
  begin("delete_caches_without_spm", "delete_caches_without_spm_description");
  if (!requireUsableHome()) return waitForBack();
  printCacheList(localized("cache_list_desc_without_spm"), coreListRows());
  printAfterNote(localized("cache_list_after_without_spm"));
  if (confirmDialog({}, localized("delete_caches_without_spm_confirm"), DialogSeverity::destructive)) {
    deleteCoreCaches();
    if (!operationAborted()) printSuccess(localized("caches_deleted_spm_preserved"));
  }
  waitForBack();
}

void deleteAllCachesInclPackageManagers() {
  begin("delete_all_caches_incl_pm", "delete_all_caches_incl_pm_description");
  if (!requireUsableHome()) return waitForBack();
  const DetectedPackageManagers managers = DetectedPackageManagers::detect();
  printCacheList(localized("cache_list_desc_with_pm"), listRows(managers));
  printAfterNote(localized("cache_list_after_with_pm"));
  const std::string asked = managers.any()
                                ? localizedFormat("delete_all_caches_incl_pm_confirm_var", managers.displayNames())
                                : std::string(localized("delete_all_caches_confirm"));
  if (confirmDialog({}, asked, DialogSeverity::destructive)) {
    deleteCoreCaches();
    performCacheSteps(managerCacheSteps(managers));
    if (!operationAborted()) printSuccess(localized("all_caches_deleted"));
  }
  waitForBack();
}

}  // namespace halyard
