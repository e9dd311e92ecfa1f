#include "halyard/cache/cache_entries.hpp"

#include <array>
#include <span>
#include <string_view>
#include <system_error>

#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/cache/cache_removal.hpp"
#include "halyard/cache/cache_sizes.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/platform/home_directory.hpp"

namespace halyard {

namespace {

struct EntryRow {
  CachePlace place;
  std::string_view labelKey;
  std::string_view descriptionKey;
  std::string_view sectionKey = {};
  std::optional<CachePlace> countedWith = {};
  bool contentsOnly = false;
};

// Archives and symbols of devices don't come back by themselves, so the folder that holds them is kept as it was set
// up; so are those that a command empties.
constexpr auto entryRows = std::to_array<EntryRow>({
    {.place = CachePlace::derivedData,
     .labelKey = "cache_label_derived_data",
     .descriptionKey = "cache_desc_derived_data"},
    {.place = CachePlace::moduleCache,
     .labelKey = "cache_label_module_cache",
     .descriptionKey = "cache_desc_module_cache"},
    {.place = CachePlace::previews,
     .labelKey = "cache_label_xcode_previews",
     .descriptionKey = "cache_desc_xcode_previews",
     .sectionKey = "cache_section_xcode_caches"},
    {.place = CachePlace::xcodeCaches,
     .labelKey = "cache_label_xcode_caches",
     .descriptionKey = "cache_desc_xcode_caches"},
    {.place = CachePlace::swiftPMCache,
     .labelKey = "cache_label_swiftpm_cache",
     .descriptionKey = "cache_desc_swiftpm_cache",
     .sectionKey = "cache_section_package_managers",
     .countedWith = CachePlace::swiftPMData,
     .contentsOnly = true},
    {.place = CachePlace::sourcePackages,
     .labelKey = "cache_label_source_packages",
     .descriptionKey = "cache_desc_source_packages"},
    {.place = CachePlace::simulatorCache,
     .labelKey = "cache_label_simulator_cache",
     .descriptionKey = "cache_desc_simulator_cache",
     .sectionKey = "cache_section_simulator",
     .countedWith = CachePlace::simulatorLogs},
    {.place = CachePlace::simulatorDevices,
     .labelKey = "cache_label_simulators",
     .descriptionKey = "cache_desc_simulators",
     .contentsOnly = true},
    {.place = CachePlace::archives,
     .labelKey = "cache_label_archives",
     .descriptionKey = "cache_desc_archives",
     .sectionKey = "cache_section_developer_data",
     .contentsOnly = true},
    {.place = CachePlace::deviceSupport,
     .labelKey = "cache_label_ios_devicesupport",
     .descriptionKey = "cache_desc_ios_devicesupport",
     .contentsOnly = true},
    {.place = CachePlace::xcodeLogs,
     .labelKey = "cache_label_xcode_logs",
     .descriptionKey = "cache_desc_xcode_logs",
     .countedWith = CachePlace::diagnosticReports,
     .contentsOnly = true},
});

/// A row that is counted with another and keeps its folder is emptied together with that other.
void setDeletion(CacheBrowserEntry& entry, const EntryRow& row) {
  const CacheLocation& location = cacheLocation(row.place);
  if (location.deletion == CacheDeletion::command) {
    entry.customDeleteCommand = std::string(location.command);
  } else if (row.contentsOnly && row.countedWith) {
    const std::array<CachePlace, 2> places = {row.place, *row.countedWith};
    entry.customDeleteCommand = contentsCommand(places);
    entry.keptLinks = linkedPlaces(places);
  }
}

CacheBrowserEntry entryOf(const EntryRow& row) {
  CacheBrowserEntry entry = {.label = std::string(localized(row.labelKey)),
                             .path = cachePath(row.place),
                             .deleteContentsOnly = row.contentsOnly,
                             .description = std::string(localized(row.descriptionKey))};
  if (row.countedWith) entry.extraSizePaths.push_back(cachePath(*row.countedWith));
  if (!row.sectionKey.empty()) entry.sectionTitle = std::string(localized(row.sectionKey));
  setDeletion(entry, row);
  return entry;
}

bool exists(const std::string& path) { return AppDependencies::current().fileSystemClient->fileExists(path); }

/// A link counts as there also where its target isn't.
bool isLeft(const std::string& path) { return exists(path) || isSymbolicLink(path); }

std::vector<std::string> foldersThere(const CacheBrowserEntry& entry) {
  std::vector<std::string> folders = {entry.path};
  folders.insert(folders.end(), entry.extraSizePaths.begin(), entry.extraSizePaths.end());
  std::erase_if(folders, [](const std::string& folder) { return !exists(folder); });
  return folders;
}

std::string sizeOfFolders(const std::vector<std::string>& folders) {
  if (folders.empty()) return "0B";
  const std::string size = totalSize(folders);
  return size.empty() ? std::string(unknownSize) : size;
}

bool isEmptied(const std::string& folder) {
  try {
    return !exists(folder) || AppDependencies::current().fileSystemClient->contentsOfDirectory(folder).empty();
  } catch (const std::system_error&) {
    return false;
  }
}

}  // namespace

std::vector<CacheBrowserEntry> cacheBrowserEntries(const std::string& projectFolderName,
                                                   const std::string& projectFolderPath) {
  std::vector<CacheBrowserEntry> entries = {{.label = displaySafe(projectFolderName),
                                             .path = projectFolderPath,
                                             .description = std::string(localized("cache_desc_capstan_build")),
                                             .sectionTitle = std::string(localized("cache_section_build_artifacts"))}};
  for (const EntryRow& row : entryRows) entries.push_back(entryOf(row));
  return entries;
}

std::string entrySize(const CacheBrowserEntry& entry) { return sizeOfFolders(foldersThere(entry)); }

std::string entriesSize(const std::vector<CacheBrowserEntry>& entries) {
  std::vector<std::string> folders;
  for (const CacheBrowserEntry& entry : entries) {
    const std::vector<std::string> more = foldersThere(entry);
    folders.insert(folders.end(), more.begin(), more.end());
  }
  return sizeOfFolders(outermostPaths(std::move(folders)));
}

EntryDeletion deleteEntry(const CacheBrowserEntry& entry) {
  if (!homeIsUsable()) return EntryDeletion::failed;
  if (entry.customDeleteCommand) {
    run(*entry.customDeleteCommand);
    return entry.keptLinks.empty() ? EntryDeletion::deleted : EntryDeletion::linkKept;
  }
  if (!entry.deleteContentsOnly) {
    removePath(shellQuote(entry.path));
    return isLeft(entry.path) ? EntryDeletion::failed : EntryDeletion::deleted;
  }
  if (isSymbolicLink(entry.path)) return EntryDeletion::linkKept;
  clearContents(entry.path);
  return isEmptied(entry.path) ? EntryDeletion::deleted : EntryDeletion::failed;
}

bool deleteSubfolder(const std::string& path) {
  removePath(shellQuote(path));
  return !isLeft(path);
}

}  // namespace halyard
