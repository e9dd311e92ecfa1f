#include "halyard/shell/help_table.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/shell/menu_tree.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr std::string_view textKeyPrefix = "help_text_";

/// The keys whose text isn't named after them: rows that share a purpose share a text.
constexpr auto sharedTexts = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"build_run_simulator", "help_text_build_run_cmd"},
    {"build_run_physical", "help_text_build_run_cmd"},
    {"build_run_native", "help_text_build_run_cmd"},
    {"quick_reset_build_simulator", "help_text_quick_reset"},
    {"quick_reset_build_physical", "help_text_quick_reset"},
    {"quick_reset_build_native", "help_text_quick_reset"},
    {"full_reset_build_and_launch", "help_text_full_reset"},
    {"full_reset_build_and_launch_physical", "help_text_full_reset"},
    {"full_reset_build_and_launch_native", "help_text_full_reset"},
    {"macOS", "help_text_macos"},
    {"Xcode", "help_text_xcode"},
    {"menu_directories", "help_text_directories"},
});

/// The label as plain text: no colours, no digit.
std::string plainLabel(std::string_view label) {
  std::string text = stripAnsi(label);
  const std::size_t size = text.size();
  const bool hasDigit = size >= 4 && text[size - 4] == ' ' && text[size - 3] == '[' && text[size - 1] == ']';
  if (hasDigit) text.resize(size - 4);
  return text;
}

bool rowHasLabel(const MenuRow& row, std::string_view label, std::string_view& key) {
  for (const std::string_view candidate : {row.key, row.physicalKey, row.macKey}) {
    if (candidate.empty() || stripAnsi(menuRowLabel(row, candidate)) != label) continue;
    key = candidate;
    return true;
  }
  return false;
}

std::string textOf(std::string_view menuKey) { return std::string(localized(helpTextKey(menuKey))); }

/// One label may stand in several groups for different rows, so the group says which is meant.
std::optional<std::string> rowHelp(const MenuGroup& group, std::string_view label) {
  if (group.holdsApplications) return std::string(localized("help_text_application_open"));
  for (const MenuRow& row : group.rows) {
    std::string_view key;
    if (rowHasLabel(row, label, key)) return textOf(key);
  }
  return std::nullopt;
}

}  // namespace

std::string helpTextKey(std::string_view menuKey) {
  const auto shared =
      std::find_if(sharedTexts.begin(), sharedTexts.end(), [&](const auto& entry) { return entry.first == menuKey; });
  if (shared != sharedTexts.end()) return std::string(shared->second);
  return std::string(textKeyPrefix) + std::string(menuKey);
}

HelpText helpEntry(std::string_view category, std::optional<std::string_view> item) {
  const auto groups = menuGroups();
  const auto group = std::find_if(groups.begin(), groups.end(), [&](const MenuGroup& candidate) {
    return !candidate.key.empty() && menuGroupName(candidate) == category;
  });
  const std::string none(localized("help_no_content"));
  if (!item) return {std::string(category), group == groups.end() ? none : textOf(group->key)};
  std::string label = plainLabel(*item);
  std::string text = group == groups.end() ? none : rowHelp(*group, label).value_or(none);
  return {std::move(label), std::move(text)};
}

}  // namespace halyard
