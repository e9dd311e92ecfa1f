#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "halyard/shell/menu_drawing.hpp"
#include "halyard/shell/menu_model.hpp"
#include "halyard/shell/space_hold.hpp"
#include "halyard/terminal/help_box.hpp"

namespace halyard {

/// The top-level views.
enum class AppViewMode { halyard, directory, git };

/// What the loop knows between two keys. None of it is saved.
struct MainLoopState {
  AppViewMode activeView = AppViewMode::halyard;
  Menu menu;
  MenuCursor cursor;
  bool needsFullRedraw = true;  ///< clear the screen and rebuild the menu before the next frame
  bool viewSwitchOverlayOpen = false;
  bool menuHelpOpen = false;
  int menuHelpScroll = 0;
  HelpText menuHelpEntry;
  std::string launchDirectory;  ///< where the directory browser first opens

  SpaceHold spaceHold;
  std::function<SpaceHold::TimePoint()> now = std::chrono::steady_clock::now;

  /// Runs a row's action outside full-screen mode; a test puts its own here.
  std::function<void(const std::function<void()>&)> runAction;
  std::function<void()> quit;
};

}  // namespace halyard
