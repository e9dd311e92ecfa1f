// What xcodebuild calls the tests that a result bundle tells of.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// A test that failed. The live output knows suites and tests by the names that people gave them; -only-testing: wants
/// those of the code.
struct TestAddress {
  std::string target;
  std::string suite;       ///< as the live output has it: the innermost one; empty for a free function
  std::string name;        ///< as the live output has it
  std::string identifier;  ///< "FeeTests/weekCostsSixNights()"

  bool operator==(const TestAddress&) const = default;
};

/// Of the failed tests in the output of `xcresulttool get test-results tests`. Empty where it isn't that.
std::vector<TestAddress> readFailedTestAddresses(std::string_view json);

/// Of the project's newest result bundle.
std::vector<TestAddress> loadFailedTestAddresses();

}  // namespace halyard
