// What each key does, in each view and under each box.
#pragma once

#include "halyard/shell/main_loop_state.hpp"
#include "halyard/terminal/keys.hpp"

namespace halyard {

/// Acts on one key. Afterwards `needsFullRedraw` says whether the next frame starts from a cleared screen.
void dispatchKey(MainLoopState& state, const RawKey& key);

/// Cursors back into the menu and off its separators, scroll offsets to match.
void clampCursors(const Menu& menu, MenuCursor& cursor);

/// The letters that work at the prompt of a sub-menu as they do in the menu.
void installMenuLettersAtPrompts();

}  // namespace halyard
