// What a parser told, as words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "halyard/testruns/test_line_parser.hpp"

namespace halyard {

class RecordedTestEvents final : public TestRunEvents {
 public:
  void buildStepBegan(TestBuildStep step) override { told.push_back(fmt::format("step {}", static_cast<int>(step))); }
  void buildErrorFound(std::string_view line) override { told.push_back(fmt::format("error {}", line)); }
  void testPhaseBegan() override { told.emplace_back("tests"); }
  void suiteBegan(std::string_view name) override { told.push_back(fmt::format("suite {}", name)); }
  void testEnded(std::string_view name, bool passed, double duration) override {
    told.push_back(fmt::format("{} {} {:.3f}", passed ? "pass" : "fail", name, duration));
  }
  void suiteEnded(const SuiteResult& result) override {
    told.push_back(fmt::format("end {} {} {}", result.name, result.passed, result.failed));
  }
  void shutdownBegan() override { told.emplace_back("shutdown"); }

  std::vector<std::string> told;
};

}  // namespace halyard
