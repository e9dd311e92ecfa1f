// How fast the tests of a large result bundle are read, beside tools that do less with the same bytes.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

#include <fmt/format.h>
#include <unistd.h>

#include "halyard/testruns/result_bundle.hpp"

namespace {

constexpr int rounds = 9;
constexpr int tests = 50'000;
constexpr double mostMilliseconds = 60;

constexpr std::string_view failure =
    R"json("children" : [{"name" : "Suite.swift:7: XCTAssertEqual failed: 1 is not 2", "nodeType" : "Failure Message",
                "result" : "Failed"}],)json";

constexpr std::string_view testForm = R"json({}{{
              {}
              "duration" : "0,013s",
              "durationInSeconds" : 0.013482,
              "name" : "testThatTheBerthWithTheNumber{}IsFreeInTheMorningWhenTheHarbourMasterLooks()",
              "nodeIdentifier" : "Suite{}Tests/testThatTheBerthWithTheNumber{}IsFreeInTheMorningWhenTheHarbourMasterLooks()",
              "nodeType" : "Test Case",
              "result" : "{}"}})json";

/// In the order of keys that the tool writes.
std::string madeBundle() {
  std::string json = R"({"devices": [], "testNodes": [{"children": [{"children": [)";
  for (int suite = 0; suite < tests / 100; ++suite) {
    json += suite == 0 ? R"({"children": [)" : R"(, {"children": [)";
    for (int test = 0; test < 100; ++test) {
      const bool failed = test % 10 == 0;
      json += fmt::format(fmt::runtime(testForm), test == 0 ? "" : ",", failed ? failure : "", test, suite, test,
                          failed ? "Failed" : "Passed");
    }
    json += fmt::format(R"(], "name" : "Suite{}Tests", "nodeType" : "Test Suite", "result" : "Failed"}})", suite);
  }
  return json + R"(], "name" : "HarborTests", "nodeType" : "Unit test bundle"}], "nodeType" : "Test Plan"}]})";
}

template <typename Work>
double bestOf(Work work) {
  double best = 1e9;
  for (int round = 0; round < rounds; ++round) {
    const auto begun = std::chrono::steady_clock::now();
    work();
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count());
  }
  return best * 1000;
}

double reportTool(const std::string& command) {
  const double best = bestOf([&] {
    if (std::system(command.c_str()) < 0) std::exit(1);
  });
  fmt::print("  {:<60} {:7.1f} ms\n", command, best);
  return best;
}

}  // namespace

int main() {
  const std::string json = madeBundle();
  std::string path = "/tmp/halyard-bench-XXXXXX";
  const int file = mkstemp(path.data());
  if (file < 0 || !(std::ofstream(path, std::ios::binary) << json)) return 1;
  close(file);
  std::size_t found = 0;
  const double best = bestOf([&] {
    halyard::TestRunData data;
    halyard::addBundleTests(halyard::readBundleTests(json), data);
    found = data.passed.size() + data.failed.size();
  });
  fmt::print("{} bytes, {} tests, best of {}\n  {:<60} {:7.1f} ms\n", json.size(), found, rounds, "reader", best);
  reportTool("wc -l '" + path + "' >/dev/null");
  reportTool("grep -c Passed '" + path + "' | cat >/dev/null");
  reportTool("python3 -c 'import json, sys; json.load(open(sys.argv[1]))' '" + path + "'");
  unlink(path.c_str());
  const bool isFast = found == tests && best <= mostMilliseconds;
  fmt::print("  target {} ms: {}\n", mostMilliseconds, isFast ? "reached" : "missed");
  return isFast ? 0 : 1;
}
