#include "halyard/terminal/output.hpp"

#include <algorithm>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include "core/text.hpp"
#include "halyard/terminal/keys.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/terminal/terminal_restore.hpp"
#include "halyard/terminal/terminal_testing.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;

/// What a child writes to standard output, write by write.
std::vector<std::string> writesOf(const std::function<void()>& work) {
  int ends[2] = {};
  EXPECT_EQ(socketpair(AF_UNIX, SOCK_DGRAM, 0, ends), 0);
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDOUT_FILENO);
    work();
    _exit(0);
  }
  close(ends[1]);
  waitpid(child, nullptr, 0);
  std::vector<std::string> writes;
  std::string buffer(300000, '\0');
  for (ssize_t count = 0; (count = recv(ends[0], buffer.data(), buffer.size(), MSG_DONTWAIT)) > 0;) {
    writes.push_back(buffer.substr(0, static_cast<std::size_t>(count)));
  }
  close(ends[0]);
  return writes;
}

TEST(Output, FullBufferingWritesNothingBeforeTheFlush) {
  EXPECT_THAT(writesOf([] {
                useFullBuffering();
                print("one\ntwo\n");
                printLine("three");
              }),
              ElementsAre());
  EXPECT_THAT(writesOf([] {
                useFullBuffering();
                print("one\ntwo\n");
                printLine("three");
                flushOutput();
              }),
              ElementsAre("one\ntwo\nthree\n"));
}

TEST(Output, TheFullBufferHolds65536Bytes) {
  const auto writes = writesOf([] {
    useFullBuffering();
    for (int i = 0; i < 655; ++i) print(std::string(100, 'x'));
    flushOutput();
  });
  ASSERT_EQ(writes.size(), 1U);
  EXPECT_EQ(writes[0].size(), 65500U);
}

TEST(Output, ThePlainStateShowsEachLineAndPromptAtOnce) {
  EXPECT_THAT(writesOf([] {
                useLineBuffering();
                printLine("one");
                printLine("two");
                print("prompt");
              }),
              ElementsAre("one\n", "two\n", "prompt"));
}

TEST(Output, AFullBufferIsWrittenWithoutAFlush) {
  const auto writes = writesOf([] {
    useFullBuffering();
    print(std::string(65536, 'x'));
    print("y");
  });
  ASSERT_EQ(writes.size(), 1U);
  EXPECT_EQ(writes[0].size(), 65536U);
}

TEST(Output, AnInterruptedWriteLosesNothing) {
  // More than the terminal takes at once, so that the resizes meet a write that is under way.
  ForkedTerminal terminal([] {
    installTerminalSignalHandlers();
    std::string text;
    for (int i = 0; i < 20000; ++i) text += "0123456789";
    print(text + "end");
    return 0;
  });
  for (int i = 0; i < 50; ++i) {
    kill(terminal.process(), SIGWINCH);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ASSERT_TRUE(terminal.shows("end"));
  EXPECT_EQ(terminal.output().size(), 200003U);
  EXPECT_EQ(terminal.end(), ProgramEnd::exited(0));
}

TEST(Output, SwitchingTheBufferingLosesNothing) {
  EXPECT_THAT(writesOf([] {
                useLineBuffering();
                print("a");
                useFullBuffering();
                print("b\n");
                useLineBuffering();
                printLine("c");
                useFullBuffering();
                print("d\n");
                flushOutput();
              }),
              ElementsAre("a", "b\n", "c\n", "d\n"));
}

TEST(Output, AFrameIsOneWriteWhateverItsLength) {
  const auto writes = writesOf([] {
    useFullBuffering();
    beginFrame();
    for (int i = 0; i < 1000; ++i) printLine(std::string(99, 'x'));
    flushOutput();
    print("end");
    endFrame();
  });
  ASSERT_EQ(writes.size(), 1U);
  EXPECT_EQ(writes[0].size(), 100003U);
}

TEST(Output, WhatWasPrintedBeforeAFrameLeavesBeforeIt) {
  EXPECT_THAT(writesOf([] {
                useFullBuffering();
                print("before");
                beginFrame();
                print("frame");
                endFrame();
                print("after");
                flushOutput();
              }),
              ElementsAre("before", "frame", "after"));
}

TEST(Output, TheCursorIsHiddenAndShownAtOnce) {
  EXPECT_THAT(writesOf([] {
                useFullBuffering();
                hideCursor();
                showCursor();
              }),
              ElementsAre("\x1b[?25l", "\x1b[?25h"));
}

TEST(Output, LinesOfSeveralThreadsDoNotMix) {
  const std::string text = printedBy([] {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([i] {
        for (int line = 0; line < 200; ++line) printLine(std::string(50, static_cast<char>('a' + i)));
      });
    }
    for (std::thread& thread : threads) thread.join();
  });
  const auto lines = splitLines(text);
  ASSERT_EQ(lines.size(), 801U);
  for (std::size_t i = 0; i < 800; ++i) EXPECT_EQ(lines[i], std::string(50, lines[i][0]));
}

