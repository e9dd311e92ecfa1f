// What happened in a test run, and what to do next.
#pragma once

#include <string>

#include "halyard/testruns/test_command.hpp"
#include "halyard/testruns/test_run_data.hpp"

namespace halyard {

/// A run that has ended, with what is needed to run it again.
struct FinishedTestRun {
  TestRunData data;
  TestRequest request;      ///< what ran
  std::string title;        ///< of the action: for its header, and of the timelines of further runs
  std::string description;  ///< below the title
  std::string detail = {};  ///< of the phase in the timeline, fit to be shown
  bool isPlanRun = false;   ///< of all plans: it isn't repeated
};

/// Shows the result block and the banner, then reads keys until the user leaves. The timeline of the run has ended.
/// Runs again by runTestPhase(), in timelines of its own.
void postTestMenu(FinishedTestRun run);

/// The keys that are offered after a run, and what they do: one line, or several where it is wider than the terminal.
std::string drawPostTestOptions(const FinishedTestRun& run, int columns);

}  // namespace halyard
