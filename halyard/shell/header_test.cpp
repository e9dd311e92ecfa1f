#include "halyard/shell/header.hpp"

#include <algorithm>

#include <gmock/gmock.h>

#include "core/text.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/terminal/control_sequences.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/shell_fixture.hpp"

namespace halyard {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class Header : public ShellTest {
 protected:
  Header() { forgetHeaderFacts(); }
  ~Header() override { forgetHeaderFacts(); }

  static std::vector<std::string> lines(bool compact = false, std::optional<int> split = 18) {
    std::vector<std::string> result;
    const std::string frame = headerFrame({"16.2", "6.0.3", "main"}, split, compact);
    for (const auto line : splitLines(frame)) result.emplace_back(line);
    result.pop_back();
    return result;
  }
  static std::string row(int number) { return stripAnsi(lines()[static_cast<std::size_t>(number)]); }
  /// What drawing it prints.
  static std::string drawn() {
    testing::internal::CaptureStdout();
    drawHeader(false, 18);
    flushOutput();
    return testing::internal::GetCapturedStdout();
  }
  int calls(std::string_view beginning) const {
    return static_cast<int>(std::count_if(runner.commands.begin(), runner.commands.end(),
                                          [&](const auto& command) { return command.starts_with(beginning); }));
  }
};

TEST_F(Header, EveryLineIsAsWideAsTheFrameInBothLanguages) {
  for (const auto* language : {"en", "de"}) {
    setCurrentLanguage(language);
    const auto all = lines();
    EXPECT_EQ(all.size(), static_cast<std::size_t>(headerLines));
    for (const auto& line : all) EXPECT_EQ(visibleWidth(line), 85) << line;
    EXPECT_EQ(lines(true, {}).size(), static_cast<std::size_t>(compactHeaderLines));
    for (const auto& line : lines(true, {})) EXPECT_EQ(visibleWidth(line), 85) << line;
  }
}

TEST_F(Header, ShowsTheVersionsTheProjectAndTheBranch) {
  EXPECT_THAT(row(1), HasSubstr("CLI TOOL HALYARD  Version: "));
  EXPECT_THAT(row(3), HasSubstr("Xcode:"));
  EXPECT_THAT(row(3), HasSubstr("16.2"));
  EXPECT_THAT(row(3), HasSubstr("Swift:"));
  EXPECT_THAT(row(3), HasSubstr("6.0.3"));
  EXPECT_THAT(row(4), HasSubstr("Projekt: —"));
  EXPECT_THAT(row(5), HasSubstr("Branch:  main"));
}

TEST_F(Header, TheLowerBorderHandsOverToThePanes) {
  EXPECT_EQ(row(13), "├" + repeated("─", 18) + "┬" + repeated("─", 64) + "┤");
  EXPECT_EQ(stripAnsi(lines(false, {}).back()), "└" + repeated("─", 83) + "┘");
}

TEST_F(Header, MarksTheLetterThatChangesEachRow) {
  const auto marked = [](int number) {
    const std::string line = lines()[static_cast<std::size_t>(number)];
    const std::string mark = "\x1b[1;34m\x1b[4m";
    const std::size_t at = line.find(mark);
    return at == std::string::npos ? std::string("none") : line.substr(at + mark.size(), 1);
  };
  const auto letters = [&] {
    std::string all;
    for (int number = 7; number <= 12; ++number) all += marked(number);
    return all;
  };
  EXPECT_EQ(uppercased(letters()), "WSTBDC");
  setCurrentLanguage("de");
  EXPECT_EQ(uppercased(letters()), "ASTBGK");
}

TEST_F(Header, AnEmptySelectionSaysWhatToDoInRed) {
  EXPECT_THAT(lines()[8], HasSubstr("\x1b[1;31m← please select!\x1b[0m"));
  EXPECT_THAT(lines()[10], HasSubstr("\x1b[1;31m← please enter!\x1b[0m"));
  EXPECT_THAT(lines()[11], HasSubstr("\x1b[1;31m← please select!\x1b[0m"));
  EXPECT_THAT(row(12), HasSubstr("Debug"));
}

TEST_F(Header, ASchemeShowsItsPlatformOnlyWhereTheCacheIsItsOwn) {
  setSelectedScheme("Harbor");
  setCachedPlatforms(SchemePlatforms{true, false});
  EXPECT_THAT(row(8), Not(HasSubstr("iOS")));
  setCachedPlatformsScheme("Harbor");
  EXPECT_THAT(row(8), HasSubstr("Harbor (iOS/iPadOS)"));
  setCachedPlatforms(SchemePlatforms{true, true});
  EXPECT_THAT(row(8), HasSubstr("Harbor (Universal)"));
  setCachedPlatforms(SchemePlatforms{false, true});
  EXPECT_THAT(row(8), HasSubstr("Harbor (macOS)"));
  setSelectedScheme("Other");
  EXPECT_THAT(row(8), Not(HasSubstr("(")));
}

TEST_F(Header, WithoutATestSchemeTheSchemeShowsDim) {
  setSelectedScheme("Harbor");
  EXPECT_THAT(lines()[9], HasSubstr("\x1b[2mHarbor\x1b[0m"));
  setSelectedTestScheme("HarborTests");
  setSelectedTestPlan("Nightly");
  EXPECT_THAT(row(9), HasSubstr("HarborTests"));
  EXPECT_THAT(row(9), HasSubstr("Nightly"));
}

TEST_F(Header, TheDeviceShowsItsSystem) {
  selectSimulator();
  EXPECT_THAT(row(11), HasSubstr("iPhone 16 (iOS 18.2)"));
  selectPhysicalDevice();
  EXPECT_THAT(row(11), HasSubstr("Ada's iPhone (iOS 18.1)"));
}

TEST_F(Header, AProjectNameOf72CharactersIsWholeAndOneOf73IsCut) {
  const auto shownFor = [&](int length) {
    const std::string path = "/projects/" + repeated("p", length - 10) + ".xcodeproj";
    files.addFile(path);
    setSelectedProjectFilePath(path);
    detectProject();
    return row(4);
  };
  EXPECT_THAT(shownFor(72), HasSubstr(repeated("p", 62) + ".xcodeproj"));
  const std::string cut = shownFor(73);
  EXPECT_THAT(cut, HasSubstr(repeated("p", 63) + ".xcodepr…"));
  setSelectedProjectFilePath({});
  detectProject();
}

TEST_F(Header, NothingFromOutsideReachesTheTerminalRaw) {
  setSelectedScheme("a\x1b[2Jb\nc");
  setSelectedBundleID("x\x07y");
  setSelectedWorkingDirectory("/tmp/\x1b]0;title\x07/ü\n");
  setSelectedDevice(SelectedDevice{"dev\x1b[31mice", "id", "os\r"});
  setSelectedConfig(
      "De\x9b"
      "bug");
  for (const auto& line : lines()) {
    EXPECT_EQ(visibleWidth(line), 85);
    for (const std::string_view bad : {"\x1b[2J", "\x1b]", "\x07", "\r", "\n"}) EXPECT_THAT(line, Not(HasSubstr(bad)));
  }
  EXPECT_THAT(row(8), HasSubstr("a␛[2Jb␊c"));
}

TEST_F(Header, LongValuesAreCutToTheFrame) {
  setSelectedScheme(repeated("s", 200));
  setSelectedTestScheme(repeated("t", 200));
  setSelectedTestPlan(repeated("p", 200));
  setSelectedBundleID(repeated("b", 200));
  setSelectedWorkingDirectory("/" + repeated("w", 200));
  setSelectedDevice(SelectedDevice{repeated("d", 200), "id", "iOS"});
  setSelectedConfig(repeated("c", 200));
  for (const auto& line : lines()) EXPECT_EQ(visibleWidth(line), 85);
}

TEST_F(Header, ReadsTheVersionsOnceAndTheBranchAfterEachAction) {
  runner.answers["xcodebuild -version 2>/dev/null | head -1"] = "Xcode 16.2";
  runner.answers["swift --version 2>/dev/null | grep -oE '[0-9]+\\.[0-9]+\\.?[0-9]*' | head -1"] = "6.0.3";
  runner.answers["git branch --show-current 2>/dev/null"] = "main";
  const std::string first = stripAnsi(drawn());
  EXPECT_THAT(first, HasSubstr("16.2"));
  EXPECT_THAT(first, Not(HasSubstr("Xcode 16.2")));
  drawn();
  EXPECT_EQ(runner.commands.size(), 3U) << "a second frame asks for nothing";
  resetHeaderCache();
  drawn();
  EXPECT_EQ(calls("git branch"), 2);
  EXPECT_EQ(calls("xcodebuild"), 1);
  EXPECT_EQ(calls("swift"), 1);
}

TEST_F(Header, FailingToolsShowDashes) {
  const std::string frame = stripAnsi(drawn());
  EXPECT_THAT(frame, HasSubstr("Xcode:  —"));
  EXPECT_THAT(frame, HasSubstr("Swift:  —"));
  EXPECT_THAT(frame, HasSubstr("Branch:  —"));
  drawn();
  EXPECT_EQ(calls("git branch"), 1) << "an empty answer is an answer";
}

/// The compact header with what a view adds, without colours.
std::vector<std::string> noticeLines(const HeaderNotice& notice) {
  std::vector<std::string> result;
  const std::string frame = headerFrame({}, {}, true, notice);
  for (const auto line : splitLines(frame)) result.push_back(stripAnsi(line));
  result.pop_back();
  return result;
}

TEST_F(Header, AToastStandsInPlaceOfTheLinks) {
  const auto lines = noticeLines({"View refreshed", "/work", {}});
  ASSERT_EQ(lines.size(), static_cast<std::size_t>(compactHeaderLines));
  EXPECT_EQ(lines[2], "│ View refreshed  /work" + std::string(61, ' ') + "│");
  EXPECT_THAT(headerFrame({}, {}, true, {"View refreshed", "/work", {}}),
              HasSubstr("\x1b[1mView refreshed\x1b[0m  /work"));
  EXPECT_THAT(noticeLines({})[2], HasSubstr("[Q]"));
}

TEST_F(Header, TheClipboardStandsInPlaceOfTheCredit) {
  EXPECT_THAT(noticeLines({{}, {}, "/work/a"})[1], EndsWith("  Clipboard: /work/a │"));
  EXPECT_THAT(noticeLines({{}, {}, "/" + std::string(200, 'x') + "/end"})[1], HasSubstr("  Clipboard: …x"));
  EXPECT_THAT(noticeLines({{}, {}, "/" + std::string(200, 'x') + "/end"})[1], EndsWith("x/end │"));
  setCurrentLanguage("de");
  EXPECT_THAT(noticeLines({{}, {}, "/work/a"})[1], EndsWith("  Zwischenablage: /work/a │"));
}

TEST_F(Header, WhateverAViewAddsTheFrameHolds) {
  for (const std::string& path : {std::string("/日本語/😀"), "/" + repeated("語", 80), std::string("/a\x1b[2J\nb\xFF"),
                                  std::string(4000, 'x'), std::string("/o\xCC\x88")}) {
    for (const auto& line : noticeLines({"Copied", path, path})) {
      EXPECT_EQ(cellWidth(line), 85) << line;
      for (const char byte : line) EXPECT_FALSE(byte >= 0 && byte < 0x20) << line;
    }
  }
}

}  // namespace
}  // namespace halyard
