#include "halyard/shell/preflight.hpp"

#include <gmock/gmock.h>
#include <unistd.h>

#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/shell_fixture.hpp"
#include "tests/support/typed_input.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* whichXcodebuild = "which xcodebuild 2>/dev/null";
constexpr const char* whichGit = "which git 2>/dev/null";

class Preflight : public ShellTest {
 protected:
  /// The process ends in it; what it printed is to be found in its standard error.
  static void runInChild(bool mock) {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    runPreflight(mock);
  }
};

TEST_F(Preflight, ReturnsWithoutAWordWhereAllToolsExist) {
  runner.answers = {{whichXcodebuild, "/usr/bin/xcodebuild"}, {whichGit, "/usr/bin/git"}};
  testing::internal::CaptureStdout();
  runPreflight(false);
  flushOutput();
  EXPECT_THAT(testing::internal::GetCapturedStdout(), IsEmpty());
  EXPECT_THAT(runner.commands, ElementsAre(whichXcodebuild, whichGit));
}

TEST_F(Preflight, AToolExistsWhereWhichNamesIt) {
  runner.answers = {{"which swiftlint 2>/dev/null", "/opt/bin/swiftlint"}};
  EXPECT_TRUE(toolExists("swiftlint"));
  EXPECT_FALSE(toolExists("pod"));
}

TEST_F(Preflight, AMissingToolIsShownAndEnterQuitsWithStatusOne) {
  runner.answers = {{whichGit, "/usr/bin/git"}};
  const TypedInput typed("\n");
  EXPECT_EXIT(runInChild(false), ExitedWithCode(1),
              AllOf(HasSubstr("\x1b[31m✗ Not found\x1b[0m  \x1b[1mxcodebuild      \x1b[0m"),
                    HasSubstr("\x1b[32m✓          \x1b[0m  \x1b[1mgit             \x1b[0m"),
                    HasSubstr("\x1b[2mVersion control (included in CLT)           \x1b[0m"), Not(HasSubstr("[MOCK]"))));
}

TEST_F(Preflight, TheScreenTellsWhatToDo) {
  const TypedInput typed("\n");
  EXPECT_EXIT(runInChild(false), ExitedWithCode(1),
              AllOf(HasSubstr("System Requirements"), HasSubstr("── Required Tools "), HasSubstr("── How to fix "),
                    HasSubstr("\x1b[1;34m→\x1b[0m Install Xcode from the App Store or Developer Portal:\n"
                              "     \x1b[2mhttps://developer.apple.com/xcode/\x1b[0m"),
                    HasSubstr("     \x1b[2mxcode-select --install\x1b[0m"),
                    HasSubstr("     \x1b[2msudo xcode-select -s /Applications/Xcode.app\x1b[0m"),
                    HasSubstr("Press Enter to quit …")));
}

TEST_F(Preflight, TheMockShowsAllToolsAsMissingAndLooksNoneUp) {
  runner.answers = {{whichXcodebuild, "/usr/bin/xcodebuild"}, {whichGit, "/usr/bin/git"}};
  const TypedInput typed("\n");
  EXPECT_EXIT(
      {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        atexit([] {
          // The runner of this very process: it must not have been asked.
          print(std::to_string(
                    static_cast<TableCommandRunner*>(AppDependencies::current().commandRunner)->commands.size()) +
                " look-ups\n");
          flushOutput();
        });
        runPreflight(true);
      },
      ExitedWithCode(1),
      AllOf(HasSubstr("\x1b[1;33m⚠  [MOCK] Test mode — tools are simulated as missing"),
            HasSubstr("✗ Not found\x1b[0m  \x1b[1mxcodebuild "), HasSubstr("✗ Not found\x1b[0m  \x1b[1mgit "),
            Not(HasSubstr("✓")), HasSubstr("0 look-ups")));
}

TEST_F(Preflight, TheEndOfInputQuitsToo) {
  const TypedInput typed("");
  EXPECT_EXIT(runInChild(true), ExitedWithCode(1), HasSubstr("Press Enter to quit"));
}

}  // namespace
}  // namespace halyard
