#include "halyard/packages/package_live.hpp"

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/text.hpp"
#include "core/text_file.hpp"
#include "halyard/terminal/screen.hpp"
#include "test_places.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using enum SPMResolveStatus;

PackageTable packages() {
  return packageTable(std::vector<SPMPackageInfo>{{"lantern", "1.0", "https://example.com/harbor/Lantern.git"},
                                                  {"beacon", "2.0", "https://example.com/harbor/beacon"},
                                                  {"rope-kit", "3.0", "git@example.com:harbor/rope-kit.git"}});
}

PackageTable pods() {
  return packageTable(
      std::vector<PodInfo>{{"Harbor", "1"}, {"Harbor/Core", "1"}, {"HarborLights", "1"}, {"Rope", "1"}});
}

PackageTable frameworks() {
  return packageTable(std::vector<CarthageFWInfo>{{"Beacon", "1"}, {"Ropes", "1"}, {"Dock", "1"}});
}

/// The table after its first line, which only starts it, and these.
PackageTable after(PackageTable table, std::initializer_list<std::string_view> lines) {
  table.takeLine("starting");
  for (const std::string_view line : lines) table.takeLine(line);
  return table;
}

std::vector<SPMResolveStatus> statuses(const PackageTable& table) {
  std::vector<SPMResolveStatus> all;
  for (const PackageRow& row : table.rows) all.push_back(row.status);
  return all;
}

TEST(PackageTable, IsSeededWithPendingRows) {
  EXPECT_THAT(statuses(packages()), ElementsAre(pending, pending, pending));
  EXPECT_EQ(packages().rows[0], (PackageRow{"lantern", "https://example.com/harbor/Lantern.git", pending}));
  EXPECT_EQ(pods().tool, PackageTool::cocoaPods);
  EXPECT_EQ(frameworks().tool, PackageTool::carthage);
  EXPECT_EQ(packageToolTitle(PackageTool::spm), "Swift Package Manager");
  EXPECT_EQ(packageToolTitle(PackageTool::cocoaPods), "CocoaPods");
  EXPECT_EQ(packageToolTitle(PackageTool::carthage), "Carthage");
}

TEST(PackageTable, TheFirstLineOnlyStartsTheRowsAndIsNotReadItself) {
  PackageTable table = packages();
  EXPECT_FALSE(table.takeLine(""));
  EXPECT_FALSE(table.takeLine(" \r \t"));
  EXPECT_THAT(statuses(table), ElementsAre(pending, pending, pending));
  EXPECT_TRUE(table.takeLine("Fetched 'https://example.com/harbor/beacon'"));
  EXPECT_THAT(statuses(table), ElementsAre(loading, loading, loading));
  PackageTable failing = packages();
  failing.takeLine("error: no network");
  EXPECT_FALSE(failing.sawError);
}

TEST(PackageTable, AnAddressWithAndWithoutGitSetsTheSameRow) {
  for (const char* address :
       {"https://example.com/harbor/Lantern.git", "https://example.com/harbor/lantern",
        "HTTPS://example.com/HARBOR/lantern.GIT", "lantern", "https://mirror.example/x/lantern"}) {
    PackageTable table = packages();
    table.started = true;
    EXPECT_TRUE(table.takeLine("Fetching " + std::string(address))) << address;
    EXPECT_THAT(statuses(table), ElementsAre(loading, pending, pending)) << address;
  }
}

TEST(PackageTable, SPMLinesNameARowInTheirOwnWays) {
  const std::pair<const char*, SPMResolveStatus> lines[] = {
      {"Fetching 'https://example.com/harbor/beacon' now", loading},
      {"Fetching https://example.com/harbor/beacon from cache", loading},
      {"Fetching https://example.com/harbor/beacon (cached)", loading},
      {"Cloning https://example.com/harbor/beacon", loading},
      {"\t Cloning 'beacon\r", loading},
      {"Fetched https://example.com/harbor/beacon from cache (0.45s)", done},
      {"Fetched 'https://example.com/harbor/beacon' (0.45s)", done},
      {"Fetch complete for 'https://example.com/harbor/beacon'", done},
      {"Fetch complete for https://example.com/harbor/beacon", done},
  };
  for (const auto& [line, status] : lines) {
    PackageTable table = packages();
    table.started = true;
    EXPECT_TRUE(table.takeLine(line)) << line;
    EXPECT_THAT(statuses(table), ElementsAre(pending, status, pending)) << line;
  }
}

TEST(PackageTable, OtherLinesChangeNothing) {
  PackageTable table = after(packages(), {});
  for (const char* line : {"Computing version for https://example.com/harbor/beacon", "Fetched unknown", "Fetching ",
                           "Fetching ''", "Fetched", "an error: of no kind", "Fetching /"}) {
    EXPECT_FALSE(table.takeLine(line)) << line;
  }
  EXPECT_THAT(statuses(table), ElementsAre(loading, loading, loading));
}

