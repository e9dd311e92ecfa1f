// The hotkeys of the directory browser: saving, calling up, their actions, the favorites, and what a file may hold.
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/e2e/directory_walk_session.hpp"

namespace halyard {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

SessionOptions withHotkeys(const std::string& file, const std::string& language = "en") {
  SessionOptions options = browserOptions({"alpha/inner.txt", "note.txt"}, language);
  options.homeFiles[hotkeyFile] = file;
  return options;
}

class DirectoryHotkeysAtTheTerminal : public testing::Test {
 protected:
  explicit DirectoryHotkeysAtTheTerminal(SessionOptions options = browserOptions({"alpha/inner.txt", "note.txt"}))
      : session(std::move(options)) {}
  void SetUp() override { ASSERT_TRUE(openBrowser(session)); }
  [[nodiscard]] std::string path(std::string_view below) const { return session.inHome("Tree/" + std::string(below)); }
  [[nodiscard]] std::string savedText() const { return session.readHomeFile(hotkeyFile); }

  TerminalSession session;
};

/// Slots whose paths are written relative to the home folder can't be: each test saves its own.
class SavedDirectoryHotkeys : public DirectoryHotkeysAtTheTerminal {
 protected:
  /// The folder in slot 1, the file in slot 2.
  void SetUp() override {
    DirectoryHotkeysAtTheTerminal::SetUp();
    ASSERT_TRUE(selectRow(session, "[alpha]"));
    ASSERT_TRUE(toasted(session, "1", "Saved to slot 1"));
    ASSERT_TRUE(selectRow(session, "note.txt"));
    ASSERT_TRUE(toasted(session, "2", "Saved to slot 2"));
  }

