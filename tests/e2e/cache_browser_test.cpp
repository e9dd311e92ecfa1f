// The screen that lists every place, its second level, and the one for DerivedData alone.
#include "test_places.hpp"
#include "tests/e2e/cache_session.hpp"

namespace halyard {
namespace {

using namespace CacheFolder;

/// Types a line and waits for what it brings.
bool enters(TerminalSession& session, std::string_view line, std::string_view shown) {
  const std::size_t mark = session.outputMark();
  session.send({line, Key::enter});
  return session.waitForOutput(shown, mark) && session.waitUntilIdle();
}

bool answers(TerminalSession& session, std::string_view key, std::string_view shown) {
  const std::size_t mark = session.outputMark();
  session.send(key);
  return session.waitForOutput(shown, mark) && session.waitUntilIdle();
}

bool openBrowser(TerminalSession& session, std::string_view label = "Show All Directories",
                 std::string_view lastRow = "[C]") {
  return runCacheRow(session, label) && session.waitFor(lastRow) && session.waitUntilIdle();
}

class BrowserLanguages : public testing::TestWithParam<const char*> {};

TEST_P(BrowserLanguages, ShowsAllPlacesAndTheirSizes) {
  SessionOptions options = cacheOptions(GetParam());
  options.rows = 40;
  TerminalSession session(options);
  const bool isGerman = std::string_view(GetParam()) == "de";
  ASSERT_TRUE(openBrowser(session, isGerman ? "Alle Verzeichnisse anzeigen" : "Show All Directories"));
  session.expectGoldenScreen(std::string("cache_browser_") + GetParam());
  ASSERT_TRUE(enters(session, "2", isGerman ? "Unterverzeichnisse" : "Subdirectories"));
  session.expectGoldenScreen(std::string("cache_subfolders_") + GetParam());
  ASSERT_TRUE(enters(session, "x", "[12]"));
  session.send({"x", Key::enter});
  quit(session);
}

TEST_P(BrowserLanguages, ShowsTheSubfoldersOfDerivedData) {
  SessionOptions options = cacheOptions(GetParam());
  options.rows = 40;
  TerminalSession session(options);
  const bool isGerman = std::string_view(GetParam()) == "de";
  ASSERT_TRUE(openBrowser(session, isGerman ? "Derived Data löschen (…)" : "Delete Derived Data (...)", "[05]"));
  session.expectGoldenScreen(std::string("derived_data_selective_") + GetParam());
  session.send({"x", Key::enter});
  quit(session);
}

INSTANTIATE_TEST_SUITE_P(Languages, BrowserLanguages, testing::Values("en", "de"),
                         [](const auto& each) { return std::string(each.param); });

TEST(CacheBrowser, UnknownAnswersAreToldAndNothingIsMeasuredAgain) {
  TerminalSession session(cacheOptions());
  ASSERT_TRUE(openBrowser(session));
  ASSERT_TRUE(enters(session, "13", "Invalid selection."));
  ASSERT_TRUE(enters(session, "s", "Invalid selection.")) << "the menu's letters don't work here";
  const std::size_t mark = session.outputMark();
  ASSERT_TRUE(enters(session, "", "[C]"));
  EXPECT_EQ(session.rawOutput(mark).find("Calculating"), std::string::npos);
  session.expectShowsNot("Invalid selection.");
  session.send({"q", Key::enter});
  quit(session);
}

TEST(CacheBrowser, ASubfolderIsDeletedAfterAYesAlone) {
  TerminalSession session(cacheOptions());
  ASSERT_TRUE(openBrowser(session));
  ASSERT_TRUE(enters(session, "02", "Subdirectories"));
  ASSERT_TRUE(enters(session, "1", "[j/N]"));
  session.expectShows("Really delete 'Atlas-bqkzvnfgdprjtcwmhxysbqkzvnfg' (2.1G)? [j/N]");
  ASSERT_TRUE(answers(session, "n", "[01]"));
  EXPECT_TRUE(isThere(session, std::string(derivedData) + "/Atlas-bqkzvnfgdprjtcwmhxysbqkzvnfg"));
  ASSERT_TRUE(enters(session, "1", "[j/N]"));
  ASSERT_TRUE(answers(session, "y", "was deleted."));
  session.expectShows("✓ 'Atlas-bqkzvnfgdprjtcwmhxysbqkzvnfg' was deleted.");
  session.expectShows("Total size  1.7G");
  EXPECT_FALSE(isThere(session, std::string(derivedData) + "/Atlas-bqkzvnfgdprjtcwmhxysbqkzvnfg"));
  EXPECT_TRUE(isThere(session, std::string(derivedData) + "/Harbor-fmwtcjrpdgfnvzkqbsyxhmwcjrtd"));
  const std::size_t mark = session.outputMark();
  ASSERT_TRUE(enters(session, "x", "[12]"));
  EXPECT_NE(session.rawOutput(mark).find("Calculating"), std::string::npos) << "what changed is measured again";
  session.expectShows("[02] DerivedData (complete)      1.7G");
  session.send({"x", Key::enter});
  quit(session);
}

TEST(CacheBrowser, SimulatorsAreDeletedByTheirTool) {
  TerminalSession session(cacheOptions());
  ASSERT_TRUE(openBrowser(session));
  ASSERT_TRUE(enters(session, "9", "Subdirectories"));
  ASSERT_TRUE(enters(session, "c", "[j/N]"));
  session.expectShows("Delete contents of \"Simulators\" (7.0G)? [j/N]");
  ASSERT_TRUE(answers(session, "j", "No entries found."));
  session.expectShows("✓ 'Simulators' was deleted.");
  EXPECT_THAT(session.callsOf("xcrun"), testing::Contains("xcrun simctl delete all"));
  EXPECT_TRUE(isEmptyFolder(session, devices)) << "rm would have taken the folder";
  session.send({"x", Key::enter});
  ASSERT_TRUE(session.waitFor("[12]") && session.waitUntilIdle());
  session.send({"x", Key::enter});
  quit(session);
}

TEST(CacheBrowser, AMissingFolderAndAProjectWithoutBuildsShowSizeZero) {
  SessionOptions options = cacheOptions();
  options.homeFiles.clear();
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  std::filesystem::remove_all(session.inHome(moduleCache));
  ASSERT_TRUE(openBrowser(session));
  session.expectShows("[01] CapstanLightBuild-Harbor      0B");
  session.expectShows("[03] ModuleCache                   0B");
  ASSERT_TRUE(enters(session, "3", "No entries found."));
  session.send({"x", Key::enter});
  ASSERT_TRUE(session.waitFor("[12]") && session.waitUntilIdle());
  session.send({"x", Key::enter});
  quit(session);
}

TEST(CacheBrowser, ClearAllNeedsTwoYesesAndEmptiesEveryPlace) {
  TerminalSession session(cacheOptions());
  ASSERT_TRUE(openBrowser(session));
  const std::size_t items = itemsInHome(session);
  ASSERT_TRUE(enters(session, "C", "Delete all caches?"));
  ASSERT_TRUE(answers(session, "n", "[12]"));
  ASSERT_TRUE(enters(session, "c", "Delete all caches?"));
  ASSERT_TRUE(answers(session, "j", "Run Clear All now and delete permanently?"));
  ASSERT_TRUE(answers(session, "n", "[12]"));
  EXPECT_EQ(itemsInHome(session), items);
  ASSERT_TRUE(enters(session, "c", "Delete all caches?"));
  ASSERT_TRUE(answers(session, "j", "Run Clear All now and delete permanently?"));
  ASSERT_TRUE(answers(session, "j", "[X]"));
  session.expectShows("✓ 'CapstanLightBuild-Harbor' was deleted.");
  session.expectShows("✓ 'Xcode & Crash Logs' was deleted.");
  for (const std::string_view place :
       {derivedData, moduleCache, previews, xcodeCaches, sourcePackages, simulatorCache}) {
    EXPECT_FALSE(isThere(session, place)) << place;
  }
  for (const std::string_view place : {packages, packageData, devices, archives, deviceSupport, logs, reports}) {
    EXPECT_TRUE(isEmptyFolder(session, place)) << place;
  }
  for (const std::string_view place : {pods, carthage, std::string_view("Library/Logs/CoreSimulator")}) {
    EXPECT_TRUE(isThere(session, place)) << place;
  }
  EXPECT_EQ(session.readHomeFile("Documents/letter"), "stays");
  ASSERT_TRUE(answers(session, "x", "[12]"));
  session.expectShows("[02] DerivedData (complete)        0B");
  session.send({"x", Key::enter});
  quit(session);
}

TEST(CacheBrowser, ASubfolderThatCantBeDeletedIsAnErrorAndStays) {
  const TemporaryFolder tools;
  const std::string rm = tools.write("rm", "#!/bin/sh\necho 'rm: Permission denied' >&2\nexit 1\n");
  std::filesystem::permissions(rm, std::filesystem::perms::owner_all);
  SessionOptions options = cacheOptions();
  options.path = tools.at() + ":" HALYARD_SOURCE_DIR "/demo/bin:/usr/bin:/bin";
  TerminalSession session(options);
  ASSERT_TRUE(openBrowser(session, "Delete Derived Data (...)", "[05]"));
  ASSERT_TRUE(enters(session, "1", "[j/N]"));
  ASSERT_TRUE(answers(session, "j", "Error deleting"));
  session.expectShows("✗ Error deleting 'Atlas-bqkzvnfgdprjtcwmhxysbqkzvnfg'.");
  session.expectShows("[01] Atlas-bqkzvnfgdprjtcwmhxysbqkzvnfg");
  session.expectShowsNot("Permission denied");
  session.send({"x", Key::enter});
  quit(session);
}

TEST(SelectiveDerivedData, RowsGoOneByOneUntilNoneIsLeft) {
  TerminalSession session(cacheOptions());
  ASSERT_TRUE(openBrowser(session, "Delete Derived Data (...)", "[05]"));
  for (int left = 5; left > 0; --left) {
    ASSERT_TRUE(enters(session, "01", "[j/N]"));
    ASSERT_TRUE(answers(session, "j", "was deleted."));
  }
  ASSERT_TRUE(session.waitFor("No subdirectories found in DerivedData.") && session.waitFor("[X]"));
  EXPECT_TRUE(isEmptyFolder(session, derivedData));
  ASSERT_TRUE(session.waitUntilIdle());
  session.send("x");
  quit(session);
}

}  // namespace
}  // namespace halyard
