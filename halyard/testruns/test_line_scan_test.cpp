#include "halyard/testruns/test_line_scan.hpp"

#include <string>

#include <gtest/gtest.h>

namespace halyard {
namespace {

TEST(TestLineScan, FindsEachMarkAnywhere) {
  EXPECT_TRUE(scanTestLine("x ** TEST FAILED **").verdict);
  EXPECT_TRUE(scanTestLine("a Test session results, code").session);
  EXPECT_TRUE(scanTestLine("\tTesting cancelled because the build failed.").session);
  EXPECT_TRUE(scanTestLine("/a.swift:1:2: warning: b").warning);
  EXPECT_TRUE(scanTestLine("/a.swift:1:2: error: b").error);
  EXPECT_TRUE(scanTestLine("a XCTAssertTrue failed").assertion);
  EXPECT_TRUE(scanTestLine("Test Suite 'A' started").xctestSuite);
  EXPECT_TRUE(scanTestLine("Test suite 'A' started").xctestSuite);
  EXPECT_TRUE(scanTestLine("> TEST CASE 'A' started").xctestCase);
  EXPECT_EQ(scanTestLine("✔ Test a").word, LineMarks::Word::test);
  EXPECT_EQ(scanTestLine("✔ Suite a").word, LineMarks::Word::suite);
}

TEST(TestLineScan, FindsNothingInOtherLines) {
  for (const std::string line : {"", "SwiftCompile normal arm64 /a/b.swift (in target 'X' from project 'Y')",
                                 "suite 'A'", "Suite a", "Testing", "a ** b"}) {
    EXPECT_EQ(scanTestLine(line).any(), line == "a ** b") << line;
  }
}

TEST(TestLineScan, TheFirstOfTheTwoWordsCounts) {
  const LineMarks test = scanTestLine("✔ Test \"A Suite of Test cases\" passed");
  EXPECT_EQ(test.word, LineMarks::Word::test);
  EXPECT_EQ(std::string("✔ Test \"A Suite of Test cases\" passed").substr(test.wordEnd),
            "\"A Suite of Test cases\" passed");
  const LineMarks suite = scanTestLine("✔ Suite \"My Test cases\" passed");
  EXPECT_EQ(suite.word, LineMarks::Word::suite);
}

TEST(TestLineScan, WordsAreFoundFromEitherEndInAnyCase) {
  constexpr std::string_view line = "test case 'a' Test Case 'b' TEST case 'c'";
  EXPECT_EQ(findIgnoringCase(line, xctestCaseWords), 0U);
  EXPECT_EQ(findLastIgnoringCase(line, xctestCaseWords, line.size()), 28U);
  EXPECT_EQ(findLastIgnoringCase(line, xctestCaseWords, 27), 14U);
  EXPECT_EQ(findLastIgnoringCase(line, "nothing", line.size()), std::string_view::npos);
  EXPECT_EQ(findLastIgnoringCase("", "a", 0), std::string_view::npos);
}

}  // namespace
}  // namespace halyard