TEST(PackageTable, ResolvedSourcePackagesClosesAllOpenRows) {
  for (const char* line : {"Resolved source packages:", "Checkouts complete."}) {
    EXPECT_THAT(statuses(after(packages(), {line})), ElementsAre(done, done, done)) << line;
    PackageTable table = packages();
    table.started = true;
    table.rows[1].status = failed;
    table.takeLine(line);
    EXPECT_THAT(statuses(table), ElementsAre(done, failed, done)) << line;
  }
}

TEST(PackageTable, RowsOnlyGoForward) {
  PackageTable table = after(packages(), {"Fetched beacon", "Fetching beacon"});
  EXPECT_THAT(statuses(table), ElementsAre(loading, done, loading));
  table.takeLine("error: gone");
  EXPECT_TRUE(table.sawError);
  EXPECT_THAT(statuses(table), ElementsAre(failed, done, failed));
  table.takeLine("Fetched lantern");
  table.takeLine("Fetching lantern");
  table.takeLine("Checkouts complete");
  EXPECT_THAT(statuses(table), ElementsAre(failed, done, failed));
}

TEST(PackageTable, AnErrorFailsWhatIsLoading) {
  for (const char* line : {"error: x", "xcodebuild: error: x", "  error: x"}) {
    const PackageTable table = after(packages(), {"Fetched beacon", line});
    EXPECT_TRUE(table.sawError) << line;
    EXPECT_THAT(statuses(table), ElementsAre(failed, done, failed)) << line;
  }
  EXPECT_FALSE(after(packages(), {"[!] a remark"}).sawError);
}

TEST(PackageTable, APodTakesItsSubspecsAlong) {
  EXPECT_THAT(statuses(after(pods(), {"Installing Harbor (1.0)"})), ElementsAre(done, done, loading, loading));
  EXPECT_THAT(statuses(after(pods(), {"Using Rope/Knots (1.0)"})), ElementsAre(loading, loading, loading, done));
  EXPECT_THAT(statuses(after(pods(), {"Using harborl"})), ElementsAre(loading, loading, done, loading));
  EXPECT_THAT(statuses(after(pods(), {"Installing Ropewalk 2"})), ElementsAre(loading, loading, loading, done));
  EXPECT_THAT(statuses(after(pods(), {"Installing Other 2", "Using "})),
              ElementsAre(loading, loading, loading, loading));
}

TEST(PackageTable, ThePodsEndAndTheirErrors) {
  EXPECT_THAT(statuses(after(pods(), {"Pod installation complete! There are 2 dependencies."})),
              ElementsAre(done, done, done, done));
  for (const char* line : {"[!] Unable to find a specification", "error: x", "git: error: x"}) {
    const PackageTable table = after(pods(), {"Using Rope (1)", line});
    EXPECT_TRUE(table.sawError) << line;
    EXPECT_THAT(statuses(table), ElementsAre(failed, failed, failed, done)) << line;
  }
}

TEST(PackageTable, CarthageFetchesDownloadsAndChecksOut) {
  PackageTable table = frameworks();
  table.started = true;
  table.takeLine("*** Fetching  Ropes ");
  EXPECT_THAT(statuses(table), ElementsAre(pending, loading, pending));
  table.takeLine("*** Downloading Beacon.framework binary at \"1.0\"");
  EXPECT_THAT(statuses(table), ElementsAre(loading, loading, pending));
  table.takeLine("*** Checking out Ropes at \"1.0\"");
  table.takeLine("*** Downloading Ropes.xcframework binary at \"1.0\"");
  EXPECT_THAT(statuses(table), ElementsAre(loading, done, pending));
  table.takeLine("A shell task failed: error: no network");
  EXPECT_TRUE(table.sawError);
  EXPECT_THAT(statuses(table), ElementsAre(failed, done, pending));
  EXPECT_FALSE(table.takeLine("*** Building scheme \"Dock\" in Dock.xcodeproj"));
}

TEST(PackageTable, TheEndOfTheToolClosesTheRows) {
  PackageTable table = after(packages(), {"Fetched beacon"});
  PackageTable other = table;
  table.finish(true);
  EXPECT_THAT(statuses(table), ElementsAre(done, done, done));
  other.rows[2].status = pending;
  other.finish(false);
  EXPECT_THAT(statuses(other), ElementsAre(failed, done, pending));
}

TEST(PackageErrorLines, AreThoseThatTellAnErrorWithWhatBelongsToThem) {
  EXPECT_THAT(packageErrorLines(PackageTool::spm, "Fetching a\r\nerror: no\n\n  because b\nFetching c\nx: error: d\n"),
              ElementsAre("error: no", "  because b", "x: error: d"));
  EXPECT_THAT(packageErrorLines(PackageTool::cocoaPods, "a\n[!] no pod\nb"), ElementsAre("[!] no pod"));
  EXPECT_THAT(packageErrorLines(PackageTool::carthage, "a\nsome error: b"), ElementsAre("some error: b"));
}

