#include <cstdlib>
#include <string>

#include "halyard/build/build_flow_testing.hpp"
#include "halyard/packages/package_sync.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class QuickReset : public FlowTest {
 public:
  QuickReset& cleaned() {
    runner.expect("rm -rf '" + folder + "'");
    return *this;
  }
};

TEST_F(QuickReset, DeletesTheFolderThenBuildsAndLaunches) {
  known();
  cleaned().built().product().prepared().found().bundleID().installed().launched().window();
  const std::string text = shown(quickResetBuildAndLaunch, "jx");
  EXPECT_THAT(text, HasSubstr("▶  Clean (without PM) & Build & Launch"));
  EXPECT_THAT(text, HasSubstr("Clean (without PM) & Build & Launch? [j/N] j"));
  EXPECT_THAT(text, HasSubstr("▸ Step 1/3 — Delete DerivedData\n"
                              "  ℹ Deleting DerivedData … DerivedData/CapstanLightBuild-Harbor\n"
                              "  ✓ DerivedData deleted. DerivedData/CapstanLightBuild-Harbor\n"));
  EXPECT_THAT(text, HasSubstr("▸ Step 2/3 — Build [Debug]\n  ℹ Ctrl+C to stop\n"));
  EXPECT_THAT(text, HasSubstr("▸ Step 3/3 — Start App\n"));
  EXPECT_THAT(text, HasSubstr("App running! Bundle ID: com.example.Harbor"));
  EXPECT_THAT(text, HasSubstr("Build Timeline — Clean (without PM) & Build & Launch"));
  EXPECT_THAT(text, AllOf(HasSubstr("🧹 Clean"), HasSubstr("🔨 Build"), HasSubstr("▶ Launch")));
}

TEST_F(QuickReset, BringsTheMacsAppUpWithoutASimulator) {
  selectMac();
  const std::string_view pattern = "*/Build/Products/Debug/*";
  cleaned().built("platform=macOS").product(pattern).found(pattern);
  runner.expect("defaults read '" + app + "/Contents/Info' CFBundleIdentifier 2>/dev/null", "com.example.Harbor");
  runner.expect("open '" + app + "'");
  EXPECT_THAT(shown(quickResetBuildAndLaunch, "jx"), AllOf(HasSubstr("App running!"), HasSubstr(backPrompt)));
}

TEST_F(QuickReset, AHomeThatIsNoneEndsItWithNothingDeleted) {
  known();
  const char* set = std::getenv("HOME");
  const std::string home = set == nullptr ? "" : set;
  setenv("HOME", "", 1);
  const std::string text = shown(quickResetBuildAndLaunch, "jx");
  setenv("HOME", home.c_str(), 1);
  EXPECT_THAT(text, AllOf(HasSubstr("HOME="), HasSubstr("🧹 Clean"), HasSubstr("✗"), HasSubstr(backPrompt)));
  EXPECT_THAT(text, AllOf(Not(HasSubstr("DerivedData deleted")), Not(HasSubstr("Step 2/3"))));
}

TEST_F(QuickReset, NoAppFailsTheLaunch) {
  known();
  cleaned().built();
  runner.expect(findCommand());
  prepared();
  runner.expect(findCommand());
  const std::string text = shown(quickResetBuildAndLaunch, "jx");
  EXPECT_THAT(text, HasSubstr("The build was probably not successful."));
  EXPECT_THAT(text, HasSubstr("For SPM issues: run 'Delete all (incl. SPM)'."));
  EXPECT_THAT(text, HasSubstr("Scheme: Harbor | Search path: DerivedData/CapstanLightBuild-Harbor"));
  EXPECT_THAT(text, AllOf(HasSubstr("▶ Launch"), HasSubstr("✗"), HasSubstr(backPrompt)));
}

TEST_F(QuickReset, NoBundleIdentifierFailsTheLaunch) {
  known();
  cleaned().built().product().prepared().found().bundleID("");
  const std::string text = shown(quickResetBuildAndLaunch, "jx");
  EXPECT_THAT(text, HasSubstr("Could not read Bundle ID from the app."));
  EXPECT_THAT(text, HasSubstr("Reason:  Info.plist is missing or corrupted.\n"));
}

TEST_F(QuickReset, AFailedBuildStopsIt) {
  known();
  cleaned().buildFails();
  EXPECT_THAT(shown(quickResetBuildAndLaunch, "jx"), AllOf(HasSubstr("BUILD FAILED"), Not(HasSubstr("Step 3/3"))));
}

