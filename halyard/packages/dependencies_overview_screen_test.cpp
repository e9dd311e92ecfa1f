#include "halyard/packages/dependencies_overview_screen.hpp"

#include "core/string_catalog.hpp"
#include "halyard/packages/packages_testing.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class DependenciesOverview : public PackagesTest {
 protected:
  static std::string page(const DetectedPackageManagers& managers, const PackageCacheSizes& sizes = {}) {
    return stripAnsi(dependenciesOverview(managers, sizes));
  }
};

TEST_F(DependenciesOverview, HasASectionForEachManagerWithItsCommands) {
  EXPECT_EQ(page({true, true, true}, {"1.2G", "—"}),
            "\n  Swift Package Manager\n"
            "  [01] Show package graph\n"
            "  [02] Show Package.resolved\n"
            "  [03] Resolve SPM packages\n"
            "  [04] Update SPM packages\n"
            "  [05] Delete SPM cache   1.2G\n"
            "\n  CocoaPods\n"
            "  [06] Show CocoaPods dependencies\n"
            "  [07] Show Podfile.lock\n"
            "  [08] Run pod install\n"
            "  [09] Run pod update\n"
            "  [10] Clean CocoaPods cache   —\n"
            "\n  Carthage\n"
            "  [11] Show Carthage dependencies\n"
            "  [12] Show Cartfile.resolved\n"
            "  [13] Run carthage bootstrap\n"
            "  [14] Update Carthage frameworks\n"
            "  [15] Clean Carthage build folder\n"
            "\n  [x] Back\n\n");
}

TEST_F(DependenciesOverview, AManagerThatIsNotUsedSaysSoInPlaceOfItsRows) {
  EXPECT_EQ(page({}),
            "\n  Swift Package Manager\n  Not used — no Package.swift or Package.resolved found.\n"
            "\n  CocoaPods\n  Not used — no Podfile found.\n"
            "\n  Carthage\n  Not used — no Cartfile found.\n"
            "\n  [x] Back\n\n");
  EXPECT_THAT(page({false, false, true}), HasSubstr("[01] Show Carthage dependencies\n"));
}

TEST_F(DependenciesOverview, SizesThatAreBeingComputedSaySo) {
  EXPECT_THAT(page({true, true, false}), AllOf(HasSubstr("Delete SPM cache   Calculating size …\n"),
                                               HasSubstr("Clean CocoaPods cache   Calculating size …\n")));
}

TEST_F(DependenciesOverview, DrawsWithoutTheSizesAndThenWithThem) {
  usePackages();
  context.files.addFolder("/Users/demo/Library/Caches/org.swift.swiftpm");
  runner.expect("du -sh '/Users/demo/Library/Caches/org.swift.swiftpm' 2>/dev/null | awk '{print $1}'", "345M\n");
  const std::string screen = shown("x\n", showDependenciesOverview);
  EXPECT_THAT(screen, HasSubstr("Dependency Overview"));
  EXPECT_LT(screen.find("Calculating size …"), screen.find("Delete SPM cache   345M"));
  EXPECT_NE(screen.find("Delete SPM cache   345M"), std::string::npos);
}

TEST_F(DependenciesOverview, ANumberRunsItsRowAndThePageComesAgain) {
  useCarthage();
  const std::string screen = shown("01\nx2\nx7\nq\n", showDependenciesOverview);
  EXPECT_THAT(screen, AllOf(HasSubstr("No Carthage dependencies found."), HasSubstr("No Cartfile.resolved found.")));
  EXPECT_EQ(occurrences(screen, "Dependency Overview"), 8U);  // four rounds, each drawn twice
  EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST_F(DependenciesOverview, TheEndOfInputLeaves) {
  EXPECT_EQ(occurrences(shown("", showDependenciesOverview), "Dependency Overview"), 2U);
}

}  // namespace
}  // namespace halyard
