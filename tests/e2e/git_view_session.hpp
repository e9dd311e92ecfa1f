// The Git view in a terminal, on a repository of a sandbox.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "test_places.hpp"
#include "tests/support/git_sandbox.hpp"
#include "tests/support/terminal_session.hpp"

namespace halyard {

/// What the view's pictures are made of.
inline constexpr CellColor selectionYellow = CellColor{CellColor::Kind::rgb, 0, 255, 223, 35};

inline SessionOptions gitViewOptions(const GitSandbox& sandbox, const std::string& language = "en",
                                     const std::string& folder = "repo") {
  SessionOptions options;
  options.program = HALYARD_GIT_PROBE;
  options.sampleProject = false;
  options.workingDirectory = sandbox.at(folder);
  options.environment = sandbox.environment();
  // The preferences lie in the home folder that the program sees.
  sandbox.write(".capstanlight_prefs.json", R"({"language": ")" + language + "\"}");
  return options;
}

inline bool isAtGitView(TerminalSession& session) {
  return session.waitFor("/ Search · H Help") && session.waitUntilIdle() && session.isRaw();
}

/// Types and waits for the program to take it.
inline bool press(TerminalSession& session, const Typed& typed) {
  session.send(typed);
  return session.waitUntilIdle();
}

inline void quitGitView(TerminalSession& session) {
  ASSERT_TRUE(session.waitUntilIdle());
  session.send("Q");
  session.expectCleanEnd();
}

}  // namespace halyard
