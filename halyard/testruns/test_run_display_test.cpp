#include "halyard/testruns/test_run_display.hpp"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string shownLine(const std::string& line) { return stripAnsi(line); }

TEST(TestRunDisplay, LinesSayWhatHappened) {
  const ContextReset reset;
  EXPECT_EQ(shownLine(suiteStartLine("PierTests")), "—— 🧪 PierTests");
  EXPECT_EQ(shownLine(testResultLine("testFee", true, 0.0014)), "  ├— ✓ testFee  0.001 s");
  EXPECT_EQ(shownLine(testResultLine("testFee", false, 12)), "  ├— ✗ testFee  12.000 s");
  EXPECT_EQ(shownLine(suiteEndLine({.name = "P", .passed = 3, .failed = 0})), "  └— ✓ 3/3 Passed");
  EXPECT_EQ(shownLine(suiteEndLine({.name = "P", .passed = 3, .failed = 2})), "  └— ✗ 2 Failed  3 Passed");
  setCurrentLanguage("de");
  EXPECT_EQ(shownLine(suiteEndLine({.name = "P", .passed = 3, .failed = 2})), "  └— ✗ 2 Fehlgeschlagen  3 Bestanden");
}

TEST(TestRunDisplay, NamesCanDoNothingToTheTerminal) {
  const ContextReset reset;
  for (const std::string& line : {suiteStartLine("a\x1b[2Jb\x07"), testResultLine("a\x1b]0;x\x07\xC2\x9B"
                                                                                  "b",
                                                                                  true, 0)}) {
    EXPECT_THAT(line, Not(HasSubstr("\x1b[2J")));
    EXPECT_THAT(line, Not(HasSubstr("\x1b]")));
    EXPECT_THAT(line, Not(HasSubstr("\x07")));
    EXPECT_THAT(line, Not(HasSubstr("\xC2\x9B")));
  }
}

TEST(TestRunDisplay, ARunGoesFromBuildStepsToTests) {
  const ContextReset reset;
  const CapturedOutput output;
  TestRunDisplay display;
  display.begin();
  display.buildStepBegan(TestBuildStep::prepare);
  display.buildStepBegan(TestBuildStep::compile);
  display.buildErrorFound("/w/Pier.swift:3:5: error: \x1b[1mno\x1b[0m");
  display.testPhaseBegan();
  display.suiteBegan("PierTests");
  display.testEnded("testFee", true, 0.1);
  display.suiteEnded({.name = "PierTests", .passed = 1, .failed = 0});
  display.shutdownBegan();
  display.finish();
  const std::string text = stripAnsi(output.text());
  std::size_t at = 0;
  for (const std::string& part :
       {std::string("▸ Build Phase\n"), std::string(localized("build_step_init")),
        std::string(localized("build_step_compile")), std::string("✗ no  Pier.swift:3\n"),
        std::string("\n── Test Run ──"), std::string("—— 🧪 PierTests\n"), std::string("  ├— ✓ testFee  0.100 s\n"),
        std::string("  └— ✓ 1/1 Passed\n"), std::string("\n  ⏳ xcodebuild is shutting down, please wait …\n")}) {
    at = text.find(part, at);
    ASSERT_NE(at, std::string::npos) << part << "\nin\n" << text;
  }
  EXPECT_EQ(text.find("Build Phase", text.find("Build Phase") + 1), std::string::npos);
}

}  // namespace
}  // namespace halyard
