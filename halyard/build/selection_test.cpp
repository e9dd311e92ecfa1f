#include "halyard/build/selection.hpp"

#include <optional>
#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/app_context.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/scheme_platforms.hpp"
#include "halyard/build/selection_prompt.hpp"
#include "halyard/build/simulator_selection.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/typed_input.hpp"

namespace halyard {
namespace {

using testing::HasSubstr;
using testing::Not;

int saves = 0;

constexpr std::string_view jsonList = "xcrun simctl list devices -j 2>/dev/null";
constexpr std::string_view simulators = R"({"devices": {
  "com.apple.CoreSimulator.SimRuntime.iOS-18-2": [
    {"udid": "S-16", "name": "iPhone 16", "state": "Booted", "isAvailable": true},
    {"udid": "S-9", "name": "iPhone 9", "state": "Shutdown", "isAvailable": true}],
  "com.apple.CoreSimulator.SimRuntime.iOS-16-4": [
    {"udid": "S-OLD", "name": "iPad", "state": "Shutdown", "isAvailable": false}]}})";

class Selection : public testing::Test {
 protected:
  Selection() {
    saves = 0;
    installPreferencesSaver([] { ++saves; });
    resetSimulatorFilter();
    forgetCatalystAnswers();
    context.files.addFile("/p/A.xcodeproj");
    setSelectedProjectFilePath("/p/A.xcodeproj");
    detectProject();
  }
  ~Selection() override { installPreferencesSaver(nullptr); }

  template <typename Action>
  auto typing(std::string_view keys, Action action) {
    const TypedInput input(keys);
    if constexpr (std::is_void_v<decltype(action())>) {
      action();
    } else {
      return action();
    }
  }
  /// What was shown, without colours.
  [[nodiscard]] std::string shown() const { return stripAnsi(output.text()); }

