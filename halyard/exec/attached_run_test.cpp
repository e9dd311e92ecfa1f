// Runs with the terminal, the wait for a boot, and how both are reached.
#include <cstdlib>
#include <string>
#include <vector>

#include <fcntl.h>
#include <termios.h>

#include "halyard/exec/run_testing.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// Standard input is a terminal of our own.
class TerminalAsInput {
 public:
  TerminalAsInput() : saved_(dup(STDIN_FILENO)), screen_(posix_openpt(O_RDWR | O_NOCTTY)) {
    grantpt(screen_);
    unlockpt(screen_);
    const int keyboard = open(ptsname(screen_), O_RDWR | O_NOCTTY);
    dup2(keyboard, STDIN_FILENO);
    close(keyboard);
  }
  ~TerminalAsInput() {
    dup2(saved_, STDIN_FILENO);
    close(saved_);
    close(screen_);
  }
  TerminalAsInput(const TerminalAsInput&) = delete;
  TerminalAsInput& operator=(const TerminalAsInput&) = delete;

 private:
  int saved_;
  int screen_;
};

struct AttachedRun : Runs {
  ~AttachedRun() override { setenv("PATH", path.c_str(), 1); }
  /// Puts a tool of this content first in the search path.
  void installXcrun(const std::string& script) {
    std::filesystem::permissions(folder.write("xcrun", "#!/bin/bash\n" + script), std::filesystem::perms::owner_all);
    setenv("PATH", (folder.at() + ":" + path).c_str(), 1);
  }

  std::string path = std::getenv("PATH");
};

TEST_F(AttachedRun, TheTerminalIsInLineModeAroundACookedRunAndAsBeforeAfterwards) {
  const TerminalAsInput terminal;
  termios raw{};
  ASSERT_EQ(tcgetattr(STDIN_FILENO, &raw), 0);
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ECHOE);
  raw.c_cc[VMIN] = 1;
  ASSERT_EQ(tcsetattr(STDIN_FILENO, TCSANOW, &raw), 0);
  const CapturedOutput output;
  EXPECT_EQ(runAttachedCooked("stty -a; exit 6"), 6);
  EXPECT_THAT(output.text(), HasSubstr(" icanon"));
  EXPECT_THAT(output.text(), Not(HasSubstr("-icanon")));
  EXPECT_THAT(output.text(), HasSubstr(" echo "));
  EXPECT_THAT(output.text(), HasSubstr("-echoe")) << "other flags stay";
  termios after{};
  ASSERT_EQ(tcgetattr(STDIN_FILENO, &after), 0);
  EXPECT_EQ(after.c_lflag, raw.c_lflag);
}

TEST_F(AttachedRun, AnAttachedRunLeavesTheTerminalsModeAlone) {
  const TerminalAsInput terminal;
  termios raw{};
  tcgetattr(STDIN_FILENO, &raw);
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  tcsetattr(STDIN_FILENO, TCSANOW, &raw);
  const CapturedOutput output;
  EXPECT_EQ(runAttached("stty -a"), 0);
  EXPECT_THAT(output.text(), HasSubstr("-icanon"));
}

TEST_F(AttachedRun, WithoutATerminalACookedRunIsAnAttachedOne) {
  const int saved = dup(STDIN_FILENO);
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  EXPECT_EQ(runAttachedCooked("exit 5"), 5);
  dup2(saved, STDIN_FILENO);
  close(saved);
  close(nothing);
}

TEST_F(AttachedRun, TheWaitForABootAsksTheToolAndShowsItsProgress) {
  installXcrun("printf '%s|' \"$@\" > " + quoted("words") +
               "\nprintf 'Monitoring boot status\\n\\tWaiting on Backboard\\r'; echo hidden >&2; sleep 0.2\n"
               "printf '\\t \\n'; sleep 0.1; exit 9\n");
  const CapturedOutput output;
  runner.waitForSimulatorBoot("it's", "");
  EXPECT_EQ(folder.read("words"), "simctl|bootstatus|it's|-b|");
  EXPECT_THAT(output.text(), HasSubstr("Waiting on Backboard"));
  EXPECT_THAT(output.text(), Not(HasSubstr("Monitoring")));
  EXPECT_THAT(output.text(), Not(HasSubstr("hidden")));
  EXPECT_FALSE(operationAborted());
}

