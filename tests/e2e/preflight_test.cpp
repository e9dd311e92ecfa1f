// The start without its tools, as the user of the program meets it.
#include <gtest/gtest.h>

#include "tests/support/terminal_session.hpp"

namespace halyard {
namespace {

TEST(PreflightAtTheTerminal, TheMockShowsBothToolsAsMissingAndEndsAtEnter) {
  TerminalSession session({.arguments = {"--mock-preflight"}});
  session.waitFor("Press Enter to quit");
  session.expectShows("System Requirements");
  session.expectShows("[MOCK] Test mode");
  session.expectShows("✗ Not found  xcodebuild");
  session.expectShows("✗ Not found  git");
  session.waitUntilIdle();
  EXPECT_FALSE(session.hasEnded());
  session.send(Key::enter);
  session.expectCleanEnd(ProgramEnd::exited(1));
  EXPECT_TRUE(session.callsOf("which").empty());
}

TEST(PreflightAtTheTerminal, AMissingToolEndsTheProgramAtTheEndOfInput) {
  TerminalSession session({.missingTools = {"xcodebuild"}});
  session.waitFor("Press Enter to quit");
  session.expectShows("✗ Not found  xcodebuild");
  session.expectShows("✓            git");
  session.expectShowsNot("[MOCK]");
  session.waitUntilIdle();
  session.send(Key::ctrlD);
  session.expectCleanEnd(ProgramEnd::exited(1));
}

}  // namespace
}  // namespace halyard
