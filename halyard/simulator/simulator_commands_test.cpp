#include "halyard/simulator/simulator_commands.hpp"

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "halyard/exec/command_runner.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

struct ExpectedCommand {
  SimulatorCommand command;
  SimulatorRunner runner;
  std::vector<std::string_view> values;
  std::string_view line;
};

// Values that hold a single quote reach the shell as one word; raw ones stand as they are.
const ExpectedCommand expectedCommands[] = {
    {SimulatorCommand::shutdown, SimulatorRunner::status, {"it's 1"}, R"(xcrun simctl shutdown 'it'\''s 1')"},
    {SimulatorCommand::shutdownQuietly,
     SimulatorRunner::capture,
     {"it's 1"},
     R"(xcrun simctl shutdown 'it'\''s 1' 2>/dev/null; true)"},
    {SimulatorCommand::boot, SimulatorRunner::status, {"it's 1"}, R"(xcrun simctl boot 'it'\''s 1' 2>/dev/null; true)"},
    {SimulatorCommand::bootWithoutOutput,
     SimulatorRunner::capture,
     {"it's 1"},
     R"(xcrun simctl boot 'it'\''s 1' 2>/dev/null; true)"},
    {SimulatorCommand::openSimulatorApp, SimulatorRunner::status, {}, R"(open -a Simulator)"},
    {SimulatorCommand::shutdownAll, SimulatorRunner::status, {}, R"(xcrun simctl shutdown all)"},
    {SimulatorCommand::deleteUnavailable, SimulatorRunner::status, {}, R"(xcrun simctl delete unavailable)"},
    {SimulatorCommand::eraseOne,
     SimulatorRunner::status,
     {"it's 1"},
     R"(xcrun simctl shutdown 'it'\''s 1' 2>/dev/null; xcrun simctl erase 'it'\''s 1')"},
    {SimulatorCommand::eraseAll, SimulatorRunner::status, {}, R"(xcrun simctl erase all)"},
    {SimulatorCommand::deleteAll, SimulatorRunner::status, {}, R"(xcrun simctl delete all)"},
    {SimulatorCommand::deleteAllQuietly, SimulatorRunner::capture, {}, R"(xcrun simctl delete all 2>/dev/null; true)"},
    {SimulatorCommand::deleteAllRuntimesQuietly,
     SimulatorRunner::capture,
     {},
     R"(xcrun simctl runtime delete all 2>/dev/null; true)"},
    {SimulatorCommand::shutdownAllQuietly,
     SimulatorRunner::capture,
     {},
     R"(xcrun simctl shutdown all 2>/dev/null; true)"},
    {SimulatorCommand::killSimulatorApp, SimulatorRunner::capture, {}, R"(killall Simulator 2>/dev/null; true)"},
    {SimulatorCommand::killCoreSimulatorService,
     SimulatorRunner::capture,
     {},
     R"(killall -9 com.apple.CoreSimulator.CoreSimulatorService 2>/dev/null; true)"},
    {SimulatorCommand::create,
     SimulatorRunner::live,
     {"it's 1", "it's 2", "it's 3"},
     R"(xcrun simctl create 'it'\''s 1' 'it'\''s 2' 'it'\''s 3' 2>&1)"},
    {SimulatorCommand::listAsText, SimulatorRunner::status, {}, R"(xcrun simctl list)"},
    {SimulatorCommand::listAvailableAsText, SimulatorRunner::status, {}, R"(xcrun simctl list devices available)"},
    {SimulatorCommand::listDevicesJson, SimulatorRunner::capture, {}, R"(xcrun simctl list devices -j 2>/dev/null)"},
    {SimulatorCommand::listAvailableJson,
     SimulatorRunner::capture,
     {},
     R"(xcrun simctl list devices available -j 2>/dev/null)"},
    {SimulatorCommand::listTextQuietly, SimulatorRunner::capture, {}, R"(xcrun simctl list devices 2>/dev/null)"},
    {SimulatorCommand::listBooted, SimulatorRunner::capture, {}, R"(xcrun simctl list devices booted 2>/dev/null)"},
    {SimulatorCommand::listRuntimes, SimulatorRunner::capture, {}, R"(xcrun simctl list runtimes -j 2>/dev/null)"},
    {SimulatorCommand::uninstall,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl uninstall 'it'\''s 1' 'it'\''s 2' 2>/dev/null; true)"},
    {SimulatorCommand::installQuietly,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl install 'it'\''s 1' 'it'\''s 2' 2>/dev/null || true)"},
    {SimulatorCommand::install,
     SimulatorRunner::capture,
     {"it's 1", "it's 2"},
     R"(xcrun simctl install 'it'\''s 1' 'it'\''s 2' 2>&1)"},
    {SimulatorCommand::launchAndReplace,
     SimulatorRunner::capture,
     {"it's 1", "it's 2"},
     R"(xcrun simctl launch --terminate-running-process 'it'\''s 1' 'it'\''s 2' 2>&1)"},
    {SimulatorCommand::launch,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl launch 'it'\''s 1' 'it'\''s 2' 2>&1)"},
    {SimulatorCommand::launchPlain,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl launch 'it'\''s 1' 'it'\''s 2')"},
    {SimulatorCommand::launchWithArguments,
     SimulatorRunner::status,
     {"it's 1", "it's 2", "raw3"},
     R"(xcrun simctl launch 'it'\''s 1' 'it'\''s 2' raw3 2>&1)"},
    {SimulatorCommand::terminate,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl terminate 'it'\''s 1' 'it'\''s 2' 2>/dev/null; true)"},
    {SimulatorCommand::appDataFolder,
     SimulatorRunner::capture,
     {"it's 1", "it's 2"},
     R"(xcrun simctl get_app_container 'it'\''s 1' 'it'\''s 2' data 2>/dev/null)"},
    {SimulatorCommand::appGroupFolders,
     SimulatorRunner::capture,
     {"it's 1", "it's 2"},
     R"(xcrun simctl get_app_container 'it'\''s 1' 'it'\''s 2' groups 2>/dev/null)"},
    {SimulatorCommand::appBundleFolder,
     SimulatorRunner::capture,
     {"it's 1", "it's 2"},
     R"(xcrun simctl get_app_container 'it'\''s 1' 'it'\''s 2' 2>/dev/null)"},
    {SimulatorCommand::screenshot,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl io 'it'\''s 1' screenshot raw2)"},
    {SimulatorCommand::memoryPressure,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl io 'it'\''s 1' sendMemoryPressure raw2 2>&1)"},
    {SimulatorCommand::appearance,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl ui 'it'\''s 1' appearance raw2 2>/dev/null)"},
    {SimulatorCommand::contentSize,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl ui 'it'\''s 1' content_size 'it'\''s 2' 2>&1)"},
    {SimulatorCommand::increaseContrast,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl ui 'it'\''s 1' increase_contrast raw2 2>&1)"},
    {SimulatorCommand::stageManager,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl ui 'it'\''s 1' stage_manager_enabled raw2)"},
    {SimulatorCommand::audioRoute,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl ui 'it'\''s 1' audio_route 'it'\''s 2')"},
    {SimulatorCommand::push,
     SimulatorRunner::live,
     {"it's 1", "it's 2", "it's 3"},
     R"(xcrun simctl push 'it'\''s 1' 'it'\''s 2' 'it'\''s 3' 2>&1)"},
    {SimulatorCommand::privacy,
     SimulatorRunner::status,
     {"it's 1", "raw2", "raw3", "it's 4"},
     R"(xcrun simctl privacy 'it'\''s 1' raw2 raw3 'it'\''s 4' 2>/dev/null)"},
    {SimulatorCommand::resetAdvertising,
     SimulatorRunner::status,
     {"it's 1"},
     R"(xcrun simctl privacy 'it'\''s 1' reset advertising 2>/dev/null)"},
    {SimulatorCommand::resetAppClip,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl privacy 'it'\''s 1' reset appclip 'it'\''s 2')"},
    {SimulatorCommand::addMedia,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl addmedia 'it'\''s 1' 'it'\''s 2' 2>/dev/null)"},
    {SimulatorCommand::openUrl,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl openurl 'it'\''s 1' 'it'\''s 2' 2>/dev/null)"},
    {SimulatorCommand::openUrlPlain,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl openurl 'it'\''s 1' 'it'\''s 2')"},
    {SimulatorCommand::statusBarAppStoreLook,
     SimulatorRunner::status,
     {"it's 1", "it's 2", "raw3"},
     R"(xcrun simctl status_bar 'it'\''s 1' override --time 'it'\''s 2' --batteryLevel raw3 --batteryState charged --wifiBars 3 --cellularBars 4 2>/dev/null)"},
    {SimulatorCommand::statusBarClear,
     SimulatorRunner::status,
     {"it's 1"},
     R"(xcrun simctl status_bar 'it'\''s 1' clear 2>/dev/null)"},
    {SimulatorCommand::statusBarBattery,
     SimulatorRunner::status,
     {"it's 1", "raw2", "raw3"},
     R"(xcrun simctl status_bar 'it'\''s 1' override --batteryLevel raw2 --batteryState raw3 2>/dev/null)"},
    {SimulatorCommand::statusBarTime,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl status_bar 'it'\''s 1' override --time 'it'\''s 2' 2>/dev/null)"},
    {SimulatorCommand::statusBarCellularMode,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl status_bar 'it'\''s 1' override --cellularMode raw2 2>/dev/null)"},
    {SimulatorCommand::statusBarWifiBars,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl status_bar 'it'\''s 1' override --wifiBars raw2 2>/dev/null)"},
    {SimulatorCommand::statusBarCellularBars,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl status_bar 'it'\''s 1' override --cellularBars raw2 2>/dev/null)"},
    {SimulatorCommand::statusBarOperator,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl status_bar 'it'\''s 1' override --operatorName 'it'\''s 2' 2>/dev/null)"},
    {SimulatorCommand::locationSet,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl location 'it'\''s 1' set 'it'\''s 2' 2>/dev/null)"},
    {SimulatorCommand::locationClear,
     SimulatorRunner::status,
     {"it's 1"},
     R"(xcrun simctl location 'it'\''s 1' clear 2>/dev/null)"},
    {SimulatorCommand::keychainReset,
     SimulatorRunner::status,
     {"it's 1"},
     R"(xcrun simctl keychain 'it'\''s 1' reset 2>/dev/null)"},
    {SimulatorCommand::addRootCertificate,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl keychain 'it'\''s 1' add-root-cert 'it'\''s 2' 2>&1)"},
    {SimulatorCommand::iCloudSync, SimulatorRunner::status, {"it's 1"}, R"(xcrun simctl icloud_sync 'it'\''s 1' 2>&1)"},
    {SimulatorCommand::backgroundFetch,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl background-fetch 'it'\''s 1' 'it'\''s 2')"},
    {SimulatorCommand::widgetReload,
     SimulatorRunner::status,
     {"it's 1"},
     R"(xcrun simctl widget reload-all-timelines 'it'\''s 1')"},
    {SimulatorCommand::widgetCache,
     SimulatorRunner::status,
     {"it's 1"},
     R"(xcrun simctl spawn 'it'\''s 1' notifyutil -p 'com.apple.widgetkit.simulator.reload' 2>/dev/null)"},
    {SimulatorCommand::diagnose, SimulatorRunner::status, {"it's 1"}, R"(xcrun simctl diagnose -b 'it'\''s 1' 2>&1)"},
    {SimulatorCommand::diagnoseToFolder,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl diagnose -b 'it'\''s 1' --output 'it'\''s 2' 2>&1)"},
    {SimulatorCommand::zipFolder,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(zip -r 'it'\''s 1' 'it'\''s 2' 2>/dev/null)"},
    {SimulatorCommand::findPrivacyManifest,
     SimulatorRunner::capture,
     {},
     R"(find ~/Library/Developer/Xcode/DerivedData -name 'PrivacyInfo.xcprivacy' 2>/dev/null | head -1)"},
    {SimulatorCommand::appLanguage,
     SimulatorRunner::status,
     {"it's 1", "it's 2", "it's 3"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write 'it'\''s 2' AppleLanguages -array 'it'\''s 3' 2>/dev/null)"},
    {SimulatorCommand::systemLanguage,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write -g AppleLanguages -array 'it'\''s 2' 2>/dev/null)"},
    {SimulatorCommand::systemLocale,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write -g AppleLocale 'it'\''s 2' 2>/dev/null)"},
    {SimulatorCommand::regionCode,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write -g AppleRegionCode 'it'\''s 2' 2>/dev/null)"},
    {SimulatorCommand::boldText,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write -g AccessibilityBoldTextEnabled -bool raw2 2>&1)"},
    {SimulatorCommand::reduceMotion,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write -g UIAccessibilityReduceMotionEnabled -bool raw2 2>&1)"},
    {SimulatorCommand::reduceTransparency,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write com.apple.Accessibility ReduceTransparencyEnabled -bool raw2 2>&1)"},
    {SimulatorCommand::onOffLabels,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write com.apple.Accessibility OnOffSwitchLabelsEnabled -bool raw2 2>&1)"},
    {SimulatorCommand::differentiateWithoutColor,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write com.apple.Accessibility DifferentiateWithoutColor -bool raw2 2>&1)"},
    {SimulatorCommand::displayZoom,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write com.apple.Preferences displayZoom -bool raw2 2>&1)"},
    {SimulatorCommand::slowAnimations,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write -g UIAnimationDragCoefficient -float raw2 2>/dev/null)"},
    {SimulatorCommand::highlightClippedViews,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write -g UIViewLayerHighlightOutsideContainerLayer -int raw2 2>/dev/null)"},
    {SimulatorCommand::timeZone,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write -g NSTimeZone 'it'\''s 2' 2>/dev/null)"},
    {SimulatorCommand::twentyFourHourTime,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write -g AppleICUForce24HourTime -bool raw2 2>/dev/null)"},
    {SimulatorCommand::resetSystemLanguage,
     SimulatorRunner::status,
     {"it's 1"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults delete -g AppleLanguages 2>/dev/null; true)"},
    {SimulatorCommand::globalWriteTyped,
     SimulatorRunner::status,
     {"it's 1", "it's 2", "raw3", "it's 4"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write -g 'it'\''s 2' -raw3 'it'\''s 4' 2>/dev/null)"},
    {SimulatorCommand::readAppDefaults,
     SimulatorRunner::capture,
     {"it's 1", "it's 2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults read 'it'\''s 2' 2>&1)"},
    {SimulatorCommand::deleteAppDefaults,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults delete 'it'\''s 2' 2>/dev/null; true)"},
    {SimulatorCommand::metalValidation,
     SimulatorRunner::status,
     {"it's 1", "it's 2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write 'it'\''s 2' MTLDebugLayerEnabled -bool true 2>/dev/null)"},
    {SimulatorCommand::sqlDebugLevel,
     SimulatorRunner::status,
     {"it's 1", "raw2"},
     R"(xcrun simctl spawn 'it'\''s 1' defaults write -g com.apple.CoreData.SQLDebug -int raw2 2>/dev/null)"},
};

TEST(SimulatorCommands, EachLineHasItsWordsItsQuotingAndItsRunner) {
  ASSERT_EQ(std::size(expectedCommands), static_cast<std::size_t>(SimulatorCommand::sqlDebugLevel) + 1);
  for (const ExpectedCommand& expected : expectedCommands) {
    ASSERT_EQ(simulatorValueCount(expected.command), expected.values.size()) << expected.line;
    EXPECT_EQ(simulatorCommand(expected.command, std::span(expected.values)), expected.line);
    EXPECT_EQ(simulatorRunner(expected.command), expected.runner) << expected.line;
  }
}

TEST(SimulatorCommands, HostileValuesStayOneWordOfTheShellInEveryCommand) {
  const TemporaryFolder folder;
  const std::string hostile = "a'b $(touch " + folder.at("harm") + ") `id` \n; touch " + folder.at("harm");
  DefaultCommandRunner shell;
  for (const ExpectedCommand& expected : expectedCommands) {
    std::vector<std::string_view> values = expected.values;
    std::size_t hostileCount = 0;
    for (std::string_view& value : values) {
      if (value.starts_with("raw")) continue;
      value = hostile;
      ++hostileCount;
    }
    if (hostileCount == 0) continue;
    // Functions in place of the tools print how many of their words are the hostile text.
    const std::string output = shell.run(
        "hostile=" + std::string("\"$(printf '%b' '") +
        [&] {
          std::string octal;
          for (const char c : hostile) {
            char digits[8];
            std::snprintf(digits, sizeof digits, "\\0%03o", static_cast<unsigned>(static_cast<unsigned char>(c)));
            octal += digits;
          }
          return octal;
        }() +
        "')\"\n"
        "count() { for word; do [ \"$word\" = \"$hostile\" ] && echo hit >&3; done; }\n"
        "xcrun() { count \"$@\"; }; zip() { count \"$@\"; }; killall() { :; }; open() { :; }\n"
        "exec 3>&1\n" +
        simulatorCommand(expected.command, std::span(values)));
    std::size_t hits = 0;
    for (std::size_t at = output.find("hit"); at != std::string::npos; at = output.find("hit", at + 1)) ++hits;
    const std::size_t repeated = expected.command == SimulatorCommand::eraseOne ? 1 : 0;
    EXPECT_EQ(hits, hostileCount + repeated) << expected.line;
  }
  EXPECT_EQ(folder.read("harm"), "");
  EXPECT_FALSE(std::filesystem::exists(folder.at("harm")));
}

TEST(SimulatorCommands, TheEmptyIdentifierAndTheMacAreUnknownWithoutAsking) {
  ContextReset context;
  EXPECT_FALSE(isSimulatorKnown(""));
  EXPECT_FALSE(isSimulatorKnown("local"));
  EXPECT_TRUE(context.runner.commands().empty());
}

TEST(SimulatorCommands, AnIdentifierIsKnownWhereTheListHoldsIt) {
  ContextReset context;
  context.runner.expect("xcrun simctl list devices -j 2>/dev/null", R"({"devices":{"x":[{"udid":"AB-1"}]}})");
  context.runner.expect("xcrun simctl list devices -j 2>/dev/null", R"({"devices":{"x":[{"udid":"AB-1"}]}})");
  EXPECT_TRUE(isSimulatorKnown("AB-1"));
  EXPECT_FALSE(isSimulatorKnown("AB-2"));
}

TEST(SimulatorCommands, TheFirstLineWithTheIdentifierSaysWhetherItIsBooted) {
  ContextReset context;
  const std::string list =
      "== Devices ==\n-- iOS 17.5 --\n    One (AB-1) (Shutdown) \n    Two (AB-2) (Booted) \n    Again (AB-1) (Booted) "
      "\n";
  for (int i = 0; i < 3; ++i) context.runner.expect("xcrun simctl list devices 2>/dev/null", list);
  EXPECT_FALSE(isSimulatorBooted("AB-1"));
  EXPECT_TRUE(isSimulatorBooted("AB-2"));
  EXPECT_FALSE(isSimulatorBooted("AB-3"));
}

TEST(SimulatorCommands, TheServiceIsEndedInThreeSteps) {
  ContextReset context;
  context.runner.expect("xcrun simctl shutdown all 2>/dev/null; true")
      .expect("killall Simulator 2>/dev/null; true")
      .expect("killall -9 com.apple.CoreSimulator.CoreSimulatorService 2>/dev/null; true");
  killSimulatorService();
}

TEST(SimulatorCommands, CreatingGivesTheStatusAndTheNewIdentifier) {
  ContextReset context;
  context.runner.expect("xcrun simctl create 'Ada'\\''s' 'type' 'runtime' 2>&1", "  NEW-1 \n", 0);
  const PipeRunResult result = createSimulator("Ada's", "type", "runtime");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "NEW-1");
}

TEST(SimulatorCommands, VariablesStandBeforeTheDeviceEachAsOneWord) {
  ContextReset context;
  context.runner.expect("xcrun simctl launch --setenv 'A=1' --setenv 'B=it'\\''s' 'U' 'com.x' 2>&1", "", 7);
  const std::vector<std::string> variables = {"A=1", "B=it's"};
  EXPECT_EQ(launchWithEnvironment("U", "com.x", variables), 7);
}

TEST(SimulatorCommands, ClearingTheDataOfAnAppThatIsNotInstalledDeletesNothing) {
  ContextReset context;
  context.runner.expect("xcrun simctl get_app_container 'U' 'com.x' data 2>/dev/null", "");
  EXPECT_EQ(clearAppData("U", "com.x"), 1);
}

TEST(SimulatorCommands, ClearingKeepsTheFolderAndTakesItsContent) {
  ContextReset context;
  context.runner.expect("xcrun simctl get_app_container 'U' 'com.x' data 2>/dev/null", "/data/it's\n")
      .expect("find '/data/it'\\''s' -mindepth 1 -delete 2>/dev/null; true");
  EXPECT_EQ(clearAppData("U", "com.x"), 0);
}

TEST(SimulatorCommands, TheSizeIsWhatStandsBeforeTheTab) {
  ContextReset context;
  context.runner.expect("xcrun simctl get_app_container 'U' 'com.x' data 2>/dev/null", "/data/x\n")
      .expect("du -sh '/data/x' 2>/dev/null", "1,4M\t/data/x\n")
      .expect("xcrun simctl get_app_container 'U' 'com.y' data 2>/dev/null", "");
  EXPECT_EQ(appDataSize("U", "com.x"), "1,4M");
  EXPECT_EQ(appDataSize("U", "com.y"), "");
}

TEST(SimulatorCommands, GroupsAreOnePerLine) {
  ContextReset context;
  context.runner.expect("xcrun simctl get_app_container 'U' 'com.x' groups 2>/dev/null",
                        "group.a\t/data/a \n\n  group.b\t/data/b\n");
  EXPECT_EQ(appGroupFolders("U", "com.x"), (std::vector<std::string>{"group.a\t/data/a", "group.b\t/data/b"}));
}

TEST(SimulatorCommands, TheVersionIsReadFromTheBundle) {
  ContextReset context;
  const std::string buddy = "/usr/libexec/PlistBuddy -c 'Print ";
  context.runner.expect("xcrun simctl get_app_container 'U' 'com.x' 2>/dev/null", "/apps/It's.app\n")
      .expect(buddy + "CFBundleShortVersionString' '/apps/It'\\''s.app/Info.plist' 2>/dev/null", "2.1\n")
      .expect(buddy + "CFBundleVersion' '/apps/It'\\''s.app/Info.plist' 2>/dev/null", " 45 \n")
      .expect("xcrun simctl get_app_container 'U' 'com.y' 2>/dev/null", "");
  EXPECT_EQ(appVersion("U", "com.x"), (AppVersion{"2.1", "45"}));
  EXPECT_EQ(appVersion("U", "com.y"), AppVersion{});
}

TEST(SimulatorCommands, LanguageAndRegionAreTwoCommandsOfWhichTheSecondCounts) {
  ContextReset context;
  const std::string spawn = "xcrun simctl spawn 'U' defaults write -g ";
  context.runner.expect(spawn + "AppleLanguages -array 'de' 2>/dev/null", "", 1)
      .expect(spawn + "AppleLocale 'de_DE' 2>/dev/null", "", 0)
      .expect(spawn + "AppleLocale 'fr_FR' 2>/dev/null", "", 0)
      .expect(spawn + "AppleRegionCode 'FR' 2>/dev/null", "", 3);
  EXPECT_EQ(setSystemLanguage("U", "de", "de_DE"), 0);
  EXPECT_EQ(setRegion("U", "fr_FR", "FR"), 3);
}

TEST(SimulatorCommands, OnlyTheWordZoomedZoomsTheDisplay) {
  ContextReset context;
  const std::string spawn = "xcrun simctl spawn 'U' defaults write com.apple.Preferences displayZoom -bool ";
  context.runner.expect(spawn + "YES 2>&1").expect(spawn + "NO 2>&1").expect(spawn + "NO 2>&1");
  setDisplayZoom("U", "zoomed");
  setDisplayZoom("U", "standard");
  setDisplayZoom("U", "Zoomed");
}

TEST(SimulatorCommands, ALocationIsOneValue) {
  ContextReset context;
  context.runner.expect("xcrun simctl location 'U' set '48.1351,11.5820' 2>/dev/null");
  setLocation("U", "48.1351", "11.5820");
}

}  // namespace
}  // namespace halyard
