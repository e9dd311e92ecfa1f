#include "halyard/packages/package_live_run.hpp"

#include "core/text.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/packages/packages_testing.hpp"
#include "tests/support/terminal_screen.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class PackageLiveRun : public PackagesTest {
 protected:
  PackageRun run{.tool = PackageTool::cocoaPods,
                 .title = "Run pod install",
                 .command = "pod install",
                 .timeout = 600,
                 .successText = "Synchronized.",
                 .failureText = "It failed.",
                 .seed = [this] {
                   ++seeded;
                   return packageTable(std::vector<PodInfo>{{"Harbor", "1"}, {"Rope", "1"}});
                 }};
  int seeded = 0;
  bool succeeded = false;

  std::string shownWhileTyping(std::string_view keys) {
    return shown(keys, [this] { succeeded = runPackagesLive(run); });
  }
};

TEST_F(PackageLiveRun, TheRowsFollowTheOutputAndASuccessEndsWithItsResult) {
  runner.expect("pod install", "Analyzing dependencies\nInstalling Harbor (1)\nPod installation complete! All.\n");
  const std::string screen = shownWhileTyping("");
  EXPECT_TRUE(succeeded);
  EXPECT_THAT(screen, AllOf(HasSubstr("  · Harbor\n  · Rope\n"), HasSubstr("  ◌ Harbor\n  ◌ Rope\n"),
                            HasSubstr("  ✓ Harbor\n  ◌ Rope\n"), HasSubstr("  ✓ Harbor\n  ✓ Rope\n"),
                            HasSubstr("CocoaPods   2/2"), HasSubstr("✅  Synchronized.")));
  EXPECT_THAT(screen, Not(HasSubstr("Retry loading")));
  EXPECT_THAT(runner.limits(), testing::ElementsAre(600));
}

TEST_F(PackageLiveRun, AQuietSuccessClosesTheRowsToo) {
  runner.expect("pod install");
  EXPECT_THAT(shownWhileTyping(""), AllOf(HasSubstr("  ✓ Harbor\n  ✓ Rope\n"), HasSubstr("✅  Synchronized.")));
}

TEST_F(PackageLiveRun, AFailureShowsItsErrorLinesAndCanBeTriedAgain) {
  runner.expect("pod install", "Analyzing\n[!] No \x1b[2J network\n", 1)
      .expect("pod install", "Analyzing\nPod installation complete!\n");
  const std::string screen = shownWhileTyping("\n7\n01\n");
  EXPECT_TRUE(succeeded);
  EXPECT_EQ(seeded, 2);
  EXPECT_THAT(screen, AllOf(HasSubstr("  ✗ Harbor\n"), HasSubstr("✗ It failed.\n    [!] No ␛[2J network\n"),
                            HasSubstr("[01] Retry loading\n  [x] Back\n"), HasSubstr("✅  Synchronized.")));
  EXPECT_EQ(occurrences(screen, "Retry loading"), 3U);
}

TEST_F(PackageLiveRun, ABackAfterAFailureLeaves) {
  for (const char* keys : {"x\n", "q\n", ""}) {
    runner.expect("pod install", "a\n[!] b\n", 1);
    EXPECT_THAT(shownWhileTyping(keys), Not(HasSubstr("✅")));
    EXPECT_FALSE(succeeded);
  }
}

TEST_F(PackageLiveRun, AnErrorLineAloneIsNoFailure) {
  // Pods tell remarks in the same form, and frameworks that can't be downloaded are built instead.
  runner.expect("pod install", "a\nUsing Harbor\nUsing Rope\n[!] Please close Xcode.\n", 0);
  EXPECT_THAT(shownWhileTyping(""), AllOf(HasSubstr("✅"), Not(HasSubstr("It failed."))));
}

