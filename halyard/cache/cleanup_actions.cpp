#include "halyard/cache/cleanup_actions.hpp"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "halyard/cache/cache_list.hpp"
#include "halyard/cache/cache_locations.hpp"
#include "halyard/cache/cache_steps.hpp"
#include "halyard/exec/usable_home.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct StepRow {
  std::string_view labelKey;
  CachePlace place;
  std::string_view successKey;
  /// With it the contents of both places go, and the folders stay.
  std::optional<CachePlace> emptiedWith = {};
};

// Each level performs a beginning of this.
constexpr auto stepRows = std::to_array<StepRow>({
    {.labelKey = "delete_derived_data", .place = CachePlace::derivedData, .successKey = "derived_data_deleted"},
    {.labelKey = "deleting_module_cache_detail",
     .place = CachePlace::moduleCache,
     .successKey = "module_cache_deleted"},
    {.labelKey = "cache_label_swiftpm_cache",
     .place = CachePlace::swiftPMCache,
     .successKey = "spm_cache_deleted",
     .emptiedWith = CachePlace::swiftPMData},
    {.labelKey = "deleting_xcode_caches_detail",
     .place = CachePlace::xcodeCaches,
     .successKey = "xcode_caches_deleted"},
    {.labelKey = "deleting_simulator_cache_detail",
     .place = CachePlace::simulatorCache,
     .successKey = "simulator_cache_deleted"},
    {.labelKey = "cache_label_xcode_logs",
     .place = CachePlace::xcodeLogs,
     .successKey = "xcode_logs_deleted",
     .emptiedWith = CachePlace::diagnosticReports},
    {.labelKey = "cache_label_archives", .place = CachePlace::archives, .successKey = "archives_deleted"},
    {.labelKey = "cache_label_ios_devicesupport",
     .place = CachePlace::deviceSupport,
     .successKey = "ios_devicesupport_deleted"},
    {.labelKey = "delete_simulators", .place = CachePlace::simulatorDevices, .successKey = "simulators_deleted"},
    {.labelKey = "cache_label_source_packages",
     .place = CachePlace::sourcePackages,
     .successKey = "source_packages_deleted"},
    {.labelKey = "cache_label_cocoapods", .place = CachePlace::cocoaPods, .successKey = "cocoapods_cache_deleted"},
    {.labelKey = "cache_label_carthage", .place = CachePlace::carthage, .successKey = "carthage_cache_deleted"},
});

struct CleanupLevel {
  std::string_view titleKey;
  std::string_view descriptionKey;
  std::string_view listKey;
  std::string_view afterKey;
  std::string_view questionKey;
  std::string_view successKey;
  CachePlace lastListed;  ///< the list shows the table's places up to this one
  std::size_t stepCount;
  bool offersRuntimes = false;
};

constexpr CleanupLevel safe = {.titleKey = "safe_cleanup",
                               .descriptionKey = "safe_cleanup_header_desc",
                               .listKey = "safe_cleanup_list_desc",
                               .afterKey = "safe_cleanup_after_note",
                               .questionKey = "safe_cleanup_confirm",
                               .successKey = "safe_cleanup_success",
                               .lastListed = CachePlace::diagnosticReports,
                               .stepCount = 6};
constexpr CleanupLevel deep = {.titleKey = "deep_cleanup",
                               .descriptionKey = "deep_cleanup_header_desc",
                               .listKey = "deep_cleanup_list_desc",
                               .afterKey = "deep_cleanup_after_note",
                               .questionKey = "deep_cleanup_confirm",
                               .successKey = "deep_cleanup_success",
                               .lastListed = CachePlace::simulatorDevices,
                               .stepCount = 9};
