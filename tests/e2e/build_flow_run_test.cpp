// Build & Run from the menu on each kind of target, and the ways in which it ends early.
#include "tests/e2e/build_flow_session.hpp"

namespace halyard {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(BuildFlow, ADigitBuildsAndRunsOnASimulatorWithoutAsking) {
  TerminalSession session(buildOptions(DemoTarget::simulator));
  ASSERT_TRUE(isAtMenu(session));
  session.send("3");
  ASSERT_TRUE(session.waitFor("[+] Another simulator") && session.waitUntilIdle());
  session.expectShowsNot("[j/N]");
  session.expectShows("iPhone 16 (iOS 18.2)");
  session.expectShows("📦 TideTables");
  session.expectShows("BUILD SUCCEEDED");
  session.expectShows("App running! Bundle ID: com.example.harbor");
  session.expectShows("Build Timeline — Build & Run");
  const std::string app = appPath(session, "Debug-iphonesimulator");
  const std::string udid(demoSimulator);
  EXPECT_THAT(
      callsSinceBuild(session),
      ElementsAre("xcodebuild build", "defaults read " + app + "/Contents/Info CFBundleIdentifier",
                  "defaults read " + app + "/Info CFBundleIdentifier", "xcrun simctl install " + udid + " " + app,
                  "xcrun simctl launch --terminate-running-process " + udid + " com.example.harbor",
                  "open -a Simulator"));
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_EQ(session.preferences().at("bundleID"), "com.example.harbor");
  quit(session);
}

TEST(BuildFlow, BuildsAndOpensOnTheMac) {
  TerminalSession session(buildOptions(DemoTarget::mac));
  ASSERT_TRUE(isAtMenu(session));
  session.send("3");
  ASSERT_TRUE(session.waitFor("[X]") && session.waitUntilIdle());
  session.expectShows("App running! Bundle ID: com.example.harbor");
  const std::string app = appPath(session, "Debug");
  EXPECT_THAT(
      callsSinceBuild(session),
      ElementsAre("xcodebuild build", "defaults read " + app + "/Contents/Info CFBundleIdentifier", "open " + app));
  session.send("x");
  quit(session);
}

TEST(BuildFlow, InstallsAndLaunchesOnADevice) {
  TerminalSession session(buildOptions(DemoTarget::device));
  ASSERT_TRUE(isAtMenu(session));
  session.send("3");
  ASSERT_TRUE(session.waitFor("[X]") && session.waitUntilIdle());
  session.expectShows("App running! Bundle ID: com.example.harbor");
  const std::string app = appPath(session, "Debug-iphoneos");
  const std::string device(demoDevice);
  EXPECT_THAT(
      callsSinceBuild(session),
      testing::IsSupersetOf({"xcrun devicectl device install app --device " + device + " " + app,
                             "xcrun devicectl device process launch --device " + device + " com.example.harbor"}));
  session.send("x");
  quit(session);
}

TEST(BuildFlow, AnotherSimulatorGetsTheApp) {
  TerminalSession session(buildOptions(DemoTarget::simulator));
  ASSERT_TRUE(isAtMenu(session));
  session.send("3");
  ASSERT_TRUE(session.waitFor("[+] Another simulator") && session.waitUntilIdle());
  session.send("+");
  ASSERT_TRUE(session.waitFor("iPhone 16 Pro") && session.waitUntilIdle());
  const std::string row = session.row(session.find("iPhone 16 Pro").row);
  const std::size_t digits = row.find_first_of("0123456789");
  session.send({row.substr(digits, 2), Key::enter});
  ASSERT_TRUE(session.waitFor("App started: iPhone 16 Pro") && session.waitUntilIdle());
  EXPECT_THAT(session.callsOf("xcrun"), Contains(HasSubstr("simctl install 3D6E9F27-840A-4B1C-8C35-B2D6E4081704")));
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_EQ(session.preferences().at("simUDID"), demoSimulator);
  quit(session);
}

TEST(BuildFlow, AFailedBuildShowsItsErrorsAndStops) {
  TerminalSession session(buildOptions(DemoTarget::simulator, R"({"fails": true, "warnings": 2})"));
  ASSERT_TRUE(isAtMenu(session));
  session.send("3");
  ASSERT_TRUE(session.waitFor("[X]") && session.waitUntilIdle());
  session.expectShows("BUILD FAILED");
  session.expectShows("cannot find 'quay' in scope  Berth.swift:12");
  session.expectShows("2 build warnings found");
  EXPECT_THAT(callsSinceBuild(session), ElementsAre("xcodebuild build"));
  session.send("x");
  quit(session);
}

TEST(BuildFlow, NoAppAndNoIdentifierAreToldAsWhatTheyAre) {
  for (const auto& [settings, text] :
       {std::pair{R"({"product": false})", "No .app found in build folder."},
        std::pair{R"({"identifier": false})", "Could not read Bundle ID from the app."}}) {
    TerminalSession session(buildOptions(DemoTarget::simulator, settings));
    ASSERT_TRUE(isAtMenu(session));
    session.send("3");
    ASSERT_TRUE(session.waitFor("[X]") && session.waitUntilIdle());
    session.expectShows(text);
    session.expectShowsNot("Launching app");
    session.send("x");
    quit(session);
  }
}

TEST(BuildFlow, CtrlCDuringTheBuildGoesStraightBack) {
  TerminalSession session(buildOptions(DemoTarget::simulator, R"({"slow": true})"));
  ASSERT_TRUE(isAtMenu(session));
  session.send("3");
  ASSERT_TRUE(session.waitFor("Compiling"));
  const std::size_t mark = session.outputMark();
  session.send(Key::ctrlC);
  ASSERT_TRUE(session.waitForOutput("Operation aborted.", mark));
  EXPECT_TRUE(session.waitForOutput("Build Timeline", mark));
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_TRUE(session.waitFor("no child left", [&] { return session.childrenLeft().empty(); }));
  EXPECT_EQ(session.rawOutput(mark).find("BUILD FAILED"), std::string::npos);
  EXPECT_THAT(callsSinceBuild(session), ElementsAre("xcodebuild build"));
  quit(session);
}

TEST(BuildFlow, ADigitDeletesTheProjectsFolderAndBuildsAnew) {
  SessionOptions options = buildOptions(DemoTarget::simulator);
  const std::string old = std::string(demoBuildFolder) + "/old";
  options.homeFiles[old] = "x";
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  session.send("4");
  ASSERT_TRUE(session.waitFor("[+] Another simulator") && session.waitUntilIdle());
  session.expectShows("Step 1/3 — Delete DerivedData");
  session.expectShows("Step 3/3 — Start App");
  session.expectShows("App running! Bundle ID: com.example.harbor");
  EXPECT_FALSE(std::filesystem::exists(session.inHome(old)));
  session.send("x");
  quit(session);
}

}  // namespace
}  // namespace halyard
