#include "halyard/browser/directory_frame.hpp"

#include <string>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/browser/browser_testing.hpp"
#include "halyard/browser/directory_text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/control_sequences.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Entry = DirectoryEntry::Kind;

constexpr int firstListLine = 2;

class DirectoryFrame : public BrowserTest {
 protected:
  DirectoryFrame() { view().list.currentPath = "/work"; }

  static void addFiles(int count) {
    for (int i = 0; i < count; ++i) {
      const std::string name = "file" + std::to_string(i);
      list().entries.push_back({name, "/work/" + name, Entry::file});
    }
  }
  static std::vector<std::string> lines() {
    std::vector<std::string> all;
    const std::string frame = directoryFrame(view());
    for (const std::string_view line : splitLines(frame)) all.emplace_back(line);
    EXPECT_EQ(all.back(), "") << "the frame ends in a line feed";
    all.pop_back();
    return all;
  }
  static std::string plain(int line) { return stripAnsi(lines()[static_cast<std::size_t>(line)]); }
  static std::string listRow(int row) {
    return lines()[static_cast<std::size_t>(firstListLine) + static_cast<std::size_t>(row)];
  }
  static std::string plainRow(int row) { return stripAnsi(listRow(row)); }
  /// The bar's column of all rows.
  static std::string scrollBar() {
    std::string bar;
    for (int row = 0; row < directoryListRows; ++row) {
      const std::string text = plainRow(row);
      const auto cells = graphemes(text);
      bar += cells[cells.size() - 2];
    }
    return bar;
  }
  static void expectWholeFrame(const std::string& what) {
    const auto all = lines();
    EXPECT_EQ(all.size(), 29U) << what;
    for (const std::string& line : all) EXPECT_EQ(cellWidth(stripAnsi(line)), 85) << what << "\n" << line;
  }
};

TEST_F(DirectoryFrame, EveryLineIsAsWideAsTheFrameInEveryModeAndLanguage) {
  for (const auto* language : {"en", "de"}) {
    setCurrentLanguage(language);
    for (const int count : {0, 1, 25, 26, 3000}) {
      for (const auto mode : {DirectoryAppMode::normal, DirectoryAppMode::help, DirectoryAppMode::searchResults,
                              DirectoryAppMode::filterResults}) {
        for (const auto content : {DirectoryContentViewMode::browser, DirectoryContentViewMode::favorites}) {
          view().appMode = mode;
          view().contentViewMode = content;
          list().entries.clear();
          addFiles(count);
          list().selectedIndex = count / 2;
          keepSelectionVisible();
          expectWholeFrame(std::string(language) + " " + std::to_string(count));
        }
      }
    }
  }
}

TEST_F(DirectoryFrame, EveryLineKeepsItsWidthWhateverTheNames) {
  const std::string family = "👨‍👩‍👧";
  for (const std::string& name :
       {std::string("日本語"), std::string(300, 'x'), repeated("語", 60), std::string("o\xCC\x88"),
        std::string("\xFF\xFE"), std::string("a\x1b[2Jb"), std::string("a\nb\r\t"), family,
        std::string("\xC2\x9B"
                    "31m"),
        std::string("a\u202E"
                    "b")}) {
    for (const auto kind : {Entry::parent, Entry::directory, Entry::file, Entry::xcodeProject}) {
      for (const auto mode : {DirectoryAppMode::normal, DirectoryAppMode::searchResults}) {
        view().appMode = mode;
        list().entries = {{name, "/work/" + name, kind}, {name, "/work/" + name, kind}};
        list().currentPath = "/work/" + name;
        expectWholeFrame(name);
        for (const std::string& line : lines()) {
          for (const char byte : stripAnsi(line)) EXPECT_FALSE(byte >= 0 && byte < 0x20) << line;
        }
      }
    }
  }
}

TEST_F(DirectoryFrame, ThePathRowShowsTheHomeFolderAsATildeAndKeepsThePathsEnd) {
  const std::string home = AppDependencies::current().fileSystemClient->homeDirectoryPath();
  list().currentPath = home + "/deep";
  EXPECT_THAT(plain(0), StartsWith("│ Path: ~/deep  "));
  list().currentPath = "/" + std::string(100, 'x') + "/end";
  EXPECT_EQ(plain(0), "│ Path: …" + std::string(70, 'x') + "/end │");
  view().contentViewMode = DirectoryContentViewMode::favorites;
  EXPECT_THAT(plain(0), StartsWith("│ Favorites: …x"));
  setCurrentLanguage("de");
  EXPECT_THAT(plain(0), StartsWith("│ Favoriten: …x"));
}

