// Entering a project by its file, at the terminal.
#include <gtest/gtest.h>

#include "tests/support/terminal_session.hpp"

namespace halyard {
namespace {

SessionOptions withProject() {
  return {.sampleProject = false, .homeFiles = {{"work/Demo.xcodeproj/project.pbxproj", ""}, {"work/notes.txt", ""}}};
}

TEST(DirectorySetupAtTheTerminal, AProjectChosenInTheBrowserIsEnteredAndSaved) {
  TerminalSession session(withProject());
  session.waitUntilIdle();
  session.send("a");
  session.waitFor("▶ work/");
  session.expectShows("Looking for: .xcworkspace, .xcodeproj");
  EXPECT_FALSE(session.cursorVisible());
  session.sendSlowly({Key::right});
  session.waitFor("▶ Demo.xcodeproj");
  session.expectShowsNot("notes.txt");
  session.sendSlowly({Key::enter});
  session.waitFor("Delete other caches (without SPM)?");
  session.expectShows("Project file set: " + session.inHome("work/Demo.xcodeproj"));
  EXPECT_TRUE(session.cursorVisible());
  EXPECT_EQ(session.preferences().at("selectedProjectFile"), session.inHome("work/Demo.xcodeproj"));
  EXPECT_EQ(session.preferences().at("workingDirectory"), session.inHome("work"));
  EXPECT_EQ(session.preferences().at("fileBrowserPath"), session.inHome("work"));
}

TEST(DirectorySetupAtTheTerminal, CancellingTheBrowserLeadsBackToTheMenu) {
  TerminalSession session(withProject());
  session.waitUntilIdle();
  session.send("a");
  session.waitFor("▶ work/");
  session.send(Key::escape);
  session.waitFor("CLI TOOL HALYARD");
  session.expectShowsNot("Demo.xcodeproj/");
  session.sendSlowly({"Q"});
  session.expectCleanEnd();
}

}  // namespace
}  // namespace halyard
