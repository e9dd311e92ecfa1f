#include "halyard/packages/package_actions.hpp"

#include "core/string_catalog.hpp"
#include "halyard/packages/packages_testing.hpp"
#include "halyard/terminal/dialogs.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class PackageActions : public PackagesTest {};

TEST_F(PackageActions, TheGraphIsWhatSwiftShows) {
  runner.expect("swift package show-dependencies 2>/dev/null", ".\n├── lantern<https://x@1.0>\n└── b\x1b[2J\n");
  EXPECT_THAT(shown("x", showPackageGraph),
              AllOf(HasSubstr("  .\n  ├── lantern<https://x@1.0>\n  └── b␛[2J\n"), HasSubstr("[X]")));
}

TEST_F(PackageActions, WithoutAGraphThePinsAreShown) {
  for (const char* output : {"", "error: no manifest\n", "warning: 'x': error: y\n"}) {
    pinPackages("lantern");
    runner.expect("swift package show-dependencies 2>/dev/null", output);
    EXPECT_THAT(shown("x", showPackageGraph),
                AllOf(HasSubstr("› lantern  1.2.3  https://example.com/x\n"), Not(HasSubstr("error:"))));
  }
}

TEST_F(PackageActions, WithNeitherThatIsSaid) {
  runner.expect("swift package show-dependencies 2>/dev/null");
  EXPECT_THAT(shown("x", showPackageGraph), HasSubstr("ℹ No SPM dependencies found."));
}

TEST_F(PackageActions, PackageResolvedIsShownAsFound) {
  runner.expect("find . -name 'Package.resolved' -not -path '*/Carthage/*' -not -path '*/Pods/*' 2>/dev/null | head -1",
                "./A b/Package.resolved\n");
  runner.expect("python3 -m json.tool './A b/Package.resolved' 2>/dev/null || cat './A b/Package.resolved'",
                "{\n    \"pins\": []\n}\n");
  EXPECT_THAT(shown("x", showPackageResolved), HasSubstr("  {\n      \"pins\": []\n  }\n"));
  runner.expectContaining("find . -name 'Package.resolved'");
  EXPECT_THAT(shown("x", showPackageResolved), HasSubstr("No Package.resolved found."));
}

struct LiveCase {
  const char* name;
  void (*action)();
  const char* command;
  const char* question;
  const char* success;
};

class LiveActions : public PackagesTest, public testing::WithParamInterface<LiveCase> {};

TEST_P(LiveActions, RunAfterAYes) {
  runner.expect(GetParam().command, "first\nsecond\n");
  EXPECT_THAT(shown("jx", GetParam().action),
              AllOf(HasSubstr(GetParam().question), HasSubstr(GetParam().success), HasSubstr("[X]")));
}

