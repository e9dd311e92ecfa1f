#include "halyard/terminal/keys.hpp"

#include <csignal>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/app_context.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/line_input.hpp"
#include "halyard/terminal/terminal_guard.hpp"
#include "halyard/terminal/terminal_testing.hpp"

namespace halyard {
namespace {

using Kind = RawKey::Kind;

// ---- raw mode

bool isRaw(const termios& settings) {
  return (settings.c_lflag & (ICANON | ECHO | ECHOE | ECHONL)) == 0 && (settings.c_lflag & ISIG) != 0 &&
         settings.c_cc[VMIN] == 1 && settings.c_cc[VTIME] == 0;
}

TEST(RawMode, EnteringTwiceAndLeavingOnceBringsTheOriginalBack) {
  ForkedTerminal child([] {
    termios before{};
    termios raw{};
    termios after{};
    tcgetattr(0, &before);
    enterRawMode();
    enterRawMode();
    tcgetattr(0, &raw);
    const bool wasActive = rawModeActive();
    leaveRawMode();
    tcgetattr(0, &after);
    leaveRawMode();
    return wasActive && isRaw(raw) && sameTerminalSettings(before, after) && !rawModeActive() ? 0 : 1;
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
  EXPECT_TRUE(child.settingsAreAsBefore());
}

TEST(RawMode, OnlyTheNamedFlagsChange) {
  ForkedTerminal child([] {
    termios before{};
    termios raw{};
    tcgetattr(0, &before);
    enterRawMode();
    tcgetattr(0, &raw);
    raw.c_lflag |= before.c_lflag & (ICANON | ECHO | ECHOE | ECHONL);
    return raw.c_iflag == before.c_iflag && raw.c_oflag == before.c_oflag && raw.c_lflag == before.c_lflag ? 0 : 1;
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(RawMode, AKeyReadInItLeavesItOn) {
  ForkedTerminal child([] {
    enterRawMode();
    print("ready");
    flushOutput();
    const RawKey key = readKey();
    return key.is("k") && rawModeActive() ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  child.type("k");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(RawMode, AKeyReadOutsideItRestoresTheSettings) {
  ForkedTerminal child([] {
    print("ready");
    flushOutput();
    const RawKey key = readKey();
    termios now{};
    tcgetattr(0, &now);
    return key.kind == Kind::up && (now.c_lflag & ICANON) != 0 && (now.c_lflag & ECHO) != 0 ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  EXPECT_FALSE(child.settingsAreAsBefore());
  child.type("\x1b[A");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(RawMode, ALoneEscapeComesAfterATenthOfASecond) {
  ForkedTerminal child([] {
    print("ready");
    flushOutput();
    const RawKey key = readKey();
    return key.kind == Kind::escape ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  const auto pressed = std::chrono::steady_clock::now();
  child.type("\x1b");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
  EXPECT_LT(std::chrono::steady_clock::now() - pressed, std::chrono::seconds(5));
}

TEST(RawMode, KeysAsStrings) {
  ForkedTerminal child([] {
    enterRawMode();
    print("ready");
    flushOutput();
    std::string keys;
    for (int i = 0; i < 3; ++i) keys += "<" + readKeyChar() + ">";
    return keys == "<\n><a><>" ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  child.type("\ra\x1b[A");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(RawMode, PendingInputIsDropped) {
  ForkedTerminal child([] {
    enterRawMode();
    print("ready");
    flushOutput();
    readKey();
    // The rest of the burst is there by now: it was typed in one piece.
    flushPendingInput();
    print("flushed");
    flushOutput();
    return readKey().is("z") ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  child.type("abc");
  ASSERT_TRUE(child.shows("flushed"));
  child.type("z");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

// ---- the end of the process

enum class Mode { raw, oneKey, editor, cooked };

int workIn(Mode mode) {
  switch (mode) {
    case Mode::raw:
      enterRawMode();
      hideCursor();
      print("ready");
      flushOutput();
      readKey();
      return 1;
    case Mode::oneKey:
      print("ready");
      flushOutput();
      readKey();
      return 1;
    case Mode::editor: readPastedText(); return 1;
    case Mode::cooked: {
      // As while a child runs that shares the terminal: line mode on top of raw mode.
      enterRawMode();
      const TerminalSettingsChange change([](termios& settings) { settings.c_lflag |= ICANON | ECHO; }, TCSANOW);
      print("ready");
      flushOutput();
      readLine();
      return 1;
    }
  }
  return 1;
}

class TerminalAfterSignal : public testing::TestWithParam<std::tuple<int, Mode>> {};

TEST_P(TerminalAfterSignal, IsAsItWasAndTheSignalIsTheCause) {
  const auto [signal, mode] = GetParam();
  ForkedTerminal child([mode = mode] { return workIn(mode); });
  ASSERT_TRUE(child.shows(mode == Mode::editor ? "\x1b[?2004h" : "ready"));
  ASSERT_TRUE(child.waitsForKeys());
  EXPECT_FALSE(child.settingsAreAsBefore());
  kill(child.process(), signal);
  EXPECT_EQ(child.end(), ProgramEnd::signaled(signal));
  EXPECT_TRUE(child.settingsAreAsBefore());
  EXPECT_TRUE(child.output().ends_with("\x1b[?25h")) << child.output();
  EXPECT_EQ(child.output().find("\x1b[?2004l") != std::string::npos, mode == Mode::editor);
}

std::string signalCaseName(const testing::TestParamInfo<std::tuple<int, Mode>>& info) {
  constexpr std::array<const char*, 4> modes = {"Raw", "OneKey", "Editor", "Cooked"};
  return "Signal" + std::to_string(std::get<0>(info.param)) + modes[static_cast<std::size_t>(std::get<1>(info.param))];
}

INSTANTIATE_TEST_SUITE_P(EachMode, TerminalAfterSignal,
                         testing::Combine(testing::Values(SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGSEGV, SIGABRT, SIGBUS,
                                                          SIGFPE, SIGILL, SIGPIPE, SIGUSR1),
                                          testing::Values(Mode::raw, Mode::oneKey, Mode::editor, Mode::cooked)),
                         signalCaseName);

TEST(TerminalRestore, CtrlCEndsTheProcessAsASignal) {
  ForkedTerminal child([] { return workIn(Mode::raw); });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  child.type("\x03");
  EXPECT_EQ(child.end(), ProgramEnd::signaled(SIGINT));
  EXPECT_TRUE(child.settingsAreAsBefore());
}

TEST(TerminalRestore, AnExitBringsTheSettingsBackToo) {
  ForkedTerminal child([]() -> int {
    enterRawMode();
    hideCursor();
    print("last words");
    exit(7);
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(7));
  EXPECT_TRUE(child.settingsAreAsBefore());
  EXPECT_TRUE(child.output().ends_with("last words\x1b[?25h")) << child.output();
}

TEST(TerminalRestore, TheCursorShowsAtTheExitEvenWithoutRawMode) {
  ForkedTerminal child([]() -> int {
    registerExitCursorRestore();
    registerExitCursorRestore();
    exit(0);
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
  EXPECT_EQ(child.output(), "\x1b[?25h");
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
int overflow(int depth) {
  volatile char room[4096] = {};
  room[static_cast<std::size_t>(depth) % sizeof room] = 1;
  return depth < 0 ? 0 : overflow(depth + 1) + room[0];
}

TEST(TerminalRestore, AStackOverflowRestoresToo) {
  ForkedTerminal child([] {
    enterRawMode();
    return overflow(0);
  });
  EXPECT_EQ(child.end(), ProgramEnd::signaled(SIGSEGV));
  EXPECT_TRUE(child.settingsAreAsBefore());
}
#endif

TEST(TerminalRestore, ASignalIgnoredAtTheStartStaysIgnored) {
  ForkedTerminal child([] {
    signal(SIGHUP, SIG_IGN);
    enterRawMode();
    installTerminalSignalHandlers();
    print("ready");
    flushOutput();
    return readKey().is("k") ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  kill(child.process(), SIGHUP);
  child.type("k");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(TerminalRestore, TheHandlersCanBePutBackOverAnother) {
  ForkedTerminal child([] {
    enterRawMode();
    signal(SIGINT, [](int) {});
    installTerminalSignalHandlers();
    print("ready");
    flushOutput();
    readKey();
    return 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  kill(child.process(), SIGINT);
  EXPECT_EQ(child.end(), ProgramEnd::signaled(SIGINT));
  EXPECT_TRUE(child.settingsAreAsBefore());
}

TEST(TerminalRestore, NoChildIsLeft) {
  int ends[2] = {};
  ASSERT_EQ(pipe(ends), 0);
  ForkedTerminal child([&] {
    close(ends[0]);
    if (fork() == 0) {
      setpgid(0, 0);  // out of reach of the terminal's own signals
      for (;;) pause();
    }
    close(ends[1]);
    return workIn(Mode::raw);
  });
  close(ends[1]);
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  kill(child.process(), SIGTERM);
  EXPECT_EQ(child.end(), ProgramEnd::signaled(SIGTERM));
  // The grandchild held the other end of the pipe.
  pollfd waiting{ends[0], POLLIN, 0};
  EXPECT_EQ(poll(&waiting, 1, 20000), 1);
  EXPECT_TRUE(waiting.revents & POLLHUP);
  close(ends[0]);
}

// ---- stops and resizes

/// Goes on like a shell with its job: waits for its stop, looks at the terminal, puts it in the foreground again.
int superviseJob(const std::function<int()>& job, const std::function<bool()>& whileStopped) {
  signal(SIGTTOU, SIG_IGN);
  int start[2] = {};
  if (pipe(start) != 0) return 90;
  const pid_t child = fork();
  if (child == 0) {
    signal(SIGTTOU, SIG_DFL);
    char go = 0;
    setpgid(0, 0);
    if (read(start[0], &go, 1) != 1) _exit(91);
    _exit(job());
  }
  setpgid(child, child);
  tcsetpgrp(0, child);
  if (write(start[1], "g", 1) != 1) return 92;
  int status = 0;
  waitpid(child, &status, WUNTRACED);
  if (!WIFSTOPPED(status) || WSTOPSIG(status) != SIGTSTP) return 93;
  tcsetpgrp(0, getpgrp());
  if (!whileStopped()) return 94;
  tcsetpgrp(0, child);
  kill(child, SIGCONT);
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 95;
}

TEST(JobControl, AStoppedProcessGivesTheTerminalBackAndTakesItAgain) {
  ForkedTerminal child([] {
    termios before{};
    tcgetattr(0, &before);
    return superviseJob(
        [] {
          enterRawMode();
          hideCursor();
          print("ready");
          flushOutput();
          const RawKey woken = readKey();
          termios settings{};
          tcgetattr(0, &settings);
          const bool damaged = takeScreenDamage();
          const bool damagedAgain = takeScreenDamage();
          print("resumed");
          flushOutput();
          return woken.kind == Kind::unknown && isRaw(settings) && damaged && !damagedAgain && readKey().is("k") ? 0
                                                                                                                 : 1;
        },
        [&] {
          termios settings{};
          tcgetattr(0, &settings);
          return sameTerminalSettings(before, settings);
        });
  });
  ASSERT_TRUE(child.shows("ready"));
  child.type("\x1a");
  ASSERT_TRUE(child.shows("resumed"));
  child.type("k");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
  const std::size_t shown = child.output().find("ready\x1b[?25h");
  ASSERT_NE(shown, std::string::npos) << child.output();
  EXPECT_NE(child.output().find("\x1b[?25l", shown), std::string::npos) << child.output();
}

TEST(JobControl, AProcessStoppedByForceTakesItsModeAgain) {
  ForkedTerminal child([] {
    enterRawMode();
    print("ready");
    flushOutput();
    const RawKey woken = readKey();
    termios settings{};
    tcgetattr(0, &settings);
    return woken.kind == Kind::unknown && isRaw(settings) && takeScreenDamage() && !takeScreenDamage() ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  kill(child.process(), SIGSTOP);
  ASSERT_TRUE(child.stops());
  const int terminal = open(child.terminal().name().c_str(), O_RDWR | O_NOCTTY);
  termios shells = child.terminal().settings();
  shells.c_lflag |= ICANON | ECHO;
  tcsetattr(terminal, TCSANOW, &shells);
  close(terminal);
  kill(child.process(), SIGCONT);
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(JobControl, AVisibleCursorStaysVisibleAfterAStop) {
  ForkedTerminal child([] {
    return superviseJob(
        [] {
          enterRawMode();
          hideCursor();
          showCursor();
          print("ready");
          flushOutput();
          readKey();
          return 0;
        },
        [] { return true; });
  });
  ASSERT_TRUE(child.shows("ready"));
  child.type("\x1a");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
  EXPECT_EQ(child.output().find("\x1b[?25l", child.output().find("ready")), std::string::npos) << child.output();
}

TEST(JobControl, AResizeWakesAKeyReadAndDamagesTheScreenOnce) {
  ForkedTerminal child([] {
    enterRawMode();
    print("ready");
    flushOutput();
    const RawKey woken = readKey();
    const bool damaged = takeScreenDamage() && !takeScreenDamage();
    print("woken");
    flushOutput();
    return woken.kind == Kind::unknown && damaged && !inputEnded() && readKey().is("k") ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  child.terminal().resize(30, 90);
  ASSERT_TRUE(child.shows("woken"));
  child.type("k");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(JobControl, AResizeWhileDrawingIsNotMissedByTheNextRead) {
  ForkedTerminal child([] {
    enterRawMode();
    raise(SIGWINCH);
    return readKey().kind == Kind::unknown && takeScreenDamage() ? 0 : 1;
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(JobControl, AResizeIsNoAnswerToAQuestion) {
  ForkedTerminal child([] {
    enterRawMode();
    print("ready");
    flushOutput();
    return readKeyChar() == "y" ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  child.terminal().resize(30, 90);
  ASSERT_TRUE(child.waitsForKeys());
  child.type("y");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(JobControl, AnotherSignalDoesNotWakeAKeyRead) {
  ForkedTerminal child([] {
    enterRawMode();
    struct sigaction action {};
    action.sa_handler = [](int) {};
    sigaction(SIGCHLD, &action, nullptr);
    print("ready");
    flushOutput();
    return readKey().is("k") && !takeScreenDamage() ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  kill(child.process(), SIGCHLD);
  child.type("k");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

// ---- the end of input

TEST(EndOfInput, IsUnknownAndNoted) {
  ForkedTerminal child([] {
    const bool before = inputEnded();
    dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
    const RawKey key = readKey();
    return !before && key.kind == Kind::unknown && inputEnded() && readKeyChar().empty() ? 0 : 1;
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(EndOfInput, AnotherInputIsNotAtItsEnd) {
  ForkedTerminal child([] {
    int ends[2] = {};
    dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
    readKey();
    if (!inputEnded() || pipe(ends) != 0 || write(ends[1], "k", 1) != 1) return 1;
    dup2(ends[0], STDIN_FILENO);
    return !inputEnded() && readKey().is("k") && !inputEnded() ? 0 : 2;
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(EndOfInput, ATerminalThatIsGoneEndsTheProcessAsByItsHangUp) {
  ForkedTerminal child([] {
    enterRawMode();
    signal(SIGHUP, [](int) {});
    print("ready");
    flushOutput();
    readKey();
    return 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  child.terminal().close();
  EXPECT_EQ(child.end(), ProgramEnd::signaled(SIGHUP));
}

TEST(EndOfInput, CtrlDAtALineIsNotTheEndOfTheKeyboard) {
  ForkedTerminal child([] {
    print("ready");
    flushOutput();
    const auto line = readLine();
    print("next");
    flushOutput();
    return !line && !inputEnded() && readKey().is("k") ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  child.type("\x04");
  ASSERT_TRUE(child.shows("next"));
  ASSERT_TRUE(child.waitsForKeys());
  child.type("k");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(EndOfInput, WaitingForASignalSleeps) {
  ForkedTerminal child([] {
    installTerminalSignalHandlers();
    dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
    print("ready");
    flushOutput();
    waitForSignal();
    return takeScreenDamage() ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  // The signal may come before the sleep does, so it comes until it has been heard.
  for (int i = 0; i < 200; ++i) {
    kill(child.process(), SIGWINCH);
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    siginfo_t info{};
    if (waitid(P_PID, static_cast<id_t>(child.process()), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
        info.si_pid != 0) {
      break;
    }
  }
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

}  // namespace
}  // namespace halyard
