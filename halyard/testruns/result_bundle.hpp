// Result bundles, which xcodebuild writes for each test run: the tests that they hold.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "halyard/testruns/test_run_data.hpp"

namespace halyard {

enum class BundleResult : std::uint8_t { passed, failed, skipped, unknown };

/// One test case of a bundle.
struct BundleTest {
  std::string identifier;  ///< as -only-testing: names it within its target: "Suite/test()"
  std::string name;
  std::string suite;   ///< what encloses it
  std::string target;  ///< of the test bundle around it; may be empty
  BundleResult result = BundleResult::unknown;
  double duration = 0;  ///< seconds
  std::vector<std::string> errors = {};

  bool operator==(const BundleTest&) const = default;
};

/// From `xcresulttool get test-results tests`: the test cases in order, at any depth. Expected failures have passed.
/// Empty for what can't be read.
std::vector<BundleTest> readBundleTests(std::string_view json);

/// Puts passed and failed tests into the record, with one result per suite and the suites' targets.
void addBundleTests(std::vector<BundleTest> tests, TestRunData& data);

/// The newest bundle of the project's own build folder, in sort order; empty without one.
std::string newestResultBundle();
std::vector<BundleTest> testsOfResultBundle(const std::string& bundle);

}  // namespace halyard
