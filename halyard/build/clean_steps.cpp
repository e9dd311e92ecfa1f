#include "halyard/build/clean_steps.hpp"

#include <array>
#include <string_view>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/cache/cache_locations.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/exec/usable_home.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct CacheRow {
  std::string_view name;
  std::string_view infoKey;
  CachePlace place;
};

constexpr CacheRow moduleCache = {"ModuleCache", "deleting_module_cache_detail", CachePlace::moduleCache};
constexpr auto otherSharedCaches = std::to_array<CacheRow>({
    {"SimulatorCache", "deleting_simulator_cache_detail", CachePlace::simulatorCache},
    {"Xcode Caches", "deleting_xcode_caches_detail", CachePlace::xcodeCaches},
});
constexpr CacheRow packageCache = {"SPM Cache", "deleting_spm_cache_detail", CachePlace::swiftPMCache};
constexpr CacheRow podCache = {"CocoaPods Cache", "deleting_cocoapods_cache_detail", CachePlace::cocoaPods};
constexpr CacheRow carthageCache = {"Carthage Cache", "deleting_carthage_cache_detail", CachePlace::carthage};

CleanStep step(const CacheRow& row) {
  return {.name = std::string(row.name),
          .info = std::string(localized(row.infoKey)),
          .command = deletionCommand(row.place)};
}

std::string deletionOfProjectFolder() { return "rm -rf " + shellQuote(privateDerivedDataPath()); }

CleanStep sourcePackagesStep() {
  return {.name = "SPM SourcePackages",
          .info = std::string(localized("deleting_spm_sourcepackages_detail")),
          .command = deletionOfProjectFolder() + "/SourcePackages"};
}

}  // namespace

CleanStep projectBuildFolderStep() {
  const std::string folder = displaySafe(privateDerivedDataDisplay());
  return {
      .name = folder, .info = localizedFormat("delete_capstan_build", folder), .command = deletionOfProjectFolder()};
}

CleanStep derivedDataStep() {
  return {.name = "DerivedData",
          .info = std::string(localized("deleting_deriveddata_detail")),
          .command = deletionCommand(CachePlace::derivedData)};
}

CleanStep moduleCacheStep() { return step(moduleCache); }

std::vector<CleanStep> sharedCacheSteps() {
  std::vector<CleanStep> steps = {moduleCacheStep()};
  for (const CacheRow& row : otherSharedCaches) steps.push_back(step(row));
  return steps;
}

std::vector<CleanStep> fullCleanSteps(const DetectedPackageManagers& managers) {
  std::vector<CleanStep> steps = sharedCacheSteps();
  steps.insert(steps.begin(), projectBuildFolderStep());
  if (managers.hasSPM) {
    steps.push_back(step(packageCache));
    steps.push_back(sourcePackagesStep());
  }
  if (managers.hasPods) steps.push_back(step(podCache));
  if (managers.hasCarthage) steps.push_back(step(carthageCache));
  return steps;
}

bool performCleanSteps(const std::vector<CleanStep>& steps) {
  if (!requireUsableHome()) return false;
  for (const CleanStep& each : steps) {
    if (operationAborted()) return false;
    BuildTimeline::measureStep(each.name, [&] {
      printInfo(each.info);
      run(each.command);
    });
  }
  return !operationAborted();
}

}  // namespace halyard
