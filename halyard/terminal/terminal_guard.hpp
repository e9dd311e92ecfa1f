// What this process has changed on its terminal, kept so that a signal handler can undo and redo it. Everything that
// changes the terminal's settings goes through here: however the process ends, the terminal comes back as it was.
#pragma once

#include <csignal>

#include <termios.h>

namespace halyard {

/// Other settings for the terminal of descriptor 0 while it lives. Changes may be nested; death by a signal brings back
/// what stood before the outermost, and a stopped process finds the innermost again when it goes on. The first change
/// puts the signal handlers and the exit routine in place.
class TerminalSettingsChange {
 public:
  /// `change` turns the present settings into the wanted ones. `when` as tcsetattr(3) takes it, at both ends.
  TerminalSettingsChange(void (*change)(termios&), int when);
  ~TerminalSettingsChange();
  TerminalSettingsChange(const TerminalSettingsChange&) = delete;
  TerminalSettingsChange& operator=(const TerminalSettingsChange&) = delete;

  /// False where descriptor 0 is no terminal: then nothing was changed and nothing will be.
  [[nodiscard]] bool isTerminal() const { return isTerminal_; }

 private:
  termios saved_{};
  int when_;
  bool isTerminal_;
};

/// Applies the wanted settings once more, in case a child left others behind.
void reassertTerminalSettings();

/// Bracketed paste, with the sequence that switches it; a dying or stopping process switches it off.
void setBracketedPaste(bool on);

/// Whether the cursor is to be hidden again when the process goes on after a stop.
void noteCursorHidden(bool hidden) noexcept;
bool cursorNotedHidden() noexcept;

/// Undoes every change, shows the cursor, ends the children and dies by the signal, whatever its handling was.
[[noreturn]] void dieBySignal(int signal) noexcept;

/// True once after a resume or a resize that came since the last call: a blocked read has to return for it.
bool takeWakeUp() noexcept;

/// Keeps the signals that interrupt a system call without ending the process away from this thread for its lifetime.
class InterruptionsHeld {
 public:
  InterruptionsHeld() noexcept;
  ~InterruptionsHeld();
  InterruptionsHeld(const InterruptionsHeld&) = delete;
  InterruptionsHeld& operator=(const InterruptionsHeld&) = delete;

  /// The mask to wait with: what was held off is let through for as long as pselect(2) waits, and not a moment before.
  [[nodiscard]] const sigset_t& before() const { return before_; }

 private:
  sigset_t before_;
};

}  // namespace halyard
