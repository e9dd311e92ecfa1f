#include "halyard/testruns/test_line_parts.hpp"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "halyard/testruns/test_line_scan.hpp"

namespace halyard {
namespace {

struct NameCase {
  std::string_view quoted;
  std::string_view suite;
  std::string_view name;
  std::string_view module = {};
};

class TestCaseNameForms : public testing::TestWithParam<NameCase> {};

TEST_P(TestCaseNameForms, AreRead) {
  const TestCaseName read = readTestCaseName(GetParam().quoted);
  EXPECT_EQ(read.suite, GetParam().suite);
  EXPECT_EQ(read.name, GetParam().name);
  EXPECT_EQ(read.module, GetParam().module);
}

INSTANTIATE_TEST_SUITE_P(All, TestCaseNameForms,
                         testing::Values(NameCase{"-[PierTests testFee]", "PierTests", "testFee"},
                                         NameCase{"-[Harbor.PierTests testFee]", "PierTests", "testFee", "Harbor"},
                                         NameCase{"-[Pier a b c]", "Pier", "a b c"}, NameCase{"-[Pier]", "Pier", ""},
                                         NameCase{"-[", "", ""},
                                         NameCase{"PierTests.testFee()", "PierTests", "testFee"},
                                         NameCase{"Harbor.PierTests.testFee()", "PierTests", "testFee", "Harbor"},
                                         NameCase{"PierTests/fee()", "PierTests", "fee()"},
                                         NameCase{"Outer/Inner/fee(of:in:)", "Outer/Inner", "fee(of:in:)"},
                                         NameCase{"Pier/fee(a.b/c)", "Pier", "fee(a.b/c)"},
                                         NameCase{"optional()", "", "optional()"}, NameCase{"", "", ""}));

TEST(TestCaseLine, IsReadInAnyCaseAndWithADevice) {
  constexpr std::string_view serial = "Test Case '-[Harbor.PierTests testFee]' passed (0.125 seconds).";
  EXPECT_EQ(parseTestCaseSuite(serial), "PierTests");
  EXPECT_EQ(parseTestCaseName(serial), "testFee");
  EXPECT_DOUBLE_EQ(parseDuration(serial), 0.125);
  constexpr std::string_view parallel =
      "Test case 'PierTests.testFee()' failed on 'Clone 1 of iPhone (2nd) - Harbor (123)' (1.5 seconds)";
  EXPECT_EQ(parseTestCaseSuite(parallel), "PierTests");
  EXPECT_EQ(parseTestCaseName(parallel), "testFee");
  EXPECT_DOUBLE_EQ(parseDuration(parallel), 1.5);
}

TEST(TestCaseLine, DurationToleratesBlanksAndCommasAndItsAbsence) {
  EXPECT_DOUBLE_EQ(parseDuration("x ( 0.5 seconds )"), 0.5);
  EXPECT_DOUBLE_EQ(parseDuration("x (0,25 seconds)"), 0.25);
  EXPECT_EQ(parseDuration("x (seconds)"), 0);
  EXPECT_EQ(parseDuration("x 3 seconds"), 0);
  EXPECT_EQ(parseDuration("x (a seconds)"), 0);
  EXPECT_EQ(parseDuration(""), 0);
}

TEST(TestCaseLine, OtherVerdictsAreNone) {
  EXPECT_FALSE(readQuotedTestLine("Test Case '-[P t]' skipped (0.1 seconds).", xctestCaseWords));
  EXPECT_FALSE(
      readQuotedTestLine("F.swift:3: Test Case '-[P t]' measured [Time, seconds] average: 0.1", xctestCaseWords));
  EXPECT_FALSE(readQuotedTestLine("Test Case '-[P t", xctestCaseWords));
  EXPECT_FALSE(readQuotedTestLine("nothing", xctestCaseWords));
}

TEST(TestCaseLine, ANameMayHoldTheVerdictsWords) {
  const auto read = readQuotedTestLine(
      "Test case 'Pier/it' failed and `' passed`()' passed on 'My Mac - App (1)' (0.0 seconds)", xctestCaseWords);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->verdict, TestLineVerdict::passed);
  EXPECT_EQ(read->quoted, "Pier/it' failed and `' passed`()");
}

TEST(TestCaseLine, TwoGluedLinesGiveTheResult) {
  const auto read =
      readQuotedTestLine("Test Case '-[P a]' started.Test Case '-[P b]' passed (0.1 seconds).", xctestCaseWords);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->verdict, TestLineVerdict::passed);
  EXPECT_EQ(read->quoted, "-[P b]");
}

struct SwiftCase {
  std::string_view rest;
  std::string_view name;
  bool failed = false;
  double duration = 0;
};

class SwiftResults : public testing::TestWithParam<SwiftCase> {};

TEST_P(SwiftResults, AreRead) {
  const auto read = readSwiftTestResult(GetParam().rest);
  ASSERT_TRUE(read) << GetParam().rest;
  EXPECT_EQ(read->name, GetParam().name);
  EXPECT_EQ(read->failed, GetParam().failed);
  EXPECT_DOUBLE_EQ(read->duration.value_or(-1), GetParam().duration);
}

