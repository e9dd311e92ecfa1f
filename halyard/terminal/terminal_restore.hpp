// The terminal as its user left it, however and whenever the process stops.
#pragma once

namespace halyard {

/// True once after each resume (SIGCONT) or resize (SIGWINCH): the frame on the screen can't be trusted.
bool takeScreenDamage();

/// Registers, once, with atexit: the cursor shows again.
void registerExitCursorRestore();
/// Puts the handlers in place that restore the terminal, end the children and die by the same signal. The first raw
/// mode does it; the command runner restores these after its own SIGINT handler. A signal that was ignored when the
/// process started stays ignored. To be called on the main thread first.
void installTerminalSignalHandlers();

/// The cursor is hidden in the full-screen state and behind a spinner. A process that goes on after a stop hides it
/// again if it was hidden by these.
void hideCursor();
void showCursor();

}  // namespace halyard