TEST_P(LiveActions, DoNothingAfterANo) {
  EXPECT_THAT(shown("n", GetParam().action), AllOf(HasSubstr("Cancelled"), Not(HasSubstr("[X]"))));
  EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST_P(LiveActions, OfferAnotherTryAfterAFailureAndGoBackOnce) {
  runner.expect(GetParam().command, "first\nerror: no network\n", 1).expect(GetParam().command, "first\nerror: b\n", 1);
  const std::string screen = shown("j1\nx\n", GetParam().action);
  EXPECT_THAT(screen, AllOf(HasSubstr("error: no network"), HasSubstr("[01] Retry loading"), Not(HasSubstr("[X]"))));
  EXPECT_FALSE(suppressBackPrompt());
}

TEST_P(LiveActions, GoBackFromAnAbortAndKeepNothingForTheNextScreen) {
  runner.expect(GetParam().command, {}, 2).whenCalled([] { setOperationAborted(true); });
  EXPECT_THAT(shown("j", GetParam().action), Not(HasSubstr("Retry")));
  EXPECT_FALSE(operationAborted());
  EXPECT_FALSE(suppressBackPrompt());
}

INSTANTIATE_TEST_SUITE_P(
    Commands, LiveActions,
    testing::Values(LiveCase{"ResolvePackages", resolveSPMPackages, "swift package resolve",
                             "Really resolve all SPM packages?", "✅  Packages resolved."},
                    LiveCase{"UpdatePackages", updateSPMPackages, "swift package update",
                             "Really update all SPM packages?", "✅  Packages resolved."},
                    LiveCase{"InstallPods", installPods, "pod install", "Run pod install?",
                             "✅  CocoaPods synchronized."},
                    LiveCase{"UpdatePods", updatePods, "pod update", "Run pod update?", "✅  CocoaPods synchronized."},
                    LiveCase{"Bootstrap", bootstrapFrameworks, "carthage bootstrap --use-xcframeworks",
                             "Run carthage bootstrap?", "✅  Carthage synchronized."},
                    LiveCase{"UpdateFrameworks", updateFrameworks, "carthage update --use-xcframeworks",
                             "Really update all Carthage frameworks?", "✅  Carthage synchronized."}),
    [](const auto& given) { return std::string(given.param.name); });

TEST_F(PackageActions, RowsOfLiveRunsComeFromTheLockFiles) {
  pinPackages("lantern");
  writeLock("Podfile.lock", "PODS:\n  - Rope (1)\n");
  writeLock("Cartfile.resolved", "github \"a/Buoy\" \"1\"\n");
  runner.expect("swift package resolve").expect("pod update").expect("carthage bootstrap --use-xcframeworks");
  EXPECT_THAT(shown("jx", resolveSPMPackages), HasSubstr("· lantern\n"));
  EXPECT_THAT(shown("jx", updatePods), HasSubstr("· Rope\n"));
  EXPECT_THAT(shown("jx", bootstrapFrameworks), HasSubstr("· Buoy\n"));
}

TEST_F(PackageActions, AMissingToolIsNamedWithAHintAndNothingRuns) {
  removeTool("pod");
  removeTool("carthage");
  for (void (*action)() : {installPods, updatePods, cleanPodCache}) {
    EXPECT_THAT(shown("x", action), AllOf(HasSubstr("✗ CocoaPods is not installed."),
                                          HasSubstr("Install it with: brew install cocoapods")));
  }
  for (void (*action)() : {bootstrapFrameworks, updateFrameworks, showOutdatedFrameworks, buildFrameworks}) {
    EXPECT_THAT(shown("x", action),
                AllOf(HasSubstr("✗ Carthage is not installed."), HasSubstr("Install it with: brew install carthage")));
  }
  EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST_F(PackageActions, PrintedCommandsTellHowTheyEnded) {
  runner.expect("pod cache clean --all").expect("carthage outdated").expect("carthage build --use-xcframeworks", {}, 1);
  EXPECT_THAT(shown("x", cleanPodCache), HasSubstr("✅  Clean CocoaPods cache"));
  EXPECT_THAT(shown("x", showOutdatedFrameworks), HasSubstr("✅  Show outdated frameworks"));
  EXPECT_THAT(shown("x", buildFrameworks), HasSubstr("❌  Build Carthage frameworks"));
}

TEST_F(PackageActions, PodsAndFrameworksAreListed) {
  EXPECT_THAT(shown("x", showPods), HasSubstr("No CocoaPods dependencies found."));
  EXPECT_THAT(shown("x", showFrameworks), HasSubstr("No Carthage dependencies found."));
  writeLock("Podfile.lock", "PODS:\n  - Harbor (3.2):\n    - Rope\n  - Ro\x1bpe (1)\n");
  writeLock("Cartfile.resolved", "github \"a/Buoy\" \"1.5\"\n");
  EXPECT_THAT(shown("x", showPods), HasSubstr("› Harbor  3.2\n  › Ro␛pe   1\n"));
  EXPECT_THAT(shown("x", showFrameworks), HasSubstr("› Buoy  1.5\n"));
}

TEST_F(PackageActions, LockFilesAreShownAsTheyAre) {
  EXPECT_THAT(shown("x", showPodfileLock), HasSubstr("No Podfile.lock found."));
  EXPECT_THAT(shown("x", showCartfileResolved), HasSubstr("No Cartfile.resolved found."));
  EXPECT_THAT(runner.commands(), IsEmpty());
  writeLock("Podfile.lock", "");
  writeLock("Cartfile.resolved", "");
  runner.expect("cat 'Podfile.lock'", "PODS:\r\n  - Rope (1)\r\n")
      .expect("cat 'Cartfile.resolved'", "github \"a/B\" \"1\"");
  EXPECT_THAT(shown("x", showPodfileLock), HasSubstr("  PODS:\n    - Rope (1)\n"));
  EXPECT_THAT(shown("x", showCartfileResolved), HasSubstr("  github \"a/B\" \"1\"\n"));
}

TEST_F(PackageActions, TheBuildFolderAndTheCacheAreDeleted) {
  runner.expect("rm -rf Carthage/Build").expect("rm -rf ~/Library/Caches/org.swift.swiftpm");
  EXPECT_THAT(shown("x", cleanFrameworkBuilds), HasSubstr("✅  Clean Carthage build folder"));
  EXPECT_THAT(shown("jx", cleanSPMCache),
              AllOf(HasSubstr("Delete SPM cache?"), HasSubstr("Package manager caches deleted.")));
  EXPECT_THAT(shown("n", cleanSPMCache), Not(HasSubstr("deleted.")));
}

TEST_F(PackageActions, SpeakGermanToo) {
  setCurrentLanguage("de");
  removeTool("pod");
  EXPECT_THAT(shown("x", installPods), HasSubstr("CocoaPods ist nicht installiert."));
}

}  // namespace
}  // namespace halyard
