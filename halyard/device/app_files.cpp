#include "halyard/device/app_files.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "core/app_dependencies.hpp"
#include "core/text.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace {

using Date = std::chrono::system_clock::time_point;

struct SearchRoot {
  std::string_view path;  ///< "~" is the home folder, "." the working folder
  int depth;
};

constexpr auto searchRoots = std::to_array<SearchRoot>({
    {"~/Desktop", 2},
    {"~/Downloads", 3},
    {"~", 1},
    {".", 4},
    {"~/Library/Developer/Xcode/DerivedData", 6},
});

struct SdkWord {
  std::string_view word;
  std::string_view sdk;
};

// In this order: the first word that the path holds decides.
constexpr auto sdkWords = std::to_array<SdkWord>({
    {"iphonesimulator", "iphonesimulator"},
    {"iphoneos", "iphoneos"},
    {"macosx", "macosx"},
    {"macos", "macosx"},
});

std::string absoluteRoot(std::string_view root) {
  if (root.front() == '~') {
    return AppDependencies::current().fileSystemClient->homeDirectoryPath() + std::string(root.substr(1));
  }
  std::error_code gone;
  const std::filesystem::path folder = std::filesystem::current_path(gone);
  return gone ? std::string(root) : folder.string();
}

std::string searchCommand(const SearchRoot& root) {
  return "find " + shellQuote(absoluteRoot(root.path)) + " -maxdepth " + std::to_string(root.depth) +
         " \\( -name '*.app' -o -name '*.ipa' \\) 2>/dev/null";
}

Date modificationDate(const std::string& path) {
  try {
    return AppDependencies::current().fileSystemClient->attributesOfItem(path).modificationDate;
  } catch (const std::system_error&) {
    return Date::min();
  }
}

/// What two paths to the same file have in common, through links and detours.
std::string identity(const std::string& path) {
  std::error_code unknown;
  const std::filesystem::path resolved = std::filesystem::weakly_canonical(path, unknown);
  return unknown ? path : resolved.string();
}

AppFileEntry entryFor(const std::string& path) {
  return {.path = path,
          .name = std::filesystem::path(path).filename().string(),
          .sdk = std::string(sdkOfAppFile(path)),
          .modDate = modificationDate(path),
          .projectHint = projectHintOfAppFile(path)};
}

}  // namespace

std::string_view sdkOfAppFile(std::string_view path) {
  if (path.ends_with(".ipa")) return "iphoneos";
  const auto* const found =
      std::ranges::find_if(sdkWords, [&](const SdkWord& row) { return path.find(row.word) != std::string_view::npos; });
  return found == sdkWords.end() ? "unknown" : found->sdk;
}

std::string projectHintOfAppFile(std::string_view path) {
  const std::filesystem::path whole(path);
  const auto derivedData = std::ranges::find(whole, std::filesystem::path("DerivedData"));
  // What lies in that folder itself belongs to no project.
  if (derivedData == whole.end() || std::distance(derivedData, whole.end()) < 3) {
    return whole.parent_path().filename().string();
  }
  const std::string folder = std::next(derivedData)->string();
  return folder.substr(0, folder.rfind('-'));
}

std::vector<AppFileEntry> findInstallableApps(const std::function<bool(const AppFileEntry&)>& accepts) {
  std::vector<AppFileEntry> entries;
  std::set<std::string> seen;
  for (const SearchRoot& root : searchRoots) {
    const std::string found = run(searchCommand(root));
    for (const std::string_view line : splitLines(found)) {
      const std::string path(trimmed(line));
      if (path.empty() || !seen.insert(identity(path)).second) continue;
      AppFileEntry entry = entryFor(path);
      if (!accepts || accepts(entry)) entries.push_back(std::move(entry));
    }
  }
  std::ranges::stable_sort(entries, std::ranges::greater{}, &AppFileEntry::modDate);
  return entries;
}

}  // namespace halyard
