#include "halyard/testruns/coverage_drawing.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::vector<std::string> lines(const std::string& drawn) {
  const std::string plain = stripAnsi(drawn);
  std::vector<std::string> result;
  for (const std::string_view line : splitLines(plain)) result.emplace_back(line);
  return result;
}

const std::vector<CoverageTarget> harbor = {
    {"Harbor.app", 0.45, {{"Berth.swift", "/w/Berth.swift", 0.25, 1, 4}, {"Pier.swift", "/w/Pier.swift", 1, 8, 16}}},
    {"Tides", 1, {{"Tide.swift", "/w/Tide.swift", 1, 10, 10}}}};

TEST(CoveragePercentage, HasFiveColumnsAndTheSign) {
  EXPECT_EQ(coveragePercentage(0), "  0.0%");
  EXPECT_EQ(coveragePercentage(0.8235), " 82.3%");
  EXPECT_EQ(coveragePercentage(1), "100.0%");
}

TEST(CoveragePercentage, IsColoredByItsValue) {
  EXPECT_EQ(coverageColor(0.8), Color::green);
  EXPECT_EQ(coverageColor(0.799), Color::yellow);
  EXPECT_EQ(coverageColor(0.5), Color::yellow);
  EXPECT_EQ(coverageColor(0.499), Color::red);
}

TEST(CoverageTable, HasARowForEachTargetAndTheTotalOverAllLines) {
  const auto rows = lines(drawCoverageTable(harbor, false));
  const std::string pad(42 - 12, ' ');
  ASSERT_GE(rows.size(), 4U);
  EXPECT_EQ(rows[0], "  Harbor.app" + pad + "   45.0%");
  EXPECT_EQ(rows[1], "  Tides" + std::string(5, ' ') + pad + "  100.0%");
  // (1 + 8 + 10) of (4 + 16 + 10) lines.
  EXPECT_EQ(rows[3], "  Total" + std::string(5, ' ') + pad + "   63.3%");
}

TEST(CoverageTable, ShowsEveryFileUnderItsTarget) {
  const auto rows = lines(drawCoverageTable(harbor, true));
  EXPECT_THAT(rows[1], AllOf(testing::StartsWith("    Berth.swift "), testing::EndsWith("   25.0%")));
  EXPECT_THAT(rows[2], testing::StartsWith("    Pier.swift "));
  EXPECT_THAT(rows[3], testing::StartsWith("  Tides "));
  EXPECT_THAT(rows[4], testing::StartsWith("    Tide.swift "));
  for (const std::string& row : rows) {
    EXPECT_TRUE(row.empty() || graphemeCount(row) == graphemeCount(rows[0])) << row;
  }
}

TEST(CoverageTable, ColorsThePercentagesByValue) {
  const std::string drawn = drawCoverageTable(harbor, false);
  EXPECT_THAT(drawn, AllOf(HasSubstr("\x1b[31m 45.0%\x1b[0m"), HasSubstr("\x1b[32m100.0%\x1b[0m"),
                           HasSubstr("\x1b[33m 63.3%\x1b[0m")));
}

TEST(CoverageTable, HostileNamesObeyNothingAndLongOnesAreCut) {
  const std::string drawn =
      drawCoverageTable({{"A\x1b[2J\n\"b\" passed after 🌊\xff", 0.5, {}}, {std::string(500, 'n'), 0.5, {}}}, true);
  EXPECT_THAT(drawn, AllOf(Not(HasSubstr("\x1b[2J")), HasSubstr("A␛[2J␊\"b\" passed after 🌊"), HasSubstr("…")));
  for (const std::string& row : lines(drawn)) EXPECT_LE(graphemeCount(row), 79U) << row;
}

}  // namespace
}  // namespace halyard
