#include "halyard/packages/package_caches.hpp"

#include <array>
#include <vector>

#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/exec/usable_home.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct PackageCache {
  bool DetectedPackageManagers::*isSelected;
  std::string_view path;
  std::string_view questionKey;
  std::string_view labelKey;
};

constexpr auto caches = std::to_array<PackageCache>({
    {&DetectedPackageManagers::hasSPM, PackageManagerCachePath::spm, "pm_cache_delete_spm_question",
     "deleting_spm_cache_detail"},
    {&DetectedPackageManagers::hasPods, PackageManagerCachePath::cocoaPods, "pm_cache_delete_cocoapods_question",
     "deleting_cocoapods_cache_detail"},
    // Carthage's downloads are its library's, whose folder has a name of its own.
    {&DetectedPackageManagers::hasCarthage, "~/Library/Caches/org.carthage.CarthageKit",
     "pm_cache_delete_carthage_question", "deleting_carthage_cache_detail"},
});

std::vector<const PackageCache*> selectedCaches(const DetectedPackageManagers& selected) {
  std::vector<const PackageCache*> chosen;
  for (const PackageCache& cache : caches) {
    if (selected.*cache.isSelected) chosen.push_back(&cache);
  }
  return chosen;
}

}  // namespace

std::string packageCacheQuestion(const DetectedPackageManagers& selected) {
  const std::vector<const PackageCache*> chosen = selectedCaches(selected);
  if (chosen.empty()) return {};
  if (chosen.size() == 1) return std::string(localized(chosen.front()->questionKey));
  return localizedFormat("pm_cache_delete_multi_question_var", selected.displayNames());
}

void deletePackageCaches(const DetectedPackageManagers& selected) {
  if (!requireUsableHome()) return;
  for (const PackageCache* cache : selectedCaches(selected)) {
    runQuiet(std::string(localized(cache->labelKey)), "rm -rf " + std::string(cache->path));
  }
  printSuccess(localized("pm_caches_deleted"));
}

bool offerPackageCacheDeletion(const DetectedPackageManagers& selected) {
  if (!selected.any()) return false;
  if (!confirmDialog({}, packageCacheQuestion(selected), DialogSeverity::destructive)) return false;
  deletePackageCaches(selected);
  return true;
}

std::string packageCacheSize(std::string_view path) {
  const FileSystemProviding& files = *AppDependencies::current().fileSystemClient;
  const bool isBelowHome = path.starts_with("~/");
  const std::string whole = (isBelowHome ? files.homeDirectoryPath() : "") + std::string(path.substr(isBelowHome));
  if (!files.fileExists(whole)) return "—";
  const std::string size = run("du -sh " + shellQuote(whole) + " 2>/dev/null | awk '{print $1}'");
  return size.empty() ? "—" : size;
}

}  // namespace halyard
