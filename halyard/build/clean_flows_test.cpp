#include "halyard/build/build_flow_testing.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class GuidedClean : public FlowTest {
 public:
  GuidedClean& detected(const std::string& package) {
    runner.expectContaining("find . \\( -name 'Package.swift'", package);
    return *this;
  }
  GuidedClean& deletes(const std::string& what) {
    runner.expect("rm -rf " + what);
    return *this;
  }
};

TEST_F(GuidedClean, AsksForTheProjectsFolderFirstAndThenForTheSharedCaches) {
  deletes("'" + folder + "'").deletes("~/Library/Developer/Xcode/ModuleCache");
  deletes("~/Library/Developer/CoreSimulator/Caches").deletes("~/Library/Caches/com.apple.dt.Xcode");
  detected("");
  const std::string text = shown(guidedClean, "jjx");
  EXPECT_THAT(text, HasSubstr("Delete DerivedData/CapstanLightBuild-Harbor? [j/N] j"));
  EXPECT_THAT(text, HasSubstr("✓ Derived Data of the project deleted."));
  EXPECT_THAT(text, Not(HasSubstr("Delete DerivedData?")));
  EXPECT_THAT(text, HasSubstr("Delete other caches (without SPM)? [j/N] j"));
  EXPECT_THAT(text, HasSubstr("✓ Directories deleted (SPM preserved)."));
  EXPECT_THAT(text, HasSubstr("No package managers detected in new project."));
  EXPECT_THAT(text, HasSubstr("The next build starts from scratch and takes longer than usual."));
  EXPECT_THAT(text,
              AllOf(HasSubstr("✓ Guided clean completed."), HasSubstr("Build Timeline — Guided Clean"),
                    HasSubstr("🧹 Clean"), HasSubstr("🧹 Caches"), HasSubstr("ModuleCache"), HasSubstr(backPrompt)));
}

TEST_F(GuidedClean, ANoToTheProjectsFolderAsksForAllOfDerivedData) {
  deletes("~/Library/Developer/Xcode/DerivedData");
  detected("");
  const std::string text = shown(guidedClean, "njnx");
  EXPECT_THAT(text, HasSubstr("Delete DerivedData? [j/N] j"));
  EXPECT_THAT(text, HasSubstr("✓ Derived Data deleted."));
}

TEST_F(GuidedClean, OnlyNoesDeleteNothingAndTheEndStillWaits) {
  detected("./Package.swift");
  const std::string text = shown(guidedClean, "nnnnnx");
  EXPECT_THAT(text, HasSubstr("Delete SPM cache? [j/N] n"));
  EXPECT_THAT(text, HasSubstr("Resolve dependencies now (detected: SPM)? [j/N] n"));
  EXPECT_THAT(text, AllOf(HasSubstr("Guided clean completed."), HasSubstr(backPrompt)));
  EXPECT_THAT(text, AllOf(Not(HasSubstr("Build Timeline")), Not(HasSubstr("from scratch"))));
}

TEST_F(GuidedClean, ADeletedCacheOfThePackagesResolvesWithoutAsking) {
  detected("./Package.swift").deletes("~/Library/Caches/org.swift.swiftpm");
  runner.expectContaining("find ", "");
  runner.expectContaining("-resolvePackageDependencies", "resolved source packages: Tides\n");
  const std::string text = shown(guidedClean, "nnnjx");
  EXPECT_THAT(text, HasSubstr("SPM cache was deleted — all detected package managers (SPM) will be automatically"));
  EXPECT_THAT(text, Not(HasSubstr("Resolve dependencies now")));
  EXPECT_THAT(text, AllOf(HasSubstr("🧹 PM Caches"), HasSubstr("📦 Resolve")));
}

TEST_F(GuidedClean, APackageWithoutAProjectIsResolvedBySwift) {
  setSelectedProjectFilePath({});
  runner.allow(
      "find . -maxdepth 3 -name '*.xcworkspace' ! -path '*/*.xcodeproj/*' ! -path '*/*.playground/*' 2>/dev/null | "
      "head -1");
  runner.allow("find . -maxdepth 3 -name '*.xcodeproj' ! -path '*/*.playground/*' 2>/dev/null | head -1");
  detected("./Package.swift");
  runner.expect("swift package resolve", "error: no\n", 1);
  const std::string text = shown(guidedClean, "nnnnjx");
  EXPECT_THAT(text, HasSubstr("✗ SPM packages could not be resolved:"));
  EXPECT_THAT(text, HasSubstr("Guided clean completed."));
}

TEST_F(GuidedClean, AnAbortedResolvingEndsItWithoutPraise) {
  setSelectedProjectFilePath({});
  runner.allow(
      "find . -maxdepth 3 -name '*.xcworkspace' ! -path '*/*.xcodeproj/*' ! -path '*/*.playground/*' 2>/dev/null | "
      "head -1");
  runner.allow("find . -maxdepth 3 -name '*.xcodeproj' ! -path '*/*.playground/*' 2>/dev/null | head -1");
  detected("./Package.swift");
  runner.expect("swift package resolve", {}, 2);
  aborted();
  const std::string text = shown(guidedClean, "nnnnjx");
  EXPECT_THAT(text, AllOf(Not(HasSubstr("could not be resolved")), Not(HasSubstr("Guided clean completed.")),
                          Not(HasSubstr(backPrompt)), HasSubstr("Build Timeline")));
}

class CleanBuild : public FlowTest {
 public:
  [[nodiscard]] std::string command() const {
    return "xcodebuild -project '/w/Harbor.xcodeproj' -scheme 'Harbor' -derivedDataPath '" + folder + "' clean 2>&1";
  }
};

TEST_F(CleanBuild, ListsTheFolderAsksAndCleans) {
  known();
  runner.expect(command(), "** CLEAN SUCCEEDED **\n");
  const std::string text = shown(cleanBuild, "jx");
  EXPECT_THAT(text, HasSubstr("  CapstanLightBuild-Harbor  : ~/Library/Developer/Xcode/DerivedData/"
                              "CapstanLightBuild-Harbor\n"));
  EXPECT_THAT(text, HasSubstr("Run xcodebuild clean? [j/N] j"));
  EXPECT_THAT(text, HasSubstr("ℹ xcodebuild clean …"));
  EXPECT_THAT(text, AllOf(HasSubstr("✓ xcodebuild clean completed."), HasSubstr(backPrompt)));
  EXPECT_EQ(runner.limits().back(), 1800);
}

TEST_F(CleanBuild, AStatusIsAFailure) {
  known();
  runner.expect(command(), "** CLEAN SUCCEEDED **\n", 65);
  EXPECT_THAT(shown(cleanBuild, "jx"), HasSubstr("✗ xcodebuild clean failed."));
}

TEST_F(CleanBuild, AnAbortIsNone) {
  known();
  runner.expect(command(), {}, 2);
  aborted();
  EXPECT_THAT(shown(cleanBuild, "jx"), AllOf(Not(HasSubstr("failed")), Not(HasSubstr(backPrompt))));
}

TEST_F(CleanBuild, AnAbortOfSomethingBeforeIsNotItsOwn) {
  setOperationAborted(true);
  setSelectedScheme({});
  EXPECT_THAT(shown(cleanBuild, "x"), HasSubstr(backPrompt));
}

TEST_F(CleanBuild, ADeclinedQuestionRunsNothing) {
  known();
  EXPECT_THAT(shown(cleanBuild, "n"), Not(HasSubstr("xcodebuild clean …")));
}

}  // namespace
}  // namespace halyard
