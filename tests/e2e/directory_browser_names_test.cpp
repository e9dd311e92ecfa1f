// What the directory browser shows of folders as they really are: odd names, many entries, both languages, any size of
// terminal.
#include <algorithm>
#include <chrono>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

#include "tests/e2e/directory_browser_session.hpp"

namespace halyard {
namespace {

/// Names that are real and that few programs show well, in the order of the list.
const std::vector<std::string> oddFiles = {std::string("\xF0\x9F\x98\x80 smile.txt"),
                                           std::string("$(touch pwned)"),
                                           std::string("a'b\"c"),
                                           std::string("bell\x07.txt"),
                                           std::string("bad\xFF\xFE"),
                                           std::string("esc\x1b[2J\x1b[31mred"),
                                           std::string("new\nline"),
                                           std::string("Stra\xC3\x9F"
                                                       "e composed \xC3\xBC"),
                                           std::string("Strasse decomposed u\xCC\x88"),
                                           std::string("日本語.txt")};

void makeOddTree(const std::string& root) {
  for (const std::string& name : oddFiles) {
    const int file = open((root + "/" + name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_GE(file, 0) << name;
    close(file);
  }
  for (const auto* name : {"[a]", "plain", "Ärger",
                           "u\xCC\x88"
                           "ber"}) {
    std::filesystem::create_directory(root + "/" + name);
  }
  std::filesystem::create_symlink(".", root + "/loop");
  std::filesystem::create_symlink("loop/loop/plain", root + "/way round");
  std::filesystem::create_directory(root + "/.hidden");
}

class OddNames : public testing::TestWithParam<const char*> {
 protected:
  OddNames() : session(browserOptions({"App.xcodeproj/project.pbxproj"}, GetParam())) {}
  void SetUp() override {
    makeOddTree(session.inHome("Tree"));
    ASSERT_TRUE(openBrowser(session));
  }

  TerminalSession session;
};

TEST_P(OddNames, AreShownSafelyInTheirOrder) {
  session.expectGoldenScreen(std::string("directory_browser_") + GetParam());
  for (int row = 4; row <= 32; ++row)
    EXPECT_EQ(session.cell(row, 84).text, row == 5 || row == 31 ? "┤" : row == 32 ? "┘" : "│") << row;
  EXPECT_EQ(session.rawOutput().find('\x07'), std::string::npos);
  EXPECT_EQ(session.rawOutput().find("\x1b[31mred"), std::string::npos);
  EXPECT_TRUE(session.cursorVisible() == false);
}

TEST_P(OddNames, TheHelpStandsOverTheFrame) {
  ASSERT_TRUE(pressed(session, "h"));
  session.expectGoldenScreen(std::string("directory_browser_help_") + GetParam());
}

INSTANTIATE_TEST_SUITE_P(Languages, OddNames, testing::Values("en", "de"),
                         [](const auto& each) { return std::string(each.param); });

class OddNamesInEnglish : public testing::Test {
 protected:
  OddNamesInEnglish() : session(browserOptions({"App.xcodeproj/project.pbxproj"})) {}
  void SetUp() override {
    makeOddTree(session.inHome("Tree"));
    ASSERT_TRUE(openBrowser(session));
  }

  TerminalSession session;
};

TEST_F(OddNamesInEnglish, EachIsHandedToItsApplicationAndToTheClipboardAsItIs) {
  const std::string root = session.inHome("Tree");
  for (const auto* shown : {"$(touch pwned)", "a'b\"c", "new␊line", "Strasse decomposed u\xCC\x88"}) {
    ASSERT_TRUE(selectRow(session, shown));
    ASSERT_TRUE(toasted(session, Key::right, "File opened"));
  }
  EXPECT_EQ(
      session.callsOf("open"),
      (std::vector<std::string>{"open " + root + "/$(touch pwned)", "open " + root + "/a'b\"c",
                                "open " + root + "/new\nline", "open " + root + "/Strasse decomposed u\xCC\x88"}));
  ASSERT_TRUE(selectRow(session, "bad��"));
  ASSERT_TRUE(toasted(session, "z", "Copied to clipboard"));
  EXPECT_EQ(session.readHomeFile(".halyard-demo/pasteboard"), root + "/bad\xFF\xFE");
  EXPECT_FALSE(std::filesystem::exists(root + "/pwned"));
}

TEST_F(OddNamesInEnglish, ALinkIsOpenedNotEntered) {
  ASSERT_TRUE(selectRow(session, "loop"));
  ASSERT_TRUE(toasted(session, Key::right, "File opened"));
  EXPECT_EQ(session.callsOf("open"), std::vector<std::string>{"open " + session.inHome("Tree/loop")});
  EXPECT_EQ(selectedText(session), "loop");
}

TEST_F(OddNamesInEnglish, AFolderInBracketsHasNoOthers) {
  session.expectShows("│ [a] ");
  session.expectShowsNot("[[a]]");
}

TEST_F(OddNamesInEnglish, AFolderWithDecomposedUmlautsIsEnteredAndFoundAgain) {
  ASSERT_TRUE(selectRow(session,
                        "[u\xCC\x88"
                        "ber]"));
  ASSERT_TRUE(pressed(session, Key::right));
  EXPECT_EQ(selectedText(session), "[...]");
  ASSERT_TRUE(pressed(session, Key::left));
  EXPECT_EQ(selectedText(session),
            "[u\xCC\x88"
            "ber]");
}

// MARK: Many entries

std::string manyFiles(const TerminalSession& session, int count) {
  std::string folder = session.inHome("Tree/many");
  std::filesystem::create_directory(folder);
  for (int i = 0; i < count; ++i) {
    std::string name = std::to_string(1000000 + i);
    name.front() = 'f';
    close(open((folder + "/" + name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  }
  return folder;
}

/// The column of the scroll bar, one character per row.
std::string scrollBar(const TerminalSession& session) {
  std::string bar;
  for (int row = firstBrowserRow; row <= lastBrowserRow; ++row) {
    const std::string text = session.cell(row, 83).text;
    bar += text == "█" ? '#' : text == "░" ? '.' : ' ';
  }
  return bar;
}

TEST(ManyEntries, TwentyFiveNeedNoScrollBarAndTwentySixDo) {
  TerminalSession session(browserOptions({"alpha/"}));
  // With the parent's row that makes 25.
  manyFiles(session, 24);
  ASSERT_TRUE(openBrowser(session));
  ASSERT_TRUE(selectRow(session, "[many]") && pressed(session, Key::right));
  session.expectShows("f000023");
  EXPECT_EQ(scrollBar(session), std::string(25, ' '));
  session.writeHomeFile("Tree/many/g", "");
  ASSERT_TRUE(toasted(session, "y", "View refreshed"));
  EXPECT_EQ(scrollBar(session), std::string(25, '#'));
  session.expectShowsNot("│ g ");
  ASSERT_TRUE(pressed(session, "e"));
  EXPECT_EQ(selectedText(session), "g");
  session.expectShowsNot("[...]");
}

TEST(ManyEntries, AHundredThousandAreListedAndWalkedAtOnce) {
  TerminalSession session(browserOptions({"alpha/"}));
  const std::string folder = manyFiles(session, 100000);
  ASSERT_TRUE(openBrowser(session));
  ASSERT_TRUE(selectRow(session, "[many]") && pressed(session, Key::right));
  session.expectShows("f000000");
  EXPECT_EQ(scrollBar(session), "#" + std::string(24, '.'));
  ASSERT_TRUE(pressed(session, "e"));
  EXPECT_EQ(selectedText(session), "f099999");
  EXPECT_EQ(scrollBar(session), std::string(24, '.') + "#");
  ASSERT_TRUE(pressed(session, Key::up));
  EXPECT_EQ(selectedText(session), "f099998");
  ASSERT_TRUE(pressed(session, Key::left));
  EXPECT_EQ(selectedText(session), "[many]");
  // At the time of the test's end, not of its folder's.
  std::filesystem::remove_all(folder);
}

// MARK: Sizes of the terminal

TEST(BrowserSizes, ALowTerminalShowsTheListsEndAndTheToast) {
  SessionOptions options = browserOptions({"alpha/", "note.txt"});
  options.rows = 24;
  options.columns = 80;
  TerminalSession session(options);
  ASSERT_TRUE(session.waitFor("1:Clear") && session.waitUntilIdle());
  session.send("W");
  ASSERT_TRUE(session.waitFor("Switch view ──") && session.waitUntilIdle());
  session.send("y");
  ASSERT_TRUE(session.waitFor("View refreshed"));
  ASSERT_TRUE(session.waitForGone("View refreshed") && session.waitUntilIdle());
  session.resize(40, 100);
  ASSERT_TRUE(session.waitFor("│ Path: ~/Tree"));
  session.expectShows("note.txt");
  session.send("Q");
  session.expectCleanEnd();
}

}  // namespace
}  // namespace halyard
