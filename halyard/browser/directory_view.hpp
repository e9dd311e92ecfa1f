// The directory browser: the second top-level view. It draws below the compact header that the main loop has drawn.
#pragma once

#include "halyard/browser/directory_state.hpp"
#include "halyard/terminal/keys.hpp"

namespace halyard {

DirectoryAppMode directoryAppMode();
/// Acts once per run.
void prepareDirectoryView();
/// Back to the first state of every mode, at the current directory.
void resetDirectoryView();
void drawDirectoryView();
void handleDirectoryKey(const RawKey& key);
/// One step of a running search or filter; reads the keyboard itself.
void runDirectorySearchStep();
void runDirectoryFilterStep();

}  // namespace halyard
