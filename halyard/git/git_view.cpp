#include "halyard/git/git_view.hpp"

#include <string>

#include "core/app_dependencies.hpp"
#include "halyard/git/git_view_frame.hpp"
#include "halyard/git/git_view_overlays.hpp"
#include "halyard/git/git_view_state.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/output.hpp"

namespace halyard {

bool gitViewIsInNormalMode() { return GitView::state().mode == GitViewMode::normal; }

void prepareGitView() { GitView::enterOnce(); }

void drawGitView() {
  GitView::settleForDrawing();
  GitViewState& view = GitView::state();
  // A wide character counts as one column, so its row reached past the frame, where no later row writes.
  if (view.drewWideCharacters) print(Cursor::eraseBelow);
  const std::string frame = GitView::drawnFrame(view, AppDependencies::current().fileSystemClient->homeDirectoryPath());
  const std::string overlay = GitView::drawnOverlay(view);
  view.drewWideCharacters = GitView::holdsWideCharacters(frame) || GitView::holdsWideCharacters(overlay);
  print(frame + overlay);
}

}  // namespace halyard