  void expectSimulators(int times = 1) {
    for (int i = 0; i < times; ++i) context.runner.expect(std::string(jsonList), std::string(simulators));
  }
  void expectSchemes() {
    context.runner.expect("xcodebuild -project '/p/A.xcodeproj' -list -json 2>/dev/null",
                          R"({"project": {"schemes": ["Harbor", "It's Mac"]}})");
  }
  static std::string settingsOf(const std::string& scheme) {
    return "xcodebuild -project '/p/A.xcodeproj' -scheme " + scheme + " -showBuildSettings";
  }
  void expectPlatforms(const std::string& scheme, const std::string& value) {
    context.runner.expect(
        settingsOf(scheme) + " -skipPackagePluginValidation 2>/dev/null | grep 'SUPPORTED_PLATFORMS' | head -1",
        "    SUPPORTED_PLATFORMS = " + value);
  }
  void expectBundleID(const std::string& scheme, const std::string& platform, const std::string& value) {
    context.runner.expect(
        settingsOf(scheme) + " -destination 'generic/platform=" + platform +
            R"(' 2>/dev/null | grep -E '^\s+PRODUCT_BUNDLE_IDENTIFIER\s*=' | head -1 | awk -F' = ' '{print $2}')",
        value);
  }
  static void selectMac() { setSelectedDevice(SelectedDevice{"My Mac", "local", "macOS 15"}); }

  ContextReset context;
  CapturedOutput output;
};

// Prompts.

TEST(ListPrompts, AnAnswerIsARowAnOrderOrNothingOfThat) {
  using Kind = ListAnswer::Kind;
  const ListPrompt prompt{.labelKey = "scheme", .rowCount = 12, .orders = "-s"};
  EXPECT_EQ(readListAnswer("1", prompt).row, 0u);
  EXPECT_EQ(readListAnswer(" 01 ", prompt).row, 0u);
  EXPECT_EQ(readListAnswer("12\r", prompt).row, 11u);
  EXPECT_EQ(readListAnswer("S", prompt).order, 's');
  for (const std::string_view line : {"", "  ", "x", "X"}) EXPECT_EQ(readListAnswer(line, prompt).kind, Kind::left);
  for (const std::string_view line : {"0", "13", "1a", "+", "-1", "ss", "99999999999999999999999"}) {
    EXPECT_EQ(readListAnswer(line, prompt).kind, Kind::invalid) << line;
  }
}

// Simulators.

TEST_F(Selection, ANumberSelectsTheSimulatorAndSaves) {
  setLastSelectedDeviceKind("physical");
  expectSimulators();
  typing("02\nx", [] { selectSimulator(); });
  EXPECT_EQ(selectedDevice(), (SelectedDevice{"iPhone 16", "S-16", "iOS 18.2"}));
  EXPECT_EQ(lastSelectedDeviceKind(), "simulator");
  EXPECT_EQ(saves, 1);
  EXPECT_THAT(shown(), HasSubstr("▶ Device [1–2] [RETURN]"));
  EXPECT_THAT(shown(), HasSubstr("Device set: iPhone 16 (iOS 18.2)"));
  EXPECT_THAT(shown(), HasSubstr("[x] Back"));
}

TEST_F(Selection, ANumberThatIsNoRowIsToldAndTheListShownAgain) {
  expectSimulators(3);
  typing("3\nabc\nx\n", [] { selectSimulator(); });
  EXPECT_FALSE(selectedDevice());
  EXPECT_EQ(saves, 0);
  EXPECT_THAT(shown(), HasSubstr("Invalid selection."));
}

TEST_F(Selection, TheEndOfInputAndAnEmptyLineLeave) {
  expectSimulators(2);
  typing("", [] { selectSimulator(); });
  typing("\n", [] { selectSimulator(); });
  EXPECT_EQ(saves, 0);
}

TEST_F(Selection, TheFilterSurvivesTheScreen) {
  expectSimulators(2);
  typing("+\nx\n", [] { selectSimulator(); });
  EXPECT_THAT(shown(), HasSubstr("── unavailable ──"));
  expectSimulators();
  typing("3\nx", [] { selectSimulator(); });
  EXPECT_EQ(selectedDevice(), (SelectedDevice{"iPad", "S-OLD", "iOS 16.4"}));
}

TEST_F(Selection, TheSortIsChosenAndSaved) {
  expectSimulators(3);
  typing("s\n02\ns\n9\nx\n", [] { selectSimulator(); });
  EXPECT_EQ(selectedSimSort(), "os");
  EXPECT_EQ(saves, 1);
  EXPECT_THAT(shown(), HasSubstr("[01] By Name  ◀"));
  EXPECT_THAT(shown(), HasSubstr("▶ Choice [1–3] [RETURN]"));
  EXPECT_THAT(shown(), HasSubstr("Sorting: By OS Version"));
}

TEST_F(Selection, ADashClearsTheDevice) {
  setSelectedDevice(SelectedDevice{"iPhone 16", "S-16", "iOS 18.2"});
  expectSimulators();
  typing("-\nx", [] { selectSimulator(); });
  EXPECT_FALSE(selectedDevice());
  EXPECT_EQ(saves, 1);
  EXPECT_THAT(shown(), HasSubstr("◀"));
  EXPECT_THAT(shown(), HasSubstr("Device selection cleared."));
}

TEST_F(Selection, ZeroGoesOnToThePhysicalDevices) {
  expectSimulators();
  context.runner.expect("xcrun devicectl list devices --json-output - 2>/dev/null", "");
  typing("0\nx", [] { selectSimulator(); });
  EXPECT_THAT(shown(), HasSubstr("No physical devices detected."));
}

TEST_F(Selection, ASchemeForTheMacAloneNeedsNoList) {
  setSelectedScheme("S");
  setCachedPlatformsScheme("S");
  setCachedPlatforms(SchemePlatforms{false, true});
  setLastSelectedDeviceKind("physical");
  context.runner.expect("sw_vers -productVersion 2>/dev/null", "15.2\n");
  typing("x", [] { selectSimulator(); });
  EXPECT_EQ(selectedDevice(), (SelectedDevice{"My Mac", "local", "macOS 15.2"}));
  EXPECT_EQ(lastSelectedDeviceKind(), "simulator");
  EXPECT_THAT(shown(), HasSubstr("this Mac is used as the device"));
}

TEST_F(Selection, AUniversalSchemeOffersTheMacFirst) {
  setSelectedScheme("S");
  setCachedPlatformsScheme("S");
  setCachedPlatforms(SchemePlatforms{true, true});
  context.runner.expect("sw_vers -productVersion 2>/dev/null", "15.2\n");
  expectSimulators();
  typing("1\nx", [] { selectSimulator(); });
  EXPECT_EQ(selectedDevice()->udid, "local");
  EXPECT_THAT(shown(), HasSubstr("macOS 15.2 — native"));
  EXPECT_THAT(shown(), HasSubstr("[1–3]"));
}

TEST_F(Selection, WithoutASchemeTheListWorks) {
  setSelectedScheme({});
  expectSimulators();
  typing("1\nx", [] { selectSimulator(); });
  EXPECT_EQ(selectedDevice()->udid, "S-9");
}

TEST_F(Selection, PickingLeavesTheSelectionAlone) {
  setSelectedDevice(SelectedDevice{"iPhone 9", "S-9", "iOS 18.2"});
  expectSimulators(2);
  const auto picked = typing("-\n2\n", [] { return pickSimulator("S-9"); });
  ASSERT_TRUE(picked);
  EXPECT_EQ(picked->udid, "S-16");
  EXPECT_EQ(selectedDevice()->udid, "S-9");
  EXPECT_EQ(saves, 0);
  expectSimulators();
  EXPECT_FALSE(typing("x\n", [] { return pickSimulator("S-9"); }));
}

// Kinds of device.

TEST_F(Selection, TheKindIsTheFirstOrTheSecondRowOrNothing) {
  EXPECT_EQ(typing("1\n", chooseDeviceKind), "simulator");
  EXPECT_EQ(typing("02\n", chooseDeviceKind), "physical");
  EXPECT_EQ(typing("\n", chooseDeviceKind), std::nullopt);
  EXPECT_EQ(typing("3\nx", chooseDeviceKind), std::nullopt);
  EXPECT_THAT(shown(), HasSubstr("▶ Choice [1–2] [RETURN]"));
  EXPECT_THAT(shown(), HasSubstr("[01] Simulator"));
  EXPECT_THAT(shown(), HasSubstr("Invalid selection."));
}

TEST_F(Selection, TheDeviceFollowsItsKind) {
  expectSimulators();
  typing("1\n1\nx", selectDevice);
  EXPECT_EQ(selectedDevice()->udid, "S-9");
  typing("x\n", selectDevice);
}

// Schemes.

TEST_F(Selection, ASchemeBringsItsPlatformsAndItsBundleID) {
  expectSchemes();
  expectPlatforms("'Harbor'", "iphoneos iphonesimulator");
  expectBundleID("'Harbor'", "iOS Simulator", "com.example.harbor\n");
  typing("1\nx", [] { selectScheme(); });
  EXPECT_EQ(selectedScheme(), "Harbor");
  EXPECT_EQ(selectedBundleID(), "com.example.harbor");
  EXPECT_EQ(cachedPlatforms(), (SchemePlatforms{true, false}));
  EXPECT_EQ(saves, 1);
  EXPECT_THAT(shown(), HasSubstr("▶ Scheme [1–2]  - = clear [RETURN]"));
  EXPECT_THAT(shown(), HasSubstr("Bundle ID automatically set: com.example.harbor"));
}

TEST_F(Selection, ASchemeForTheMacAloneReplacesTheDevice) {
  setSelectedDevice(SelectedDevice{"iPhone 9", "S-9", "iOS 18.2"});
  setLastSelectedDeviceKind("physical");
  expectSchemes();
  expectPlatforms("'It'\\''s Mac'", "macosx");
  context.runner.expect("sw_vers -productVersion 2>/dev/null", "15.2\n");
  expectBundleID("'It'\\''s Mac'", "macOS", "com.example.mac");
  typing("2\nx", [] { selectScheme(); });
  EXPECT_EQ(selectedDevice(), (SelectedDevice{"My Mac", "local", "macOS 15.2"}));
  EXPECT_EQ(lastSelectedDeviceKind(), "simulator");
  EXPECT_THAT(shown(), HasSubstr("Device automatically set: My Mac"));
}

TEST_F(Selection, ASchemeThatCannotRunOnTheMacResetsIt) {
  selectMac();
  expectSchemes();
  expectPlatforms("'Harbor'", "iphoneos");
  context.runner.expectContaining("grep -E 'SUPPORTS_MACCATALYST|SUPPORTED_PLATFORMS' | head -10",
                                  "SUPPORTS_MACCATALYST = NO\nSUPPORTED_PLATFORMS = iphoneos");
  expectBundleID("'Harbor'", "iOS Simulator", "com.example.harbor");
  typing("1\nx", [] { selectScheme(); });
  EXPECT_FALSE(selectedDevice());
  EXPECT_THAT(shown(), HasSubstr("Device reset"));
}

TEST_F(Selection, ASchemeWithCatalystKeepsTheMac) {
  selectMac();
  expectSchemes();
  expectPlatforms("'Harbor'", "iphoneos");
  context.runner.expectContaining("grep -E 'SUPPORTS_MACCATALYST", "SUPPORTS_MACCATALYST = YES");
  expectBundleID("'Harbor'", "iOS Simulator", "com.example.harbor");
  typing("1\nx", [] { selectScheme(); });
  EXPECT_TRUE(selectedDevice());
}

TEST_F(Selection, ABundleIDWithAVariableIsLookedUpInTheProjectFile) {
  for (const std::string value : {"com.$(NAME)", ""}) {
    setSelectedBundleID({});
    setCachedPlatforms(SchemePlatforms{true, false});
    setCachedPlatformsScheme("Harbor");
    expectSchemes();
    expectBundleID("'Harbor'", "iOS Simulator", value);
    context.runner.expect(
        R"(grep -E 'PRODUCT_BUNDLE_IDENTIFIER\s*=' '/p/A.xcodeproj/project.pbxproj' | grep -v '\$(' | head -1 | awk -F' = ' '{gsub(/;/,"",$2); print $2}')",
        "\"com.example.har-bor\" ");
    typing("1\nx", [] { selectScheme(); });
    EXPECT_EQ(selectedBundleID(), "com.example.har-bor");
  }
}

TEST_F(Selection, OfAWorkspaceTheFirstProjectBelowItIsConsulted) {
  context.files.addFile("/w q/It's.xcworkspace");
  setSelectedProjectFilePath("/w q/It's.xcworkspace");
  setCachedPlatforms(SchemePlatforms{true, false});
  setCachedPlatformsScheme("S");
  setSelectedBundleID("com.before");
  context.runner
      .expect("xcodebuild -workspace '/w q/It'\\''s.xcworkspace' -list -json 2>/dev/null",
              R"({"workspace": {"schemes": ["S"]}})")
      .expectContaining("grep -E '^\\s+PRODUCT_BUNDLE_IDENTIFIER", "")
      .expect(
          "find '/w q' -maxdepth 3 -path '*.xcodeproj/project.pbxproj' ! -path '*/Pods/*' ! -path '*/.build/*' "
          "2>/dev/null",
          "/w q/a.xcodeproj/project.pbxproj\n/w q/b.xcodeproj/project.pbxproj")
      .expectContaining("'/w q/a.xcodeproj/project.pbxproj'", "com.$(NAME)");
  typing("1\nx", [] { selectScheme(); });
  EXPECT_EQ(selectedBundleID(), "com.before");
}

TEST_F(Selection, LeavingTheSchemesSaysSoAndChangesNothing) {
  setSelectedScheme("Harbor");
  for (const std::string_view keys : {"", "\n", "x\n"}) {
    expectSchemes();
    typing(keys, [] { selectScheme(); });
  }
  EXPECT_EQ(selectedScheme(), "Harbor");
  EXPECT_EQ(saves, 0);
  EXPECT_THAT(shown(), HasSubstr("Scheme selection cancelled."));
  EXPECT_THAT(shown(), HasSubstr("[01] Harbor  ◀"));
}

TEST_F(Selection, ASchemeNumberThatIsNoRowShowsTheListAgain) {
  expectSchemes();
  typing("7\nx\n", [] { selectScheme(); });
  EXPECT_THAT(shown(), HasSubstr("Invalid selection."));
}

TEST_F(Selection, ADashClearsTheScheme) {
  setSelectedScheme("Harbor");
  expectSchemes();
  typing("-\nx", [] { selectScheme(); });
  EXPECT_EQ(selectedScheme(), "");
  EXPECT_EQ(saves, 1);
}

TEST_F(Selection, WithoutAProjectOrSchemesTheReasonIsTold) {
  context.runner.expect("xcodebuild -project '/p/A.xcodeproj' -list -json 2>/dev/null", "")
      .expect("xcodebuild -project '/p/A.xcodeproj' -list 2>/dev/null", "");
  typing("x", [] { selectScheme(); });
  EXPECT_THAT(shown(), HasSubstr("xcodebuild -list returned no schemes."));
  setSelectedProjectFilePath({});
  context.runner.expectContaining("*.xcworkspace").expectContaining("*.xcodeproj");
  typing("x", [] { selectScheme(false, false); });
  EXPECT_THAT(shown(), HasSubstr("No Xcode project found."));
  EXPECT_THAT(shown(), HasSubstr("Current path:"));
  context.runner.expectContaining("*.xcworkspace").expectContaining("*.xcodeproj");
  EXPECT_THAT(typing("x", [] { return detectProject(), projectPath(); }), "");
}

TEST_F(Selection, TheHeaderComesWithOrWithoutItsExplanation) {
  expectSchemes();
  typing("x\n", [] { selectScheme(true, false); });
  EXPECT_THAT(shown(), HasSubstr("▶  App Scheme"));
  EXPECT_THAT(shown(), Not(HasSubstr("The main app scheme defines")));
  expectSchemes();
  typing("x\n", [] { selectScheme(); });
  EXPECT_THAT(shown(), HasSubstr("The main app scheme defines"));
}

TEST_F(Selection, ATestSchemeChangesNeitherDeviceNorBundleID) {
  selectMac();
  setSelectedBundleID("com.before");
  expectSchemes();
  typing("1\nx", [] { selectTestScheme(); });
  EXPECT_EQ(selectedTestScheme(), "Harbor");
  EXPECT_EQ(selectedBundleID(), "com.before");
  EXPECT_TRUE(selectedDevice());
  expectSchemes();
  typing("-\nx", [] { selectTestScheme(); });
  EXPECT_EQ(selectedTestScheme(), "");
  EXPECT_THAT(shown(), HasSubstr("Test scheme cleared"));
  EXPECT_EQ(saves, 2);
}

// Test plans.

class TestPlanSelection : public Selection {
 protected:
  void expectPlans() {
    context.runner.expect("find '/p' -path '*/xcschemes/Harbor.xcscheme' 2>/dev/null | head -1", "/p/H.xcscheme")
        .expectContaining("xctestplan_parse.py' '/p/H.xcscheme' 2>/dev/null",
                          "plan:Unit|Unit.xctestplan\nDEFAULT:All|All.xctestplan")
        .expect("find '/p' -name '*.xctestplan' 2>/dev/null", "/p/Smoke.xctestplan\n/p/Unit.xctestplan");
  }
};

TEST_F(TestPlanSelection, APlanOfTheSchemeIsTakenAsSuch) {
  setSelectedScheme("Harbor");
  expectPlans();
  typing("2\nx", selectTestPlan);
  EXPECT_EQ(selectedTestPlan(), "All");
  EXPECT_TRUE(selectedTestPlanIsFromScheme());
  EXPECT_EQ(saves, 1);
  EXPECT_THAT(shown(), HasSubstr("[02] All  · default"));
  EXPECT_THAT(shown(), HasSubstr("Additional plans in project directory"));
  EXPECT_THAT(shown(), HasSubstr("[03] Smoke"));
}

TEST_F(TestPlanSelection, APlanOfAnotherSchemeBringsThatScheme) {
  setSelectedTestScheme("Harbor");
  setSelectedTestPlanIsFromScheme(true);
  expectPlans();
  context.runner.expect("find '/p' -path '*/xcschemes/*.xcscheme' 2>/dev/null", "/p/H.xcscheme\n/p/Other One.xcscheme")
      .expectContaining("'/p/H.xcscheme'", "plan:Unit|x")
      .expectContaining("'/p/Other One.xcscheme'", "plan:Smoke|x");
  typing("3\nx", selectTestPlan);
  EXPECT_EQ(selectedTestPlan(), "Smoke");
  EXPECT_FALSE(selectedTestPlanIsFromScheme());
  EXPECT_EQ(selectedTestScheme(), "Other One");
  EXPECT_THAT(shown(), HasSubstr("Automatically switched to scheme \"Other One\""));
}

TEST_F(TestPlanSelection, ADashClearsThePlan) {
  setSelectedTestScheme("Harbor");
  setSelectedTestPlan("All");
  setSelectedTestPlanIsFromScheme(true);
  expectPlans();
  typing("-\nx", selectTestPlan);
  EXPECT_EQ(selectedTestPlan(), "");
  EXPECT_FALSE(selectedTestPlanIsFromScheme());
  EXPECT_THAT(shown(), HasSubstr("TestPlan cleared"));
}

TEST_F(TestPlanSelection, TheTestSchemeCanTakeThePlansPlace) {
  setSelectedTestScheme("Harbor");
  setSelectedTestPlan("All");
  expectPlans();
  expectSchemes();
  typing("t\n2\nx", selectTestPlan);
  EXPECT_EQ(selectedTestPlan(), "");
  EXPECT_EQ(selectedTestScheme(), "It's Mac");
}

TEST_F(TestPlanSelection, ANumberThatIsNoRowIsToldAndLeavingChangesNothing) {
  setSelectedTestScheme("Harbor");
  expectPlans();
  typing("4\nx\n", selectTestPlan);
  EXPECT_EQ(selectedTestPlan(), "");
  EXPECT_EQ(saves, 0);
  EXPECT_THAT(shown(), HasSubstr("Invalid selection."));
}

TEST_F(TestPlanSelection, TheTestSchemesLeadToThePlans) {
  setSelectedTestScheme("Harbor");
  expectSchemes();
  expectPlans();
  typing("p\n1\nx", [] { selectTestScheme(); });
  EXPECT_EQ(selectedTestPlan(), "Unit");
}

// Checks at the head of an action.

TEST_F(Selection, ABuildNeedsASchemeATargetAndASimulatorThatExists) {
  EXPECT_FALSE(typing("x", requireTarget));
  EXPECT_THAT(shown(), HasSubstr("No scheme selected."));
  EXPECT_THAT(shown(), HasSubstr("Please select a scheme first using S)."));
  setSelectedScheme("Harbor");
  EXPECT_FALSE(typing("x", requireTarget));
  EXPECT_THAT(shown(), HasSubstr("No device selected."));
  EXPECT_THAT(shown(), HasSubstr("Scheme: Harbor"));
  setSelectedDevice(SelectedDevice{"Gone", "S-GONE", "iOS 1"});
  expectSimulators();
  EXPECT_FALSE(typing("x", requireTarget));
  EXPECT_FALSE(selectedDevice());
  EXPECT_EQ(saves, 1);
  EXPECT_THAT(shown(), HasSubstr("The simulator 'Gone' no longer exists."));
  setSelectedDevice(SelectedDevice{"iPhone 9", "S-9", "iOS 18.2"});
  expectSimulators();
  EXPECT_TRUE(requireTarget());
  selectMac();
  EXPECT_TRUE(requireTarget());
}

TEST_F(Selection, ASimulatorActionOffersToPickOne) {
  selectMac();
  EXPECT_FALSE(typing("x\n", [] { return requireSimulatorTarget("Screenshot"); }));
  EXPECT_THAT(shown(), HasSubstr("\"Screenshot\" is only available for simulators."));
  expectSimulators();
  EXPECT_TRUE(typing("1\n1\nx", [] { return requireSimulatorTarget("Screenshot"); }));
  EXPECT_EQ(selectedDevice()->udid, "S-9");
  EXPECT_TRUE(requireSimulatorTarget("Screenshot"));
}

TEST_F(Selection, ABundleIDIsAskedForOnceAndSaved) {
  EXPECT_EQ(typing("  \n", [] { return requireBundleIdentifier("Bundle ID:"); }), std::nullopt);
  EXPECT_EQ(saves, 0);
  EXPECT_EQ(typing(" com.x \n", [] { return requireBundleIdentifier("Bundle ID:"); }), "com.x");
  EXPECT_EQ(saves, 1);
  EXPECT_EQ(requireBundleIdentifier("Bundle ID:"), "com.x");
  EXPECT_THAT(shown(), HasSubstr("Bundle ID saved: com.x"));
}

TEST_F(Selection, ASavedProjectFileThatIsGoneIsForgottenAndAWorkspaceWins) {
  setSelectedProjectFilePath("/gone/B.xcodeproj");
  context.runner.expectContaining("*.xcworkspace", "./A.xcworkspace");
  detectProject();
  EXPECT_EQ(selectedProjectFilePath(), "");
  EXPECT_EQ(projectFlag(), "-workspace");
  EXPECT_EQ(projectPath(), "./A.xcworkspace");
}

}  // namespace
}  // namespace halyard
