// For tests: a piece of the program in a child process that has a pseudo-terminal as its keyboard and screen.
#pragma once

#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include "core/string_catalog.hpp"
#include "halyard/terminal/output.hpp"
#include "tests/support/process_inspection.hpp"
#include "tests/support/pseudo_terminal.hpp"

namespace halyard {

/// What `work` prints to standard output.
inline std::string printedBy(const std::function<void()>& work) {
  flushOutput();
  testing::internal::CaptureStdout();
  work();
  flushOutput();
  return testing::internal::GetCapturedStdout();
}

/// The texts of the catalog, in English.
inline void useEnglish() {
  loadStringCatalog({});
  setCurrentLanguage("en");
}

/// Makes the process a session leader with the terminal of this name on its standard streams.
inline void takeTerminal(const std::string& name) {
  setsid();
  const int terminal = open(name.c_str(), O_RDWR);
  if (terminal < 0) _exit(120);
  ioctl(terminal, TIOCSCTTY, 0);
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(terminal, standard);
}

/// Runs `work` in a child on a terminal of its own; its result is the exit status. The child is ended with the object.
class ForkedTerminal {
 public:
  explicit ForkedTerminal(const std::function<int()>& work, int rows = 24, int columns = 100)
      : terminal_(rows, columns), settingsBefore_(terminal_.settings()) {
    std::fflush(nullptr);
    process_ = fork();
    if (process_ != 0) return;
    // The other side is the test's alone: otherwise the child would keep its own terminal from hanging up.
    ::close(terminal_.descriptor());
    takeTerminal(terminal_.name());
    const int status = work();
    flushOutput();
    _exit(status);
  }
  ~ForkedTerminal() {
    if (process_ <= 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  ForkedTerminal(const ForkedTerminal&) = delete;
  ForkedTerminal& operator=(const ForkedTerminal&) = delete;

  [[nodiscard]] pid_t process() const { return process_; }
  [[nodiscard]] const std::string& output() const { return output_; }
  PseudoTerminal& terminal() { return terminal_; }

  void type(std::string_view bytes) {
    ASSERT_EQ(write(terminal_.descriptor(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }

  /// Waits until the output holds the text.
  testing::AssertionResult shows(std::string_view text) {
    return waitUntil([&] { return output_.find(text) != std::string::npos; }, "output: " + std::string(text));
  }

  /// Waits until the child waits for its keyboard and has taken all that was typed.
  testing::AssertionResult waitsForKeys() {
    if (!canInspectProcesses()) std::this_thread::sleep_for(std::chrono::milliseconds(200));
    return waitUntil(
        [&] {
          return terminal_.pendingInput() == 0 &&
                 (!canInspectProcesses() || blockedReader(process_, terminal_.name()).has_value());
        },
        "a wait for keys");
  }

  testing::AssertionResult stops() {
    return waitUntil(
        [&] {
          int status = 0;
          return waitpid(process_, &status, WNOHANG | WUNTRACED) == process_ && WIFSTOPPED(status);
        },
        "a stop");
  }

  /// Waits for the end.
  ProgramEnd end() {
    ProgramEnd result;
    EXPECT_TRUE(waitUntil(
        [&] {
          int status = 0;
          if (waitpid(process_, &status, WNOHANG) != process_) return false;
          process_ = 0;
          result =
              WIFSIGNALED(status) ? ProgramEnd::signaled(WTERMSIG(status)) : ProgramEnd::exited(WEXITSTATUS(status));
          return true;
        },
        "the end"));
    collect(0);
    return result;
  }

  [[nodiscard]] bool settingsAreAsBefore() const { return sameTerminalSettings(settingsBefore_, terminal_.settings()); }

 private:
  /// Takes what the child has printed, waiting for it up to some milliseconds.
  void collect(int milliseconds) {
    if (terminal_.descriptor() < 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
      return;
    }
    pollfd waiting{terminal_.descriptor(), POLLIN, 0};
    while (poll(&waiting, 1, milliseconds) > 0 && (waiting.revents & POLLIN) != 0) {
      char buffer[4096];
      const ssize_t count = read(terminal_.descriptor(), buffer, sizeof buffer);
      if (count <= 0) return;
      output_.append(buffer, static_cast<std::size_t>(count));
      milliseconds = 0;
    }
  }

  testing::AssertionResult waitUntil(const std::function<bool()>& reached, const std::string& what) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    for (;;) {
      if (reached()) return testing::AssertionSuccess();
      if (std::chrono::steady_clock::now() > deadline) break;
      collect(2);
    }
    return testing::AssertionFailure() << "never came: " << what << "\noutput so far: " << output_;
  }

  PseudoTerminal terminal_;
  termios settingsBefore_;
  pid_t process_ = 0;
  std::string output_;
};

}  // namespace halyard
