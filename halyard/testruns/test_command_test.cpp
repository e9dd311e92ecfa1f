#include "halyard/testruns/test_command.hpp"

#include <string>

#include <gtest/gtest.h>

#include "core/app_context.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/xcodebuild_service.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

/// The scheme Harbor on a simulator; its platforms are known.
class TestCommand : public testing::Test {
 protected:
  TestCommand() {
    useProject("/w/Harbor.xcodeproj");
    setSelectedScheme("Harbor");
    useTestPlatforms("Harbor", {.iOS = true, .macCatalyst = false});
    setSelectedDevice(SelectedDevice{"iPhone 16", "UDID-1", "iOS 18.2"});
  }

  void useProject(const std::string& path) {
    reset.files.addFolder(path);
    setSelectedProjectFilePath(path);
    detectProject();
  }
  static void useTestPlatforms(const std::string& scheme, SchemePlatforms platforms) {
    setCachedTestPlatforms(platforms);
    setCachedTestPlatformsScheme(scheme);
  }
  static std::string tail() { return std::string(baseTestSettings); }

  ContextReset reset;
};

TEST_F(TestCommand, HasItsPiecesInOrder) {
  EXPECT_EQ(testCommand({}),
            "xcodebuild -parallelizeTargets -project '/w/Harbor.xcodeproj' -scheme 'Harbor' "
            "-derivedDataPath '" +
                privateDerivedDataPath() + "' -destination 'platform=iOS Simulator,id=UDID-1' test " + tail());
}

TEST_F(TestCommand, PutsPlanSelectionAndSettingsWhereTheyBelong) {
  useTestPlatforms("Harbor", {.iOS = false, .macCatalyst = true});
  const std::string command = testCommand({.action = "test-without-building",
                                           .selection = "-only-testing:'A' -only-testing:'B'",
                                           .testPlanOverride = "-testPlan 'Night'"});
  EXPECT_EQ(command,
            "xcodebuild -parallelizeTargets -project '/w/Harbor.xcodeproj' -scheme 'Harbor' -testPlan 'Night' "
            "-derivedDataPath '" +
                privateDerivedDataPath() +
                "' -destination 'platform=macOS' -only-testing:'A' -only-testing:'B' "
                R"(CODE_SIGN_IDENTITY="-" CODE_SIGN_ENTITLEMENTS="" ENABLE_HARDENED_RUNTIME=NO )"
                "test-without-building " +
                tail());
}

TEST_F(TestCommand, KeepsSigningWhereTheDestinationIsNoMacOrNobodyAsks) {
  EXPECT_EQ(testCommand({}).find("CODE_SIGN_IDENTITY"), std::string::npos);
  useTestPlatforms("Harbor", {.iOS = false, .macCatalyst = true});
  EXPECT_EQ(testCommand({.useMacAwareDestination = false}).find("CODE_SIGN_IDENTITY"), std::string::npos);
}

TEST_F(TestCommand, PrefersTheTestSchemeAndItsPlatforms) {
  setSelectedTestScheme("Harbor's \"All\" $(touch x)");
  useTestPlatforms("Harbor's \"All\" $(touch x)", {.iOS = false, .macCatalyst = true});
  const std::string command = testCommand({});
  EXPECT_NE(command.find(R"(-scheme 'Harbor'\''s "All" $(touch x)' )"), std::string::npos) << command;
  EXPECT_NE(command.find("-destination 'platform=macOS'"), std::string::npos);
}

TEST_F(TestCommand, TakesAnotherDevice) {
  EXPECT_NE(testCommand({.udid = "UDID-2"}).find("id=UDID-2' test"), std::string::npos);
}

TEST_F(TestCommand, QuotesTheProject) {
  useProject("/w/My `App`.xcworkspace");
  EXPECT_NE(testCommand({}).find("-workspace '/w/My `App`.xcworkspace' "), std::string::npos);
  EXPECT_NE(testCommand({}).find("/CapstanLightBuild-My `App`' "), std::string::npos);
}

TEST_F(TestCommand, LeavesThePlanOutWhereNoneIsSelected) { EXPECT_EQ(testPlanArgument(), ""); }

TEST_F(TestCommand, PassesAPlanOfTheSchemeWithoutAsking) {
  setSelectedTestPlan("It's night");
  setSelectedTestPlanIsFromScheme(true);
  EXPECT_EQ(testPlanArgument(), R"(-testPlan 'It'\''s night')");
  EXPECT_NE(testCommand({}).find(R"( -testPlan 'It'\''s night' -derivedDataPath)"), std::string::npos);
}

TEST_F(TestCommand, PassesAPlanOfTheFolderOnlyIfTheSchemeHasIt) {
  setSelectedTestPlan("Night");
  const std::string search = "find '/w' -path '*/xcschemes/Harbor.xcscheme' 2>/dev/null | head -1";
  reset.runner.expect(search, "/w/H.xcscheme\n").expectContaining("python3 ", "plan:Night|Night.xctestplan\n");
  EXPECT_EQ(testPlanArgument(), "-testPlan 'Night'");
  reset.runner.expect(search, "/w/H.xcscheme\n").expectContaining("python3 ", "DEFAULT:Day|Day.xctestplan\n");
  EXPECT_EQ(testPlanArgument(), "");
  reset.runner.expect(search);
  EXPECT_EQ(testPlanArgument(), "");
}

TEST_F(TestCommand, AnEmptyOverrideMeansNoPlan) {
  setSelectedTestPlan("Night");
  setSelectedTestPlanIsFromScheme(true);
  EXPECT_EQ(testCommand({.testPlanOverride = ""}).find("-testPlan"), std::string::npos);
  EXPECT_EQ(testPlanArgument(""), "");
}

}  // namespace
}  // namespace halyard
