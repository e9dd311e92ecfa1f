#include "halyard/cache/cache_browser.hpp"

#include "core/string_catalog.hpp"
#include "halyard/cache/browser_rows.hpp"
#include "halyard/cache/cache_entries.hpp"
#include "halyard/cache/cache_testing.hpp"
#include "halyard/cache/folder_browser.hpp"
#include "halyard/cache/subfolders.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* derivedData = "/Users/demo/Library/Developer/Xcode/DerivedData";

class CacheBrowser : public CacheTest {
 public:
  CacheBrowser& totals(const std::string& paths, const std::string& size) {
    runner.expect("du -sch " + paths + " 2>/dev/null | tail -1 | awk '{print $1}'", size + "\n");
    return *this;
  }
  /// A subfolder of DerivedData, and the next measurement of it.
  CacheBrowser& subfolder(const std::string& name, const std::string& size) {
    measured(std::string(derivedData) + "/" + name, size);
    return *this;
  }
  [[nodiscard]] std::size_t measurements() const {
    const std::vector<std::string> all = runner.commands();
    return static_cast<std::size_t>(
        std::ranges::count_if(all, [](const std::string& each) { return each.starts_with("du "); }));
  }
  static std::size_t count(std::string_view text, std::string_view what) {
    std::size_t found = 0;
    for (auto at = text.find(what); at != std::string_view::npos; at = text.find(what, at + 1)) ++found;
    return found;
  }
};

TEST_F(CacheBrowser, RowsHaveTheirSizesInOneColumn) {
  EXPECT_EQ(stripAnsi(sizedRows({{"short", "1.2G", "Section"}, {"longer name", "12K"}})),
            "\n  Section\n  [01] short          1.2G\n  [02] longer name     12K\n");
  EXPECT_EQ(stripAnsi(totalRow("Total size", "1.2G")), "\n  Total size  1.2G\n");
  const std::string row = stripAnsi(sizedRows({{std::string(300, 'a'), "1M"}}));
  EXPECT_LT(visibleWidth(row), 80);
  EXPECT_THAT(row, HasSubstr("…"));
}

TEST_F(CacheBrowser, AMissingFolderShowsSizeZeroAndStays) {
  const std::string text = shownBy(showAllCaches, "x\n");
  EXPECT_THAT(text, AllOf(HasSubstr("▶  Show All Directories"),
                          HasSubstr("  Build Artifacts\n"
                                    "  [01] CapstanLightBuild-Harbor      0B\n"
                                    "  [02] DerivedData (complete)        0B\n"
                                    "  [03] ModuleCache                   0B\n\n"
                                    "  Xcode Caches\n"),
                          HasSubstr("  [12] Xcode & Crash Logs            0B\n\n  Total size  0B\n"
                                    "  [C] Clear All\n  [x] Back\n")));
  EXPECT_EQ(measurements(), 0U);
}

TEST_F(CacheBrowser, MeasuresOncePerEntryWhateverIsTyped) {
  files.addFolder(home("Library/Developer/Xcode/ModuleCache"));
  totals("'/Users/demo/Library/Developer/Xcode/ModuleCache'", "240M");
  totals("'/Users/demo/Library/Developer/Xcode/ModuleCache'", "240M");
  const std::string text = shownBy(showAllCaches, "\n13\nhello\nd\n00\nc\nnx\n");
  EXPECT_THAT(text, AllOf(HasSubstr("[03] ModuleCache                 240M"), HasSubstr("Total size  240M")));
  EXPECT_EQ(count(text, "Invalid selection."), 4U) << "not for an empty line";
  EXPECT_EQ(count(text, "▶  Show All Directories"), 8U);
}

TEST_F(CacheBrowser, EachWayOutLeadsOut) {
  for (const char* keys : {"x\n", "X\n", "q\n", "0\n", ""}) {
    EXPECT_EQ(count(shownBy(showAllCaches, keys), "[C] Clear All"), 1U) << keys;
  }
}

