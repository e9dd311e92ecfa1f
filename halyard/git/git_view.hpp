// The Git view: branches and history of the repository in the current directory. The main loop draws it below the
// compact header and hands it its keys while it is the active view.
#pragma once

#include "halyard/terminal/keys.hpp"

namespace halyard {

/// Whether the view takes the global keys; in every other mode all keys are its own.
bool gitViewIsInNormalMode();
/// Loads the repository, once per run.
void prepareGitView();
void drawGitView();
/// Blocks while the `git` command of the key runs.
void handleGitKey(const RawKey& key);

}  // namespace halyard
