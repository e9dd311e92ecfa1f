// The file browser at a terminal of its own, in a child process that reports what it returned.
#include <array>
#include <chrono>
#include <functional>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/terminal/file_browser.hpp"
#include "halyard/terminal/output.hpp"
#include "tests/support/in_memory_file_system.hpp"
#include "tests/support/pseudo_terminal.hpp"
#include "tests/support/terminal_screen.hpp"

namespace halyard {
namespace {

int saveCount = 0;

std::string browseAndReport(const std::vector<std::string>& extensions) {
  installPreferencesSaver([] { ++saveCount; });
  const std::optional<std::string> chosen = browseFiles("Pick", extensions);
  installPreferencesSaver(nullptr);
  return chosen.value_or("nothing") + " | " + selectedFileBrowserPath() + " | " + std::to_string(saveCount);
}

class BrowserSession {
 public:
  BrowserSession() {
    for (const char* file : {"/work/App.xcodeproj/project.pbxproj", "/work/sources/main.swift", "/work/notes.txt"}) {
      files_.addFile(file);
    }
    loadStringCatalog({});
  }
  ~BrowserSession() {
    if (process_ > 0) {
      kill(process_, SIGKILL);
      waitpid(process_, nullptr, 0);
      close(report_);
    }
  }
  BrowserSession(const BrowserSession&) = delete;
  BrowserSession& operator=(const BrowserSession&) = delete;

  /// `prepare` runs in the child before the browser opens.
  void start(const std::function<void(InMemoryFileSystem&)>& prepare, std::vector<std::string> extensions = {}) {
    before = terminal.settings();
    std::array<int, 2> pipeEnds{};
    ASSERT_EQ(pipe(pipeEnds.data()), 0);
    process_ = fork();
    ASSERT_GE(process_, 0);
    if (process_ == 0) {
      takeTerminal();
      const DependenciesGuard guard({.commandRunner = nullptr, .fileSystemClient = &files_, .appContext = nullptr});
      AppContext::shared().reset();
      prepare(files_);
      const std::string result = browseAndReport(extensions);
      flushOutput();
      const ssize_t written = write(pipeEnds[1], result.data(), result.size());
      _exit(written == static_cast<ssize_t>(result.size()) ? 0 : 1);
    }
    close(pipeEnds[1]);
    report_ = pipeEnds[0];
  }

  void type(std::string_view keys) const {
    EXPECT_EQ(write(terminal.descriptor(), keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }

  [[nodiscard]] bool waitFor(const std::function<bool()>& seen) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!seen()) {
      if (std::chrono::steady_clock::now() > deadline) {
        ADD_FAILURE() << screen.text();
        return false;
      }
      readOutput(20);
    }
    return true;
  }
  [[nodiscard]] bool waitFor(std::string_view text) {
    return waitFor([&] { return screen.contains(text); });
  }

