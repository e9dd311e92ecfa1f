// The test plans of a scheme, and those that lie in the project's folder beside.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halyard {

struct TestPlan {
  std::string name;
  std::string path;  ///< as the scheme refers to it, or of the file
  bool isDefault = false;

  bool operator==(const TestPlan&) const = default;
};

/// From the lines "DEFAULT:<name>|<path>" and "plan:<name>|<path>" that the parser of scheme files prints.
std::vector<TestPlan> readTestPlanLines(std::string_view output);
/// From the paths that the search for files printed, without those whose names are in `known`.
std::vector<TestPlan> readTestPlanFiles(std::string_view output, const std::vector<TestPlan>& known);

/// The plans of a scheme's test action, each name once. Empty where the scheme has no file or names none.
std::vector<TestPlan> schemeTestPlans(std::string_view scheme);
/// The plans of a scheme file.
std::vector<TestPlan> testPlansOfSchemeFile(const std::string& schemeFile);
/// The plans in the project's folder that aren't in `known`.
std::vector<TestPlan> fileTestPlans(const std::vector<TestPlan>& known);
/// The first scheme of the project whose file lists the plan; empty where none does.
std::string schemeWithTestPlan(std::string_view plan);

}  // namespace halyard
