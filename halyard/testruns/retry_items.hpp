// Which tests a retry runs, in xcodebuild's words.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "halyard/testruns/result_bundle.hpp"
#include "halyard/testruns/test_run_data.hpp"

namespace halyard {

/// Longer selections name suites, then targets, in place of tests: a command must fit what a system passes to a
/// program as one word.
inline constexpr std::size_t longestSelection = std::size_t{96} * 1024;

/// The failed tests of a run as shell words: -only-testing:'Target/Suite/test', each once. `bundleTests` is asked,
/// once, where the run alone doesn't say what a test is called: names of Swift Testing, and suites whose target never
/// showed. A test that can't be named at all is left out.
std::string retrySelection(const TestRunData& data, const std::function<std::vector<BundleTest>()>& bundleTests,
                           std::size_t limit = longestSelection);

}  // namespace halyard