  /// What the browser returned, once it has.
  std::string result() {
    int status = -1;
    const bool ended = waitFor([&] { return waitpid(process_, &status, WNOHANG) == process_; });
    if (!ended) return "still browsing";
    process_ = 0;
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    while (readOutput(0)) {
    }
    std::array<char, 1024> text{};
    const ssize_t count = read(report_, text.data(), text.size());
    close(report_);
    return {text.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
  }

  PseudoTerminal terminal{24, 80};
  TerminalScreen screen{24, 80};
  termios before{};

 private:
  void takeTerminal() const {
    setsid();
    const int device = open(terminal.name().c_str(), O_RDWR);
    ioctl(device, TIOCSCTTY, 0);
    dup2(device, STDIN_FILENO);
    dup2(device, STDOUT_FILENO);
  }

  bool readOutput(int milliseconds) {
    pollfd output{.fd = terminal.descriptor(), .events = POLLIN, .revents = 0};
    if (poll(&output, 1, milliseconds) <= 0) return false;
    std::array<char, 4096> bytes{};
    const ssize_t count = read(terminal.descriptor(), bytes.data(), bytes.size());
    if (count <= 0) return false;
    screen.feed({bytes.data(), static_cast<std::size_t>(count)});
    return true;
  }

  InMemoryFileSystem files_;
  pid_t process_ = 0;
  int report_ = -1;
};

void beginAtWork(InMemoryFileSystem&) { setSelectedFileBrowserPath("/work"); }

TEST(FileBrowserTerminal, KeysLeadToAFileAndItsFolderIsRemembered) {
  BrowserSession session;
  session.start(beginAtWork);
  ASSERT_TRUE(session.waitFor("▶ App.xcodeproj"));
  session.type("\x1b[B");
  ASSERT_TRUE(session.waitFor("▶ sources/"));
  session.type("\x1b[C");
  ASSERT_TRUE(session.waitFor("▶ main.swift"));
  session.type("\r");
  EXPECT_EQ(session.result(), "/work/sources/main.swift | /work/sources | 1");
}

TEST(FileBrowserTerminal, TheTerminalIsRawWithoutACursorMeanwhileAndAsBeforeAfterwards) {
  BrowserSession session;
  session.start(beginAtWork);
  ASSERT_TRUE(session.waitFor("▶ App.xcodeproj"));
  EXPECT_EQ(session.terminal.settings().c_lflag & static_cast<tcflag_t>(ICANON | ECHO), 0U);
  EXPECT_FALSE(session.screen.cursorVisible());
  session.type("s");
  EXPECT_EQ(session.result(), "/work/App.xcodeproj | /work | 1");
  EXPECT_TRUE(sameTerminalSettings(session.terminal.settings(), session.before));
  EXPECT_TRUE(session.screen.cursorVisible());
  EXPECT_EQ(session.screen.text(), "");
}

TEST(FileBrowserTerminal, XAndEscAndEveryOtherSequenceCancelAndLeaveNothingBehind) {
  for (const char* keys : {"x", "X", "\x1b", "\x1b[1;5A", "\x1bOA", "\x1b[3~"}) {
    BrowserSession session;
    session.start(beginAtWork);
    ASSERT_TRUE(session.waitFor("▶ App.xcodeproj"));
    session.type(keys);
    EXPECT_EQ(session.result(), "nothing | /work | 0") << keys;
    EXPECT_EQ(session.terminal.pendingInput(), 0) << keys;
    EXPECT_TRUE(sameTerminalSettings(session.terminal.settings(), session.before)) << keys;
  }
}

TEST(FileBrowserTerminal, WithoutARememberedFolderItBeginsInTheWorkingDirectory) {
  BrowserSession session;
  session.start([](InMemoryFileSystem&) {
    setSelectedFileBrowserPath("/gone");
    setSelectedWorkingDirectory("/work/sources");
  });
  ASSERT_TRUE(session.waitFor("▶ main.swift"));
  session.type("\x7f");
  ASSERT_TRUE(session.waitFor("▶ sources/"));
  session.type("w");
  ASSERT_TRUE(session.waitFor("▶ main.swift"));
  session.type("x");
  EXPECT_EQ(session.result(), "nothing | /gone | 0");
}

TEST(FileBrowserTerminal, AShorterScreenLeavesNoRowsOfTheLastOne) {
  BrowserSession session;
  session.start(beginAtWork, {".xcodeproj"});
  ASSERT_TRUE(session.waitFor("▶ App.xcodeproj"));
  EXPECT_TRUE(session.screen.contains("Looking for: .xcodeproj"));
  session.type("\x1b[B\r");
  ASSERT_TRUE(session.waitFor("No entries available"));
  EXPECT_FALSE(session.screen.contains("App.xcodeproj"));
  session.type("\x1b[D");
  ASSERT_TRUE(session.waitFor("▶ sources/"));
  session.type("x");
  EXPECT_EQ(session.result(), "nothing | /work | 0");
}

TEST(FileBrowserTerminal, AResizedTerminalIsDrawnAnewWithoutAKey) {
  BrowserSession session;
  session.start([](InMemoryFileSystem& files) {
    for (int index = 10; index < 60; ++index) files.addFile("/many/file" + std::to_string(index));
    setSelectedFileBrowserPath("/many");
  });
  ASSERT_TRUE(session.waitFor("▶ file10"));
  EXPECT_FALSE(session.screen.contains("file40"));
  session.screen.resize(40, 60);
  session.terminal.resize(40, 60);
  ASSERT_TRUE(session.waitFor("file40"));
  EXPECT_TRUE(session.screen.row(39).ends_with("x Back"));
  session.type("x");
  EXPECT_EQ(session.result(), "nothing | /many | 0");
}

TEST(FileBrowserTerminal, ATerminalOfTwentyColumnsAndTenRowsIsEnough) {
  BrowserSession session;
  session.terminal.resize(10, 20);
  session.screen.resize(10, 20);
  session.start(beginAtWork, {".xcodeproj"});
  ASSERT_TRUE(session.waitFor("▶ App.xcodeproj"));
  ASSERT_TRUE(session.waitFor("x Back"));
  EXPECT_TRUE(session.screen.row(0).starts_with("── Pick"));
  session.type("x");
  EXPECT_EQ(session.result(), "nothing | /work | 0");
}

TEST(FileBrowserTerminal, TheEndOfInputCancels) {
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    InMemoryFileSystem files{std::getenv("HOME")};
    files.addFile("/work/notes.txt");
    const DependenciesGuard guard({.commandRunner = nullptr, .fileSystemClient = &files, .appContext = nullptr});
    setSelectedFileBrowserPath("/work");
    alarm(10);
    _exit(browseFiles("Pick", {}).has_value() ? 1 : 0);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

}  // namespace
}  // namespace halyard