TEST_F(CacheBrowser, AnEntryOpensItsSubfoldersByEitherNumber) {
  files.addFile(std::string(derivedData) + "/info.plist").addLink(std::string(derivedData) + "/link");
  for (const char* keys : {"2\nx\nx\n", "02\nx\nx\n"}) {
    totals("'" + std::string(derivedData) + "'", "5.0G").totals("'" + std::string(derivedData) + "'", "5.0G");
    subfolder("Atlas", "24M").subfolder("Buoy", "1.2G").subfolder("Cape", "24M");
    totals("'" + std::string(derivedData) + "'", "5.0G");
    const std::string text = shownBy(showAllCaches, keys);
    EXPECT_THAT(text, AllOf(HasSubstr("▶  DerivedData (complete)"), HasSubstr("Build products, indexes and logs"),
                            HasSubstr("~/Library/Developer/Xcode/DerivedData\n"),
                            HasSubstr("  Subdirectories\n"
                                      "  [01] Buoy     1.2G\n"
                                      "  [02] Atlas     24M\n"
                                      "  [03] Cape      24M\n\n"
                                      "  Total size  5.0G\n  [C] Clear All\n  [x] Back\n")));
    EXPECT_EQ(count(text, "▶  Show All Directories"), 3U) << "back without measuring again";
  }
}

TEST_F(CacheBrowser, AnEntryWithoutSubfoldersSaysSo) {
  EXPECT_THAT(shownBy(showAllCaches, "3\nx\nx\n"), HasSubstr("ℹ No entries found."));
}

TEST_F(CacheBrowser, ADeletedSubfolderLeavesTheListAndTheFirstScreenIsMeasuredAgain) {
  const std::string all = "'" + std::string(derivedData) + "'";
  totals(all, "5.0G").totals(all, "5.0G").subfolder("Atlas", "2.0G").subfolder("Buoy", "3.0G").totals(all, "5.0G");
  runner.expect("rm -rf '/Users/demo/Library/Developer/Xcode/DerivedData/Buoy'").whenCalled([&] {
    files.removeItem(std::string(derivedData) + "/Buoy");
  });
  totals(all, "2.0G").totals(all, "2.1G").totals(all, "2.1G");
  const std::string text = shownBy(showAllCaches, "2\n1\njx\nx\n");
  EXPECT_THAT(text, AllOf(HasSubstr("? Really delete 'Buoy' (3.0G)? [j/N] j"), HasSubstr("✓ 'Buoy' was deleted."),
                          HasSubstr("  [01] Atlas    2.0G\n\n  Total size  2.0G\n"),
                          HasSubstr("[02] DerivedData (complete)      2.1G")));
}

TEST_F(CacheBrowser, ASimulatorsDeletionIsSimctls) {
  files.addFolder(home("Library/Developer/CoreSimulator/Devices"));
  const std::string all = "'/Users/demo/Library/Developer/CoreSimulator/Devices'";
  totals(all, "7.0G").totals(all, "7.0G").totals(all, "7.0G");
  ran("xcrun simctl delete all 2>/dev/null; true");
  totals(all, "4.0K").totals(all, "4.0K").totals(all, "4.0K");
  const std::string text = shownBy(showAllCaches, "9\nc\njx\nx\n");
  EXPECT_THAT(text,
              AllOf(HasSubstr("? Delete contents of \"Simulators\" (7.0G)? [j/N] j"),
                    HasSubstr("✓ 'Simulators' was deleted."), HasSubstr("[09] Simulators                  4.0K")));
}

