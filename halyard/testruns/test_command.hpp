// The command lines of test runs.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace halyard {

inline constexpr std::string_view testAction = "test";
inline constexpr std::string_view buildForTestingAction = "build-for-testing";
inline constexpr std::string_view testWithoutBuildingAction = "test-without-building";

/// All that one test run differs in from another of the same project and test scheme.
struct TestRequest {
  std::optional<std::string> udid = {};  ///< another device than the selected one
  std::string action = std::string(testAction);
  std::string selection = {};  ///< shell words: "-only-testing:'…' -only-testing:'…'"
  /// Leaves signing out where the destination is the Mac.
  bool useMacAwareDestination = true;
  /// Shell words in place of testPlanArgument(); an empty text: no plan.
  std::optional<std::string> testPlanOverride = {};

  bool operator==(const TestRequest&) const = default;
};

/// Without the redirection of the errors' stream. May have to ask for the scheme's platforms and plans.
std::string testCommand(const TestRequest& request);

/// "-testPlan 'name'" for the selected plan, if the test scheme has it; else empty.
std::string testPlanArgument();
/// The same for a plan by its name; empty for an empty name.
std::string testPlanArgument(std::string_view plan);
/// The test scheme, or the scheme that stands in for it.
const std::string& effectiveTestScheme();

}  // namespace halyard
