// The list of a folder's entries: reading and sorting it, moving in it, opening what is selected.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "halyard/browser/directory_order.hpp"
#include "halyard/browser/directory_state.hpp"

namespace halyard {

inline constexpr int directoryListRows = 25;

/// A name that ends in .xcodeproj or .xcworkspace, whatever it is on disk.
bool isXcodeProjectName(std::string_view name);

/// Parent of an absolute path; "/" is its own.
std::string parentLocation(std::string_view location);
std::string locationInside(std::string_view folder, std::string_view name);

/// The folder's visible entries, directories first, behind the entry of its parent (none at "/"). A folder that can't
/// be read gives no others.
std::vector<DirectoryEntry> directoryEntries(const std::string& location);

/// Fills the entries of the current list state; nothing else of it changes.
void loadDirectory(const std::string& location);
/// The same with the current path set to the folder and the selection on the first row. By value: the location may live
/// in the list that goes.
void enterDirectory(std::string location);

/// The entry under the selection; none in an empty list.
const DirectoryEntry* selectedDirectoryEntry();

/// Where the keys for Finder and Terminal lead: the selected directory, else the current one.
std::string desktopTarget();

/// Lowers or raises the scroll offset until the selection is in the window.
void keepSelectionVisible();
void moveDirectorySelection(int step);
void selectFirstDirectoryEntry();
void selectLastDirectoryEntry();
/// Selects the entry of this location; false, and the first row, where there is none.
bool selectLocation(std::string_view location);

/// A file or project is handed to the desktop, a directory entered, the parent gone up to.
void openEntry(const DirectoryEntry& entry);
void openSelectedDirectoryEntry();
/// To the parent, with the folder that was left selected; from a folder below a favorite to the favorites.
void goUpInDirectories();
/// Back to where the browser began.
void goToDirectoryRoot();
void refreshDirectoryView();

}  // namespace halyard
