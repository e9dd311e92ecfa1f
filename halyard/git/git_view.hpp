// The Git view: drawn and driven by the main loop when it is the active view.
#pragma once

#include "halyard/terminal/keys.hpp"

namespace halyard {

/// Whether the view takes the global keys; in every other mode all keys are its own.
bool gitViewIsInNormalMode();
/// Acts once per run.
void prepareGitView();
void drawGitView();
void handleGitKey(const RawKey& key);

}  // namespace halyard
