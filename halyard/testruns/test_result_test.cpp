#include "halyard/testruns/test_result.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class TestResult : public testing::Test {
 public:
  static std::string block(const TestRunData& data) { return stripAnsi(drawBuildTestResult(data)); }
  static std::string banner(const TestRunData& data, int errors = 0, int warnings = 0) {
    return stripAnsi(drawTestBanner(data, errors, warnings));
  }

  ContextReset reset;
};

const TestRunData mixed{
    .passed = {{"BerthTests", "testFee", 0.1}, {"BerthTests", "testTitle", 0.1}, {"FeeTests", "none()", 0.1}},
    .failed = {{"FeeTests", "A week", 0.0754, {"FeeTests.swift:12: Expectation failed\nand more", "second"}},
               {"FeeTests", "silent()", 1.5}},
    .warnCount = 3,
    .errorCount = 1,
    .testFailed = true,
    .errorLines = {"Signing for \"Harbor\" requires a development team."}};

TEST_F(TestResult, TheBlockListsSuitesTestsAndTheFirstLineOfTheirErrors) {
  EXPECT_EQ(block(mixed), "\n── Build/test result " + repeated("─", 58) +
                              "\n"
                              "  ✗ 1 build errors found\n"
                              "    › Signing for \"Harbor\" requires a development team.\n"
                              "  ✓ Successful test classes\n"
                              "    BerthTests  2 Passed\n"
                              "  ✗ Failed test classes\n"
                              "    FeeTests  2 Failed  1 Passed\n"
                              "      ✗ A week  (0.075 s)\n"
                              "        FeeTests.swift:12: Expectation failed\n"
                              "      ✗ silent()  (1.500 s)\n"
                              "  ⚠ 3 build warnings found\n");
}

TEST_F(TestResult, WhatThereIsNoneOfHasNoHeading) {
  const std::string text = block({.passed = {{"S", "a"}}, .testSucceeded = true});
  EXPECT_THAT(text,
              AllOf(HasSubstr("Successful test classes"), Not(HasSubstr("Failed test classes")),
                    Not(HasSubstr("errors found")), Not(HasSubstr("warnings found")), Not(HasSubstr("Technical"))));
}

TEST_F(TestResult, ATechnicalFailureIsToldApart) {
  for (const TestRunData& data : {TestRunData{.testFailed = true}, TestRunData{},
                                  TestRunData{.passed = {{"S", "a"}}, .buildFailed = true, .testSucceeded = true}}) {
    EXPECT_THAT(block(data),
                AllOf(HasSubstr("  ⚠ Technical Error — no actual test failures\n"),
                      HasSubstr("    xcodebuild reported TEST FAILED, but no test actually failed. Possible\n"
                                "    cause: empty test target, configuration issue, or runner problem.\n")));
  }
  EXPECT_THAT(block(mixed), Not(HasSubstr("Technical Error")));
}

TEST_F(TestResult, ATestWithoutASuiteStandsUnderADash) {
  EXPECT_THAT(block({.failed = {{"", "alone()"}}}), HasSubstr("    —  1 Failed\n      ✗ alone()"));
}

TEST_F(TestResult, AMessageIsShownWithoutTheTestsNameBeforeIt) {
  EXPECT_THAT(block({.failed = {{"S", "t", 0, {"-[M.S t] : XCTAssertTrue failed - a] : b"}}}}),
              HasSubstr("\n        XCTAssertTrue failed - a] : b\n"));
  EXPECT_THAT(block({.failed = {{"S", "t", 0, {"-[M.S t]"}}}}), HasSubstr("\n        -[M.S t]\n"));
}

TEST_F(TestResult, HostileNamesObeyNothing) {
  const std::string hostile = "a\x1b[2J \"q\" [b] passed after 1\x07\n🌊\xff";
  const TestRunData data{.failed = {{hostile, hostile, 0, {hostile}}}, .errorCount = 1, .errorLines = {hostile}};
  const std::string drawn = drawBuildTestResult(data);
  EXPECT_THAT(drawn, AllOf(Not(HasSubstr("\x1b[2J")), Not(HasSubstr("\x07")), Not(HasSubstr("\xff")),
                           HasSubstr("a \"q\" [b] passed after 1␇␊🌊")));
}

