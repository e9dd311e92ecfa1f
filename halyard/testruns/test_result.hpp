// What a test run found, as it is shown after the run.
#pragma once

#include <string>

#include "halyard/testruns/test_run_data.hpp"

namespace halyard {

/// The detailed block: errors of the build, suites that passed and suites that failed with their tests, warnings, and
/// what a technical failure may come from.
std::string drawBuildTestResult(const TestRunData& data);
void printBuildTestResult(const TestRunData& data);

/// The closing banner. `errors` and `warnings` are those of the build.
std::string drawTestBanner(const TestRunData& data, int errors, int warnings);
void printTestBanner(const TestRunData& data, int errors, int warnings);

}  // namespace halyard
