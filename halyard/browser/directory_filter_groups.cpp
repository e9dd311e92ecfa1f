#include "halyard/browser/directory_filter_groups.hpp"

#include <array>
#include <string_view>

#include "halyard/browser/file_patterns.hpp"

namespace halyard {

namespace {

struct FilterGroupRow {
  std::string_view labelKey;
  std::string_view extensions;  ///< with a blank between each; empty: those of no other group
};

constexpr auto groupRows = std::to_array<FilterGroupRow>({
    {"dirview_filter_group_xcode", "xcodeproj xcworkspace xcscheme xcconfig"},
    {"dirview_filter_group_config", "plist entitlements storekit"},
    {"dirview_filter_group_swift", "swift"},
    {"dirview_filter_group_json", "json xml"},
    {"dirview_filter_group_graphic", "png jpg jpeg svg heic gif webp tiff"},
    {"dirview_filter_group_text", "txt md markdown rtf"},
    {"dirview_filter_group_office", "doc docx xls xlsx ppt pptx pdf"},
    {"dirview_filter_group_web", "html htm js css ts jsx tsx"},
    {"dirview_filter_group_other", ""},
});

std::vector<std::string> words(std::string_view text) {
  std::vector<std::string> list;
  while (!text.empty()) {
    const std::size_t blank = text.find(' ');
    list.emplace_back(text.substr(0, blank));
    text.remove_prefix(blank == std::string_view::npos ? text.size() : blank + 1);
  }
  return list;
}

}  // namespace

std::vector<DirectoryFilterGroup> directoryFilterGroups() {
  std::vector<DirectoryFilterGroup> groups;
  for (const FilterGroupRow& row : groupRows) {
    groups.push_back({.labelKey = std::string(row.labelKey),
                      .extensions = words(row.extensions),
                      .isRemainingGroup = row.extensions.empty()});
  }
  return groups;
}

DirectoryFilter::DirectoryFilter(const std::vector<DirectoryFilterGroup>& groups) {
  for (const DirectoryFilterGroup& group : groups) {
    if (group.isRemainingGroup) {
      wantsRemaining_ = group.isSelected;
      continue;
    }
    defined_.insert(group.extensions.begin(), group.extensions.end());
    if (group.isSelected) selected_.insert(group.extensions.begin(), group.extensions.end());
  }
}

bool DirectoryFilter::lets(const std::string& extension) const {
  return selected_.contains(extension) || (wantsRemaining_ && !defined_.contains(extension));
}

WalkVerdict DirectoryFilter::judge(const char* name, bool isDirectory) const {
  const std::string extension = lowercasedExtension(name);
  WalkVerdict verdict;
  if (isDirectory) {
    const bool isProject = extension == "xcodeproj" || extension == "xcworkspace";
    verdict.descends = !isProject;
    if (isProject && lets(extension)) verdict.hit = DirectoryEntry::Kind::xcodeProject;
  } else if (lets(extension)) {
    verdict.hit = DirectoryEntry::Kind::file;
  }
  return verdict;
}

}  // namespace halyard
