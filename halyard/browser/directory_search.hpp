// Wildcard search through the tree below the current folder. A worker walks it; the main loop polls.
#pragma once

#include <string_view>
#include <vector>

#include "halyard/browser/directory_state.hpp"
#include "halyard/terminal/keys.hpp"

namespace halyard {

void openSearchOverlay();
void handleSearchOverlayKey(const RawKey& key);
void drawSearchOverlay();

/// Sends the worker off with the text of the overlay.
void startSearch();
/// One step of a running search: advances the spinner, sleeps 0.12 s, looks for a key and for the result.
void pollSearch();
void drawSearchRunning();

void handleSearchResultsKey(const RawKey& key);
/// The list as it was before, and the normal mode.
void endSearch();

/// What of a folder's entries a search text lets through.
std::vector<DirectoryEntry> matchEntries(const std::vector<DirectoryEntry>& entries, std::string_view text);

}  // namespace halyard
