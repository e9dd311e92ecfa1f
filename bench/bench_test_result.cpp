// What the result of a large run costs to draw: 50,000 tests in 2,500 suites, all passed, and with each third failed.
// The target: 100 ms of processor time. And what a retry of so many failed tests costs to name.
#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "halyard/testruns/retry_items.hpp"
#include "halyard/testruns/test_result.hpp"

namespace {

constexpr int testCount = 50'000;
constexpr int perSuite = 20;
constexpr int rounds = 11;
constexpr double target = 100e-3;

double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

halyard::TestRunData run(int failedPart) {
  halyard::TestRunData data;
  data.testSucceeded = failedPart == 0;
  for (int i = 0; i < testCount; ++i) {
    const std::string suite = fmt::format("Component{}FeatureTests", i / perSuite);
    const std::string name = fmt::format("testThatTheComponentBehavesAsExpectedInCase{}", i);
    data.testTargetMap.emplace(suite, "ComponentTests");
    if (failedPart > 0 && i % failedPart == 0) {
      const std::string message =
          fmt::format(R"(XCTAssertEqual failed: ("{}") is not equal to ("{}") - in case)", i, i + 1);
      data.failed.push_back({suite, name, 0.01, {fmt::format("-[ComponentTests.{} {}] : {}", suite, name, message)}});
    } else {
      data.passed.push_back({suite, name, 0.01});
    }
  }
  return data;
}

template <typename Work>
bool measured(const char* what, Work&& work) {
  std::vector<double> times;
  std::size_t size = 0;
  for (int round = 0; round < rounds; ++round) {
    const double begun = processorSeconds();
    size = work();
    times.push_back(processorSeconds() - begun);
  }
  std::ranges::sort(times);
  const bool met = times[rounds / 2] <= target;
  fmt::print("{:<22} {:>9} bytes  min {:.2f}  median {:.2f}  max {:.2f} ms  (target {:.0f}: {})\n", what, size,
             times.front() * 1e3, times[rounds / 2] * 1e3, times.back() * 1e3, target * 1e3, met ? "met" : "MISSED");
  return met;
}

}  // namespace

int main() {
  using namespace halyard;
  loadStringCatalog("");
  const TestRunData passed = run(0);
  const TestRunData failed = run(3);
  bool met = measured("all passed", [&] { return drawBuildTestResult(passed).size(); });
  met &= measured("each third failed", [&] { return drawBuildTestResult(failed).size(); });
  met &= measured("retry of all failed",
                  [&] { return retrySelection(failed, [] { return std::vector<BundleTest>(); }).size(); });
  return met ? 0 : 1;
}