TEST_F(QuickReset, AnAbortInEachPhaseStopsItWithTheReport) {
  known();
  cleaned().aborted();
  EXPECT_THAT(shown(quickResetBuildAndLaunch, "jx"),
              AllOf(HasSubstr("Build Timeline"), Not(HasSubstr("Step 2/3")), Not(HasSubstr("DerivedData deleted."))));
  known();
  cleaned().built().aborted();
  EXPECT_THAT(shown(quickResetBuildAndLaunch, "jx"), AllOf(HasSubstr("Build Timeline"), Not(HasSubstr("Step 3/3"))));
  known();
  cleaned().built().product();
  runner.expect("xcrun simctl boot 'UDID-1' 2>/dev/null; true");
  aborted();
  EXPECT_THAT(shown(quickResetBuildAndLaunch, "jx"), AllOf(HasSubstr("Build Timeline"), HasSubstr("Step 3/3"),
                                                           Not(HasSubstr("App running")), Not(HasSubstr(backPrompt))));
}

TEST_F(QuickReset, AnAbortOfSomethingBeforeIsNotItsOwn) {
  setOperationAborted(true);
  known();
  cleaned().buildFails();
  EXPECT_THAT(shown(quickResetBuildAndLaunch, "jx"), HasSubstr("DerivedData deleted."));
}

TEST_F(QuickReset, ADeclinedQuestionDeletesNothing) {
  known();
  EXPECT_THAT(shown(quickResetBuildAndLaunch, "n"), Not(HasSubstr("Step 1/3")));
}

TEST_F(QuickReset, ADigitIsAYes) {
  setLaunchedByHotkey(true);
  known();
  cleaned().buildFails();
  EXPECT_THAT(shown(quickResetBuildAndLaunch, "x"), Not(HasSubstr("[j/N]")));
}

class FullReset : public FlowTest {
 public:
  /// The search for packages, with what it finds.
  FullReset& detected(const std::string& package) {
    runner.expectContaining("find . \\( -name 'Package.swift'", package);
    return *this;
  }
  FullReset& xcodeCachesDeleted() {
    runner.expect("rm -rf '" + folder + "'")
        .expect("rm -rf ~/Library/Developer/Xcode/ModuleCache")
        .expect("rm -rf ~/Library/Developer/CoreSimulator/Caches")
        .expect("rm -rf ~/Library/Caches/com.apple.dt.Xcode");
    return *this;
  }
  FullReset& packageCachesDeleted() {
    runner.expect("rm -rf ~/Library/Caches/org.swift.swiftpm").expect("rm -rf '" + folder + "'/SourcePackages");
    return *this;
  }
  FullReset& resolved(std::int32_t status = 0, const std::string& output = "resolved source packages: Tides\n") {
    runner.expect(
        "xcodebuild -project '/w/Harbor.xcodeproj' -scheme 'Harbor' -resolvePackageDependencies "
        "-derivedDataPath '" +
            folder + "' 2>&1",
        output, status);
    return *this;
  }
};

TEST_F(FullReset, DeletesResolvesBuildsAndLaunches) {
  known();
  detected("./Package.swift").xcodeCachesDeleted().packageCachesDeleted().resolved();
  built().product().prepared().found().bundleID().installed().launched().window();
  const std::string text = shown(fullResetBuildAndLaunch, "jx");
  EXPECT_THAT(text, HasSubstr("Start Clean (incl. PM) & Build & Launch? [j/N] j"));
  EXPECT_THAT(text, HasSubstr("▸ Step 1/4 — Delete Caches\n"
                              "  ℹ Delete Derived Data (DerivedData/CapstanLightBuild-Harbor)\n"
                              "  ℹ Deleting Module Cache …\n"
                              "  ℹ Deleting Simulator Cache …\n"
                              "  ℹ Deleting Xcode Caches …\n"
                              "  ℹ Deleting SPM Cache …\n"
                              "  ℹ Deleting SPM SourcePackages …\n"
                              "  ✓ All directories deleted.\n"));
  EXPECT_THAT(text, HasSubstr("▸ Step 2/4 — Resolve SPM Packages\n  ℹ Ctrl+C to stop\n"));
  EXPECT_THAT(text, HasSubstr("✓ Packages resolved."));
  EXPECT_THAT(text, AllOf(HasSubstr("Step 3/4 — Build [Debug]"), HasSubstr("Step 4/4 — Launch App")));
  EXPECT_THAT(text, AllOf(HasSubstr("📦 Resolve"), HasSubstr("📦 PM-Sync"), HasSubstr("⊘")));
  EXPECT_THAT(text, HasSubstr("App running! Bundle ID: com.example.Harbor"));
}

TEST_F(FullReset, WithoutSwiftPackagesTheStepsKeepTheirNumbers) {
  known();
  detected("").xcodeCachesDeleted().buildFails();
  const std::string text = shown(fullResetBuildAndLaunch, "jx");
  EXPECT_THAT(text, AllOf(HasSubstr("Step 1/4"), Not(HasSubstr("Step 2/4")), HasSubstr("Step 3/4")));
  EXPECT_THAT(text, HasSubstr("PM-Sync"));
}

