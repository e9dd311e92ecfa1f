// The directory browser: the second top-level view. It draws below the compact header that the main loop has drawn.
#pragma once

#include "halyard/browser/directory_state.hpp"
#include "halyard/terminal/keys.hpp"

namespace halyard {

DirectoryAppMode directoryAppMode();

/// What the view needs of the loop; before its first use.
void installDirectoryViewHost(DirectoryViewHost host);
/// Acts once per run: the working directory, else the launch directory, becomes the root and is read.
void prepareDirectoryView();
/// Back to the first state of every mode, at the current directory.
void resetDirectoryView();

/// What the header above the view is to show of it.
DirectoryHeaderContent directoryHeaderContent();
void drawDirectoryView();
/// The box of the mode, over the finished frame.
void drawDirectoryOverlay();
void handleDirectoryKey(const RawKey& key);
/// One step of a running search or filter; reads the keyboard itself.
void runDirectorySearchStep();
void runDirectoryFilterStep();

}  // namespace halyard
