// The program's spine: draws the active view, reads one key, acts on it.
#pragma once

#include <functional>

#include "halyard/shell/main_loop_state.hpp"

namespace halyard {

/// Sets the program up in its folder and runs until the user quits; never returns. `build` makes the tree of the menu.
[[noreturn]] void runMainLoop(Menu (*build)() = buildMenu);

/// The one way of leaving full-screen mode: gives the plain terminal to the action and takes it back.
void runInPlainTerminal(const std::function<void()>& action);

/// One frame of the state, in one piece.
void drawFrame(MainLoopState& state);

}  // namespace halyard
