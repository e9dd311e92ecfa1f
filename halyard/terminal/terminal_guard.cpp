#include "halyard/terminal/terminal_guard.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <string_view>

#include <pthread.h>
#include <unistd.h>

#include "halyard/platform/processes.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/terminal_restore.hpp"

namespace halyard {

namespace {

/// The one record that signal handlers read. `original` is complete before `depth` becomes 1; `current` is written with
/// the handlers that read it held off.
struct GuardRecord {
  termios original{};
  termios current{};
  std::atomic<int> depth = 0;
  std::atomic<bool> pasteOpen = false;
  std::atomic<bool> cursorHidden = false;
  std::atomic<bool> damaged = false;
  std::atomic<bool> wakeUp = false;
};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

GuardRecord guard;
pthread_t mainThread;

void writeRaw(std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t written = write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void applySettings(const termios& settings, int when) noexcept {
  while (tcsetattr(STDIN_FILENO, when, &settings) != 0 && errno == EINTR) {
  }
}

/// In the background the terminal is the shell's, and so are its settings.
bool ownsTerminal() noexcept {
  const pid_t foreground = tcgetpgrp(STDIN_FILENO);
  return foreground < 0 || foreground == getpgrp();
}

void undoChanges() noexcept {
  if (guard.depth.load() > 0 && ownsTerminal()) applySettings(guard.original, TCSANOW);
  if (guard.pasteOpen.load()) writeRaw(Cursor::bracketedPasteOff);
  writeRaw(Cursor::show);
}

void redoChanges() noexcept {
  if (!ownsTerminal()) return;
  if (guard.depth.load() > 0) applySettings(guard.current, TCSANOW);
  if (guard.pasteOpen.load()) writeRaw(Cursor::bracketedPasteOn);
  if (guard.cursorHidden.load()) writeRaw(Cursor::hide);
  guard.damaged.store(true);
  guard.wakeUp.store(true);
}

void setHandling(int signal, void (*handler)(int), int flags = 0) noexcept {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  // No handler interrupts another; and with SIGTTOU held, a dying background process isn't stopped by its own farewell.
  sigfillset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

void raiseByDefault(int signal) noexcept {
  setHandling(signal, SIG_DFL);
  sigset_t only;
  sigemptyset(&only);
  sigaddset(&only, signal);
  sigset_t before;
  pthread_sigmask(SIG_UNBLOCK, &only, &before);
  raise(signal);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

/// The blocked read is the main thread's, so a signal that landed on another thread is passed on.
bool passedToMainThread(int signal) noexcept {
  if (pthread_equal(pthread_self(), mainThread) != 0) return false;
  pthread_kill(mainThread, signal);
  return true;
}

void onDeadlySignal(int signal) { dieBySignal(signal); }

/// Then its handler follows, and does what is to be done after a stop.
bool resumeIsPending() noexcept {
  sigset_t pending;
  return sigpending(&pending) == 0 && sigismember(&pending, SIGCONT) == 1;
}

void onStop(int signal) {
  const int savedError = errno;
  if (!passedToMainThread(signal)) {
    undoChanges();
    raiseByDefault(signal);
    setHandling(signal, onStop);
    // The stop had no effect, as in an orphaned process group.
    if (!resumeIsPending()) redoChanges();
  }
  errno = savedError;
}

void onResume(int signal) {
  const int savedError = errno;
  if (!passedToMainThread(signal)) redoChanges();
  errno = savedError;
}

void onResize(int signal) {
  const int savedError = errno;
  if (!passedToMainThread(signal)) {
    guard.damaged.store(true);
    guard.wakeUp.store(true);
  }
  errno = savedError;
}

struct Handling {
  int signal;
  void (*handler)(int);
  int flags = 0;  ///< never SA_RESTART: a blocked read must hear of it
};

constexpr auto handlings = std::to_array<Handling>({
    {SIGINT, onDeadlySignal},
    {SIGTERM, onDeadlySignal},
    {SIGHUP, onDeadlySignal},
    {SIGQUIT, onDeadlySignal},
    {SIGPIPE, onDeadlySignal},
    {SIGALRM, onDeadlySignal},
    {SIGUSR1, onDeadlySignal},
    {SIGUSR2, onDeadlySignal},
    {SIGXCPU, onDeadlySignal},
    {SIGXFSZ, onDeadlySignal},
    {SIGABRT, onDeadlySignal, SA_ONSTACK},
    {SIGSEGV, onDeadlySignal, SA_ONSTACK},
    {SIGBUS, onDeadlySignal, SA_ONSTACK},
    {SIGFPE, onDeadlySignal, SA_ONSTACK},
    {SIGILL, onDeadlySignal, SA_ONSTACK},
    {SIGSYS, onDeadlySignal, SA_ONSTACK},
    {SIGTSTP, onStop},
    {SIGCONT, onResume},
    {SIGWINCH, onResize},
});

using IgnoredSignals = std::array<bool, handlings.size()>;

/// Asked before the first handler stands: what the parent had switched off (nohup) stays off.
IgnoredSignals signalsIgnoredAtStart() {
  IgnoredSignals ignored{};
  for (std::size_t i = 0; i < handlings.size(); ++i) {
    struct sigaction present {};
    sigaction(handlings[i].signal, nullptr, &present);
    ignored[i] = (present.sa_flags & SA_SIGINFO) == 0 && present.sa_handler == SIG_IGN;
  }
  return ignored;
}

/// Room for the handler of a stack overflow.
void provideAlternateStack() {
  stack_t present{};
  if (sigaltstack(nullptr, &present) == 0 && (present.ss_flags & SS_DISABLE) == 0) return;
  alignas(16) static std::array<char, 65536> room;
  stack_t stack{};
  stack.ss_sp = room.data();
  stack.ss_size = room.size();
  sigaltstack(&stack, nullptr);
}

bool hasForeignHandler(int signal) {
  struct sigaction present {};
  sigaction(signal, nullptr, &present);
  return (present.sa_flags & SA_SIGINFO) != 0 || (present.sa_handler != SIG_DFL && present.sa_handler != SIG_IGN);
}

void installHandlers(bool alsoOverForeignInterrupt) {
  static const IgnoredSignals ignored = [] {
    mainThread = pthread_self();
    provideAlternateStack();
    return signalsIgnoredAtStart();
  }();
  for (std::size_t i = 0; i < handlings.size(); ++i) {
    const Handling& row = handlings[i];
    if (ignored[i]) {
      setHandling(row.signal, SIG_IGN);
    } else if (alsoOverForeignInterrupt || row.signal != SIGINT || !hasForeignHandler(SIGINT)) {
      setHandling(row.signal, row.handler, row.flags);
    }
  }
}

void restoreAtExit() {
  flushOutput();
  undoChanges();
  guard.depth.store(0);
}

/// Once per process. A handler that stands for the interrupt is a running command's and stays.
void prepareRestoring() {
  static const bool prepared = [] {
    registerExitCursorRestore();
    installHandlers(false);
    return true;
  }();
  static_cast<void>(prepared);
}

}  // namespace

TerminalSettingsChange::TerminalSettingsChange(void (*change)(termios&), int when)
    : when_(when), isTerminal_(tcgetattr(STDIN_FILENO, &saved_) == 0) {
  prepareRestoring();
  if (!isTerminal_) return;
  termios wanted = saved_;
  change(wanted);
  const InterruptionsHeld held;
  if (guard.depth.load() == 0) guard.original = saved_;
  guard.current = wanted;
  guard.depth.fetch_add(1);
  applySettings(wanted, when_);
}

TerminalSettingsChange::~TerminalSettingsChange() {
  if (!isTerminal_) return;
  const InterruptionsHeld held;
  applySettings(saved_, when_);
  guard.current = saved_;
  guard.depth.fetch_sub(1);
}

void reassertTerminalSettings() {
  if (guard.depth.load() > 0) applySettings(guard.current, TCSANOW);
}

void setBracketedPaste(bool on) {
  if (on) guard.pasteOpen.store(true);
  print(on ? Cursor::bracketedPasteOn : Cursor::bracketedPasteOff);
  flushOutput();
  if (!on) guard.pasteOpen.store(false);
}

void hideCursor() {
  noteCursorHidden(true);
  print(Cursor::hide);
  flushOutput();
}

void showCursor() {
  print(Cursor::show);
  flushOutput();
  noteCursorHidden(false);
}

void noteCursorHidden(bool hidden) noexcept { guard.cursorHidden.store(hidden); }

bool cursorNotedHidden() noexcept { return guard.cursorHidden.load(); }

void dieBySignal(int signal) noexcept {
  undoChanges();
  signalDescendants(SIGTERM);
  raiseByDefault(signal);
  // Reached where the signal can't end the process, as in the first process of a container.
  _exit(128 + signal);
}

bool takeWakeUp() noexcept { return guard.wakeUp.exchange(false); }

bool takeScreenDamage() { return guard.damaged.exchange(false); }

void installTerminalSignalHandlers() { installHandlers(true); }

void registerExitCursorRestore() {
  static const bool registered = std::atexit(restoreAtExit) == 0;
  static_cast<void>(registered);
}

InterruptionsHeld::InterruptionsHeld() noexcept {
  sigset_t held;
  sigemptyset(&held);
  for (const int signal : {SIGWINCH, SIGTSTP, SIGCONT}) sigaddset(&held, signal);
  pthread_sigmask(SIG_BLOCK, &held, &before_);
}

InterruptionsHeld::~InterruptionsHeld() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

}  // namespace halyard
