// The two prompts that letters of the menu open, and a question that is declined.
#include "tests/e2e/build_flow_session.hpp"

namespace halyard {
namespace {

TEST(BuildPrompts, AnotherConfigurationClearsTheProjectsFolder) {
  SessionOptions options = buildOptions(DemoTarget::simulator);
  const std::string old = std::string(demoBuildFolder) + "/old";
  options.homeFiles[old] = "x";
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  session.send("k");
  ASSERT_TRUE(session.waitFor("[1–2] [RETURN]") && session.waitUntilIdle());
  session.send({"02", Key::enter});
  ASSERT_TRUE(session.waitFor("[X]") && session.waitUntilIdle());
  session.expectShows("Configuration switch → Release — clearing cache");
  EXPECT_FALSE(std::filesystem::exists(session.inHome(old)));
  EXPECT_EQ(session.preferences().at("config"), "Release");
  session.send("x");
  quit(session);
}

TEST(BuildPrompts, TheBundleIdentifierIsStoredAndCleared) {
  TerminalSession session(buildOptions(DemoTarget::simulator));
  ASSERT_TRUE(isAtMenu(session));
  session.send("b");
  ASSERT_TRUE(session.waitFor("- = clear") && session.waitUntilIdle());
  session.send({"com.example.typed", Key::enter});
  ASSERT_TRUE(session.waitFor("Bundle ID saved: com.example.typed") && session.waitUntilIdle());
  EXPECT_EQ(session.preferences().at("bundleID"), "com.example.typed");
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  session.send("b");
  ASSERT_TRUE(session.waitFor("(empty = com.example.typed)") && session.waitUntilIdle());
  session.send({"-", Key::enter});
  ASSERT_TRUE(session.waitFor("Bundle ID cleared.") && session.waitUntilIdle());
  session.send("x");
  quit(session);
}

}  // namespace
}  // namespace halyard
