#include "halyard/terminal/file_browser.hpp"

#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <tuple>
#include <utility>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/meta_line.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/terminal/terminal_restore.hpp"

namespace halyard {

namespace {

/// Folders that the system's own file windows show as one thing.
constexpr auto packageExtensions = std::to_array<std::string_view>({
    ".app",       ".appex",         ".bundle",     ".docc",        ".dsym",         ".framework",
    ".kext",      ".photoslibrary", ".playground", ".plugin",      ".prefpane",     ".rtfd",
    ".swiftpm",   ".trace",         ".xcappdata",  ".xcarchive",   ".xcdatamodeld", ".xcframework",
    ".xcodeproj", ".xcresult",      ".xctest",     ".xcworkspace",
});

constexpr std::string_view selectionMark = "▶";

FileSystemProviding& fileSystem() { return *AppDependencies::current().fileSystemClient; }

// MARK: Folders

bool isFolderOrLinkToOne(const std::string& path) {
  const FileType type = fileSystem().attributesOfItem(path).type;
  if (type != FileType::symbolicLink) return type == FileType::directory;
  std::error_code ignored;
  return std::filesystem::is_directory(path, ignored);
}

bool folderExists(const std::string& path) {
  try {
    return !path.empty() && isFolderOrLinkToOne(path);
  } catch (const std::exception&) {
    return false;
  }
}

std::string parentFolder(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos || slash == 0 ? "/" : path.substr(0, slash);
}

std::string pathInside(const std::string& folder, const std::string& name) {
  return (folder.ends_with('/') ? folder : folder + "/") + name;
}

std::string absoluteFolder(std::string path) {
  if (!path.starts_with('/')) {
    std::error_code failure;
    const std::string base = std::filesystem::current_path(failure).string();
    path = path.empty() ? base : pathInside(failure ? "/" : base, path);
  }
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path.empty() ? "/" : path;
}

std::string nearestExistingFolder(const std::string& path) {
  std::string folder = absoluteFolder(path);
  while (folder != "/" && !folderExists(folder)) folder = parentFolder(folder);
  return folder;
}

bool hasAnyExtension(const std::string& foldedName, const std::vector<std::string>& foldedExtensions) {
  return std::ranges::any_of(foldedExtensions,
                             [&](const std::string& extension) { return foldedName.ends_with(extension); });
}

bool isPackageName(const std::string& foldedName) {
  return std::ranges::any_of(packageExtensions,
                             [&](std::string_view extension) { return foldedName.ends_with(extension); });
}

std::vector<std::string> namesInFolder(const std::string& folder) {
  try {
    return fileSystem().contentsOfDirectory(folder);
  } catch (const std::exception&) {
    return {};
  }
}

/// The name sorts after folding once, not once per comparison: a folder may hold ten thousand entries.
struct SortableEntry {
  std::string foldedName;
  FileBrowserEntry entry;
};

std::optional<SortableEntry> readEntry(const std::string& folder, std::string name) {
  try {
    SortableEntry read{.foldedName = caseFolded(name), .entry = {}};
    const bool isFolder = isFolderOrLinkToOne(pathInside(folder, name));
    read.entry = {
        .name = std::move(name), .isDirectory = isFolder, .isPackage = isFolder && isPackageName(read.foldedName)};
    return read;
  } catch (const std::exception&) {
    return {};  // gone since the folder was read
  }
}

bool isPlainFolder(const FileBrowserEntry& entry) { return entry.isDirectory && !entry.isPackage; }

void readFolder(FileBrowser& browser, const std::string& folder) {
  browser.folder = nearestExistingFolder(folder);
  browser.entries = fileBrowserEntries(browser.folder, browser.allowedExtensions);
  browser.selected = 0;
  browser.scroll = 0;
}

void goToParent(FileBrowser& browser) {
  if (browser.folder == "/") return;
  const std::string left = browser.folder.substr(browser.folder.rfind('/') + 1);
  readFolder(browser, parentFolder(browser.folder));
  const auto found = std::ranges::find(browser.entries, left, &FileBrowserEntry::name);
  if (found != browser.entries.end()) browser.selected = static_cast<int>(found - browser.entries.begin());
}

std::string workingFolder() {
  return folderExists(selectedWorkingDirectory()) ? selectedWorkingDirectory() : absoluteFolder({});
}

const FileBrowserEntry* selectedEntry(const FileBrowser& browser) {
  const auto index = static_cast<std::size_t>(browser.selected);
  return index < browser.entries.size() ? &browser.entries[index] : nullptr;
}

FileBrowserStep chooseOrEnter(FileBrowser& browser) {
  const FileBrowserEntry* entry = selectedEntry(browser);
  if (entry == nullptr) return FileBrowserStep::stay;
  if (!isPlainFolder(*entry)) return FileBrowserStep::choose;
  readFolder(browser, selectedPath(browser));
  return FileBrowserStep::stay;
}

// MARK: Frame

std::string joined(const std::vector<std::string>& parts) { return fmt::format("{}", fmt::join(parts, ", ")); }

std::string sectionHead(std::string_view title) {
  const std::string name = displaySafe(title);
  return std::string(Color::blue) + "── " + name + " " +
         repeated("─", std::max(Layout::contentWidth - visibleWidth(name), 0)) + std::string(Color::reset);
}

std::string dimmed(std::string_view text) {
  return std::string(Color::dim) + std::string(text) + std::string(Color::reset);
}

MetaLine headLine(std::string_view labelKey, std::string value) {
  std::string_view label = localized(labelKey);
  if (label.ends_with(':')) label.remove_suffix(1);
  return {.label = std::string(label),
          .labelColor = std::string(Color::dim),
          .value = std::move(value),
          .valueColor = std::string(Color::bold)};
}

std::string folderLine(const std::string& folder, int columns) {
  MetaLine line = headLine("current_path", {});
  const int room = std::max(columns - visibleWidth(metaLine(line)), 1);
  line.value = shortenedFront(displaySafe(folder), static_cast<std::size_t>(room));
  return metaLine(line);
}

std::string rowHint(const FileBrowserEntry& entry) {
  const std::string enter = isPlainFolder(entry) ? "  ↵ " + std::string(localized("dir_enter")) : "";
  return dimmed(enter + "  S → " + std::string(localized("dir_select")));
}

std::string entryRow(const FileBrowserEntry& entry, bool selected, int columns) {
  const auto room = static_cast<std::size_t>(std::max(columns - 2, 1));
  const std::string name = shortened(displaySafe(entry.name) + (isPlainFolder(entry) ? "/" : ""), room);
  const std::string_view color = isPlainFolder(entry) ? Color::boldBlue : entry.isPackage ? Color::brightBlue : "";
  const std::string shown = std::string(color) + name + std::string(Color::reset);
  if (!selected) return "  " + shown;
  return std::string(Color::boldBlue) + std::string(selectionMark) + std::string(Color::reset) + " " +
         std::string(Color::bold) + shown + rowHint(entry);
}

std::string moreLine(std::string_view arrow, std::string_view key, int count) {
  return count > 0 ? dimmed(fmt::format("  {}  … {} {}", arrow, count, localized(key))) : "";
}

/// The keys that hold for the whole screen. Where they don't all fit, the way out is what stays.
std::string footer(int columns) {
  const std::string parts[] = {"↑↓ ←→", "W " + std::string(localized("file_browser_restore_workdir")),
                               "x " + std::string(localized("menu_back"))};
  std::string text;
  for (std::size_t index = std::size(parts); index-- > 0;) {
    const std::string longer = text.empty() ? parts[index] : parts[index] + "  ·  " + text;
    if (!text.empty() && visibleWidth(longer) + 2 > columns) break;
    text = longer;
  }
  return dimmed("  " + text);
}

void keepSelectionVisible(FileBrowser& browser, int visible) {
  const int last = std::max(static_cast<int>(browser.entries.size()) - visible, 0);
  browser.scroll = std::clamp(browser.scroll, std::max(browser.selected - visible + 1, 0), browser.selected);
  browser.scroll = std::min(browser.scroll, last);
}

/// The list between the marks for what is hidden, always of the same height.
void appendList(std::vector<std::string>& lines, FileBrowser& browser, int visible, int columns) {
  keepSelectionVisible(browser, visible);
  const int count = static_cast<int>(browser.entries.size());
  lines.push_back(moreLine("↑", "dir_more_above", browser.scroll));
  for (int row = 0; row < visible; ++row) {
    const int index = browser.scroll + row;
    if (count == 0 && row == 0) {
      lines.push_back("  " + dimmed(localized("no_files_or_dirs")));
    } else if (index < count) {
      lines.push_back(entryRow(browser.entries[static_cast<std::size_t>(index)], index == browser.selected, columns));
    } else {
      lines.emplace_back();
    }
  }
  lines.push_back(moreLine("↓", "dir_more_below", count - browser.scroll - visible));
}

// MARK: Terminal

/// Raw mode without a cursor for as long as it lives; then everything as before, on a clean screen.
class BrowsingScreen {
 public:
  BrowsingScreen() : wasRaw_(rawModeActive()) {
    enterRawMode();
    hideCursor();
  }
  ~BrowsingScreen() {
    clearScreen();
    if (wasRaw_) return;
    showCursor();
    flushOutput();
    leaveRawMode();
  }
  BrowsingScreen(const BrowsingScreen&) = delete;
  BrowsingScreen& operator=(const BrowsingScreen&) = delete;

