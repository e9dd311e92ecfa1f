// The test targets of a scheme, and which of them a run is to test.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// From a scheme file: the targets of its test action, in order, each once, without those that are switched off.
std::vector<std::string> readTestTargets(std::string_view scheme);
/// Of a scheme by its name; empty where it has no file. A scheme that tests by plans alone names none.
std::vector<std::string> schemeTestTargets(std::string_view scheme);

/// Parted by what their names end in: "UITests" or "Tests". Other names are neither.
struct TestTargetKinds {
  std::vector<std::string> unit;
  std::vector<std::string> ui;
};
TestTargetKinds partedTestTargets(const std::vector<std::string>& targets);

/// The words that select targets: "-only-testing:'…' …" or "-skip-testing:'…' …".
std::string onlyTesting(const std::vector<std::string>& identifiers);
std::string skipTesting(const std::vector<std::string>& identifiers);

/// What the unit tests of these targets are. Empty words: all that the test plan holds. Nothing where no target is one,
/// and no plan stands in.
std::optional<std::string> unitTestSelection(const TestTargetKinds& targets, bool hasTestPlan);

}  // namespace halyard
