// The rows of building that ask first, from the menu's group.
#include "tests/e2e/build_flow_session.hpp"

namespace halyard {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

/// Puts the cursor on a row of the group that a letter opens, and runs it.
bool runRow(TerminalSession& session, std::string_view group, std::string_view row) {
  session.send(group);
  if (!session.waitFor(row) || !session.waitUntilIdle()) return false;
  session.send(Key::right);
  for (int i = 0; i < 20; ++i) {
    if (!session.waitUntilIdle()) return false;
    const CellPosition at = session.find(row);
    if (session.cell(at.row, at.column).background == CellColor::rgb(0, 0, 0)) break;
    session.send(Key::down);
  }
  session.send(Key::enter);
  return session.waitFor(row) && session.waitUntilIdle();
}

TEST(BuildRows, ADeclinedQuestionRunsNothingAndReturnsAtOnce) {
  TerminalSession session(buildOptions(DemoTarget::simulator));
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(runRow(session, "B", "Clean (incl. PM) & Build & Launch"));
  session.expectShows("Start Clean (incl. PM) & Build & Launch? [j/N]");
  session.send("n");
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_THAT(callsSinceBuild(session), testing::IsEmpty());
  quit(session);
}

TEST(BuildRows, TheFullResetResolvesBuildsAndLaunches) {
  SessionOptions options = buildOptions(DemoTarget::simulator);
  options.homeFiles["Library/Caches/org.swift.swiftpm/old"] = "x";
  options.homeFiles["Library/Developer/Xcode/ModuleCache/old"] = "x";
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(runRow(session, "B", "Clean (incl. PM) & Build & Launch"));
  session.send("j");
  ASSERT_TRUE(session.waitFor("[+] Another simulator") && session.waitUntilIdle());
  session.expectShows("Packages resolved.");
  session.expectShows("App running! Bundle ID: com.example.harbor");
  session.expectShows("PM-Sync");
  EXPECT_FALSE(std::filesystem::exists(session.inHome("Library/Caches/org.swift.swiftpm")));
  EXPECT_FALSE(std::filesystem::exists(session.inHome("Library/Developer/Xcode/ModuleCache")));
  EXPECT_THAT(session.callsOf("xcodebuild"), Contains(HasSubstr("-resolvePackageDependencies")));
  session.send("x");
  quit(session);
}

TEST(BuildRows, TheChecksCountWhatStandsInTheSources) {
  SessionOptions options = buildOptions(DemoTarget::simulator);
  options.homeFiles["Harbor/Harbor/Marks.swift"] = "// TODO: berth\n<<<<<<< HEAD\n=======\n>>>>>>> x\n";
  options.missingTools = {"swiftlint"};
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(runRow(session, "B", "Check"));
  ASSERT_TRUE(session.waitFor("[X]") && session.waitUntilIdle());
  session.expectShows("SwiftLint not installed — skipped.");
  session.expectShows("TODO/FIXME/HACK: 1 open comments");
  session.expectShows("Conflict markers found! Please resolve.");
  session.expectShows("There are 1 issues — please review.");
  session.send("x");
  quit(session);
}

TEST(BuildRows, AppsAreLaunchedWithoutBuilding) {
  TerminalSession session(buildOptions(DemoTarget::simulator));
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(runRow(session, "S", "Launch App"));
  session.send("j");
  ASSERT_TRUE(session.waitFor("No built app found in DerivedData.") && session.waitUntilIdle());
  session.send("j");
  ASSERT_TRUE(session.waitFor("Build and launch app? [j/N]") && session.waitUntilIdle());
  session.send("j");
  ASSERT_TRUE(session.waitFor("[+] Another simulator") && session.waitUntilIdle());
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  const std::size_t builds = session.callsOf("xcodebuild").size();
  ASSERT_TRUE(runRow(session, "S", "Launch App"));
  session.send("j");
  ASSERT_TRUE(session.waitFor("App started: iPhone 16") && session.waitUntilIdle());
  EXPECT_EQ(session.callsOf("xcodebuild").size(), builds);
  session.send("x");
  quit(session);
}

}  // namespace
}  // namespace halyard
