#include "halyard/terminal/file_browser.hpp"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/in_memory_file_system.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;

const RawKey up{.kind = RawKey::Kind::up, .text = {}};
const RawKey down{.kind = RawKey::Kind::down, .text = {}};
const RawKey left{.kind = RawKey::Kind::left, .text = {}};
const RawKey right{.kind = RawKey::Kind::right, .text = {}};
const RawKey enter{.kind = RawKey::Kind::enter, .text = {}};

RawKey character(std::string text) { return {.kind = RawKey::Kind::character, .text = std::move(text)}; }

class FileBrowserTest : public testing::Test {
 protected:
  FileBrowserTest() {
    loadStringCatalog({});
    AppContext::shared().reset();
    for (const char* file :
         {"/work/zebra.txt", "/work/Apple.swift", "/work/.hidden", "/work/.git/config", "/work/sources/main.swift",
          "/work/Tests/case.swift", "/work/Demo.xcodeproj/project.pbxproj", "/work/Demo.app/Info.plist",
          "/work/Pods.XCWORKSPACE/contents"}) {
      files.addFile(file);
    }
  }
  ~FileBrowserTest() override { AppContext::shared().reset(); }

  [[nodiscard]] std::vector<std::string> names(const std::vector<FileBrowserEntry>& entries) const {
    std::vector<std::string> result;
    for (const FileBrowserEntry& entry : entries) result.push_back(entry.name);
    return result;
  }
  [[nodiscard]] FileBrowser browserIn(const std::string& folder, std::vector<std::string> extensions = {}) const {
    return openFileBrowser("Pick", extensions, folder);
  }
  void select(FileBrowser& browser, const std::string& name) const {
    const auto found = std::ranges::find(browser.entries, name, &FileBrowserEntry::name);
    ASSERT_NE(found, browser.entries.end()) << name;
    browser.selected = static_cast<int>(found - browser.entries.begin());
  }
  [[nodiscard]] std::vector<std::string> screen(FileBrowser& browser, int rows = 24, int columns = 80) const {
    std::vector<std::string> lines;
    const std::string frame = drawFileBrowser(browser, rows, columns);
    for (const std::string_view line : splitLines(frame)) lines.push_back(stripAnsi(line));
    return lines;
  }
  void addFiles(const std::string& folder, int count) {
    for (int index = 0; index < count; ++index) {
      std::string number = std::to_string(index);
      number.insert(0, 5 - number.size(), '0');
      files.addFile(folder + "/file" + number);
    }
  }

  InMemoryFileSystem files{std::getenv("HOME")};
  DependenciesGuard guard{{.commandRunner = nullptr, .fileSystemClient = &files, .appContext = nullptr}};
};

TEST_F(FileBrowserTest, FoldersComeFirstAndEachGroupIsSortedRegardlessOfCase) {
  EXPECT_THAT(names(fileBrowserEntries("/work", {})), ElementsAre("Demo.app", "Demo.xcodeproj", "Pods.XCWORKSPACE",
                                                                  "sources", "Tests", "Apple.swift", "zebra.txt"));
}

TEST_F(FileBrowserTest, AFolderWithAPackagesExtensionIsAPackage) {
  EXPECT_THAT(fileBrowserEntries("/work", {".none"}),
              ElementsAre(FileBrowserEntry{"sources", true, false}, FileBrowserEntry{"Tests", true, false}));
  const std::vector<FileBrowserEntry> all = fileBrowserEntries("/work", {});
  EXPECT_EQ(all[1], (FileBrowserEntry{"Demo.xcodeproj", true, true}));
  EXPECT_EQ(all[2], (FileBrowserEntry{"Pods.XCWORKSPACE", true, true}));
}

TEST_F(FileBrowserTest, AFileWithAPackagesExtensionIsAFile) {
  files.addFile("/other/report.app");
  EXPECT_THAT(fileBrowserEntries("/other", {}), ElementsAre(FileBrowserEntry{"report.app", false, false}));
}

TEST_F(FileBrowserTest, ExtensionsLeaveOutOtherFilesAndPackagesButNoFolders) {
  EXPECT_THAT(names(fileBrowserEntries("/work", {".xcworkspace", ".xcodeproj"})),
              ElementsAre("Demo.xcodeproj", "Pods.XCWORKSPACE", "sources", "Tests"));
  EXPECT_THAT(names(fileBrowserEntries("/work", {".swift"})), ElementsAre("sources", "Tests", "Apple.swift"));
}