TEST_F(AttachedRun, TheWaitForABootHasTheGivenLabelOrTheUsualOne) {
  installXcrun("sleep 0.15");
  {
    const CapturedOutput output;
    runner.waitForSimulatorBoot("id", "");
    EXPECT_THAT(output.text(), HasSubstr("Booting Simulator"));
  }
  const CapturedOutput output;
  runner.waitForSimulatorBoot("id", "My label");
  EXPECT_THAT(output.text(), HasSubstr("My label"));
}

TEST_F(AttachedRun, ProgressFromOutsideCannotDriveTheTerminal) {
  installXcrun("printf '\\t\\033[2Jgone\\n'; sleep 0.2");
  const CapturedOutput output;
  runner.waitForSimulatorBoot("id", "");
  EXPECT_THAT(output.text(), HasSubstr("gone"));
  EXPECT_THAT(output.text(), Not(HasSubstr("\x1b[2J")));
}

/// Notes what it is asked for and starts nothing.
struct NotedRuns : CommandRunning {
  std::string run(const std::string& command) override { return words.push_back("run " + command), "output"; }
  std::int32_t runLive(const std::string& command) override { return words.push_back("live " + command), 3; }
  PipeRunResult runLivePipe(const std::string&, const StopTest&, const LineHandler&, double) override { return {}; }

  std::vector<std::string> words;
};

struct NotedAttachedRuns final : NotedRuns, AttachedCommandRunning {
  std::int32_t runWithTimeout(const std::string& command, double timeout) override {
    return words.push_back("limited " + command + " " + std::to_string(static_cast<int>(timeout))), 4;
  }
  std::int32_t runAttached(const std::string& command) override { return words.push_back("attached " + command), 5; }
  void waitForSimulatorBoot(const std::string& udid, const std::string& label) override {
    words.push_back("boot " + udid + " " + label);
  }
};

TEST_F(AttachedRun, ASubstituteWithTheseRunsGetsThem) {
  NotedAttachedRuns substitute;
  const DependenciesGuard guard({.commandRunner = &substitute, .fileSystemClient = nullptr, .appContext = nullptr});
  EXPECT_EQ(runWithTimeout("a"), 4);
  EXPECT_EQ(runAttached("b"), 5);
  EXPECT_EQ(runAttachedCooked("c"), 5);
  waitForSimulatorBoot("id", "label");
  EXPECT_THAT(substitute.words, ElementsAre("limited a 120", "attached b", "attached c", "boot id label"));
}

TEST_F(AttachedRun, ASubstituteWithoutThemGetsTheOperationsThatItHas) {
  NotedRuns substitute;
  const DependenciesGuard guard({.commandRunner = &substitute, .fileSystemClient = nullptr, .appContext = nullptr});
  const CapturedOutput output;
  EXPECT_EQ(runWithTimeout("a", 5), 3);
  EXPECT_EQ(runAttached("b"), 3);
  waitForSimulatorBoot("id", "label");
  EXPECT_THAT(substitute.words,
              ElementsAre("live a", "live b", "run xcrun simctl bootstatus 'id' -b 2>/dev/null; true"));
}

TEST_F(AttachedRun, WithoutAnInstalledRunnerTheRealOneServes) {
  const DependenciesGuard guard({});
  const CapturedOutput output;
  EXPECT_EQ(runAttached("exit 6"), 6);
  EXPECT_EQ(runWithTimeout("exit 7", 10), 7);
}

}  // namespace
}  // namespace halyard
