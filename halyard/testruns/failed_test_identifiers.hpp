// How a run that tests a part only is told which tests.
#pragma once

#include <string>
#include <vector>

#include "halyard/testruns/test_run_data.hpp"

namespace halyard {

struct BundleTest;

/// The failed tests as "Target/Suite/test", each once, in order; what -only-testing: takes. Where the live output
/// didn't tell a test's target, the newest result bundle is asked, which also knows the real names behind those that
/// Swift Testing shows. A test that nobody can name is left out.
std::vector<std::string> failedTestIdentifiers(const TestRunData& data);

/// The same with the tests of a bundle at hand.
std::vector<std::string> failedTestIdentifiers(const TestRunData& data, const std::vector<BundleTest>& tests);

}  // namespace halyard
