#include "halyard/browser/directory_frame.hpp"

#include <array>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/browser/directory_list.hpp"
#include "halyard/browser/directory_text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/control_sequences.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr int textColumns = 80;  // one fewer beside a scroll bar
constexpr int emptyTextRow = 12;
constexpr int narrowestSuffix = 4;
constexpr std::string_view accent = Color::boldBlue;

std::string styled(std::string_view style, std::string_view text) {
  return fmt::format("{}{}{}", style, text, Color::reset);
}

/// The results that the list shows, also under a box that asks something about them.
DirectoryAppMode shownMode(const DirectoryViewState& view) {
  switch (view.appMode) {
    case DirectoryAppMode::help: return view.modeBeforeHelp;
    case DirectoryAppMode::confirmDeleteHotkeys:
    case DirectoryAppMode::hotkeyAction: return restoredDirectoryMode();
    default: return view.appMode;
  }
}

bool showsResults(const DirectoryViewState& view) {
  const DirectoryAppMode mode = shownMode(view);
  return mode == DirectoryAppMode::searchResults || mode == DirectoryAppMode::filterResults;
}

// MARK: Lines round the list

/// A text in a line of the frame: two columns from its left end.
std::string borderText(std::string_view style, std::string_view text) { return " " + styled(style, text) + " "; }

/// A line of the frame with a text at its left and perhaps one at its right.
std::string border(std::string_view left, std::string_view leftText, std::string_view rightText,
                   std::string_view right) {
  const int dashes = Layout::frameWidth - 1 - visibleWidth(leftText) - visibleWidth(rightText);
  const std::string end = rightText.empty() ? std::string() : std::string(rightText) + styled(accent, "─");
  return styled(accent, fmt::format("{}─", left)) + std::string(leftText) +
         styled(accent, repeated("─", dashes - (end.empty() ? 0 : 1))) + end + styled(accent, right) + "\n";
}

std::string pathLine(const DirectoryViewState& view) {
  const bool isFavorites = view.contentViewMode == DirectoryContentViewMode::favorites;
  const std::string_view label = localized(isFavorites ? "dirview_header_favorites" : "dirview_header_path");
  const int free = Layout::frameWidth - visibleWidth(label) - 4;
  const std::string path = cutOnLeft(shownPath(view.list.currentPath), free);
  return fmt::format("{0}│{1} {0}{2}:{1} {3} {0}│{1}\n", accent, Color::reset, label, paddedColumns(path, free));
}

std::string endHint(DirectoryAppMode mode) {
  std::string_view key;
  if (mode == DirectoryAppMode::searchResults) key = "dirview_section_search_end";
  if (mode == DirectoryAppMode::filterResults) key = "dirview_section_filter_end";
  return key.empty() ? std::string() : borderText(accent, fmt::format("[X] {}", localized(key)));
}

std::string sectionLine(const DirectoryViewState& view) {
  const bool isFavorites = view.contentViewMode == DirectoryContentViewMode::favorites;
  const std::string_view title = localized(isFavorites ? "dirview_section_favorites" : "dirview_section_browser");
  return border("├", borderText(Color::bold, title), endHint(shownMode(view)), "┤");
}

std::string_view footerHints(const DirectoryViewState& view) {
  switch (shownMode(view)) {
    case DirectoryAppMode::searchResults: return localized("dirview_footer_hints_search");
    case DirectoryAppMode::filterResults: return localized("dirview_footer_hints_filter");
    default: break;
  }
  const bool isFavorites = view.contentViewMode == DirectoryContentViewMode::favorites;
  return localized(isFavorites ? "dirview_footer_hints_favorites" : "dirview_footer_hints_browser");
}

std::string footerLines(const DirectoryViewState& view) {
  return border("├", borderText(Color::bold, localized("dirview_footer_view_switch")), {}, "┤") +
         border("└", borderText(Color::dim, footerHints(view)), {}, "┘");
}

// MARK: Rows

std::string_view colorOf(DirectoryEntry::Kind kind) {
  switch (kind) {
    case DirectoryEntry::Kind::parent: return Color::dim;
    case DirectoryEntry::Kind::directory: return accent;
    case DirectoryEntry::Kind::xcodeProject: return Color::brightBlue;
    case DirectoryEntry::Kind::file: break;
  }
  return {};
}

/// Where a hit lies, behind its name; nothing where too little of the row is left.
std::string pathSuffix(const DirectoryEntry& entry, int free) {
  if (free < narrowestSuffix) return {};
  return fmt::format(" ({})", cutOnLeft(displaySafe(entry.url), free - 3));
}

