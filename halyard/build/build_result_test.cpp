#include "halyard/build/build_result.hpp"

#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

std::string summaryOf(const BuildResult& result) {
  const CapturedOutput output;
  printBuildResult(result);
  return output.text();
}

std::string rule(const std::string& color, const std::string& piece) {
  return color + repeated(piece, 79) + "\x1b[0m\n";
}

const std::string error = "/p/A.swift:1:2: error: bad";
const std::string warning = "/p/A.swift:3:4: warning: odd";
const std::string errorShown = "  \x1b[1;31m✗\x1b[0m  \x1b[2mbad\x1b[0m  \x1b[2mA.swift:1\x1b[0m\n";
const std::string warningShown = "  \x1b[1;33m⚠\x1b[0m  \x1b[2modd\x1b[0m  \x1b[2mA.swift:3\x1b[0m\n";

TEST(BuildResult, SucceedsWithStatusZeroAndAnyOfTheFourMarks) {
  for (const char* const mark : {"** BUILD SUCCEEDED **", "** TEST BUILD SUCCEEDED **", "** TEST SUCCEEDED **",
                                 "** TEST EXECUTE SUCCEEDED **"}) {
    EXPECT_TRUE(buildSucceeded(std::string("x\n\n") + mark + " [14.924 sec]\n", 0)) << mark;
    EXPECT_FALSE(buildSucceeded(mark, 65)) << mark;
  }
}

TEST(BuildResult, StatusZeroWithoutAMarkIsAFailure) {
  EXPECT_FALSE(buildSucceeded("** BUILD FAILED **", 0));
  EXPECT_FALSE(buildSucceeded("** CLEAN SUCCEEDED **", 0));
  EXPECT_FALSE(buildSucceeded({}, 0));
}

TEST(BuildResult, ASuccessWithoutWarningsSaysSo) {
  const ContextReset context;
  EXPECT_EQ(summaryOf({.success = true, .duration = "1.0s"}),
            "\n" + rule("\x1b[1;32m", "═") +
                "  \x1b[1;32m  ✅  BUILD SUCCEEDED  \x1b[0m   \x1b[2mDuration: 1.0s\x1b[0m\n" + rule("\x1b[32m", "─") +
                "  \x1b[2mNo build warnings found.\x1b[0m\n" + rule("\x1b[1;32m", "═"));
}

TEST(BuildResult, ASuccessListsItsWarnings) {
  const ContextReset context;
  EXPECT_EQ(summaryOf({.success = true, .warnings = 1, .duration = "1.0s", .warningLines = {warning}}),
            "\n" + rule("\x1b[1;32m", "═") +
                "  \x1b[1;32m  ✅  BUILD SUCCEEDED  \x1b[0m   \x1b[2mDuration: 1.0s\x1b[0m\n" + rule("\x1b[32m", "─") +
                "  \x1b[1;33m⚠ 1 build warnings found\x1b[0m\n" + warningShown + rule("\x1b[1;32m", "═"));
}

TEST(BuildResult, AFailureCountsAllAndListsEachOnce) {
  const ContextReset context;
  EXPECT_EQ(
      summaryOf(
          {.warnings = 1, .errors = 2, .duration = "2m 05s", .errorLines = {error, error}, .warningLines = {warning}}),
      "\n" + rule("\x1b[1;31m", "═") + "  \x1b[1;31m  ❌  BUILD FAILED  \x1b[0m   \x1b[2mDuration: 2m 05s\x1b[0m\n" +
          rule("\x1b[31m", "─") + "  \x1b[1;31m✗ 2 build errors found\x1b[0m\n" +
          "  \x1b[1;33m⚠ 1 build warnings found\x1b[0m\n" + rule("\x1b[31m", "─") + errorShown + rule("\x1b[31m", "─") +
          warningShown + rule("\x1b[1;31m", "═"));
}

TEST(BuildResult, AFailureWithoutDiagnosticsIsItsBannerOnly) {
  const ContextReset context;
  EXPECT_EQ(summaryOf({.duration = "0.1s"}),
            "\n" + rule("\x1b[1;31m", "═") +
                "  \x1b[1;31m  ❌  BUILD FAILED  \x1b[0m   \x1b[2mDuration: 0.1s\x1b[0m\n" + rule("\x1b[1;31m", "═"));
}

TEST(BuildResult, AFailureWithWarningsAloneHasNoBlockOfErrors) {
  const ContextReset context;
  const std::string text = summaryOf({.warnings = 1, .duration = "0.1s", .warningLines = {warning}});
  EXPECT_EQ(text.find("errors"), std::string::npos);
  EXPECT_TRUE(text.ends_with("found\x1b[0m\n" + rule("\x1b[31m", "─") + warningShown + rule("\x1b[1;31m", "═")));
}

TEST(BuildResult, TheSummarySpeaksGermanToo) {
  const ContextReset context;
  setCurrentLanguage("de");
  EXPECT_NE(summaryOf({.errors = 1, .duration = "1.0s", .errorLines = {error}}).find("1 Build-Fehler gefunden"),
            std::string::npos);
}

}  // namespace
}  // namespace halyard