TEST_F(FileBrowserTest, ALinkToAFolderIsAFolderAndADanglingOneAFile) {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("browser-links-" + std::to_string(getpid()));
  std::filesystem::create_directories(folder / "real");
  std::filesystem::create_directory_symlink(folder / "real", folder / "link");
  std::filesystem::create_symlink(folder / "nowhere", folder / "dangling");
  files.addLink(folder.string() + "/link");
  files.addLink(folder.string() + "/dangling");
  EXPECT_THAT(fileBrowserEntries(folder.string(), {}),
              ElementsAre(FileBrowserEntry{"link", true, false}, FileBrowserEntry{"dangling", false, false}));
  std::filesystem::remove_all(folder);
}

TEST_F(FileBrowserTest, AnUnreadableFolderIsEmptyAndLeftStillWorks) {
  files.deny("/work/sources");
  FileBrowser browser = browserIn("/work/sources");
  EXPECT_TRUE(browser.entries.empty());
  EXPECT_NE(screen(browser)[3].find("No entries available"), std::string::npos);
  for (const RawKey& key : {up, down, enter, right, character("s")}) {
    EXPECT_EQ(handleFileBrowserKey(browser, key), FileBrowserStep::stay);
  }
  EXPECT_EQ(handleFileBrowserKey(browser, left), FileBrowserStep::stay);
  EXPECT_EQ(browser.folder, "/work");
  EXPECT_FALSE(browser.entries.empty());
}

TEST_F(FileBrowserTest, AVanishedFolderGivesWayToTheNearestOneAbove) {
  EXPECT_EQ(browserIn("/work/sources/gone/deeper").folder, "/work/sources");
  EXPECT_EQ(browserIn("/nothing/at/all").folder, "/");

  FileBrowser browser = browserIn("/work");
  select(browser, "sources");
  files.removeItem("/work/sources");
  EXPECT_EQ(handleFileBrowserKey(browser, enter), FileBrowserStep::stay);
  EXPECT_EQ(browser.folder, "/work");
  EXPECT_THAT(names(browser.entries), testing::Not(testing::Contains("sources")));
}

TEST_F(FileBrowserTest, LeftSurvivesThatTheWholeBranchVanished) {
  FileBrowser browser = browserIn("/work/sources");
  files.removeItem("/work");
  handleFileBrowserKey(browser, left);
  EXPECT_EQ(browser.folder, "/");
}

TEST_F(FileBrowserTest, TrailingSlashesOfTheFolderDoNotCount) { EXPECT_EQ(browserIn("/work//").folder, "/work"); }

TEST_F(FileBrowserTest, UpAndDownStopAtTheEnds) {
  FileBrowser browser = browserIn("/work");
  handleFileBrowserKey(browser, up);
  EXPECT_EQ(browser.selected, 0);
  for (int count = 0; count < 20; ++count) handleFileBrowserKey(browser, down);
  EXPECT_EQ(browser.selected, 6);
  handleFileBrowserKey(browser, up);
  EXPECT_EQ(browser.selected, 5);
}

TEST_F(FileBrowserTest, EnterAndRightGoIntoAFolder) {
  for (const RawKey& key : {enter, right}) {
    FileBrowser browser = browserIn("/work");
    select(browser, "Tests");
    EXPECT_EQ(handleFileBrowserKey(browser, key), FileBrowserStep::stay);
    EXPECT_EQ(browser.folder, "/work/Tests");
    EXPECT_EQ(browser.selected, 0);
    EXPECT_THAT(names(browser.entries), ElementsAre("case.swift"));
  }
}

TEST_F(FileBrowserTest, EnterAndRightChooseAFileAndAPackage) {
  for (const char* name : {"zebra.txt", "Demo.xcodeproj"}) {
    for (const RawKey& key : {enter, right}) {
      FileBrowser browser = browserIn("/work");
      select(browser, name);
      EXPECT_EQ(handleFileBrowserKey(browser, key), FileBrowserStep::choose);
      EXPECT_EQ(selectedPath(browser), std::string("/work/") + name);
    }
  }
}

