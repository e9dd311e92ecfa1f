#include "halyard/build/launch_app.hpp"

#include "halyard/build/build_flow_testing.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/simulator/simulator_commands.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

TEST(LaunchedApp, ErrorInAnyCaseOrInvalidAsWrittenIsAFailure) {
  EXPECT_TRUE(simulatorToolFailed("An ERROR was encountered"));
  EXPECT_TRUE(simulatorToolFailed("Invalid device: x"));
  EXPECT_FALSE(simulatorToolFailed("invalidated"));
  EXPECT_FALSE(simulatorToolFailed(""));
  EXPECT_FALSE(simulatorToolFailed("com.example.Harbor: 4711"));
}

TEST(LaunchedApp, ANameThatSoundsLikeAFailureIsNone) {
  EXPECT_FALSE(simulatorLaunchFailed("com.example.TerrorGame: 4711", "com.example.TerrorGame"));
  EXPECT_TRUE(simulatorLaunchFailed("com.example.TerrorGame: not found", "com.example.TerrorGame"));
  EXPECT_TRUE(simulatorLaunchFailed("com.example.TerrorGame: ", "com.example.TerrorGame"));
  EXPECT_TRUE(simulatorLaunchFailed("An error was encountered\ncom.example.App: 1", "com.example.App"));
  EXPECT_FALSE(simulatorLaunchFailed("", ""));
}

TEST(LaunchedApp, TheBundleIdentifierIsLookedForInBothLayouts) {
  const auto commands = bundleIDCommands("/a/My App.app");
  EXPECT_EQ(commands[0], "defaults read '/a/My App.app/Contents/Info' CFBundleIdentifier 2>/dev/null");
  EXPECT_EQ(commands[1], "defaults read '/a/My App.app/Info' CFBundleIdentifier 2>/dev/null");
}

TEST(LaunchedApp, HostileNamesAreOneWordOfTheShellEach) {
  const TemporaryFolder folder;
  const std::string hostile = "/a'b $(touch " + folder.at("x") + ") `touch " + folder.at("y") + "` \n;\".app";
  const std::string tools = "defaults() { printf '<%s>' \"$@\"; }; xcrun() { printf '<%s>' \"$@\"; }; ";
  DefaultCommandRunner runner;
  EXPECT_EQ(runner.run(tools + bundleIDCommands(hostile)[1]), "<read><" + hostile + "/Info><CFBundleIdentifier>");
  EXPECT_EQ(runner.run(tools + simulatorCommand(SimulatorCommand::install, {hostile, hostile})),
            "<simctl><install><" + hostile + "><" + hostile + ">");
  EXPECT_EQ(runner.run(tools + simulatorCommand(SimulatorCommand::launchAndReplace, {hostile, hostile})),
            "<simctl><launch><--terminate-running-process><" + hostile + "><" + hostile + ">");
  EXPECT_FALSE(std::filesystem::exists(folder.at("x")));
  EXPECT_FALSE(std::filesystem::exists(folder.at("y")));
}

class LaunchOnTarget : public FlowTest {};

TEST_F(LaunchOnTarget, TheMacOpensTheQuotedPath) {
  runner.expect(R"(open '/a/it'\''s $(x).app')");
  const CapturedOutput output;
  EXPECT_TRUE(launchApp({"local", "My Mac", "", ActiveTarget::Kind::mac}, {"/a/it's $(x).app", ""}));
  EXPECT_EQ(selectedBundleID(), "");
  EXPECT_EQ(saves(), 1);
}

TEST_F(LaunchOnTarget, ASimulatorWithoutASystemHasThePlainTexts) {
  setSelectedBundleID("com.example.Before");
  installed().launched();
  const CapturedOutput output;
  EXPECT_TRUE(launchApp({"UDID-1", "iPhone 16", "", ActiveTarget::Kind::simulator}, {app, "com.example.Harbor"}));
  EXPECT_THAT(output.text(), testing::HasSubstr("Installing on Simulator …"));
  EXPECT_THAT(output.text(), testing::HasSubstr("Launching app in Simulator …"));
  EXPECT_EQ(selectedBundleID(), "com.example.Harbor");
}

TEST_F(LaunchOnTarget, OnlyASimulatorIsPrepared) {
  EXPECT_TRUE(prepareTarget({"local", "My Mac", "", ActiveTarget::Kind::mac}));
  EXPECT_TRUE(prepareTarget({"X", "iPhone", "", ActiveTarget::Kind::physical}));
  prepared();
  EXPECT_TRUE(prepareTarget({"UDID-1", "iPhone 16", "", ActiveTarget::Kind::simulator}));
}

}  // namespace
}  // namespace halyard