INSTANTIATE_TEST_SUITE_P(
    All, SwiftResults,
    testing::Values(
        SwiftCase{"fee() passed after 0.001 seconds.", "fee()", false, 0.001},
        SwiftCase{"fee() failed after 2.5 seconds with 1 issue.", "fee()", true, 2.5},
        SwiftCase{"fee() passed after 0.1 seconds with 1 known issue.", "fee()", false, 0.1},
        SwiftCase{R"("A fee" passed after 0.1 seconds.)", "A fee", false, 0.1},
        SwiftCase{R"("A Test of it" failed after 0.1 seconds with 2 issues.)", "A Test of it", true, 0.1},
        SwiftCase{R"("It passed after 3 seconds." failed after 0.2 seconds.)", "It passed after 3 seconds.", true, 0.2},
        SwiftCase{R"("say "no"" passed after 0.1 seconds.)", "say \"no\"", false, 0.1},
        SwiftCase{R"("A fee" with 3 test cases passed after 0.006 seconds.)", "A fee", false, 0.006},
        SwiftCase{"fee(of:) with 1 test case failed after 0.1 seconds with 1 issue.", "fee(of:)", true, 0.1},
        SwiftCase{R"("with 3 test cases" passed after 1 seconds.)", "with 3 test cases", false, 1},
        SwiftCase{"torn() passed after 0.0", "torn()", false, 0},
        SwiftCase{R"("A fee" failed: too high)", "A fee", true, -1}));

TEST(SwiftResult, OtherLinesAreNone) {
  for (const std::string_view rest : {
           "run with 7 tests failed after 0.004 seconds with 1 issue.",
           "run with 0 tests in 0 suites passed after 0.001 seconds.",
           R"(case passing 1 argument x → "a" to fee(of:) passed after 0.1 seconds.)",
           "fee() started.",
           R"("it passed after 3 seconds" started.)",
           R"(fee() skipped: "it passed after 3 seconds")",
           R"("A fee" skipped: "it passed after 3 seconds")",
           "fee() recorded an issue at F.swift:1:2: it failed after 3 seconds",
           R"("A fee" recorded a known issue at F.swift:1:2: it passed after 3 seconds)",
           "connection passed after lunch",
           " passed after 0.1 seconds.",
           "",
       }) {
    EXPECT_FALSE(readSwiftTestResult(rest)) << rest;
  }
}

TEST(SwiftIssue, NamesTestPlaceAndMessage) {
  const auto plain = readSwiftTestIssue("fee() recorded an issue at F.swift:3:4: Expectation failed: a == b");
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->name, "fee()");
  EXPECT_EQ(plain->message, "F.swift:3:4: Expectation failed: a == b");
  const auto quoted = readSwiftTestIssue(R"("A fee" recorded an issue with 1 argument x → 2 at F.swift:3:4: no)");
  ASSERT_TRUE(quoted);
  EXPECT_EQ(quoted->name, "A fee");
  EXPECT_EQ(quoted->message, "with 1 argument x → 2 at F.swift:3:4: no");
  EXPECT_FALSE(readSwiftTestIssue("fee() recorded a known issue at F.swift:3:4: no"));
  EXPECT_FALSE(readSwiftTestIssue("fee() passed after 0.1 seconds."));
}

TEST(SwiftSuite, StartsAndEndsWithoutItsQuotes) {
  EXPECT_EQ(readSwiftSuiteStart(R"("Pier tests" started.)"), "Pier tests");
  EXPECT_EQ(readSwiftSuiteStart("Pier started."), "Pier");
  EXPECT_FALSE(readSwiftSuiteStart("Pier started at noon"));
  const auto ended = readSwiftSuiteResult(R"("Pier tests" failed after 0.1 seconds with 1 issue.)");
  ASSERT_TRUE(ended);
  EXPECT_EQ(ended->name, "Pier tests");
  EXPECT_TRUE(ended->failed);
  EXPECT_FALSE(readSwiftSuiteResult("Pier started."));
}

TEST(SwiftTally, IsKnownByItsMarkAndWords) {
  EXPECT_TRUE(isSwiftTestingTally("✔ Test run with 5 tests in 2 suites passed after 0.1 seconds."));
  EXPECT_TRUE(isSwiftTestingTally("✘ Test run with 5 tests failed after 0.1 seconds with 1 issue."));
  EXPECT_TRUE(isSwiftTestingTally("✓ Test run with 5 tests in 1 suite passed after 0.1 seconds."));
  EXPECT_TRUE(isSwiftTestingTally("✗ Run run with 1 suite"));
  EXPECT_TRUE(isSwiftTestingTally("\xF4\x81\x81\x9B  Test run with 23 tests in 5 suites passed after 0.031 seconds."));
  EXPECT_TRUE(isSwiftTestingTally("\xF4\x80\xA2\x84  Test run with 3 tests failed after 0.001 seconds."));
  EXPECT_TRUE(isSwiftTestingTally("\xE2\x80\x8B✔ Test run with 5 tests in 2 suites passed after 0.1 seconds."));
  EXPECT_FALSE(isSwiftTestingTally("◇ Test run started."));
  EXPECT_FALSE(isSwiftTestingTally("✔ Test fee() passed after 0.1 seconds."));
  EXPECT_FALSE(isSwiftTestingTally("Test run with 5 tests in 2 suites passed after 0.1 seconds."));
  EXPECT_FALSE(isSwiftTestingTally(""));
}

}  // namespace
}  // namespace halyard
