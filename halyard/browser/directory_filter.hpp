// Filter by groups of file types through the tree below the current folder. A worker walks it; the main loop polls.
#pragma once

#include "halyard/terminal/keys.hpp"

namespace halyard {

void openFilterOverlay();
void handleFilterOverlayKey(const RawKey& key);
void drawFilterOverlay();

void startFilter();
/// One step of a running filter, as of pollSearch().
void pollFilter();
void drawFilterRunning();

void handleFilterResultsKey(const RawKey& key);
/// The list as it was before, and the normal mode.
void endFilter();

}  // namespace halyard
