#include "halyard/packages/dependencies_overview_screen.hpp"

#include <array>
#include <span>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "halyard/packages/numbered_rows.hpp"
#include "halyard/packages/package_actions.hpp"
#include "halyard/packages/package_caches.hpp"
#include "halyard/packages/package_live.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct OverviewRow {
  std::string_view key;
  void (*action)();
  std::optional<std::string> PackageCacheSizes::*size = nullptr;  ///< of the cache that it deletes
};

constexpr auto packageRows = std::to_array<OverviewRow>({
    {"spm_show_package_graph", showPackageGraph},
    {"spm_show_package_resolved", showPackageResolved},
    {"spm_resolve_packages", resolveSPMPackages},
    {"spm_update_packages", updateSPMPackages},
    {"spm_clean_cache", cleanSPMCache, &PackageCacheSizes::spm},
});

constexpr auto podRows = std::to_array<OverviewRow>({
    {"pods_show_dependencies", showPods},
    {"pods_show_podfile_lock", showPodfileLock},
    {"pods_install", installPods},
    {"pods_update", updatePods},
    {"pods_clean_cache", cleanPodCache, &PackageCacheSizes::cocoaPods},
});

constexpr auto frameworkRows = std::to_array<OverviewRow>({
    {"carthage_show_dependencies", showFrameworks},
    {"carthage_show_cartfile_resolved", showCartfileResolved},
    {"carthage_bootstrap", bootstrapFrameworks},
    {"carthage_update_frameworks", updateFrameworks},
    {"carthage_clean_build_dir", cleanFrameworkBuilds},
});

struct OverviewSection {
  PackageTool tool;
  bool DetectedPackageManagers::*isUsed;
  std::span<const OverviewRow> rows;
  std::string_view notFoundKey;
};

constexpr auto sections = std::to_array<OverviewSection>({
    {PackageTool::spm, &DetectedPackageManagers::hasSPM, packageRows, "deps_not_found_no_package_swift"},
    {PackageTool::cocoaPods, &DetectedPackageManagers::hasPods, podRows, "deps_not_found_no_podfile"},
    {PackageTool::carthage, &DetectedPackageManagers::hasCarthage, frameworkRows, "deps_not_found_no_cartfile"},
});

/// In the order of their numbers.
std::vector<const OverviewRow*> rowsOf(const DetectedPackageManagers& managers) {
  std::vector<const OverviewRow*> rows;
  for (const OverviewSection& section : sections) {
    if (!(managers.*section.isUsed)) continue;
    for (const OverviewRow& row : section.rows) rows.push_back(&row);
  }
  return rows;
}

void draw(const DetectedPackageManagers& managers, const PackageCacheSizes& sizes) {
  printActionHeader(localized("dependencies_overview"), {});
  print(dependenciesOverview(managers, sizes));
  flushOutput();
}

PackageCacheSizes cacheSizes(const DetectedPackageManagers& managers) {
  PackageCacheSizes sizes;
  if (managers.hasSPM) sizes.spm = packageCacheSize(PackageManagerCachePath::spm);
  if (managers.hasPods) sizes.cocoaPods = packageCacheSize(PackageManagerCachePath::cocoaPods);
  return sizes;
}

}  // namespace

std::string dependenciesOverview(const DetectedPackageManagers& managers, const PackageCacheSizes& sizes) {
  std::string page;
  std::size_t number = 0;
  for (const OverviewSection& section : sections) {
    page += fmt::format("\n  {}{}{}\n", Color::boldBlue, packageToolTitle(section.tool), Color::reset);
    if (!(managers.*section.isUsed)) {
      page += fmt::format("  {}{}{}\n", Color::dim, localized(section.notFoundKey), Color::reset);
      continue;
    }
    for (const OverviewRow& row : section.rows) {
      std::string size;
      if (row.size != nullptr) size = (sizes.*row.size).value_or(std::string(localized("calculating_size_detail")));
      page += numberedRow(++number, localized(row.key), size) + "\n";
    }
  }
  return page + "\n" + numberedRow(0, localized("menu_back")) + "\n\n";
}

void showDependenciesOverview() {
  for (;;) {
    const DetectedPackageManagers managers = DetectedPackageManagers::detect();
    // A large cache takes its time, and the rows are there meanwhile.
    draw(managers, {});
    draw(managers, cacheSizes(managers));
    const std::string answer = readChoice();
    if (leavesMenu(answer)) return;
    const std::vector<const OverviewRow*> rows = rowsOf(managers);
    if (const std::size_t row = rowChosen(answer, rows.size()); row > 0) rows[row - 1]->action();
  }
}

}  // namespace halyard