constexpr CleanupLevel complete = {.titleKey = "complete_cleanup",
                                   .descriptionKey = "complete_cleanup_header_desc",
                                   .listKey = "complete_cleanup_list_desc",
                                   .afterKey = "complete_cleanup_after_note",
                                   .questionKey = "complete_cleanup_confirm",
                                   .successKey = "complete_cleanup_success",
                                   .lastListed = CachePlace::simulatorDevices,
                                   .stepCount = 9,
                                   .offersRuntimes = true};
constexpr CleanupLevel fullReset = {.titleKey = "neustart_cleanup",
                                    .descriptionKey = "neustart_cleanup_header_desc",
                                    .listKey = "neustart_cleanup_list_desc",
                                    .afterKey = "neustart_cleanup_after_note",
                                    .questionKey = "neustart_cleanup_confirm",
                                    .successKey = "neustart_cleanup_success",
                                    .lastListed = CachePlace::carthage,
                                    .stepCount = stepRows.size(),
                                    .offersRuntimes = true};

/// A level deletes what it lists: each place that it lists is the place of a step, and no other is.
constexpr bool deletesWhatItLists(const CleanupLevel& level) {
  std::size_t places = 0;
  for (std::size_t i = 0; i < level.stepCount; ++i) {
    const StepRow& row = stepRows[i];
    if (row.place > level.lastListed || row.emptiedWith.value_or(row.place) > level.lastListed) return false;
    places += row.emptiedWith ? 2 : 1;
  }
  return places == static_cast<std::size_t>(level.lastListed) + 1;
}
static_assert(deletesWhatItLists(safe) && deletesWhatItLists(deep) && deletesWhatItLists(complete) &&
              deletesWhatItLists(fullReset));

std::vector<CacheListRow> listRows(const CleanupLevel& level) {
  std::vector<CacheListRow> rows;
  for (const CacheLocation& location : cacheLocations) {
    if (location.place <= level.lastListed) rows.push_back(cacheListRow(location.place));
  }
  if (level.offersRuntimes) rows.push_back(cacheListRow(CachePlace::simulatorRuntimes));
  return rows;
}

CacheStep step(const StepRow& row) {
  if (!row.emptiedWith) return deletionStep(row.labelKey, row.place, row.successKey);
  const std::array<CachePlace, 2> places = {row.place, *row.emptiedWith};
  return contentsStep(row.labelKey, places, row.successKey);
}

bool isAgreedTo(std::string_view question) { return confirmDialog({}, question, DialogSeverity::destructive); }

void offerRuntimes() {
  if (isAgreedTo(localized("complete_cleanup_runtimes_confirm"))) {
    performCacheSteps(
        {deletionStep("cache_label_simulator_runtimes", CachePlace::simulatorRuntimes, "simulator_runtimes_deleted")});
  }
  // A no is the answer to this alone; what has been deleted is still to be read.
  setSuppressBackPrompt(false);
}

void perform(const CleanupLevel& level) {
  std::vector<CacheStep> steps;
  for (std::size_t i = 0; i < level.stepCount; ++i) steps.push_back(step(stepRows.at(i)));
  performCacheSteps(steps);
  if (level.offersRuntimes && !operationAborted()) offerRuntimes();
  if (!operationAborted()) printSuccess(localized(level.successKey));
}

void runCleanup(const CleanupLevel& level) {
  printActionHeader(localized(level.titleKey), localized(level.descriptionKey));
  printLine();
  if (!requireUsableHome()) return waitForBack();
  printCacheList(localized(level.listKey), listRows(level));
  printAfterNote(localized(level.afterKey));
  const bool isAgreed = isAgreedTo(localized(level.questionKey)) &&
                        isAgreedTo(localizedFormat("cleanup_final_confirm_var", localized(level.titleKey)));
  if (isAgreed) perform(level);
  waitForBack();
}

}  // namespace

void runSafeCleanup() { runCleanup(safe); }

void runDeepCleanup() { runCleanup(deep); }

void runCompleteCleanup() { runCleanup(complete); }

void runFullReset() { runCleanup(fullReset); }

}  // namespace halyard
