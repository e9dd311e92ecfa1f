#include "halyard/shell/main_loop.hpp"

#include <filesystem>
#include <string>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "halyard/browser/directory_view.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/git/git_view.hpp"
#include "halyard/packages/dependencies_menu.hpp"
#include "halyard/shell/directory_setup.hpp"
#include "halyard/shell/goodbye.hpp"
#include "halyard/shell/header.hpp"
#include "halyard/shell/key_dispatch.hpp"
#include "halyard/shell/preferences.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/keys.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/overlay_box.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/terminal/terminal_restore.hpp"

namespace halyard {

namespace {

// The help box covers the panes.
constexpr int helpTopRow = 15;
constexpr int helpTextRows = 16;

void forgetSelection() {
  setSelectedWorkingDirectory({});
  setSelectedProjectFilePath({});
  setSelectedScheme({});
  setSelectedTestScheme({});
  setSelectedTestPlan({});
  setSelectedBundleID({});
  setSelectedDevice({});
  setCachedPlatforms({});
  setCachedPlatformsScheme({});
  setCachedTestPlatforms({});
  setCachedTestPlatformsScheme({});
}

void enterSavedWorkingDirectory() {
  if (selectedWorkingDirectory().empty()) return;
  std::error_code error;
  if (std::filesystem::exists(selectedWorkingDirectory(), error)) {
    std::filesystem::current_path(selectedWorkingDirectory(), error);
  } else {
    forgetSelection();
    savePreferences();
  }
}

void drawToastHeader(const DirectoryHeaderContent& content) {
  beginFrame();
  print(Cursor::home);
  drawHeader(false, {}, true, {content.toast, content.toastDetail, content.clipboard});
  endFrame();
}

HeaderNotice headerNotice(const MainLoopState& state) {
  if (state.activeView != AppViewMode::directory) return {};
  return {.toast = {}, .toastDetail = {}, .clipboard = directoryHeaderContent().clipboard};
}

/// What the lower floors need of the shell.
void installShell(MainLoopState& state) {
  installPreferencesSaver(savePreferences);
  installDirectoryViewHost({.launchDirectory = state.launchDirectory,
                            .drawFrame = [&state] { drawFrame(state); },
                            .drawHeader = drawToastHeader,
                            .pause = {}});
  installMenuLettersAtPrompts();
  installDirectorySetupSteps({.resolveDependencies = [] { resolveDetectedDependencies(); },
                              .selectScheme = [] { selectScheme(false, false); },
                              .selectTestScheme = [] { selectTestScheme(false, false); },
                              .selectDevice = selectDevice});
}

void enterFullScreen() {
  useFullBuffering();
  hideCursor();
  flushPendingInput();
  enterRawMode();
  flushOutput();
}

void drawViewSwitchBox() {
  const auto option = [](const char* digit, std::string_view key) {
    return "[" + std::string(digit) + "]  " + std::string(localized(key));
  };
  drawOverlayBox(localized("view_switch_title"),
                 {"", option("1", "view_switch_option_halyard"), option("2", "view_switch_option_directory"), ""},
                 localized("dirview_overlay_cancel"), "[X]");
}

void drawBody(MainLoopState& state) {
  switch (state.activeView) {
    case AppViewMode::halyard: drawMenu(state.menu, state.cursor); break;
    case AppViewMode::directory: drawDirectoryView(); break;
    case AppViewMode::git: drawGitView(); break;
  }
}

void prepareRound(MainLoopState& state, Menu (*build)()) {
  if (state.activeView == AppViewMode::halyard) {
    if (state.needsFullRedraw) {
      detectProject();
      state.menu = build();
    }
    clampCursors(state.menu, state.cursor);
  } else if (state.activeView == AppViewMode::directory) {
    prepareDirectoryView();
  } else {
    prepareGitView();
  }
}

/// True where a search or filter of the directory view runs: it reads the keyboard itself.
bool runDirectoryStep(MainLoopState& state) {
  if (state.activeView != AppViewMode::directory) return false;
  const DirectoryAppMode mode = directoryAppMode();
  if (mode != DirectoryAppMode::searching && mode != DirectoryAppMode::filterRunning) return false;
  mode == DirectoryAppMode::searching ? runDirectorySearchStep() : runDirectoryFilterStep();
  state.needsFullRedraw = takeScreenDamage();
  return true;
}

void readAndDispatch(MainLoopState& state) {
  const RawKey key = readKey();
  if (takeScreenDamage()) {
    state.needsFullRedraw = true;
    if (key.kind == RawKey::Kind::unknown) return;
  }
  if (key.kind == RawKey::Kind::unknown && inputEnded()) {
    waitForSignal();
    state.needsFullRedraw = false;
    return;
  }
  dispatchKey(state, key);
}

}  // namespace

void runInPlainTerminal(const std::function<void()>& action) {
  flushOutput();
  useLineBuffering();
  leaveRawMode();
  showCursor();
  flushOutput();
  setSuppressBackPrompt(false);
  action();
  flushOutput();
  useFullBuffering();
  flushPendingInput();
  resetHeaderCache();
  enterRawMode();
  hideCursor();
  flushOutput();
}

void drawFrame(MainLoopState& state) {
  beginFrame();
  if (!state.needsFullRedraw) print(Cursor::home);
  const bool isMenu = state.activeView == AppViewMode::halyard;
  drawHeader(state.needsFullRedraw, isMenu ? std::optional(menuLeftWidth) : std::nullopt, !isMenu, headerNotice(state));
  drawBody(state);
  // Before the boxes: they leave the cursor at a row that a low terminal doesn't have.
  print(Cursor::eraseBelow);
  if (state.activeView == AppViewMode::directory) drawDirectoryOverlay();
  if (isMenu && state.menuHelpOpen) drawHelpBox(state.menuHelpEntry, helpTopRow, helpTextRows, state.menuHelpScroll);
  if (state.viewSwitchOverlayOpen) drawViewSwitchBox();
  endFrame();
}

void runMainLoop(Menu (*build)()) {
  MainLoopState state;
  std::error_code error;
  state.launchDirectory = std::filesystem::current_path(error).string();
  state.runAction = runInPlainTerminal;
  state.quit = quitWithGoodbye;
  clearScreen();
  print("\n  ⏳  Please wait …\n\n");
  flushOutput();
  loadStringCatalog({});
  installShell(state);
  loadPreferences();
  enterSavedWorkingDirectory();
  detectProject();
  enterFullScreen();
  state.menu = build();
  for (;;) {
    prepareRound(state, build);
    drawFrame(state);
    if (!runDirectoryStep(state)) readAndDispatch(state);
  }
}

}  // namespace halyard