TEST_F(FileBrowserTest, LeftAndBackspaceGoToTheParentAndSelectTheFolderLeft) {
  for (const RawKey& key : {left, character("\x7f")}) {
    FileBrowser browser = browserIn("/work/sources");
    EXPECT_EQ(handleFileBrowserKey(browser, key), FileBrowserStep::stay);
    EXPECT_EQ(browser.folder, "/work");
    EXPECT_EQ(browser.entries.at(static_cast<std::size_t>(browser.selected)).name, "sources");
  }
}

TEST_F(FileBrowserTest, AboveTheRootThereIsNothing) {
  FileBrowser browser = browserIn("/");
  handleFileBrowserKey(browser, left);
  EXPECT_EQ(browser.folder, "/");
  select(browser, "work");
  EXPECT_EQ(selectedPath(browser), "/work");
}

TEST_F(FileBrowserTest, SChoosesAFolderToo) {
  for (const char* key : {"s", "S"}) {
    FileBrowser browser = browserIn("/work");
    select(browser, "sources");
    EXPECT_EQ(handleFileBrowserKey(browser, character(key)), FileBrowserStep::choose);
    EXPECT_EQ(selectedPath(browser), "/work/sources");
  }
}

TEST_F(FileBrowserTest, WGoesBackToTheWorkingDirectory) {
  setSelectedWorkingDirectory("/work");
  for (const char* key : {"w", "W"}) {
    FileBrowser browser = browserIn("/");
    EXPECT_EQ(handleFileBrowserKey(browser, character(key)), FileBrowserStep::stay);
    EXPECT_EQ(browser.folder, "/work");
  }
}

TEST_F(FileBrowserTest, XAndEscAndUnknownSequencesCancel) {
  for (const RawKey& key : {character("x"), character("X"), RawKey{.kind = RawKey::Kind::escape, .text = {}},
                            RawKey{.kind = RawKey::Kind::unknown, .text = {}}}) {
    FileBrowser browser = browserIn("/work");
    EXPECT_EQ(handleFileBrowserKey(browser, key), FileBrowserStep::cancel);
  }
}

TEST_F(FileBrowserTest, OtherCharactersDoNothing) {
  FileBrowser browser = browserIn("/work");
  for (const char* key : {"q", "1", " ", "\xc3\xa4"}) {
    EXPECT_EQ(handleFileBrowserKey(browser, character(key)), FileBrowserStep::stay);
    EXPECT_EQ(browser.folder, "/work");
    EXPECT_EQ(browser.selected, 0);
  }
}

TEST_F(FileBrowserTest, TheScreenHasHeadRowsAndFooter) {
  FileBrowser browser = browserIn("/work", {".xcworkspace", ".xcodeproj"});
  const std::vector<std::string> lines = screen(browser);
  ASSERT_EQ(lines.size(), 24U);
  EXPECT_TRUE(lines[0].starts_with("── Pick ──"));
  EXPECT_EQ(lines[1], "  Looking for: .xcworkspace, .xcodeproj");
  EXPECT_EQ(lines[2], "  Current path: /work");
  EXPECT_EQ(lines[3], "");
  EXPECT_TRUE(lines[4].starts_with("▶ Demo.xcodeproj"));
  EXPECT_TRUE(lines[5].starts_with("  Pods.XCWORKSPACE"));
  EXPECT_EQ(lines[6], "  sources/");
  EXPECT_NE(lines[23].find("W " + std::string(localized("file_browser_restore_workdir"))), std::string::npos);
  EXPECT_NE(lines[23].find("x " + std::string(localized("menu_back"))), std::string::npos);
}

TEST_F(FileBrowserTest, WithoutExtensionsNothingIsLookedFor) {
  FileBrowser browser = browserIn("/work");
  EXPECT_EQ(screen(browser)[1], "  Current path: /work");
}

TEST_F(FileBrowserTest, TheHintOfTheSelectedRowSaysWhatTheKeysDo) {
  FileBrowser browser = browserIn("/work");
  const std::string select = "  S → " + std::string(localized("dir_select"));
  EXPECT_EQ(screen(browser)[3], "▶ Demo.app" + select);
  this->select(browser, "sources");
  EXPECT_EQ(screen(browser)[6], "▶ sources/  ↵ " + std::string(localized("dir_enter")) + select);
}