 private:
  bool wasRaw_;
};

void showFrame(FileBrowser& browser, bool fromScratch) {
  beginFrame();
  print(fromScratch ? Cursor::eraseScreen : Cursor::home);
  print(drawFileBrowser(browser, terminalRows(), terminalColumns()));
  endFrame();
}

FileBrowserStep browse(FileBrowser& browser) {
  FileBrowserStep step = FileBrowserStep::stay;
  bool fromScratch = true;
  while (step == FileBrowserStep::stay) {
    showFrame(browser, fromScratch);
    const RawKey key = readKey();
    fromScratch = takeScreenDamage();
    // A resized or resumed terminal woke the read: that is no key.
    if (fromScratch && key.kind == RawKey::Kind::unknown) continue;
    step = handleFileBrowserKey(browser, key);
  }
  return step;
}

}  // namespace

std::vector<FileBrowserEntry> fileBrowserEntries(const std::string& folder,
                                                 const std::vector<std::string>& extensions) {
  std::vector<std::string> foldedExtensions;
  foldedExtensions.reserve(extensions.size());
  for (const std::string& extension : extensions) foldedExtensions.push_back(caseFolded(extension));

  std::vector<SortableEntry> found;
  for (std::string& name : namesInFolder(folder)) {
    if (name.starts_with('.')) continue;
    std::optional<SortableEntry> read = readEntry(folder, std::move(name));
    if (!read) continue;
    const bool wanted =
        extensions.empty() || isPlainFolder(read->entry) || hasAnyExtension(read->foldedName, foldedExtensions);
    if (wanted) found.push_back(std::move(*read));
  }
  std::ranges::sort(found, [](const SortableEntry& left, const SortableEntry& right) {
    if (left.entry.isDirectory != right.entry.isDirectory) return left.entry.isDirectory;
    return std::tie(left.foldedName, left.entry.name) < std::tie(right.foldedName, right.entry.name);
  });

  std::vector<FileBrowserEntry> entries;
  entries.reserve(found.size());
  for (SortableEntry& item : found) entries.push_back(std::move(item.entry));
  return entries;
}

FileBrowser openFileBrowser(std::string_view title, const std::vector<std::string>& allowedExtensions,
                            const std::string& folder) {
  FileBrowser browser{.title = std::string(title), .allowedExtensions = allowedExtensions, .folder = {}, .entries = {}};
  readFolder(browser, folder);
  return browser;
}

FileBrowserStep handleFileBrowserKey(FileBrowser& browser, const RawKey& key) {
  const int last = std::max(static_cast<int>(browser.entries.size()) - 1, 0);
  switch (key.kind) {
    case RawKey::Kind::up: browser.selected = std::max(browser.selected - 1, 0); return FileBrowserStep::stay;
    case RawKey::Kind::down: browser.selected = std::min(browser.selected + 1, last); return FileBrowserStep::stay;
    case RawKey::Kind::right:
    case RawKey::Kind::enter: return chooseOrEnter(browser);
    case RawKey::Kind::left: goToParent(browser); return FileBrowserStep::stay;
    case RawKey::Kind::character: break;
    default: return FileBrowserStep::cancel;
  }
  if (key.is("\x7f")) goToParent(browser);
  if (key.is("w") || key.is("W")) readFolder(browser, workingFolder());
  if (key.is("x") || key.is("X")) return FileBrowserStep::cancel;
  const bool chooses = (key.is("s") || key.is("S")) && selectedEntry(browser) != nullptr;
  return chooses ? FileBrowserStep::choose : FileBrowserStep::stay;
}

std::string selectedPath(const FileBrowser& browser) {
  return pathInside(browser.folder, browser.entries.at(static_cast<std::size_t>(browser.selected)).name);
}

std::string drawFileBrowser(FileBrowser& browser, int rows, int columns) {
  std::vector<std::string> lines = {sectionHead(browser.title)};
  if (!browser.allowedExtensions.empty()) {
    lines.push_back(metaLine(headLine("file_browser_looking_for", displaySafe(joined(browser.allowedExtensions)))));
  }
  lines.push_back(folderLine(browser.folder, columns));
  const int marksAndFooter = 3;
  const int visible = std::max(rows - static_cast<int>(lines.size()) - marksAndFooter, 1);
  appendList(lines, browser, visible, columns);
  lines.push_back(std::string(Cursor::eraseBelow) + footer(columns));

  std::string frame;
  for (const std::string& line : lines) {
    if (!frame.empty()) frame += "\n";
    // Before the text: behind a text of full width it would take the last character.
    frame += std::string(Cursor::eraseLineEnd) + clippedVisible(line, columns);
  }
  return frame;
}

std::optional<std::string> browseFiles(std::string_view title, const std::vector<std::string>& allowedExtensions) {
  const std::string& remembered = selectedFileBrowserPath();
  FileBrowser browser =
      openFileBrowser(title, allowedExtensions, folderExists(remembered) ? remembered : workingFolder());
  {
    const BrowsingScreen screen;
    const FileBrowserStep step = browse(browser);
    if (step == FileBrowserStep::cancel) {
      flushPendingInput();  // the rest of an escape sequence that cancelled
      return {};
    }
  }
  setSelectedFileBrowserPath(browser.folder);
  keepPreferences();
  return selectedPath(browser);
}

}  // namespace halyard