TEST_F(TestResult, EndlessMessagesAreCut) {
  const TestRunData data{.failed = {{"S", "t", 0, {std::string(100'000, 'e')}}},
                         .errorCount = 60,
                         .errorLines = std::vector<std::string>(60, std::string(100'000, 'x'))};
  const std::string text = block(data);
  EXPECT_LT(text.size(), 30'000U);
  EXPECT_THAT(text, HasSubstr("… and 10 more"));
}

TEST_F(TestResult, TheBannerOfSuccess) {
  const TestRunData data{.passed = {{"S", "a"}}, .testSucceeded = true};
  const std::string bar = "  " + repeated("═", 75) + "\n";
  EXPECT_EQ(banner(data, 0, 2), "\n" + bar + "  " + std::string(30, ' ') + "✅  TESTS PASSED\n  " + repeated("─", 75) +
                                    "\n    ✗ 0 build errors found\n    ⚠ 2 build warnings found\n" + bar);
  EXPECT_THAT(drawTestBanner(data, 0, 2), AllOf(HasSubstr("\x1b[1;32m"), HasSubstr("\x1b[31m✗ 0 build"),
                                                HasSubstr("\x1b[33m⚠ 2 build"), Not(HasSubstr("\x1b[1;31m"))));
}

TEST_F(TestResult, TheBannersOfFailure) {
  EXPECT_THAT(banner({.buildFailed = true}), HasSubstr("❌  BUILD FAILED — TESTS NOT RUN\n"));
  EXPECT_THAT(banner({.testFailed = true}, 1), HasSubstr("BUILD FAILED — TESTS NOT RUN"));
  EXPECT_THAT(banner(mixed), HasSubstr("❌  TESTS FAILED\n"));
  EXPECT_THAT(banner({.failed = {{"S", "t"}}, .buildFailed = true}), HasSubstr("TESTS FAILED"));
  EXPECT_THAT(banner({.passed = {{"S", "t"}}, .buildFailed = true}), HasSubstr("TESTS FAILED"));
  EXPECT_THAT(banner({.testFailed = true}), HasSubstr("TESTS FAILED"));
  EXPECT_THAT(banner({}), HasSubstr("TESTS FAILED"));
  EXPECT_THAT(drawTestBanner(mixed, 0, 0), AllOf(HasSubstr("\x1b[1;31m"), Not(HasSubstr("\x1b[1;32m"))));
}

TEST_F(TestResult, ARunWithoutTestsThatSucceededPassed) {
  EXPECT_THAT(banner({.testSucceeded = true}), HasSubstr("TESTS PASSED"));
  EXPECT_EQ(block({.testSucceeded = true}), "\n── Build/test result " + repeated("─", 58) + "\n");
}

TEST_F(TestResult, SpeaksGerman) {
  setCurrentLanguage("de");
  EXPECT_THAT(block(mixed), AllOf(HasSubstr("Build-/Testergebnis"), HasSubstr("Erfolgreiche Testklassen"),
                                  HasSubstr("Fehlgeschlagene Testklassen"), HasSubstr("2 Fehlgeschlagen  1 Bestanden"),
                                  HasSubstr("1 Build-Fehler gefunden"), HasSubstr("3 Build-Warnungen gefunden")));
  EXPECT_THAT(banner({.buildFailed = true}), HasSubstr("BUILD FEHLGESCHLAGEN – TESTS NICHT AUSGEFÜHRT"));
  EXPECT_THAT(banner(mixed), HasSubstr("TESTS FEHLGESCHLAGEN"));
  EXPECT_THAT(banner({.testSucceeded = true}), HasSubstr("TESTS BESTANDEN"));
  EXPECT_THAT(block({}), HasSubstr("Technischer Fehler – keine tatsächlich fehlgeschlagenen Tests"));
}

TEST_F(TestResult, IsPrinted) {
  const CapturedOutput output;
  printBuildTestResult(mixed);
  printTestBanner(mixed, 1, 3);
  EXPECT_EQ(output.text(), drawBuildTestResult(mixed) + drawTestBanner(mixed, 1, 3));
}

}  // namespace
}  // namespace halyard