TEST_F(FullReset, ThePodsAreSynchronizedAndAFailureOfThemDoesNotStopTheBuild) {
  files.addFile("Podfile");
  known();
  detected("").xcodeCachesDeleted();
  runner.expect("rm -rf ~/Library/Caches/CocoaPods").expectContaining("which", "/usr/local/bin/pod");
  runner.expectContaining("pod install", "[!] no\n", 1);
  buildFails();
  const std::string text = shown(fullResetBuildAndLaunch, "jx");
  EXPECT_THAT(text, HasSubstr("Deleting CocoaPods cache …"));
  EXPECT_THAT(text, HasSubstr("Continuing build despite package manager sync failure."));
  EXPECT_THAT(text, HasSubstr("Step 3/4"));
}

TEST_F(FullReset, UnresolvedPackagesStopIt) {
  known();
  detected("./Package.swift").xcodeCachesDeleted().packageCachesDeleted().resolved(74);
  const std::string text = shown(fullResetBuildAndLaunch, "jx");
  EXPECT_THAT(text, HasSubstr("✗ SPM packages could not be resolved:"));
  EXPECT_THAT(text, AllOf(HasSubstr("Build Timeline"), HasSubstr(backPrompt), Not(HasSubstr("Step 3/4"))));
}

TEST_F(FullReset, WhyPackagesAreUnresolvedStandsBelow) {
  known();
  detected("./Package.swift").xcodeCachesDeleted().packageCachesDeleted();
  resolved(74,
           "Fetching from https://example.invalid/Tides.git\n"
           "xcodebuild: error: Could not resolve package dependencies:\n"
           "  Failed to clone repository https://example.invalid/Tides.git:\n"
           "    fatal: \x1b[2JCould not resolve host\n");
  EXPECT_THAT(shown(fullResetBuildAndLaunch, "jx"),
              HasSubstr("✗ SPM packages could not be resolved:\n"
                        "    xcodebuild: error: Could not resolve package dependencies:\n"
                        "      Failed to clone repository https://example.invalid/Tides.git:\n"
                        "        fatal: ␛[2JCould not resolve host\n"));
}

TEST_F(FullReset, ResolvingGetsHalfAnHour) {
  known();
  detected("./Package.swift").xcodeCachesDeleted().packageCachesDeleted().resolved(74);
  shown(fullResetBuildAndLaunch, "jx");
  EXPECT_EQ(runner.limits().back(), 1800);
}

TEST_F(FullReset, NoAppAndNoBundleIdentifierHaveTheirOwnWords) {
  known();
  detected("").xcodeCachesDeleted().built();
  runner.expect(findCommand());
  prepared();
  runner.expect(findCommand());
  const std::string text = shown(fullResetBuildAndLaunch, "jx");
  EXPECT_THAT(text, HasSubstr("Check the build output above for errors.\n"));
  EXPECT_THAT(text, HasSubstr("Scheme: Harbor | Search path: DerivedData/CapstanLightBuild-Harbor"));
  known();
  detected("").xcodeCachesDeleted().built().product().prepared().found().bundleID("");
  EXPECT_THAT(shown(fullResetBuildAndLaunch, "jx"),
              HasSubstr("(iOS: .app/Info.plist, macOS: .app/Contents/Info.plist)"));
}

TEST_F(FullReset, AnAbortInEachPhaseStopsIt) {
  known();
  detected("./Package.swift");
  runner.expect("rm -rf '" + folder + "'").whenCalled([] { setOperationAborted(true); });
  EXPECT_THAT(shown(fullResetBuildAndLaunch, "jx"),
              AllOf(HasSubstr("Build Timeline"), Not(HasSubstr("Deleting Module")), Not(HasSubstr("deleted."))));
  known();
  detected("./Package.swift").xcodeCachesDeleted().packageCachesDeleted().resolved(2).aborted();
  EXPECT_THAT(shown(fullResetBuildAndLaunch, "jx"),
              AllOf(HasSubstr("Build Timeline"), Not(HasSubstr("could not be resolved")), Not(HasSubstr("Step 3/4"))));
  files.addFile("Podfile");
  known();
  detected("").xcodeCachesDeleted();
  runner.expect("rm -rf ~/Library/Caches/CocoaPods").expectContaining("which", "/usr/local/bin/pod");
  runner.expectContaining("pod install", "", 15).whenCalled([] { setOperationAborted(true); });
  EXPECT_THAT(shown(fullResetBuildAndLaunch, "jx"),
              AllOf(HasSubstr("Build Timeline"), Not(HasSubstr("Continuing")), Not(HasSubstr("Step 3/4"))));
}

TEST_F(FullReset, ADeclinedQuestionDeletesNothing) {
  known();
  detected("./Package.swift");
  EXPECT_THAT(shown(fullResetBuildAndLaunch, "n"), Not(HasSubstr("Step 1/4")));
}

}  // namespace
}  // namespace halyard
