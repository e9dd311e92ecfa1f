// Runs the tests of a project and shows them while they run.
#pragma once

#include <string>

#include "halyard/testruns/test_command.hpp"
#include "halyard/testruns/test_run_data.hpp"

namespace halyard {

/// One run: says that it starts, shows build steps, suites and tests as they come, and stops at the verdict. Adds
/// " 2>&1" to the command. Where the output held no test, the newest result bundle is read. Whether it was aborted is
/// in operationAborted(); what was collected until then stands.
TestRunData runTests(const std::string& command);

/// The same for a request, as a phase of the open timeline.
struct TestPhase {
  std::string name = "Test";
  std::string icon = "🧪";
  std::string detail = {};
};
TestRunData runTestPhase(const TestRequest& request, const TestPhase& phase);

/// Builds the app and its tests as the phase "Build" of the open timeline, and shows the summary unless it was aborted.
/// True: built. The request's action doesn't matter.
bool runTestBuildPhase(TestRequest request);

}  // namespace halyard
