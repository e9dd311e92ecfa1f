// Full-screen browser for choosing a file or a folder.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

struct FileBrowserEntry {
  std::string name;
  bool isDirectory = false;
  bool isPackage = false;  ///< a folder that is shown as one thing: an app, a project, a workspace …
};

/// Shown entries of a folder: no hidden ones, folders first, each group sorted by name regardless of case. With extensions
/// (each with its dot), files and packages that have none of them are left out. Empty where the folder can't be read.
std::vector<FileBrowserEntry> fileBrowserEntries(const std::string& folder, const std::vector<std::string>& extensions);

/// Returns the chosen path, or nothing when cancelled. Remembers the folder in the preferences through `save`.
std::optional<std::string> browseFiles(std::string_view title, const std::vector<std::string>& allowedExtensions,
                                       void (*save)());

}  // namespace halyard
