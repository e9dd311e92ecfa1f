#include "halyard/cache/cache_browser.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/cache/browser_rows.hpp"
#include "halyard/cache/cache_entries.hpp"
#include "halyard/cache/folder_browser.hpp"
#include "halyard/device/device_prompts.hpp"
#include "halyard/exec/usable_home.hpp"
#include "halyard/exec/with_spinner.hpp"
#include "halyard/platform/home_directory.hpp"
#include "halyard/terminal/activity_spinner.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct BrowserPage {
  std::vector<CacheBrowserEntry> entries;
  std::vector<SizedRow> rows;
  std::string total;
};

void printHeader() { printActionHeader(localized("show_all_caches"), localized("show_all_caches_description")); }

BrowserPage measuredPage() {
  const std::string label(localized("calculating_size_detail"));
  ActivitySpinner spinner(label);
  spinner.start();
  BrowserPage page;
  page.entries = cacheBrowserEntries(privateDerivedDataName(), privateDerivedDataPath());
  for (const CacheBrowserEntry& entry : page.entries) {
    if (operationAborted()) break;
    spinner.setLabel(label, entry.label);
    page.rows.push_back({entry.label, entrySize(entry), entry.sectionTitle.value_or("")});
  }
  spinner.setLabel(label);
  page.total = entriesSize(page.entries);
  return page;
}

void draw(const BrowserPage& page, bool answerWasUnknown) {
  printHeader();
  print(sizedRows(page.rows) + totalRow(localized("cache_browser_total_size"), page.total));
  printMenuRow("C", localized("cache_browser_clear_all"));
  printMenuRow("x", localized("menu_back"));
  answerWasUnknown ? printError(localized("invalid_selection")) : printLine();
}

bool isAgreedTo(std::string_view question) { return confirmDialog({}, question, DialogSeverity::destructive); }

/// False where one of the questions was declined.
bool clearAll(const std::vector<CacheBrowserEntry>& entries) {
  const std::string_view title = localized("cache_browser_clear_all");
  if (!isAgreedTo(localized("cache_browser_clear_all_confirm"))) return false;
  if (!isAgreedTo(localizedFormat("cleanup_final_confirm_var", title))) return false;
  for (const CacheBrowserEntry& entry : entries) {
    if (operationAborted()) break;
    const EntryDeletion outcome = withSpinner(entry.label, [&] { return deleteEntry(entry); });
    printEntryDeletion(entry, outcome);
  }
  waitForBack();
  return true;
}

/// One entry to the screen: the places are measured, and then only looked at. True where they are to be measured again.
bool browsePlaces() {
  printHeader();
  printLine();
  const BrowserPage page = measuredPage();
  bool answerWasUnknown = false;
  while (!operationAborted()) {
    draw(page, answerWasUnknown);
    const std::string answer = readLetter();
    if (isLeaving(answer)) return false;
    const auto row = chosenIndex(answer, page.entries.size());
    if (row && browseSubdirectories(page.entries[*row])) return true;
    if (answer == "c" && clearAll(page.entries)) return true;
    answerWasUnknown = !row && answer != "c" && !answer.empty();
  }
  return false;
}

}  // namespace

void showAllCaches() {
  if (!homeIsUsable()) {
    printHeader();
    printLine();
    requireUsableHome();
    return waitForBack();
  }
  while (browsePlaces()) continue;
  setOperationAborted(false);
}

}  // namespace halyard
