#include "halyard/testruns/test_run_data.hpp"

namespace halyard {

TestRunOutcome classify(const TestRunData& data) {
  if (!data.failed.empty()) return TestRunOutcome::realFailures;
  if (!data.testSucceeded || data.buildFailed || data.testFailed) return TestRunOutcome::technicalFailure;
  return TestRunOutcome::success;
}

}  // namespace halyard
