#include "halyard/testruns/test_command.hpp"

#include <algorithm>
#include <array>

#include "core/app_context.hpp"
#include "halyard/build/destination.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/scheme_platforms.hpp"
#include "halyard/build/test_plan_list.hpp"
#include "halyard/build/xcodebuild_service.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace {

std::string_view signingSettings(const TestRequest& request, std::string_view destination) {
  const bool isMac = destination.find("platform=macOS") != std::string_view::npos;
  return request.useMacAwareDestination && isMac ? unsignedMacSettings : std::string_view();
}

}  // namespace

const std::string& effectiveTestScheme() {
  return selectedTestScheme().empty() ? selectedScheme() : selectedTestScheme();
}

std::string testPlanArgument(std::string_view plan) {
  return plan.empty() ? std::string() : "-testPlan " + shellQuote(plan);
}

std::string testPlanArgument() {
  const std::string& plan = selectedTestPlan();
  if (plan.empty()) return {};
  if (selectedTestPlanIsFromScheme()) return testPlanArgument(plan);
  const std::vector<TestPlan> plans = schemeTestPlans(effectiveTestScheme());
  return std::ranges::find(plans, plan, &TestPlan::name) == plans.end() ? std::string() : testPlanArgument(plan);
}

std::string testCommand(const TestRequest& request) {
  const std::string destination = destinationArgument(request.udid, testSchemePlatforms());
  std::string command = "xcodebuild -parallelizeTargets" + XcodebuildService::projectArgument() + " -scheme " +
                        shellQuote(effectiveTestScheme());
  const auto pieces = std::to_array<std::string>(
      {request.testPlanOverride ? *request.testPlanOverride : testPlanArgument(),
       "-derivedDataPath " + shellQuote(privateDerivedDataPath()), destination, request.selection,
       std::string(signingSettings(request, destination)), request.action, std::string(baseTestSettings)});
  for (const std::string& piece : pieces) {
    if (!piece.empty()) command.append(" ").append(piece);
  }
  return command;
}

}  // namespace halyard