TEST_F(DirectoryFrame, TheSectionNamesTheContentAndTheFooterTheKeys) {
  addFiles(1);
  EXPECT_THAT(plain(1), StartsWith("├─ File Browser ──"));
  EXPECT_THAT(plain(1), HasSubstr("────┤"));
  EXPECT_THAT(plain(27), StartsWith("├─ [SPACE] Switch view ──"));
  EXPECT_THAT(plain(28), StartsWith("└─ "));
  EXPECT_THAT(plain(28), HasSubstr("[H] Help"));
  view().contentViewMode = DirectoryContentViewMode::favorites;
  EXPECT_THAT(plain(1), StartsWith("├─ Favorites ──"));
}

TEST_F(DirectoryFrame, ResultsSayHowTheyEndAlsoUnderABox) {
  addFiles(1);
  EXPECT_THAT(plain(1), Not(HasSubstr("[X]")));
  view().appMode = DirectoryAppMode::searchResults;
  EXPECT_THAT(plain(1), HasSubstr("── [X] End search ─┤"));
  view().appMode = DirectoryAppMode::help;
  view().modeBeforeHelp = DirectoryAppMode::filterResults;
  EXPECT_THAT(plain(1), HasSubstr("── [X] End filter ─┤"));
  view().appMode = DirectoryAppMode::hotkeyAction;
  view().filterState.emplace();
  view().filterState->isFinished = true;
  EXPECT_THAT(plain(1), HasSubstr("── [X] End filter ─┤"));
  EXPECT_THAT(plainRow(0), HasSubstr("(/work/file0)"));
}

TEST_F(DirectoryFrame, EachKindHasItsNameAndColour) {
  list().entries = {{"..", "/", Entry::parent},
                    {"box", "/work/box", Entry::directory},
                    {"[a]", "/work/[a]", Entry::directory},
                    {"plain", "/work/plain", Entry::file},
                    {"App.xcodeproj", "/work/App.xcodeproj", Entry::xcodeProject}};
  list().selectedIndex = 3;
  EXPECT_THAT(listRow(0), HasSubstr(" \x1b[2m[...]\x1b[0m "));
  EXPECT_THAT(listRow(1), HasSubstr(" \x1b[1;34m[box]\x1b[0m "));
  EXPECT_THAT(listRow(2), HasSubstr(" \x1b[1;34m[a]\x1b[0m "));
  EXPECT_THAT(listRow(4), HasSubstr(" \x1b[94mApp.xcodeproj\x1b[0m "));
  EXPECT_EQ(listRow(3), "\x1b[1;34m│\x1b[0m\x1b[48;2;255;223;35m\x1b[38;2;0;0;0m\x1b[1m plain" + std::string(76, ' ') +
                            "\x1b[0m \x1b[1;34m│\x1b[0m");
  list().selectedIndex = 0;
  EXPECT_EQ(listRow(3), "\x1b[1;34m│\x1b[0m plain" + std::string(77, ' ') + "\x1b[1;34m│\x1b[0m");
}

TEST_F(DirectoryFrame, NamesOfTheColumnsWidthFitAndLongerOnesAreCut) {
  list().entries = {{std::string(80, 'x'), "/a", Entry::file},
                    {std::string(81, 'y'), "/b", Entry::file},
                    {std::string(79, 'z'), "/c", Entry::directory}};
  EXPECT_EQ(plainRow(0), "│ " + std::string(80, 'x') + "  │");
  EXPECT_EQ(plainRow(1), "│ " + std::string(79, 'y') + "…  │");
  EXPECT_EQ(plainRow(2), "│ [" + std::string(78, 'z') + "…  │");
  addFiles(23);
  EXPECT_EQ(plainRow(0), "│ " + std::string(78, 'x') + "…  █│") << "one column fewer beside a scroll bar";
}

TEST_F(DirectoryFrame, TwentyFiveEntriesNeedNoScrollBarAndTwentySixDo) {
  addFiles(25);
  EXPECT_EQ(scrollBar(), std::string(25, ' '));
  addFiles(1);
  EXPECT_EQ(scrollBar(), repeated("█", 25)) << "from 0 to 26 * 25 / 26, both ends included, is every row";
  EXPECT_THAT(listRow(0), HasSubstr("\x1b[1;34m█\x1b[0m"));
}