TEST(Output, AFrameIsFittedToTheTerminal) {
  ForkedTerminal terminal(
      [] {
        useFullBuffering();
        beginFrame();
        print("\x1b[Hdropped\nkept one\nkept two is long\n");
        endFrame();
        return 0;
      },
      2, 9);
  EXPECT_EQ(terminal.end(), ProgramEnd::exited(0));
  EXPECT_TRUE(terminal.shows("\x1b[Hkept one\r\nkept two "));
  EXPECT_EQ(terminal.output().find("dropped"), std::string::npos);
  EXPECT_EQ(terminal.output().find("long"), std::string::npos);
}

// ---- fittedFrame

TEST(FittedFrame, AFrameThatFitsIsUnchanged) {
  const std::string frame = "\x1b[H\x1b[2J\x1b[3J\x1b[34m┌──┐\x1b[0m\n│🔙│\n└──┘\n\x1b[2;2Hx\x1b[4;1H\x1b[J";
  EXPECT_EQ(fittedFrame(frame, 4, 4), frame);
  EXPECT_EQ(fittedFrame(frame, 40, 100), frame);
  EXPECT_EQ(fittedFrame("", 5, 5), "");
}

TEST(FittedFrame, OnlyALineFeedThatWouldScrollGoesFromAFrameAsHighAsTheScreen) {
  EXPECT_EQ(fittedFrame("\x1b[Hone\ntwo\n", 2, 10), "\x1b[Hone\ntwo");
  EXPECT_EQ(fittedFrame("\x1b[Hone\ntwo\n\x1b[J", 2, 10), "\x1b[Hone\ntwo\x1b[J");
  EXPECT_EQ(fittedFrame("\x1b[Hone\ntwo\n\n\n", 2, 10), "\x1b[Hone\ntwo");
}

TEST(FittedFrame, NothingIsErasedBehindAFullLastRow) {
  // The cursor still stands on the last column there, and would take its character away.
  EXPECT_EQ(fittedFrame("one\ntwo\n\x1b[J", 2, 3), "one\ntwo");
}

TEST(FittedFrame, RowsAreDroppedFromTheTopButTheirSequencesStay) {
  EXPECT_EQ(fittedFrame("\x1b[H\x1b[2J\x1b[3J\x1b[31mone\ntwo\nthree\nfour\n\x1b[J", 2, 10),
            "\x1b[H\x1b[2J\x1b[3J\x1b[31mthree\nfour\x1b[J");
}

TEST(FittedFrame, RowsOfCursorMovesShiftWithTheRows) {
  EXPECT_EQ(fittedFrame("\x1b[Ha\nb\nc\nd\x1b[3;2Hbox\x1b[1;1Hgone\x1b[4;1H", 2, 10),
            "\x1b[Hc\nd\x1b[1;2Hbox\x1b[H\x1b[2;1H");
}

TEST(FittedFrame, TheRowsOfABoxCountToo) { EXPECT_EQ(fittedFrame("\x1b[Ha\nb\x1b[4;1Hc", 3, 10), "\x1b[Hb\x1b[3;1Hc"); }

TEST(FittedFrame, AMoveBelowTheScreenErasesNothing) {
  EXPECT_EQ(fittedFrame("\x1b[Ha\nb\nc\x1b[9;1H\x1b[J", 2, 10), "\x1b[Hb\nc\x1b[2;1H");
}

TEST(FittedFrame, WideRowsAreCutAndKeepTheirSequences) {
  EXPECT_EQ(fittedFrame("\x1b[31mabcdef\x1b[0m\nxy\x1b[K\n", 5, 4), "\x1b[31mabcd\x1b[0m\nxy\x1b[K\n");
  EXPECT_EQ(fittedFrame("\x1b[2;3Habc\x1b[?25l\x1b[3;9Hx", 5, 4), "\x1b[2;3Hab\x1b[?25l\x1b[3;4H");
}

TEST(FittedFrame, AWideCharacterThatDoesNotFitIsLeftOut) {
  EXPECT_EQ(fittedFrame("abc漢d", 5, 4), "abc");
  EXPECT_EQ(fittedFrame("ab漢d", 5, 4), "ab漢");
}

TEST(FittedFrame, SwitchingTheCursorTakesNoColumn) {
  EXPECT_EQ(fittedFrame("\x1b[?25labcd\n", 5, 4), "\x1b[?25labcd\n");
}

TEST(FittedFrame, AnUnfinishedSequenceHidesNoLineFeed) { EXPECT_EQ(fittedFrame("a\x1b[?25\nb\n", 2, 10), "a[?25\nb"); }

TEST(FittedFrame, AnEraseBehindACutRowIsDropped) {
  EXPECT_EQ(fittedFrame("abcdef\x1b[K\nx\x1b[K", 5, 4), "abcd\nx\x1b[K");
}

}  // namespace
}  // namespace halyard
