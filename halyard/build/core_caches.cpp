#include "halyard/build/core_caches.hpp"

#include <string>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

std::vector<CacheStep> coreCacheSteps() {
  return {
      {.label = localizedFormat("delete_capstan_build", displaySafe(privateDerivedDataDisplay())),
       .command = "rm -rf " + shellQuote(privateDerivedDataPath()),
       .success = std::string(localized("capstan_build_deleted"))},
      deletionStep("deleting_module_cache_detail", CachePlace::moduleCache, "module_cache_deleted"),
      deletionStep("deleting_simulator_cache_detail", CachePlace::simulatorCache, "simulator_cache_deleted"),
      deletionStep("deleting_xcode_caches_detail", CachePlace::xcodeCaches, "xcode_caches_deleted"),
  };
}

std::vector<CacheStep> managerCacheSteps(const DetectedPackageManagers& managers) {
  std::vector<CacheStep> steps;
  if (managers.hasSPM) {
    steps.push_back(deletionStep("deleting_spm_cache_detail", CachePlace::swiftPMCache, "spm_cache_deleted"));
  }
  if (managers.hasPods) {
    steps.push_back(deletionStep("deleting_cocoapods_cache_detail", CachePlace::cocoaPods, "cocoapods_cache_deleted"));
  }
  if (managers.hasCarthage) {
    steps.push_back(deletionStep("deleting_carthage_cache_detail", CachePlace::carthage, "carthage_cache_deleted"));
  }
  return steps;
}

void deleteCoreCaches() { performCacheSteps(coreCacheSteps()); }

}  // namespace halyard