TEST_F(DirectoryFrame, TheThumbShowsWhereTheWindowStands) {
  addFiles(100);
  // 0 to 6.
  EXPECT_EQ(scrollBar(), repeated("█", 7) + repeated("░", 18));
  EXPECT_THAT(listRow(24), HasSubstr("\x1b[2m░\x1b[0m"));
  list().scrollOffset = 40;
  // 10 to 16.
  EXPECT_EQ(scrollBar(), repeated("░", 10) + repeated("█", 7) + repeated("░", 8));
  list().scrollOffset = 75;
  // 18 to 25.
  EXPECT_EQ(scrollBar(), repeated("░", 18) + repeated("█", 7));
  EXPECT_TRUE(isOnScrollThumb(24, 2000000000 - 25, 2000000000)) << "no overflow";
  EXPECT_FALSE(isOnScrollThumb(0, 2000000000 - 25, 2000000000));
}

TEST_F(DirectoryFrame, AnEmptyListSaysSoInItsMiddle) {
  EXPECT_EQ(plainRow(12), "│" + std::string(33, ' ') + "(empty directory)" + std::string(33, ' ') + "│");
  EXPECT_THAT(listRow(12), HasSubstr("\x1b[2m(empty directory)\x1b[0m"));
  for (const int row : {0, 11, 13, 24}) EXPECT_EQ(plainRow(row), "│" + std::string(83, ' ') + "│");
  view().contentViewMode = DirectoryContentViewMode::favorites;
  view().isFavoritesListShown = true;
  EXPECT_THAT(plainRow(12), HasSubstr("No favorites saved. Press 0–9 to save an entry as favorite."));
  view().appMode = DirectoryAppMode::searchResults;
  EXPECT_THAT(plainRow(12), HasSubstr("(empty directory)")) << "no hits below a favorite";
  setCurrentLanguage("de");
  EXPECT_THAT(plainRow(12), HasSubstr("(leeres Verzeichnis)"));
}

TEST_F(DirectoryFrame, ResultsShowWhereTheyLie) {
  view().appMode = DirectoryAppMode::searchResults;
  list().entries = {{"a", "/work/a", Entry::file},
                    {"b", "/work/b", Entry::directory},
                    {"c", "/" + std::string(100, 'x') + "/c", Entry::file},
                    {std::string(76, 'n'), "/n", Entry::file},
                    {std::string(77, 'm'), "/m", Entry::file}};
  EXPECT_THAT(listRow(0), HasSubstr(" a (/work/a)  ")) << "not dim in the selected row";
  EXPECT_THAT(listRow(1), HasSubstr(" \x1b[1;34m[b]\x1b[0m\x1b[2m (/work/b)\x1b[0m "));
  EXPECT_EQ(plainRow(2), "│ c (…" + std::string(73, 'x') + "/c)  │");
  EXPECT_EQ(plainRow(3), "│ " + std::string(76, 'n') + " (…)  │");
  EXPECT_EQ(plainRow(4), "│ " + std::string(77, 'm') + "     │");
  view().appMode = DirectoryAppMode::filterResults;
  EXPECT_THAT(plainRow(1), StartsWith("│ [b] (/work/b) "));
  view().appMode = DirectoryAppMode::normal;
  EXPECT_THAT(plainRow(1), StartsWith("│ [b]   "));
}

TEST_F(DirectoryFrame, TheHelpHasOneLinePerKeyInBothLanguages) {
  for (const auto* language : {"en", "de"}) {
    setCurrentLanguage(language);
    const auto help = directoryHelpLines();
    ASSERT_EQ(help.size(), 21U);
    EXPECT_THAT(stripAnsi(help[0]), HasSubstr(localized("dirview_help_row_navigation")));
    EXPECT_THAT(stripAnsi(help[18]), HasSubstr(localized("dirview_help_row_quit")));
    EXPECT_THAT(stripAnsi(help[20]), localized("dirview_help_close_hint"));
    for (const std::string& line : help) {
      EXPECT_LE(visibleWidth(line), 75) << line;
      EXPECT_THAT(line, Not(HasSubstr("dirview_"))) << "a text is missing";
    }
  }
}

}  // namespace
}  // namespace halyard
