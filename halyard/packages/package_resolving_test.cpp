#include "halyard/packages/package_resolving.hpp"

#include <vector>

#include "halyard/packages/packages_testing.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class PackageResolvingTest : public PackagesTest {
 protected:
  std::vector<std::string> phases;
  bool succeeded = false;

  std::string resolve(const DetectedPackageManagers& managers, std::string_view keys = {}) {
    return shown(keys, [&] {
      succeeded = resolvePackages({.managers = managers,
                                   .packagesCommand = "xcodebuild -resolvePackageDependencies",
                                   .projectFolder = ".",
                                   .beginPhase = [this](std::string_view name) { phases.emplace_back(name); },
                                   .endPhase = [this](bool ok) { phases.emplace_back(ok ? "ok" : "failed"); }});
    });
  }
  /// "(cd <the folder> && command)"
  [[nodiscard]] std::string here(const std::string& command) const {
    return "(cd '" + folder.at() + "' && " + command + ")";
  }
  void expectPins() { runner.expect(packageResolvedSearchIn(".")); }
};

TEST_F(PackageResolvingTest, EachManagerRunsInTheFixedOrderWithItsLimit) {
  expectPins();
  runner.expect("xcodebuild -resolvePackageDependencies", "Resolve Package Graph\nResolved source packages:\n")
      .expect(here("pod install"), "a\n")
      .expect(here("carthage bootstrap --use-xcframeworks"), "b\n");
  const std::string screen = resolve({true, true, true});
  EXPECT_TRUE(succeeded);
  EXPECT_THAT(phases, ElementsAre("SPM", "ok", "CocoaPods", "ok", "Carthage", "ok"));
  EXPECT_THAT(runner.limits(), ElementsAre(0, 1800, 600, 1800));
  EXPECT_THAT(screen, AllOf(HasSubstr("✓ Swift Package Manager\n"), HasSubstr("✓ CocoaPods\n"),
                            HasSubstr("✓ Carthage\n"), HasSubstr("✓ Packages resolved.\n")));
}

TEST_F(PackageResolvingTest, TheRowsAreThoseOfTheLockFiles) {
  writeLock("Podfile.lock", "PODS:\n  - Rope (1)\n");
  writeLock("Cartfile.resolved", "github \"a/Buoy\" \"1\"\n");
  runner.expect(packageResolvedSearchIn("."), "./Package.resolved\n");
  folder.write("Package.resolved", R"({"pins": [{"identity": "lantern"}]})");
  runner.expect("xcodebuild -resolvePackageDependencies").expect(here("pod install"));
  runner.expect(here("carthage bootstrap --use-xcframeworks"));
  EXPECT_THAT(resolve({true, true, true}),
              AllOf(HasSubstr("✓ lantern\n"), HasSubstr("✓ Rope\n"), HasSubstr("✓ Buoy\n")));
}

TEST_F(PackageResolvingTest, AMissingToolIsNamedAndItsManagerSkipped) {
  removeTool("pod");
  removeTool("carthage");
  EXPECT_THAT(resolve({false, true, true}), AllOf(HasSubstr("⚠ Podfile found, but the \"pod\" tool"),
                                                  HasSubstr("⚠ Cartfile found, but the \"carthage\"")));
  EXPECT_TRUE(phases.empty());
}

TEST_F(PackageResolvingTest, AFailureIsOfferedAgainAndTheOthersGoOn) {
  expectPins();
  runner.expect("xcodebuild -resolvePackageDependencies", "a\nxcodebuild: error: no\n", 74).expect(here("pod install"));
  const std::string screen = resolve({true, true, false}, "x\n");
  EXPECT_FALSE(succeeded);
  EXPECT_THAT(phases, ElementsAre("SPM", "failed", "CocoaPods", "ok"));
  EXPECT_THAT(screen, AllOf(HasSubstr("[01] Retry loading"), HasSubstr("    xcodebuild: error: no\n"),
                            HasSubstr("✗ SPM packages could not be resolved:\n  › Swift Package Manager\n"),
                            Not(HasSubstr("✓ Packages resolved."))));
}

TEST_F(PackageResolvingTest, AnAbortEndsTheSequence) {
  expectPins();
  runner.expect("xcodebuild -resolvePackageDependencies", {}, 2).whenCalled([] { setOperationAborted(true); });
  const std::string screen = resolve({true, true, true});
  EXPECT_FALSE(succeeded);
  EXPECT_THAT(phases, ElementsAre("SPM", "failed"));
  EXPECT_THAT(screen, Not(HasSubstr("could not be resolved")));
  EXPECT_TRUE(operationAborted());
}

}  // namespace
}  // namespace halyard
