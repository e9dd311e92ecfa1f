#include "halyard/terminal/line_input.hpp"

#include <csignal>

#include <gtest/gtest.h>

#include "core/app_context.hpp"
#include "halyard/terminal/terminal_testing.hpp"

namespace halyard {
namespace {

struct Edited {
  std::string text;
  std::string echo;
  std::string_view unread;
};

Edited edited(std::string_view bytes) {
  Edited result;
  std::size_t at = 0;
  result.text = editPastedText(
      [&]() -> std::optional<std::uint8_t> {
        if (at == bytes.size()) return std::nullopt;
        return static_cast<std::uint8_t>(bytes[at++]);
      },
      [&](std::string_view echo) { result.echo += echo; });
  result.unread = bytes.substr(at);
  return result;
}

// ---- the line editor

TEST(LineEditor, EnterEndsTheTextAndItIsTrimmed) {
  const Edited result = edited("  two words \rrest");
  EXPECT_EQ(result.text, "two words");
  EXPECT_EQ(result.echo, "  two words \r\n");
  EXPECT_EQ(result.unread, "rest");
}

TEST(LineEditor, EnterOnBlankTextIsIgnored) {
  EXPECT_EQ(edited("\n  \r\tx\n").text, "x");
  EXPECT_EQ(edited("\n").echo, "\r\n");
}

TEST(LineEditor, PastedTextKeepsItsLineEndsButNotThoseAtItsEnds) {
  const Edited result = edited("\x1b[200~\n one\ntwo\r\rthree \n\x1b[201~\n");
  EXPECT_EQ(result.text, "one\ntwo\n\nthree");
  EXPECT_EQ(result.unread, "");
}

TEST(LineEditor, BackspaceRemovesAWholeCharacter) {
  EXPECT_EQ(edited("aä\x7F\n").text, "a");
  EXPECT_EQ(edited("a👩‍👩‍👧\x7F\n").text, "a");
  EXPECT_EQ(edited("ae\xCC\x81\x7F\n").text, "a");
  EXPECT_EQ(edited("ab\x7F\n").echo, "ab\b \b\r\n");
}

TEST(LineEditor, BackspaceOnNothingDoesNothing) {
  EXPECT_EQ(edited("\x7F\x7F"
                   "a\n")
                .echo,
            "a\r\n");
}

TEST(LineEditor, AnEscapeOfEightCharactersIsLost) {
  EXPECT_EQ(edited("\x1b"
                   "12345678"
                   "9\n")
                .text,
            "9");
  EXPECT_EQ(edited("\x1b"
                   "1234\n678"
                   "9\n")
                .text,
            "9");
}

TEST(LineEditor, BytesOfAnEscapeNeverReachTheTextOrTheScreen) {
  const Edited result = edited("a\x1b[200~b\x1b[201~c\n");
  EXPECT_EQ(result.text, "abc");
  EXPECT_EQ(result.echo, "abc\r\n");
}

TEST(LineEditor, ABrokenCharacterIsReplacedWithoutAnEcho) {
  EXPECT_EQ(edited("a\xFFz\n").text, "a\xEF\xBF\xBDz");
  EXPECT_EQ(edited("a\xFFz\n").echo, "az\r\n");
  EXPECT_EQ(edited("\x80\n").text, "\xEF\xBF\xBD");
  EXPECT_EQ(edited("\xE2\x82q\n").text, "\xEF\xBF\xBD");
}

TEST(LineEditor, ControlCharactersOfAPasteDoNotReachTheTerminal) {
  EXPECT_EQ(edited("a\x07\xC2\x9Bz\n").text, "a\x07\xC2\x9Bz");
  EXPECT_EQ(edited("a\x07\xC2\x9Bz\n").echo, "a␇\xEF\xBF\xBDz\r\n");
}

TEST(LineEditor, TheEndOfInputGivesTheTextAsItStands) {
  EXPECT_EQ(edited(" half ").text, "half");
  EXPECT_EQ(edited("half\xE2\x82").text, "half");
  EXPECT_EQ(edited("").text, "");
}

TEST(LineEditor, SwitchesBracketedPasteAndRestoresTheTerminal) {
  ForkedTerminal child([] { return readPastedText() == "line one\nline two" ? 0 : 1; });
  ASSERT_TRUE(child.shows("\x1b[?2004h"));
  ASSERT_TRUE(child.waitsForKeys());
  child.type("\x1b[200~line one\rline two\x1b[201~\r");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
  EXPECT_TRUE(child.settingsAreAsBefore());
  EXPECT_TRUE(child.output().ends_with("\x1b[?2004l\r\r\n") || child.output().ends_with("\x1b[?2004l\r\n"))
      << child.output();
}

TEST(LineEditor, AStopSwitchesBracketedPasteOffAndTheResumeOnAgain) {
  ForkedTerminal child([] { return readPastedText() == "ab" ? 0 : 1; });
  ASSERT_TRUE(child.shows("\x1b[?2004h"));
  ASSERT_TRUE(child.waitsForKeys());
  child.type("a");
  ASSERT_TRUE(child.shows("a"));
  // The process group is an orphan here, so the stop itself has no effect.
  kill(child.process(), SIGTSTP);
  ASSERT_TRUE(child.shows("a\x1b[?2004l\x1b[?25h\x1b[?2004h"));
  ASSERT_TRUE(child.waitsForKeys());
  child.type("b\r");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

// ---- lines

TEST(ReadLine, GivesTheLineWithoutItsEnd) {
  ForkedTerminal child([] {
    print("ready");
    flushOutput();
    const auto line = readLine();
    return line == " grün " ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  child.type(" grün \r");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(ReadLine, IsInCookedModeAlsoWithinRawMode) {
  ForkedTerminal child([] {
    enterRawMode();
    print("ready");
    flushOutput();
    const auto line = readLine();
    const RawKey key = readKey();
    return line == "ac" && key.is("k") ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  child.type(
      "ab\x7F"
      "c\r");
  ASSERT_TRUE(child.shows("\r\n"));
  ASSERT_TRUE(child.waitsForKeys());
  child.type("k");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(ReadLine, LinesAndKeysOfAPipeFollowOneAnother) {
  ForkedTerminal child([] {
    int ends[2] = {};
    if (pipe(ends) != 0 || write(ends[1], "one\r\nk\ntwo\nlast", 15) != 15) return 90;
    dup2(ends[0], STDIN_FILENO);
    close(ends[1]);
    if (readLine() != "one") return 1;
    if (!readKey().is("k") || readKey().kind != RawKey::Kind::enter) return 2;
    // What a pipe holds wasn't typed ahead.
    flushPendingInput();
    if (readLine() != "two") return 3;
    if (readLine() != "last") return 4;
    if (readLine()) return 5;
    return inputEnded() ? 0 : 6;
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(ReadLine, InvalidBytesAreReadAsLatin1) {
  ForkedTerminal child([] {
    int ends[2] = {};
    if (pipe(ends) != 0 || write(ends[1], "gr\xFCn\n", 5) != 5) return 90;
    dup2(ends[0], STDIN_FILENO);
    return readLine() == "grün" ? 0 : 1;
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(ReadLine, AResizeDoesNotLoseTheLine) {
  ForkedTerminal child([] {
    installTerminalSignalHandlers();
    print("ready");
    flushOutput();
    const auto line = readLine();
    return line == "before after" ? 0 : 1;
  });
  ASSERT_TRUE(child.shows("ready"));
  child.type("before ");
  ASSERT_TRUE(child.shows("before "));
  child.terminal().resize(30, 90);
  kill(child.process(), SIGWINCH);
  child.type("after\r");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

int readLineWithAbortHandler(bool abortedBefore) {
  struct sigaction action {};
  action.sa_handler = [](int) { AppContext::shared().setOperationAborted(true); };
  sigaction(SIGINT, &action, nullptr);
  struct sigaction other {};
  other.sa_handler = [](int) {};
  sigaction(SIGCHLD, &other, nullptr);
  setOperationAborted(abortedBefore);
  print("ready");
  flushOutput();
  const auto line = readLine();
  return !line ? 0 : (line == "line" ? 1 : 2);
}

TEST(ReadLine, AnAbortWhileWaitingEndsTheWait) {
  ForkedTerminal child([] { return readLineWithAbortHandler(false); });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  child.type("\x03");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(ReadLine, AnAbortOfEarlierDoesNot) {
  ForkedTerminal child([] { return readLineWithAbortHandler(true); });
  ASSERT_TRUE(child.shows("ready"));
  ASSERT_TRUE(child.waitsForKeys());
  kill(child.process(), SIGCHLD);
  child.type("line\r");
  EXPECT_EQ(child.end(), ProgramEnd::exited(1));
}

// ---- the prompt

int promptFor(std::string_view wanted, std::string_view defaultValue) {
  return promptWithDefault("Name?", defaultValue) == wanted ? 0 : 1;
}

TEST(PromptWithDefault, ShowsTheQuestionAndTheDefault) {
  ForkedTerminal child([] { return promptFor("App", "App"); });
  ASSERT_TRUE(child.shows("  \x1b[1;34m▷\x1b[0m Name?  \x1b[2m(empty = App)\x1b[0m \x1b[1;38;5;93m[RETURN]\x1b[0m "));
  child.type(" \t \r");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(PromptWithDefault, AnAnswerIsTrimmed) {
  ForkedTerminal child([] { return promptFor("My App", ""); });
  ASSERT_TRUE(child.shows("  \x1b[1;34m▷\x1b[0m Name? \x1b[1;38;5;93m[RETURN]\x1b[0m "));
  child.type(" My App \r");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(PromptWithDefault, TheEndOfInputGivesTheDefault) {
  ForkedTerminal child([] {
    dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
    return promptFor("App", "App");
  });
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

TEST(PromptWithDefault, ADefaultFromOutsideCanNotDriveTheTerminal) {
  ForkedTerminal child([] { return promptFor("a\x1b[2Jb", "a\x1b[2Jb"); });
  ASSERT_TRUE(child.shows("(empty = a␛[2Jb)"));
  child.type("\r");
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
}

}  // namespace
}  // namespace halyard