TEST_F(CacheBrowser, ADeclinedDeletionOfAnEntryRunsNothing) {
  const std::string text = shownBy(showAllCaches, "3\nc\nnx\nx\n");
  EXPECT_THAT(text, AllOf(HasSubstr("? Delete contents of \"ModuleCache\" (0B)? [j/N] n"), HasSubstr("Cancelled")));
  EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST_F(CacheBrowser, AnEntryThatIsLeftIsAnError) {
  files.addFolder(home("Library/Developer/Xcode/ModuleCache"));
  const std::string all = "'/Users/demo/Library/Developer/Xcode/ModuleCache'";
  totals(all, "9M").totals(all, "9M").totals(all, "9M");
  ran("rm -rf " + all);
  totals(all, "9M").totals(all, "9M").totals(all, "9M");
  EXPECT_THAT(shownBy(showAllCaches, "3\nc\njx\nx\n"), HasSubstr("✗ Error deleting 'ModuleCache'."));
}

TEST_F(CacheBrowser, ClearAllNeedsTwoYeses) {
  EXPECT_THAT(shownBy(showAllCaches, "c\nnx\n"), HasSubstr("? Delete all caches? [j/N] n"));
  EXPECT_THAT(shownBy(showAllCaches, "C\njnx\n"),
              AllOf(HasSubstr("? Run Clear All now and delete permanently? [j/N] n"), Not(HasSubstr("✓"))));
  EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST_F(CacheBrowser, ClearAllDeletesEveryEntryByItsRule) {
  for (const CacheBrowserEntry& entry : cacheBrowserEntries("x", buildFolder)) {
    if (entry.customDeleteCommand) {
      runner.expect(*entry.customDeleteCommand);
    } else if (entry.deleteContentsOnly) {
      runner.expect("find '" + entry.path + "' -maxdepth 1 -mindepth 1 -exec rm -rf {} + 2>/dev/null");
    } else {
      runner.expect("rm -rf '" + entry.path + "'");
    }
  }
  const std::string text = shownBy(showAllCaches, "c\njjxx\n");
  EXPECT_EQ(count(text, "was deleted."), 12U);
  EXPECT_THAT(text, AllOf(HasSubstr("✓ 'CapstanLightBuild-Harbor' was deleted.\n"),
                          HasSubstr("✓ 'Xcode & Crash Logs' was deleted.\n"), HasSubstr("[X] 🔙 Back")));
}

TEST_F(CacheBrowser, WithoutAUsableHomeItRefuses) {
  const HomeSetting setting("");
  for (void (*action)() : {showAllCaches, deleteDerivedDataSelective}) {
    EXPECT_THAT(shownBy(action, "c\njjx"), AllOf(HasSubstr("✗ Nothing was deleted: HOME names no usable home folder."),
                                                 HasSubstr("[X]"), Not(HasSubstr("[C]"))));
  }
  EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST_F(CacheBrowser, AnAbortWhileMeasuringLeadsBack) {
  files.addFolder(home("Library/Developer/Xcode/ModuleCache"));
  totals("'/Users/demo/Library/Developer/Xcode/ModuleCache'", "9M");
  runner.whenCalled([] { setOperationAborted(true); });
  totals("'/Users/demo/Library/Developer/Xcode/ModuleCache'", "9M");
  EXPECT_THAT(shownBy(showAllCaches, "c\njj"), Not(HasSubstr("[C] Clear All")));
  EXPECT_FALSE(operationAborted());
}

TEST_F(CacheBrowser, SpeaksGerman) {
  setCurrentLanguage("de");
  EXPECT_THAT(shownBy(showAllCaches, "3\nx\nx\n"),
              AllOf(HasSubstr("▶  Alle Verzeichnisse anzeigen"), HasSubstr("Build-Artefakte"),
                    HasSubstr("Gesamtgröße  0B"), HasSubstr("[C] Alle leeren"), HasSubstr("Keine Einträge gefunden.")));
}

TEST_F(CacheBrowser, SubfoldersAreFoldersAndNothingElse) {
  files.addFile("/a/file").addLink("/a/link").addFolder("/a/b").addFile("/a/c/d").addLink("/linked");
  EXPECT_THAT(subfolderNames("/a"), testing::UnorderedElementsAre("b", "c"));
  EXPECT_THAT(subfolderNames("/linked"), IsEmpty());
  EXPECT_THAT(subfolderNames("/none"), IsEmpty());
  EXPECT_THAT(subfolderNames("/a/file"), IsEmpty());
  files.deny("/a");
  EXPECT_THAT(subfolderNames("/a"), IsEmpty());
}

class SelectiveDerivedData : public CacheBrowser {
 public:
  const std::string all = "'" + std::string(derivedData) + "'";
};

TEST_F(SelectiveDerivedData, WithoutSubfoldersItSaysSoAndWaits) {
  const std::string text = shownBy(deleteDerivedDataSelective, "x");
  EXPECT_THAT(text, AllOf(HasSubstr("▶  Delete Derived Data (...)"),
                          HasSubstr("Deletes only the selected subdirectories of DerivedData."),
                          HasSubstr("  DerivedData  : ~/Library/Developer/Xcode/DerivedData\n"),
                          HasSubstr("ℹ No subdirectories found in DerivedData."), HasSubstr("[X] 🔙 Back")));
}

TEST_F(SelectiveDerivedData, RowsAreDeletedOneByOne) {
  subfolder("-rf it's", "1.0G").subfolder("Buoy", "24M").totals(all, "1.1G");
  runner.expect("rm -rf '/Users/demo/Library/Developer/Xcode/DerivedData/-rf it'\\''s'").whenCalled([&] {
    files.removeItem(std::string(derivedData) + "/-rf it's");
  });
  totals(all, "25M");
  runner.expect("rm -rf '/Users/demo/Library/Developer/Xcode/DerivedData/Buoy'").whenCalled([&] {
    files.removeItem(std::string(derivedData) + "/Buoy");
  });
  const std::string text = shownBy(deleteDerivedDataSelective, "1\nj01\njx");
  EXPECT_THAT(text, AllOf(HasSubstr("  [01] -rf it's    1.0G\n  [02] Buoy         24M\n\n"
                                    "  Total DerivedData size  1.1G\n  [x] Back\n"),
                          HasSubstr("? Really delete '-rf it's' (1.0G)? [j/N] j"),
                          HasSubstr("  [01] Buoy     24M\n\n  Total DerivedData size  25M\n"),
                          HasSubstr("✓ '-rf it's' was deleted."), HasSubstr("✓ 'Buoy' was deleted.")));
  EXPECT_THAT(text.substr(text.rfind("▶  ")), AllOf(HasSubstr("No subdirectories found"), HasSubstr("[X] 🔙 Back")));
}

TEST_F(SelectiveDerivedData, ADeclinedDeletionKeepsTheRowAndMeasuresNothing) {
  subfolder("Atlas", "1.0G").totals(all, "1.1G");
  const std::string text = shownBy(deleteDerivedDataSelective, "1\nn2\nc\nx\n");
  EXPECT_EQ(count(text, "[01] Atlas    1.0G"), 4U);
  EXPECT_EQ(count(text, "Invalid selection."), 2U) << "there is no C here";
  EXPECT_EQ(measurements(), 2U);
}

TEST_F(SelectiveDerivedData, ARowThatIsLeftIsAnErrorAndIsMeasuredAgain) {
  subfolder("Atlas", "1.0G").totals(all, "1.1G");
  runner.expect("rm -rf '/Users/demo/Library/Developer/Xcode/DerivedData/Atlas'");
  subfolder("Atlas", "200M").totals(all, "201M");
  EXPECT_THAT(shownBy(deleteDerivedDataSelective, "1\njx\n"),
              AllOf(HasSubstr("✗ Error deleting 'Atlas'."), HasSubstr("[01] Atlas    200M")));
}

TEST_F(SelectiveDerivedData, ControlCharactersOfANameShowAsStandIns) {
  subfolder("a\x1b[2J\nb", "1.0G").totals(all, "1.1G");
  const std::string text = shownBy(deleteDerivedDataSelective, "1\nnx\n");
  EXPECT_THAT(text, AllOf(HasSubstr("[01] a␛[2J␊b"), HasSubstr("Really delete 'a␛[2J␊b' (1.0G)?")));
}

}  // namespace
}  // namespace halyard