/// The text column of a row, `columns` wide, with a blank at either side.
std::string textCell(const DirectoryEntry& entry, bool isSelected, bool showsPath, int columns) {
  const std::string name = cutOnRight(displaySafe(displayName(entry)), columns);
  const std::string suffix = showsPath ? pathSuffix(entry, columns - cellWidth(name)) : std::string();
  const std::string blanks(static_cast<std::size_t>(columns - cellWidth(name) - cellWidth(suffix) + 1), ' ');
  if (isSelected) {
    return fmt::format("{}{}{} {}{}{}{}", Color::bgYellow, Color::fgBlack, Color::bold, name, suffix, blanks,
                       Color::reset);
  }
  const std::string_view color = colorOf(entry.kind);
  const std::string colored = color.empty() ? name : styled(color, name);
  return " " + colored + (suffix.empty() ? suffix : styled(Color::dim, suffix)) + blanks;
}

std::string scrollBarCell(int row, const DirectoryViewListState& list) {
  const int count = static_cast<int>(list.entries.size());
  if (count <= directoryListRows) return " ";
  return isOnScrollThumb(row, list.scrollOffset, count) ? styled(accent, "█") : styled(Color::dim, "░");
}

std::string listLine(const DirectoryViewState& view, int row) {
  const DirectoryViewListState& list = view.list;
  const int index = list.scrollOffset + row;
  const int count = static_cast<int>(list.entries.size());
  const int columns = count > directoryListRows ? textColumns - 1 : textColumns;
  std::string cell(static_cast<std::size_t>(columns) + 2, ' ');
  if (index >= 0 && index < count) {
    cell = textCell(list.entries[static_cast<std::size_t>(index)], index == list.selectedIndex, showsResults(view),
                    columns);
  }
  cell.append(static_cast<std::size_t>(textColumns - columns), ' ');
  return fmt::format("{0}│{1}{2}{3}{0}│{1}\n", accent, Color::reset, cell, scrollBarCell(row, list));
}

std::string emptyList(const DirectoryViewState& view) {
  const bool isFavorites = view.isFavoritesListShown && !showsResults(view);
  const std::string_view text = localized(isFavorites ? "dirview_no_hotkeys" : "dirview_empty_directory");
  const int left = (Layout::frameWidth - visibleWidth(text)) / 2;
  std::string lines;
  for (int row = 0; row < directoryListRows; ++row) {
    const bool isTextRow = row == emptyTextRow;
    lines += boxLine(isTextRow ? repeated(" ", left) + styled(Color::dim, text) : std::string(), accent) + "\n";
  }
  return lines;
}

// MARK: Help

struct HelpRow {
  std::string_view keys;  ///< empty: named by the catalog
  std::string_view textKey;
};

constexpr auto helpRows = std::to_array<HelpRow>({
    {"↑ ↓", "dirview_help_row_navigation"},
    {"←", "dirview_help_row_up"},
    {"→ ↵", "dirview_help_row_enter"},
    {"R", "dirview_help_row_root"},
    {"Y", "dirview_help_row_refresh"},
    {"A  E", "dirview_help_row_first_last"},
    {"", "dirview_help_row_copy_dir"},
    {"Z", "dirview_help_row_copy_entry"},
    {"0 … 9", "dirview_help_row_save_hotkey"},
    {"= ! \" § $ % & / ( )", "dirview_help_row_hotkey_action"},
    {"F", "dirview_help_row_open_finder"},
    {"T", "dirview_help_row_open_terminal"},
    {"S", "dirview_help_row_search"},
    {"D", "dirview_help_row_filter"},
    {"W", "dirview_help_row_toggle_view"},
    {"C", "dirview_help_row_delete_hotkeys"},
    {"l", "dirview_help_row_switch_lang"},
    {"H", "dirview_help_row_help"},
    {"Q", "dirview_help_row_quit"},
});

constexpr int helpKeyColumns = 20;

}  // namespace

std::string displayName(const DirectoryEntry& entry) {
  switch (entry.kind) {
    case DirectoryEntry::Kind::parent: return "[...]";
    case DirectoryEntry::Kind::directory: return entry.name.starts_with('[') ? entry.name : "[" + entry.name + "]";
    case DirectoryEntry::Kind::file:
    case DirectoryEntry::Kind::xcodeProject: break;
  }
  return entry.name;
}

bool isOnScrollThumb(int row, int offset, int count) {
  if (count <= 0) return false;
  const auto scaled = [&](long long entry) { return entry * directoryListRows / count; };
  return row >= scaled(offset) && row <= scaled(offset + directoryListRows);
}

std::string directoryFrame(const DirectoryViewState& view) {
  std::string frame = pathLine(view) + sectionLine(view);
  if (view.list.entries.empty()) {
    frame += emptyList(view);
  } else {
    for (int row = 0; row < directoryListRows; ++row) frame += listLine(view, row);
  }
  return frame + footerLines(view);
}

std::vector<std::string> directoryHelpLines() {
  std::vector<std::string> lines;
  for (const HelpRow& row : helpRows) {
    const std::string_view keys = row.keys.empty() ? localized("dirview_help_key_held_space") : row.keys;
    lines.push_back(styled(accent, padVisible(keys, helpKeyColumns)) + std::string(localized(row.textKey)));
  }
  lines.emplace_back();
  lines.push_back(styled(Color::dim, localized("dirview_help_close_hint")));
  return lines;
}

}  // namespace halyard