TEST_F(PackageLiveRun, AnAbortLeavesAtOnceAndKeepsTheFlag) {
  runner.expect("pod install", "a\n", 2).whenCalled([] { setOperationAborted(true); });
  EXPECT_THAT(shownWhileTyping(""), AllOf(Not(HasSubstr("Retry loading")), Not(HasSubstr("✅"))));
  EXPECT_FALSE(succeeded);
  EXPECT_TRUE(operationAborted());
}

TEST_F(PackageLiveRun, WithoutKnownPackagesThereIsATitleAndTheSpinner) {
  run.seed = {};
  runner.expect("pod install", "Analyzing\nInstalling Harbor\n");
  EXPECT_THAT(shownWhileTyping(""), AllOf(HasSubstr("▶  CocoaPods\n"), HasSubstr("✅  Synchronized.")));
}

TEST_F(PackageLiveRun, LinesOfARealChildComeOnItsOwnThread) {
  DefaultCommandRunner real;
  const DependenciesGuard guard({&real, &context.files, &AppContext::shared()});
  run.command = "for n in $(seq 300); do echo \"Using Harbor ($n)\"; done; sleep 0.2; echo 'Installing Rope (1)'";
  const std::string screen = shownWhileTyping("");
  EXPECT_TRUE(succeeded);
  EXPECT_THAT(screen, AllOf(HasSubstr("  ✓ Harbor\n  ◌ Rope\n"), HasSubstr("  ✓ Harbor\n  ✓ Rope\n")));
}

TEST_F(PackageLiveRun, ATimeLimitIsAFailureThatNamesIt) {
  DefaultCommandRunner real;
  const DependenciesGuard guard({&real, &context.files, &AppContext::shared()});
  run.command = "echo Analyzing; sleep 5";
  run.timeout = 1;
  const std::string screen = shownWhileTyping("x\n");
  EXPECT_FALSE(succeeded);
  EXPECT_THAT(screen.substr(screen.rfind("CocoaPods")),
              AllOf(HasSubstr("⏱ Operation aborted after 1 seconds (timeout)."), HasSubstr("✗ It failed.\n"),
                    HasSubstr("[01] Retry loading")));
}

/// Standard output of a test is no terminal, so that the line ends are given here as one would.
std::string onScreen(std::string output) {
  replaceAll(output, "\n", "\r\n");
  TerminalScreen screen(24, 80);
  screen.feed("a line of the screen before\r\n");
  screen.feed(output);
  EXPECT_TRUE(screen.cursorVisible());
  return screen.text();
}

TEST_F(PackageLiveRun, LeavesATableAndItsResultOnTheScreen) {
  DefaultCommandRunner real;
  const DependenciesGuard guard({&real, &context.files, &AppContext::shared()});
  run.command = "echo Analyzing; sleep 0.2; echo 'Using Harbor (1)'; sleep 0.2; echo 'Installing Rope (1)'";
  std::string drawn;
  {
    const CapturedOutput output;
    runPackagesLive(run);
    drawn = output.text();
  }
  EXPECT_EQ(onScreen(drawn), "\n  ▶  CocoaPods   2/2\n  " + repeated("─", 75) +
                                 "\n  ✓ Harbor\n  ✓ Rope\n\n    ✅  Synchronized.     Run pod install\n");
}

TEST_F(PackageLiveRun, AnAbortLeavesTheTableAndTheMessageAndNoSpinner) {
  DefaultCommandRunner real;
  const DependenciesGuard guard({&real, &context.files, &AppContext::shared()});
  run.command = "echo Analyzing; sleep 0.3; kill -INT " + std::to_string(getpid()) + "; sleep 5";
  std::string drawn;
  {
    const CapturedOutput output;
    EXPECT_FALSE(runPackagesLive(run));
    drawn = output.text();
  }
  EXPECT_TRUE(operationAborted());
  EXPECT_THAT(onScreen(drawn), HasSubstr("  ✗ Harbor\n  ✗ Rope\n\n\n  ⚠ Operation aborted.\n"));
}

}  // namespace
}  // namespace halyard