  bool calledUp(const char* key) { return pressed(session, key) && session.waitFor("Action for slot"); }
};

TEST_F(DirectoryHotkeysAtTheTerminal, EachDigitSavesAndEachShiftedDigitCallsUp) {
  ASSERT_TRUE(selectRow(session, "note.txt"));
  for (int slot = 0; slot <= 9; ++slot) {
    const std::string digit = std::to_string(slot);
    ASSERT_TRUE(toasted(session, digit, "Saved to slot " + digit));
    EXPECT_THAT(savedText(), HasSubstr("\"slot\": " + digit));
  }
  const std::vector<std::string> keys = {"=", "!", "\"", "§", "$", "%", "&", "/", "(", ")"};
  for (int slot = 0; slot <= 9; ++slot) {
    ASSERT_TRUE(pressed(session, keys[static_cast<std::size_t>(slot)]));
    session.expectShows("Action for slot " + std::to_string(slot));
    ASSERT_TRUE(pressed(session, Key::escape));
    session.expectShowsNot("Action for slot");
  }
}

TEST_F(DirectoryHotkeysAtTheTerminal, AnEmptySlotSaysSo) {
  const std::size_t mark = session.outputMark();
  ASSERT_TRUE(toasted(session, "§", "Slot empty"));
  EXPECT_THAT(session.rawOutput(mark), HasSubstr("[3]"));
}

TEST_F(SavedDirectoryHotkeys, TheBoxNamesThePathAndTheActions) {
  ASSERT_TRUE(calledUp("!"));
  for (const char* text : {"Path: ~/Tree/alpha", "T: Open Terminal", "F: Open Finder", "D: Navigate to path",
                           "C: Copy path to clipboard", "[ESC] Cancel"}) {
    session.expectShows(text);
  }
}

TEST_F(SavedDirectoryHotkeys, TOpensTheTerminalAtAFolderAndAFileByItself) {
  for (const char* key : {"t", "T"}) {
    ASSERT_TRUE(calledUp("!"));
    ASSERT_TRUE(toasted(session, key, "Terminal opened"));
    ASSERT_TRUE(calledUp("\""));
    ASSERT_TRUE(toasted(session, key, "File opened"));
  }
  const std::string script = "osascript -e tell application \"Terminal\" -e do script \"cd \" & quoted form of \"" +
                             path("alpha") + "\" -e activate -e end tell";
  EXPECT_THAT(session.callsOf("osascript"), ElementsAre(script, script));
  EXPECT_THAT(session.callsOf("open"), ElementsAre("open " + path("note.txt"), "open " + path("note.txt")));
}

TEST_F(SavedDirectoryHotkeys, FOpensTheFinderAtAFolderAndAFileByItself) {
  for (const char* key : {"f", "F"}) {
    ASSERT_TRUE(calledUp("!"));
    ASSERT_TRUE(toasted(session, key, "Finder opened"));
  }
  ASSERT_TRUE(calledUp("\""));
  ASSERT_TRUE(toasted(session, "f", "File opened"));
  EXPECT_THAT(session.callsOf("open"),
              ElementsAre("open " + path("alpha"), "open " + path("alpha"), "open " + path("note.txt")));
}

TEST_F(SavedDirectoryHotkeys, DNavigatesToAFolderOrSelectsAFile) {
  ASSERT_TRUE(calledUp("!"));
  ASSERT_TRUE(toasted(session, "d", "Navigated to path"));
  session.expectShows("Path: ~/Tree/alpha");
  EXPECT_EQ(selectedText(session), "[...]");
  ASSERT_TRUE(calledUp("\""));
  ASSERT_TRUE(toasted(session, "D", "Navigated to path"));
  session.expectShows("Path: ~/Tree ");
  EXPECT_EQ(selectedText(session), "note.txt");
}

TEST_F(SavedDirectoryHotkeys, CCopiesThePathAndTheHeaderShowsIt) {
  for (const char* key : {"c", "C"}) {
    ASSERT_TRUE(calledUp("\""));
    ASSERT_TRUE(toasted(session, key, "Copied to clipboard"));
    EXPECT_EQ(session.readHomeFile(".halyard-demo/pasteboard"), path("note.txt"));
    session.expectShows("Clipboard");
  }
}

TEST_F(SavedDirectoryHotkeys, AnythingElseLeavesTheQuestionAndDoesNothing) {
  for (const Typed& key : {Typed("x"), Typed("1"), Typed("Q"), Typed("W"), Typed(Key::space), Typed(Key::up),
                           Typed(Key::enter), Typed(Key::escape)}) {
    ASSERT_TRUE(calledUp("!"));
    ASSERT_TRUE(pressed(session, key));
    session.expectShowsNot("Action for slot");
    ASSERT_TRUE(isAtList(session));
  }
  EXPECT_THAT(session.callsOf("open"), IsEmpty());
  EXPECT_THAT(session.callsOf("osascript"), IsEmpty());
}

TEST_F(SavedDirectoryHotkeys, TheFavoritesAreToggledByW) {
  ASSERT_TRUE(pressed(session, "w"));
  session.expectShows("─ Favorites ─");
  session.expectShows("Favorites: ~/Tree/alpha");
  EXPECT_THAT(shownNames(session), ElementsAre("[1] " + path("alpha"), "[2] " + path("note.txt")));
  ASSERT_TRUE(pressed(session, Key::down));
  session.expectShows("Favorites: ~/Tree/note.txt");
  ASSERT_TRUE(session.sendSlowly({Key::up, Key::right}));
  ASSERT_TRUE(session.waitUntilIdle());
  EXPECT_THAT(shownNames(session), ElementsAre("[...]", "inner.txt"));
  ASSERT_TRUE(pressed(session, Key::left));
  EXPECT_EQ(shownNames(session).front(), "[1] " + path("alpha"));
  ASSERT_TRUE(pressed(session, "w"));
  session.expectShows("─ File Browser ─");
  EXPECT_EQ(selectedText(session), "note.txt");
}

TEST_F(SavedDirectoryHotkeys, DeletingThemEmptiesTheFileAndLeavesTheFavorites) {
  ASSERT_TRUE(session.sendSlowly({"w", "c"}));
  ASSERT_TRUE(session.waitFor("Delete all hotkeys?"));
  ASSERT_TRUE(pressed(session, "y"));
  session.expectShows("─ File Browser ─");
  EXPECT_EQ(savedText(), "[]\n");
  ASSERT_TRUE(pressed(session, "w"));
  session.expectShows("─ File Browser ─");
}

// MARK: What the file holds

TEST(DirectoryHotkeyFileAtTheTerminal, SlotsThatNoKeyReachesAreListedAndKept) {
  TerminalSession session(withHotkeys(
      R"([{"slot":12,"path":"/twelve"},{"slot":-1,"path":"/minus"},{"slot":3,"path":"/old"},{"slot":3,"path":"/new"}])"));
  ASSERT_TRUE(openBrowser(session));
  ASSERT_TRUE(pressed(session, "w"));
  EXPECT_THAT(shownNames(session), ElementsAre("[-1] /minus", "[3] /new", "[12] /twelve"));
  ASSERT_TRUE(pressed(session, "w"));
  ASSERT_TRUE(toasted(session, "5", "Saved to slot 5"));
  for (const char* text : {"\"slot\": -1", "\"slot\": 12", "/twelve", "/minus", "/new", "\"slot\": 5"}) {
    EXPECT_THAT(session.readHomeFile(hotkeyFile), HasSubstr(text));
  }
}

TEST(DirectoryHotkeyFileAtTheTerminal, AnEmptyOrBrokenOneGivesNoFavoritesAndNoMessage) {
  for (const char* file : {"", "[{\"slot\": 1, \"path\"", "[[[[[[", "\xff\xfe", "{}"}) {
    TerminalSession session(withHotkeys(file));
    ASSERT_TRUE(openBrowser(session));
    const std::string before = session.screenText();
    ASSERT_TRUE(pressed(session, "w"));
    EXPECT_EQ(session.screenText(), before) << file;
    ASSERT_TRUE(toasted(session, "5", "Saved to slot 5"));
    EXPECT_THAT(session.readHomeFile(hotkeyFile), HasSubstr("\"slot\": 5"));
    EXPECT_EQ(session.readHomeFile(std::string(hotkeyFile) + ".damaged-1"), file);
  }
}

TEST(DirectoryHotkeyFileAtTheTerminal, AReadOnlyOneStaysAsItIs) {
  const std::string text = R"([{"slot":1,"path":"/a"}])";
  TerminalSession session(withHotkeys(text));
  fs::permissions(session.inHome(hotkeyFile), fs::perms::owner_read);
  ASSERT_TRUE(openBrowser(session));
  ASSERT_TRUE(toasted(session, "5", "Saved to slot 5"));
  EXPECT_EQ(session.readHomeFile(hotkeyFile), text);
  ASSERT_TRUE(pressed(session, "w"));
  EXPECT_EQ(shownNames(session).size(), 2U) << "in this run the new one is there";
}

/// A JSON text of this path.
std::string jsonText(const std::string& path) {
  std::string text = "\"";
  for (const char each : path) {
    if (each == '"' || each == '\\') text += '\\';
    text += each == '\n' ? std::string("\\n") : std::string(1, each);
  }
  return text + "\"";
}

TEST(DirectoryHotkeyFileAtTheTerminal, NothingInAPathIsEverExecuted) {
  const std::vector<std::string> names = {"$(touch pwned)",
                                          "`touch pwned`",
                                          "';touch pwned;'",
                                          "\";touch pwned;\"",
                                          "\\\" & (do shell script (ASCII character 116)) --",
                                          "a\nb",
                                          "&& touch pwned"};
  TerminalSession session(browserOptions({"note.txt"}));
  const auto path = [&](std::size_t slot) { return session.inHome("hostile/" + names[slot]); };
  std::string file;
  for (std::size_t slot = 0; slot < names.size(); ++slot) {
    fs::create_directories(path(slot));
    file +=
        (slot == 0 ? "[{\"slot\":" : ",{\"slot\":") + std::to_string(slot) + ",\"path\":" + jsonText(path(slot)) + "}";
  }
  session.writeHomeFile(hotkeyFile, file + "]");
  ASSERT_TRUE(openBrowser(session));
  const std::vector<std::string> keys = {"=", "!", "\"", "§", "$", "%", "&"};
  for (std::size_t slot = 0; slot < names.size(); ++slot) {
    ASSERT_TRUE(pressed(session, keys[slot]));
    ASSERT_TRUE(toasted(session, "t", "Terminal opened"));
    ASSERT_TRUE(pressed(session, keys[slot]));
    ASSERT_TRUE(toasted(session, "f", "Finder opened"));
    ASSERT_TRUE(pressed(session, keys[slot]));
    ASSERT_TRUE(toasted(session, "c", "Copied to clipboard"));
    EXPECT_EQ(session.callsOf("open").back(), "open " + path(slot));
    EXPECT_EQ(session.readHomeFile(".halyard-demo/pasteboard"), path(slot));
  }
  EXPECT_EQ(session.callsOf("osascript").size(), names.size());
  // A backslash that isn't doubled would take the quote along that ends the script's text.
  EXPECT_THAT(session.callsOf("osascript")[4], HasSubstr("\\\\\"\" & (do shell"));
  for (const char* folder : {"Tree/pwned", "pwned", "hostile/pwned"}) EXPECT_FALSE(fs::exists(session.inHome(folder)));
}

TEST(DirectoryHotkeyFileAtTheTerminal, ControlCharactersInAPathDoNotReachTheTerminal) {
  TerminalSession session(withHotkeys(R"([{"slot":1,"path":"/tmp/\u001b]0;owned\u0007x"}])"));
  ASSERT_TRUE(openBrowser(session));
  ASSERT_TRUE(pressed(session, "w"));
  session.expectShows("[1] /tmp/␛]0;owned␇x");
  ASSERT_TRUE(pressed(session, "!"));
  session.expectShows("Path: /tmp/␛]0;owned␇x");
  EXPECT_EQ(session.title(), "");
  EXPECT_EQ(session.bellCount(), 0);
}

TEST(DirectoryHotkeyFileAtTheTerminal, SpeaksGerman) {
  TerminalSession session(withHotkeys(R"([{"slot":1,"path":"/tmp"}])", "de"));
  ASSERT_TRUE(openBrowser(session));
  ASSERT_TRUE(pressed(session, "!"));
  for (const char* text : {"Aktion für Slot 1", "Pfad: /tmp", "T: Terminal öffnen", "F: Finder öffnen",
                           "D: Zum Pfad wechseln", "C: Pfad in die Zwischenablage kopieren"}) {
    session.expectShows(text);
  }
  ASSERT_TRUE(toasted(session, "d", "Zum Pfad gewechselt"));
  ASSERT_TRUE(toasted(session, "$", "Slot leer"));
  ASSERT_TRUE(toasted(session, "4", "Auf Slot 4 gespeichert"));
}

}  // namespace
}  // namespace halyard