TEST(PackageErrorLines, AreTheLastLinesWhereNoneTellsAnError) {
  EXPECT_THAT(packageErrorLines(PackageTool::spm, "a\nb\nc\n", 2), ElementsAre("b", "c"));
  EXPECT_THAT(packageErrorLines(PackageTool::spm, "error: a\nerror: b\nerror: c\n", 2),
              ElementsAre("error: b", "error: c"));
  EXPECT_THAT(packageErrorLines(PackageTool::spm, ""), IsEmpty());
}

std::string frameText(const PackageTable& table, int rows = 24, int columns = 80) {
  std::string text = packageFrame(table, rows, columns);
  replaceAll(text, "\n", "|");
  return stripAnsi(text);
}

TEST(PackageFrame, ShowsTitleTallyAndARowEach) {
  PackageTable table = after(packages(), {"Fetched beacon", "error: x"});
  table.rows[0].status = loading;
  const std::string text = frameText(table);
  EXPECT_THAT(text,
              AllOf(HasSubstr("▶  Swift Package Manager   1/3|"), HasSubstr("|  ◌ lantern|  ✓ beacon|  ✗ rope-kit|")));
  EXPECT_THAT(frameText(packages()), HasSubstr("  · lantern|"));
}

TEST(PackageFrame, IsDrawnOverTheOneBefore) {
  PackageTable table = packages();
  const std::string before = packageFrame(table, 24, 80);
  table.takeLine("start");
  const std::string later = packageFrame(table, 24, 80);
  EXPECT_EQ(std::count(before.begin(), before.end(), '\n'), std::count(later.begin(), later.end(), '\n'));
  EXPECT_TRUE(before.starts_with("\x1b[H"));
}

TEST(PackageFrame, AShortTerminalShowsTheRowsRoundTheLastChange) {
  PackageTable table{.tool = PackageTool::spm};
  for (int i = 0; i < 50; ++i) table.rows.push_back({"package-" + std::to_string(i), {}});
  EXPECT_THAT(frameText(table, 18),
              AllOf(HasSubstr("package-0|"), HasSubstr("package-9|"), Not(HasSubstr("package-10|"))));
  table.lastChanged = 30;
  EXPECT_THAT(frameText(table, 18),
              AllOf(HasSubstr("package-25|"), HasSubstr("package-34|"), Not(HasSubstr("package-24|"))));
  table.lastChanged = 49;
  EXPECT_THAT(frameText(table, 18), AllOf(HasSubstr("package-40|"), HasSubstr("package-49|")));
  EXPECT_THAT(frameText(table, 1), HasSubstr("package-49|"));
}

TEST(PackageFrame, NamesFromOutsideAreCutAndHarmless) {
  PackageTable table{.tool = PackageTool::carthage};
  table.rows = {{"a\x1b[2Jb\n", {}}, {std::string(200, 'x'), {}}};
  const std::string text = packageFrame(table, 24, 40);
  EXPECT_THAT(text, AllOf(HasSubstr("a␛[2Jb␊"), HasSubstr("x…"), Not(HasSubstr(std::string(37, 'x')))));
  EXPECT_THAT(frameText(PackageTable{}, 24, 40), HasSubstr("Swift Package Manager|"));
}

/// The output of a real tool, where it is at hand, through a table of what it names.
PackageTable replayed(std::string_view file, PackageTable table) {
  const std::filesystem::path path = std::filesystem::path(HALYARD_SOURCE_DIR) / "../shared/recordings/packages" / file;
  const std::string output = readTextFile(path.string()).value_or("");
  for (const std::string_view line : splitLines(output)) table.takeLine(line);
  if (output.empty()) table.finish(true);  // not here
  return table;
}

TEST(RecordedRuns, CloseTheRowsThatTheyName) {
  EXPECT_THAT(statuses(after(packages(), {"Checkouts complete"})), ElementsAre(done, done, done));
  const PackageTable cards =
      replayed("swift-run-resolve-deck-of-cards.txt",
               packageTable(std::vector<SPMPackageInfo>{
                   {"swift-argument-parser", "", "https://github.com/apple/swift-argument-parser"},
                   {"example-package-fisheryates", "", "https://github.com/apple/example-package-fisheryates.git"},
                   {"example-package-playingcard", "", ""}}));
  EXPECT_EQ(cards.count(done), 3U);
  const PackageTable frameworks9 =
      replayed("carthage-update-9-dependencies.txt",
               packageTable(std::vector<CarthageFWInfo>{{"PKHUD", ""}, {"R.swift.Library", ""}, {"Kingfisher", ""}}));
  EXPECT_EQ(frameworks9.count(done), 3U);
  const PackageTable pods2 =
      replayed("pod-install-new.txt", packageTable(std::vector<PodInfo>{{"Reachability", "3.1.0"}}));
  EXPECT_EQ(pods2.count(loading) + pods2.count(pending), 0U);
}

}  // namespace
}  // namespace halyard
