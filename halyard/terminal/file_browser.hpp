// Full-screen browser for choosing a file or a folder.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "halyard/terminal/keys.hpp"

namespace halyard {

struct FileBrowserEntry {
  std::string name;
  bool isDirectory = false;
  bool isPackage = false;  ///< a folder that is shown as one thing: an app, a project, a workspace …

  bool operator==(const FileBrowserEntry&) const = default;
};

/// Shown entries of a folder: no hidden ones, folders first, each group sorted by name regardless of case. With
/// extensions (each with its dot), files and packages that have none of them are left out. Empty where the folder can't
/// be read.
std::vector<FileBrowserEntry> fileBrowserEntries(const std::string& folder, const std::vector<std::string>& extensions);

/// Returns the chosen path, or nothing when cancelled. Remembers the folder in the preferences.
std::optional<std::string> browseFiles(std::string_view title, const std::vector<std::string>& allowedExtensions);

/// The browser between two keys. It reads folders, but neither the keyboard nor the screen.
struct FileBrowser {
  std::string title;
  std::vector<std::string> allowedExtensions;
  std::string folder;  ///< absolute; it existed when it was read
  std::vector<FileBrowserEntry> entries;
  int selected = 0;
  int scroll = 0;  ///< first visible entry
};

enum class FileBrowserStep { stay, choose, cancel };

/// Reads the folder, or the nearest one above it that exists.
FileBrowser openFileBrowser(std::string_view title, const std::vector<std::string>& allowedExtensions,
                            const std::string& folder);
FileBrowserStep handleFileBrowserKey(FileBrowser& browser, const RawKey& key);
/// The path of the selected entry; the browser must have one.
std::string selectedPath(const FileBrowser& browser);
/// One frame for a terminal of this size; scrolls so far that the selected entry is in it.
std::string drawFileBrowser(FileBrowser& browser, int rows, int columns);

}  // namespace halyard
