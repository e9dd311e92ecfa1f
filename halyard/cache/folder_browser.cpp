#include "halyard/cache/folder_browser.hpp"

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/cache/browser_rows.hpp"
#include "halyard/cache/cache_list.hpp"
#include "halyard/cache/cache_sizes.hpp"
#include "halyard/cache/cache_steps.hpp"
#include "halyard/cache/subfolders.hpp"
#include "halyard/device/device_prompts.hpp"
#include "halyard/exec/usable_home.hpp"
#include "halyard/exec/with_spinner.hpp"
#include "halyard/platform/home_directory.hpp"
#include "halyard/terminal/activity_spinner.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

/// What sets the two screens apart.
struct FolderScreen {
  std::string folder;
  std::string_view emptyKey;
  std::string_view totalKey;
  void (*printTop)(const FolderScreen&);
  const CacheBrowserEntry* entry = nullptr;  ///< that can be deleted as a whole
};

struct FolderPage {
  std::vector<Subfolder> rows;
  std::string total;
};

/// What is told below the rows the next time they are drawn.
using Notice = std::function<void()>;

/// With nothing to choose from there is only a word about it, and the way back.
bool hasChoice(const FolderScreen& screen, const FolderPage& page) {
  return screen.entry != nullptr || !page.rows.empty();
}

void measureTotal(const FolderScreen& screen, FolderPage& page) {
  if (!hasChoice(screen, page)) return;
  page.total = screen.entry != nullptr ? entrySize(*screen.entry) : totalSize({screen.folder});
}

FolderPage measured(const FolderScreen& screen) {
  const std::string label(localized("calculating_size_detail"));
  ActivitySpinner spinner(label);
  spinner.start();
  FolderPage page;
  page.rows =
      measuredSubfolders(screen.folder, [&](std::string_view name) { spinner.setLabel(label, std::string(name)); });
  spinner.setLabel(label);
  measureTotal(screen, page);
  return page;
}

void printRows(const FolderScreen& screen, const FolderPage& page) {
  std::vector<SizedRow> rows;
  for (const Subfolder& subfolder : page.rows) rows.push_back({displaySafe(subfolder.name), subfolder.size});
  if (rows.empty()) {
    printLine();
    printInfo(localized(screen.emptyKey));
  } else {
    rows.front().section = localized("derived_data_subdirectories");
  }
  print(sizedRows(rows));
}

void draw(const FolderScreen& screen, const FolderPage& page, const Notice& notice) {
  screen.printTop(screen);
  printRows(screen, page);
  if (hasChoice(screen, page)) {
    print(totalRow(localized(screen.totalKey), page.total));
    if (screen.entry != nullptr) printMenuRow("C", localized("cache_browser_clear_all"));
    printMenuRow("x", localized("menu_back"));
    printLine();
  }
  if (notice) notice();
}

void tellDeletion(std::string_view key, bool succeeded, const std::string& name) {
  const std::string text = localizedFormat(key, displaySafe(name));
  succeeded ? printSuccess(text) : printError(text);
}

/// True where the row has gone.
bool deleteRow(const FolderScreen& screen, FolderPage& page, std::size_t index, Notice& notice) {
  const auto row = page.rows.begin() + static_cast<std::ptrdiff_t>(index);
  const std::string name = row->name;
  const std::string path = screen.folder + "/" + name;
  const std::string question = localizedFormat("derived_data_subdir_delete_confirm", displaySafe(name), row->size);
  if (!confirmDialog({}, question, DialogSeverity::destructive)) return false;
  const bool succeeded = withSpinner(name, [&] {
    const bool hasGone = deleteSubfolder(path);
    if (hasGone) {
      page.rows.erase(row);
    } else {
      row->size = pathSize(path);
    }
    measureTotal(screen, page);
    return hasGone;
  });
  const std::string_view key = succeeded ? "derived_data_subdir_deleted" : "derived_data_subdir_delete_error";
  notice = [key, succeeded, name] { tellDeletion(key, succeeded, name); };
  return succeeded;
}

bool deleteWhole(const FolderScreen& screen, FolderPage& page, Notice& notice) {
  const CacheBrowserEntry& entry = *screen.entry;
  const std::string question = localizedFormat("cache_browser_delete_contents_confirm", entry.label, page.total);
  if (!confirmDialog({}, question, DialogSeverity::destructive)) return false;
  const EntryDeletion outcome = withSpinner(entry.label, [&] { return deleteEntry(entry); });
  page = measured(screen);
  notice = [&entry, outcome] { printEntryDeletion(entry, outcome); };
  return true;
}

/// True where something was deleted.
bool browse(const FolderScreen& screen) {
  screen.printTop(screen);
  printLine();
  FolderPage page = measured(screen);
  Notice notice;
  bool isChanged = false;
  while (!operationAborted()) {
    draw(screen, page, notice);
    notice = {};
    if (!hasChoice(screen, page)) {
      setSuppressBackPrompt(false);
      waitForBack();
      break;
    }
    const std::string answer = readLetter();
    if (isLeaving(answer)) break;
    if (const auto row = chosenIndex(answer, page.rows.size())) {
      isChanged |= deleteRow(screen, page, *row, notice);
    } else if (answer == "c" && screen.entry != nullptr) {
      isChanged |= deleteWhole(screen, page, notice);
    } else if (!answer.empty()) {
      notice = [] { printError(localized("invalid_selection")); };
    }
  }
  return isChanged;
}

void printEntryTop(const FolderScreen& screen) {
  printActionHeader(screen.entry->label, screen.entry->description);
  printLine(fmt::format("  {}{}{}", Color::dim, displaySafe(tildePath(screen.folder)), Color::reset));
}

void printSelectiveTop(const FolderScreen&) {
  printActionHeader(localized("delete_derived_data_selective"), localized("delete_derived_data_selective_description"));
  printLine();
  printCacheList(localized("cache_list_desc_derived_data_selective"),
                 {{.label = "DerivedData", .path = std::string(cacheLocation(CachePlace::derivedData).path)}});
  printAfterNote(localized("cache_list_after_derived_data_selective"));
}

}  // namespace

bool browseSubdirectories(const CacheBrowserEntry& entry) {
  return browse({.folder = entry.path,
                 .emptyKey = "cache_browser_no_entries",
                 .totalKey = "cache_browser_total_size",
                 .printTop = printEntryTop,
                 .entry = &entry});
}

void deleteDerivedDataSelective() {
  const FolderScreen screen = {.folder = cachePath(CachePlace::derivedData),
                               .emptyKey = "derived_data_no_subdirectories",
                               .totalKey = "derived_data_total_size",
                               .printTop = printSelectiveTop};
  if (homeIsUsable()) {
    browse(screen);
    return;
  }
  screen.printTop(screen);
  printLine();
  requireUsableHome();
  waitForBack();
}

void printEntryDeletion(const CacheBrowserEntry& entry, EntryDeletion outcome) {
  switch (outcome) {
    case EntryDeletion::deleted: return tellDeletion("derived_data_subdir_deleted", true, entry.label);
    case EntryDeletion::failed: return tellDeletion("derived_data_subdir_delete_error", false, entry.label);
    case EntryDeletion::linkKept: break;
  }
  if (entry.keptLinks.empty()) printLinkKept(tildePath(entry.path));
  for (const CachePlace place : entry.keptLinks) printLinkKept(cacheLocation(place).path);
}

}  // namespace halyard
