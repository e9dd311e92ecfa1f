#include "halyard/packages/dependencies_menu.hpp"

#include "core/string_catalog.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/packages/packages_testing.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class DependenciesMenu : public PackagesTest {
 protected:
  ~DependenciesMenu() override {
    setSelectedProjectFilePath({});
    useNoProject();
    detectProject();
  }

  void useNoProject() {
    for (const char* flagless : {workspaceSearch, projectSearch}) runner.allow(flagless);
  }
  void useProject() {
    runner.allow(workspaceSearch);
    runner.allow(projectSearch, "./My App.xcodeproj\n");
  }
  void expectNoPins() { runner.expect(packageResolvedSearchIn(".")); }

  static constexpr const char* workspaceSearch =
      "find . -maxdepth 3 -name '*.xcworkspace' ! -path '*/*.xcodeproj/*' ! -path '*/*.playground/*' 2>/dev/null | "
      "head -1";
  static constexpr const char* projectSearch =
      "find . -maxdepth 3 -name '*.xcodeproj' ! -path '*/*.playground/*' 2>/dev/null | head -1";
};

TEST_F(DependenciesMenu, HoldsTheOverviewAndAllAtOnce) {
  EXPECT_THAT(shown("x\n", showDependenciesMenu),
              AllOf(HasSubstr("[01] Dependency Overview\n  [02] Resolve Dependencies\n\n  [x] Back\n")));
  useCarthage();
  EXPECT_THAT(shown("0\n", showDependenciesMenu),
              HasSubstr("[03] Show outdated frameworks\n  [04] Build Carthage frameworks\n"));
}

TEST_F(DependenciesMenu, ANumberRunsItsRowAndTheMenuComesAgain) {
  useCarthage();
  runner.expect("carthage outdated");
  const std::string screen = shown("3\nx1\nx\n9\n\nx\n", showDependenciesMenu);
  EXPECT_EQ(occurrences(screen, "[01] Dependency Overview"), 5U);
  EXPECT_THAT(screen, HasSubstr("✅  Show outdated frameworks"));
}

TEST_F(DependenciesMenu, ResolvingNeedsAProject) {
  useNoProject();
  usePackages();
  EXPECT_THAT(shown("x", resolveAllDependencies),
              AllOf(HasSubstr("✗ No Xcode project found."), HasSubstr("Current path: " + folder.at()),
                    HasSubstr(std::string(localized("neither_xcworkspace_nor_xcodeproj_found_in_the_current"))),
                    HasSubstr(std::string(localized("run_the_tool_in_your_project_s_root_directory"))),
                    HasSubstr("[X]"), Not(HasSubstr("[j/N]"))));
}

TEST_F(DependenciesMenu, ResolvingNeedsAPackageManager) {
  useProject();
  EXPECT_THAT(shown("x", resolveAllDependencies),
              AllOf(HasSubstr("No package managers detected."), Not(HasSubstr("[j/N]"))));
}

TEST_F(DependenciesMenu, ResolvingListsTheManagersAndAsks) {
  useProject();
  usePackages();
  usePods();
  useCarthage();
  EXPECT_THAT(shown("n", resolveAllDependencies),
              AllOf(HasSubstr("Detected package managers:\n  • Swift Package Manager\n  • CocoaPods\n  • Carthage\n"),
                    HasSubstr("Resolve detected dependencies now?"), Not(HasSubstr("[X]"))));
  EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST_F(DependenciesMenu, AYesResolvesWithEachAndReportsTheTime) {
  useProject();
  usePackages();
  usePods();
  useCarthage();
  setSelectedScheme("It's");
  // The folder of derived data is looked up once in a run, so its home may be that of another test.
  detectProject();
  const std::string derivedData = privateDerivedDataPath();
  EXPECT_THAT(derivedData, testing::EndsWith("/Library/Developer/Xcode/DerivedData/CapstanLightBuild-My App"));
  expectNoPins();
  runner.expect(
      "xcodebuild -project './My App.xcodeproj' -scheme 'It'\\''s' -resolvePackageDependencies "
      "-derivedDataPath '" +
      derivedData + "'");
  runner.expect("(cd '" + folder.at() + "' && pod install)");
  runner.expect("(cd '" + folder.at() + "' && carthage bootstrap --use-xcframeworks)");
  const std::string screen = shown("jx", resolveAllDependencies);
  EXPECT_THAT(screen, AllOf(HasSubstr("✓ Packages resolved."), HasSubstr("📦"), HasSubstr("[X]")));
  EXPECT_FALSE(BuildTimeline::current().isActive);
}

TEST_F(DependenciesMenu, AnAbortEndsTheSequenceAndGoesBack) {
  useProject();
  usePackages();
  usePods();
  expectNoPins();
  runner.expectContaining("-resolvePackageDependencies", {}, 2).whenCalled([] { setOperationAborted(true); });
  EXPECT_THAT(shown("j", resolveAllDependencies), AllOf(Not(HasSubstr("[X]")), Not(HasSubstr("Packages resolved."))));
  EXPECT_FALSE(operationAborted());
}

TEST_F(DependenciesMenu, WhatOthersAskedForIsResolvedWithoutAQuestion) {
  useProject();
  usePods();
  runner.expect("(cd '" + folder.at() + "' && pod install)", {}, 1);
  EXPECT_THAT(shown("x\n", [] { EXPECT_FALSE(resolveDetectedDependencies()); }), Not(HasSubstr("[j/N]")));
}

}  // namespace
}  // namespace halyard