TEST_F(FileBrowserTest, EachRowClearsTheRestOfItsLine) {
  FileBrowser browser = browserIn("/work");
  const std::string frame = drawFileBrowser(browser, 24, 80);
  for (const std::string_view line : splitLines(frame)) EXPECT_NE(line.find("\x1b[K"), std::string_view::npos) << line;
}

TEST_F(FileBrowserTest, TheListScrollsWithTheSelectionAndMarksWhatIsHidden) {
  addFiles("/many", 30);
  FileBrowser browser = browserIn("/many");
  std::vector<std::string> lines = screen(browser, 15);  // ten rows of list
  EXPECT_EQ(lines[2], "");
  EXPECT_EQ(lines[13], "  ↓  … 20 " + std::string(localized("dir_more_below")));

  for (int count = 0; count < 10; ++count) handleFileBrowserKey(browser, down);
  lines = screen(browser, 15);
  EXPECT_EQ(lines[2], "  ↑  … 1 " + std::string(localized("dir_more_above")));
  EXPECT_TRUE(lines[3].starts_with("  file00001"));
  EXPECT_TRUE(lines[12].starts_with("▶ file00010"));

  for (int count = 0; count < 30; ++count) handleFileBrowserKey(browser, down);
  lines = screen(browser, 15);
  EXPECT_TRUE(lines[12].starts_with("▶ file00029"));
  EXPECT_EQ(lines[13], "");

  for (int count = 0; count < 30; ++count) handleFileBrowserKey(browser, up);
  EXPECT_TRUE(screen(browser, 15)[3].starts_with("▶ file00000"));
}

TEST_F(FileBrowserTest, ATallerTerminalShowsTheListFromItsTopAgain) {
  addFiles("/many", 30);
  FileBrowser browser = browserIn("/many");
  browser.selected = 29;
  drawFileBrowser(browser, 15, 80);
  EXPECT_TRUE(screen(browser, 60)[3].starts_with("  file00000"));
}

TEST_F(FileBrowserTest, ASmallTerminalHoldsTheWholeFrame) {
  addFiles("/a folder with quite a long name/and another one below it", 100);
  FileBrowser browser = browserIn("/a folder with quite a long name/and another one below it", {".xcodeproj", "5"});
  ASSERT_FALSE(browser.entries.empty());
  const std::vector<std::string> lines = screen(browser, 10, 20);
  ASSERT_EQ(lines.size(), 10U);
  for (const std::string& line : lines) EXPECT_LE(visibleWidth(line), 20) << line;
  EXPECT_TRUE(lines[4].starts_with("▶ file"));
  EXPECT_NE(lines[9].find("x " + std::string(localized("menu_back"))), std::string::npos) << lines[9];
}

TEST_F(FileBrowserTest, ALongFolderIsCutAtTheFront) {
  const std::string folder = "/" + std::string(100, 'a') + "/end";
  files.addFolder(folder);
  FileBrowser browser = browserIn(folder);
  const std::string line = screen(browser)[1];
  EXPECT_NE(line.find(": …a"), std::string::npos) << line;
  EXPECT_TRUE(line.ends_with("a/end"));
  EXPECT_EQ(visibleWidth(line), 80);
}

TEST_F(FileBrowserTest, NamesAreDrawnSafeAndReturnedReal) {
  const std::string name = "evil\x1b[2J\nname\xff";
  files.addFile("/odd/" + name);
  FileBrowser browser = browserIn("/odd");
  const std::string frame = drawFileBrowser(browser, 24, 80);
  EXPECT_EQ(frame.find("\x1b[2J"), std::string::npos);
  EXPECT_TRUE(isValidUtf8(frame));
  EXPECT_EQ(screen(browser).size(), 24U);
  EXPECT_EQ(selectedPath(browser), "/odd/" + name);
}

TEST_F(FileBrowserTest, TenThousandEntriesAreQuick) {
  addFiles("/huge", 10'000);
  const auto start = std::chrono::steady_clock::now();
  FileBrowser browser = browserIn("/huge");
  EXPECT_EQ(browser.entries.size(), 10'000U);
  for (int count = 0; count < 200; ++count) {
    handleFileBrowserKey(browser, down);
    drawFileBrowser(browser, 50, 100);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
}

}  // namespace
}  // namespace halyard
