// The program with the Git view as its first screen: no key of the menu leads there. Frames, keys and terminal are
// those of the main loop. "G" in the menu comes back to the view. HALYARD_PROBE_GIT names a mode that no key leads to.
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/browser/directory_view.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "halyard/git/git_service.hpp"
#include "halyard/git/git_view.hpp"
#include "halyard/git/git_view_state.hpp"
#include "halyard/shell/goodbye.hpp"
#include "halyard/shell/key_dispatch.hpp"
#include "halyard/shell/main_loop.hpp"
#include "halyard/shell/preferences.hpp"
#include "halyard/terminal/keys.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/terminal_restore.hpp"

namespace {

using namespace halyard;

/// The view in a mode without an entry: "loading", "discard", or "diff" of the first changed file.
void enterMode(std::string_view name) {
  GitViewState& view = GitView::state();
  if (name == "loading") {
    view.mode = GitViewMode::loading;
  } else if (name == "discard") {
    view.pendingConfirm = GitConfirmKind{GitConfirmKind::Kind::discardChanges};
    view.mode = GitViewMode::confirmOverlay;
  } else if (name == "diff") {
    if (!view.snapshot.files.empty()) {
      view.diffTitle = view.snapshot.files.front().path;
      view.diffLines = GitService::diffLines(view.snapshot.files.front());
    }
    view.mode = GitViewMode::diffOverlay;
  }
}

void prepareView(MainLoopState& state) {
  switch (state.activeView) {
    case AppViewMode::git: return prepareGitView();
    case AppViewMode::directory: return prepareDirectoryView();
    case AppViewMode::halyard:
      if (state.needsFullRedraw) state.menu = buildMenu();
      clampCursors(state.menu, state.cursor);
  }
}

void readAndDispatch(MainLoopState& state) {
  const RawKey key = readKey();
  if (takeScreenDamage()) {
    state.needsFullRedraw = true;
    if (key.kind == RawKey::Kind::unknown) return;
  }
  if (key.kind == RawKey::Kind::unknown && inputEnded()) return waitForSignal();
  if (state.activeView == AppViewMode::halyard && key.is("G")) {
    state.activeView = AppViewMode::git;
    state.needsFullRedraw = true;
    return;
  }
  dispatchKey(state, key);
}

}  // namespace

int main(int, char** argv) {
  static DefaultCommandRunner commandRunner;
  static DefaultFileSystemClient fileSystemClient;
  AppDependencies::current() = {&commandRunner, &fileSystemClient, &AppContext::shared()};
  registerExitCursorRestore();
  installTerminalSignalHandlers();
  loadStringCatalog(argv[0]);
  loadPreferences();
  MainLoopState state;
  state.activeView = AppViewMode::git;
  state.runAction = runInPlainTerminal;
  state.quit = quitWithGoodbye;
  useFullBuffering();
  hideCursor();
  flushPendingInput();
  enterRawMode();
  flushOutput();
  prepareGitView();
  if (const char* mode = std::getenv("HALYARD_PROBE_GIT")) enterMode(mode);
  for (;;) {
    prepareView(state);
    drawFrame(state);
    readAndDispatch(state);
  }
}
