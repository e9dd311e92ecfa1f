#include "halyard/terminal/dialogs.hpp"

#include <csignal>

#include <gtest/gtest.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "halyard/terminal/keys.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/terminal/terminal_testing.hpp"

namespace halyard {
namespace {

class Dialogs : public testing::Test {
 protected:
  Dialogs() {
    useEnglish();
    reset();
  }
  ~Dialogs() override { reset(); }

 private:
  static void reset() {
    setSuppressBackPrompt(false);
    setLaunchedByHotkey(false);
    setOperationAborted(false);
    installChoiceShortcuts({});
  }
};

void closeInput() { dup2(open("/dev/null", O_RDONLY), STDIN_FILENO); }

std::vector<DialogItem> items(int count) {
  std::vector<DialogItem> list;
  for (int i = 1; i <= count; ++i) list.push_back({.path = "/path" + std::to_string(i)});
  return list;
}

/// Exit status of a child that asks and gets this key.
int answerTo(std::string_view key) {
  ForkedTerminal child([] {
    const bool accepted = confirm("Sure?");
    return (accepted ? 1 : 0) + (suppressBackPrompt() ? 2 : 0);
  });
  EXPECT_TRUE(child.shows("[j/N]"));
  EXPECT_TRUE(child.waitsForKeys());
  child.type(key);
  return child.end().code;
}

constexpr int accepted = 1;
constexpr int declined = 2;

// ---- confirmation

TEST_F(Dialogs, YesIsOneKeyInTwoLanguages) {
  for (const std::string_view key : {"j", "J", "y", "Y"}) EXPECT_EQ(answerTo(key), accepted) << key;
}

TEST_F(Dialogs, AnythingElseDeclinesAndSuppressesTheBackPrompt) {
  for (const std::string_view key : {"n", "\r", "x", "\x1b", "\x1b[A", " "}) EXPECT_EQ(answerTo(key), declined) << key;
}

TEST_F(Dialogs, AConfirmationShowsItsAnswer) {
  ForkedTerminal yes([] { return confirm("Sure?") ? 0 : 1; });
  ASSERT_TRUE(yes.shows("\r\n  \x1b[1;33m?\x1b[0m Sure? \x1b[2m[j/N]\x1b[0m "));
  ASSERT_TRUE(yes.waitsForKeys());
  yes.type("y");
  ASSERT_TRUE(yes.shows("[j/N]\x1b[0m j\r\n"));
  EXPECT_EQ(yes.end(), ProgramEnd::exited(0));
  EXPECT_EQ(yes.output().find("Cancelled"), std::string::npos);

  ForkedTerminal no([] { return confirm("Sure?") ? 0 : 1; });
  ASSERT_TRUE(no.shows("[j/N]"));
  ASSERT_TRUE(no.waitsForKeys());
  no.type("q");
  ASSERT_TRUE(no.shows("[j/N]\x1b[0m n\r\n  \x1b[2mCancelled\x1b[0m\r\n"));
  EXPECT_EQ(no.end(), ProgramEnd::exited(1));
}

TEST_F(Dialogs, TheLiteralOfTheAnswersIsTheSameInGerman) {
  setCurrentLanguage("de");
  ForkedTerminal child([] { return confirm("Sicher?") ? 0 : 1; });
  ASSERT_TRUE(child.shows("Sicher? \x1b[2m[j/N]\x1b[0m "));
}

TEST_F(Dialogs, AResizeDoesNotDecline) {
  ForkedTerminal child([] { return confirm("Sure?") ? 0 : 1; });
  ASSERT_TRUE(child.shows("[j/N]"));
  ASSERT_TRUE(child.waitsForKeys());
  child.terminal().resize(30, 90);
  ASSERT_TRUE(child.waitsForKeys());
  child.type("j");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST_F(Dialogs, KeysTypedBeforeTheQuestionDoNotAnswerIt) {
  ForkedTerminal child([] {
    enterRawMode();
    print("ready");
    flushOutput();
    readKey();
    return confirm("Sure?") ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  child.type("ay");
  ASSERT_TRUE(child.shows("[j/N]"));
  ASSERT_TRUE(child.waitsForKeys());
  child.type("n");
  EXPECT_EQ(child.end(), ProgramEnd::exited(1));
}

TEST_F(Dialogs, TheEndOfInputDeclines) {
  ForkedTerminal child([] {
    closeInput();
    return confirm("Sure?") ? 0 : 1;
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(1));
}

TEST_F(Dialogs, ADigitHotkeyConfirmsWithoutAWord) {
  setLaunchedByHotkey(true);
  setSuppressBackPrompt(true);
  EXPECT_EQ(printedBy([] { EXPECT_TRUE(confirmDialog("T", "Sure?", DialogSeverity::destructive, items(3), true)); }),
            "");
  EXPECT_FALSE(suppressBackPrompt());
}

/// What a declined dialog prints.
std::string dialogText(std::string_view title, DialogSeverity severity, const std::vector<DialogItem>& list,
                       bool hint = false) {
  ForkedTerminal child([&] {
    closeInput();
    confirmDialog(title, "Sure?", severity, list, hint);
    return 0;
  });
  child.end();
  return child.output();
}

TEST_F(Dialogs, EachSeverityHasItsLook) {
  EXPECT_TRUE(dialogText("Title", DialogSeverity::info, {})
                  .starts_with("\r\n  \x1b[1;34mℹ\x1b[0m \x1b[1mTitle\x1b[0m\r\n  \x1b[1;34m?\x1b[0m Sure?"));
  EXPECT_TRUE(dialogText("Title", DialogSeverity::caution, {})
                  .starts_with("\r\n  \x1b[1;33m⚠\x1b[0m \x1b[1mTitle\x1b[0m\r\n  \x1b[1;33m?\x1b[0m Sure?"));
  EXPECT_TRUE(dialogText("Title", DialogSeverity::destructive, {})
                  .starts_with("\r\n  \x1b[1;31m✗\x1b[0m \x1b[1m\x1b[31mTitle\x1b[0m\r\n  \x1b[1;31m?\x1b[0m Sure?"));
}

TEST_F(Dialogs, EightItemsHaveNoMoreLine) {
  const std::string text = dialogText("", DialogSeverity::info, items(8));
  EXPECT_NE(text.find("    \x1b[2m·\x1b[0m /path8\r\n"), std::string::npos);
  EXPECT_EQ(text.find("more"), std::string::npos);
}

TEST_F(Dialogs, NineItemsShowEightAndOneMore) {
  const std::string text = dialogText("", DialogSeverity::info, items(9));
  EXPECT_NE(text.find("/path8\r\n    \x1b[2m… and 1 more\x1b[0m\r\n"), std::string::npos) << text;
  EXPECT_EQ(text.find("/path9"), std::string::npos);
}

TEST_F(Dialogs, AnItemsSizeStandsInParenthesesUnlessEmpty) {
  const std::string text =
      dialogText("", DialogSeverity::info, {{.path = "/a", .size = "2 GB"}, {.path = "/b", .size = ""}});
  EXPECT_NE(text.find("/a  \x1b[2m(2 GB)\x1b[0m\r\n"), std::string::npos) << text;
  EXPECT_NE(text.find("/b\r\n"), std::string::npos) << text;
}

TEST_F(Dialogs, AnItemsPathCanNotDriveTheTerminal) {
  const std::string text = dialogText("", DialogSeverity::info, {{.path = "/a\x1b[2J\nb"}});
  EXPECT_NE(text.find("/a␛[2J␊b\r\n"), std::string::npos) << text;
}

TEST_F(Dialogs, TheBackupHintIsShownWhenAsked) {
  const std::string hint =
      "  \x1b[1;33m⚠\x1b[0m \x1b[33mThis data will not be backed up. A manual backup is recommended.\x1b[0m\r\n";
  EXPECT_NE(dialogText("", DialogSeverity::info, {}, true).find(hint), std::string::npos);
  EXPECT_EQ(dialogText("", DialogSeverity::info, {}, false).find("⚠"), std::string::npos);
}

// ---- results

TEST_F(Dialogs, ResultsHaveTheirSymbolAndColor) {
  EXPECT_EQ(printedBy([] { printResult("done", ResultStyle::success); }), "  \x1b[1;32m  ✅  done  \x1b[0m\n");
  EXPECT_EQ(printedBy([] { printResult("bad", ResultStyle::failure); }), "  \x1b[1;31m  ❌  bad  \x1b[0m\n");
  EXPECT_EQ(printedBy([] { printResult("hm", ResultStyle::caution); }), "  \x1b[1;33m  ⚠️  hm  \x1b[0m\n");
  EXPECT_EQ(printedBy([] { printResult("so", ResultStyle::neutral); }), "  \x1b[1;34m  ▸  so  \x1b[0m\n");
}

TEST_F(Dialogs, AResultsDetailFollowsUnlessEmpty) {
  EXPECT_EQ(printedBy([] { printResult("done", ResultStyle::success, "3 files"); }),
            "  \x1b[1;32m  ✅  done  \x1b[0m   \x1b[2m3 files\x1b[0m\n");
  EXPECT_EQ(printedBy([] { printResult("done", ResultStyle::success, ""); }), "  \x1b[1;32m  ✅  done  \x1b[0m\n");
}

// ---- the back prompt

TEST_F(Dialogs, OnlyXLeadsBack) {
  for (const std::string_view last : {"x", "X"}) {
    ForkedTerminal child([] {
      waitForBack();
      return operationAborted() ? 1 : 0;
    });
    ASSERT_TRUE(child.shows("\r\n\x1b[1;34m[X]\x1b[0m \x1b[31m🔙 Back\x1b[0m "));
    for (const std::string_view ignored : {"\r", "\x1b", "q", "\x1b[A"}) {
      ASSERT_TRUE(child.waitsForKeys());
      child.type(ignored);
    }
    ASSERT_TRUE(child.waitsForKeys());
    child.type(last);
    EXPECT_EQ(child.end(), ProgramEnd::exited(0));
  }
}

TEST_F(Dialogs, AnAbortedActionGoesStraightBack) {
  setOperationAborted(true);
  setSuppressBackPrompt(true);
  EXPECT_EQ(printedBy([] { waitForBack(); }), "");
  EXPECT_FALSE(operationAborted());
  EXPECT_TRUE(suppressBackPrompt());
}

TEST_F(Dialogs, AfterADeclinedConfirmationTheBackPromptDoesNotWait) {
  ForkedTerminal child([] {
    confirm("Sure?");
    waitForBack();
    return suppressBackPrompt() ? 1 : 0;
  });
  ASSERT_TRUE(child.shows("[j/N]"));
  ASSERT_TRUE(child.waitsForKeys());
  child.type("n");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
  EXPECT_EQ(child.output().find("[X]"), std::string::npos);
}

TEST_F(Dialogs, TheBackPromptReturnsAtTheEndOfInput) {
  ForkedTerminal child([] {
    closeInput();
    return waitForBackAndLeave() ? 1 : 0;
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
  EXPECT_NE(child.output().find("[X]"), std::string::npos);
}

// ---- the repeat prompt

ProgramEnd repeatAfter(std::string_view line) {
  ForkedTerminal child([] { return askRepeat() ? 1 : 0; });
  EXPECT_TRUE(child.shows("\r\n  \x1b[34m▸\x1b[0m \x1b[2m↵ repeat  ·  x = back to menu\x1b[0m "));
  child.type(line);
  return child.end();
}

TEST_F(Dialogs, AnyLineButXRepeats) {
  for (const std::string_view line : {"\r", "q\r", "xx\r", "0\r"}) {
    EXPECT_EQ(repeatAfter(line), ProgramEnd::exited(1)) << line;
  }
  for (const std::string_view line : {"x\r", " X \t\r"}) EXPECT_EQ(repeatAfter(line), ProgramEnd::exited(0)) << line;
}

TEST_F(Dialogs, AnAbortedActionIsNotRepeated) {
  setOperationAborted(true);
  EXPECT_EQ(printedBy([] { EXPECT_FALSE(askRepeat()); }), "");
  EXPECT_FALSE(operationAborted());
}

TEST_F(Dialogs, TheEndOfInputRepeatsOnceOnly) {
  ForkedTerminal child([] {
    closeInput();
    const bool first = askRepeat();
    const bool second = askRepeat();
    return first && !second ? 0 : 1;
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

// ---- the choice

std::string choiceFor(std::string_view line, std::string& seen) {
  ForkedTerminal child([] {
    printLine("<" + readChoice() + ">");
    return 0;
  });
  EXPECT_TRUE(child.shows("  \x1b[1;34m▶\x1b[0m \x1b[1mChoice\x1b[0m \x1b[1;38;5;93m[RETURN]\x1b[0m "));
  child.type(line);
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
  seen = child.output();
  const std::size_t begin = seen.rfind('<') + 1;
  return seen.substr(begin, seen.rfind('>') - begin);
}

std::string choiceFor(std::string_view line) {
  std::string seen;
  return choiceFor(line, seen);
}

TEST_F(Dialogs, AChoiceIsTrimmedAndInLowerCase) {
  EXPECT_EQ(choiceFor(" 01 \r"), "01");
  EXPECT_EQ(choiceFor("Ab\r"), "ab");
  EXPECT_EQ(choiceFor("\r"), "");
  EXPECT_EQ(choiceFor("X\r"), "x");
  EXPECT_EQ(choiceFor("q\r"), "q");
}

constexpr ChoiceShortcut shortcuts[] = {
    {"s", "", [] { print("scheme"); }},
    {"c", "en", [] { print("configuration"); }},
    {"q", "", [] { print("never"); }},
    {"z", "", nullptr},
};

TEST_F(Dialogs, ALetterOfTheMainMenuRunsAndRedraws) {
  installChoiceShortcuts(shortcuts);
  std::string seen;
  EXPECT_EQ(choiceFor("S\r", seen), "__redraw");
  EXPECT_NE(seen.find("scheme"), std::string::npos);
  EXPECT_EQ(choiceFor("q\r", seen), "q");
  EXPECT_EQ(seen.find("never"), std::string::npos);
  EXPECT_EQ(choiceFor("z\r"), "z");
}

TEST_F(Dialogs, ALetterMayBelongToOneLanguage) {
  installChoiceShortcuts(shortcuts);
  EXPECT_EQ(choiceFor("c\r"), "__redraw");
  setCurrentLanguage("de");
  ForkedTerminal child([] { return readChoice() == "c" ? 0 : 1; });
  ASSERT_TRUE(child.shows("[RETURN]"));
  child.type("c\r");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST_F(Dialogs, AnAbortBeforeTheChoiceLeaves) {
  setOperationAborted(true);
  EXPECT_EQ(printedBy([] { EXPECT_EQ(readChoice(), "0"); }), "");
  EXPECT_FALSE(operationAborted());
}

TEST_F(Dialogs, AnAbortDuringTheChoiceLeaves) {
  ForkedTerminal child([] {
    struct sigaction action {};
    action.sa_handler = [](int) { AppContext::shared().setOperationAborted(true); };
    sigaction(SIGINT, &action, nullptr);
    return readChoice() == "0" && !operationAborted() ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("[RETURN]"));
  ASSERT_TRUE(child.waitsForKeys());
  child.type("3\x03");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST_F(Dialogs, TheEndOfInputAtTheChoiceLeaves) {
  ForkedTerminal child([] {
    closeInput();
    return readChoice() == "0" ? 0 : 1;
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

}  // namespace
}  // namespace halyard
