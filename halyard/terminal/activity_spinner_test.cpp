#include "halyard/terminal/activity_spinner.hpp"

#include <csignal>

#include <gtest/gtest.h>

#include "halyard/terminal/control_sequences.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/terminal/terminal_testing.hpp"

namespace halyard {
namespace {

using Clock = std::chrono::steady_clock;

int cellsOf(const std::string& line) { return cellWidth(stripAnsi(line)); }

std::size_t occurrences(std::string_view text, std::string_view what) {
  std::size_t count = 0;
  for (std::size_t at = text.find(what); at != std::string_view::npos; at = text.find(what, at + what.size())) ++count;
  return count;
}

TEST(SpinnerLine, HoldsFrameLabelAndSeconds) {
  EXPECT_EQ(spinnerLine("⠋", "Working", 12, 80), "\x1b[1;34m⠋\x1b[0m  Working  \x1b[2m12s\x1b[0m");
}

TEST(SpinnerLine, ALongLabelIsShortenedAndNeverWraps) {
  const std::string line = spinnerLine("⠋", std::string(200, 'x'), 5, 40);
  EXPECT_EQ(cellsOf(line), 39);
  EXPECT_NE(line.find("x…"), std::string::npos);
  EXPECT_NE(line.find("5s"), std::string::npos);
}

TEST(SpinnerLine, WideCharactersDoNotWrapEither) {
  for (int columns = 0; columns < 60; ++columns) {
    const std::string line = spinnerLine("⠋", "漢字漢字漢字🔙漢字漢字 und ein langer Rest", 1234, columns);
    EXPECT_LE(cellsOf(line), std::max(columns - 1, 0)) << columns;
  }
}

TEST(SpinnerLine, ALabelFromOutsideCanNotDriveTheTerminal) {
  EXPECT_NE(spinnerLine("⠋", "a\x1b[2J\rb", 0, 80).find("a␛[2J␍b"), std::string::npos);
}

TEST(ActivitySpinner, TurnsAndLeavesNoLineBehind) {
  const std::string text = printedBy([] {
    ActivitySpinner spinner("Working");
    spinner.start();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    spinner.stop();
  });
  EXPECT_TRUE(text.starts_with("\x1b[?25l\r\x1b[1;34m⠋")) << text;
  EXPECT_NE(text.find("⠙"), std::string::npos);
  EXPECT_TRUE(text.ends_with("0s\x1b[0m\x1b[K\r\x1b[K\x1b[?25h")) << text;
  EXPECT_EQ(text.find('\n'), std::string::npos);
}

TEST(ActivitySpinner, AFinalTextStaysAsALine) {
  const std::string text = printedBy([] {
    ActivitySpinner spinner("Working");
    spinner.start();
    spinner.stop("Done");
  });
  EXPECT_TRUE(text.ends_with("\r\x1b[K\x1b[?25h\x1b[32m✓\x1b[0m  Done\n")) << text;
}

TEST(ActivitySpinner, NothingIsDrawnAfterTheStop) {
  const std::string text = printedBy([] {
    ActivitySpinner spinner("Working");
    spinner.start();
    spinner.stop();
    print("after");
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
  });
  EXPECT_TRUE(text.ends_with("\x1b[?25hafter"));
}

TEST(ActivitySpinner, StoppingDoesNotWaitForTheNextFrame) {
  const auto start = Clock::now();
  printedBy([] {
    for (int i = 0; i < 50; ++i) {
      ActivitySpinner spinner("Working");
      spinner.start();
      spinner.stop();
    }
  });
  // Fifty frames would take four seconds.
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(3));
}

TEST(ActivitySpinner, ANewLabelShowsOnANextFrame) {
  const std::string text = printedBy([] {
    ActivitySpinner spinner("first");
    spinner.start();
    std::this_thread::sleep_for(std::chrono::milliseconds(40));
    spinner.setLabel("second");
    EXPECT_EQ(spinner.label(), "second");
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    spinner.stop();
  });
  EXPECT_NE(text.find("first"), std::string::npos);
  EXPECT_NE(text.find("second"), std::string::npos);
}

TEST(ActivitySpinner, ADetailStandsBehindTheLabelInDimUntilTheNextLabel) {
  EXPECT_EQ(spinnerLine("*", "Fetching", 3, 80, "Name"),
            "\x1b[1;34m*\x1b[0m  Fetching  \x1b[2mName\x1b[0m  \x1b[2m3s\x1b[0m");
  EXPECT_EQ(spinnerLine("*", "Fetching", 3, 20, "LongName"),
            "\x1b[1;34m*\x1b[0m  Fetching  \x1b[2mL…\x1b[0m  \x1b[2m3s\x1b[0m");
  EXPECT_EQ(spinnerLine("*", "Fetching", 3, 18, "Name"), "\x1b[1;34m*\x1b[0m  Fetching  \x1b[2m3s\x1b[0m");
  EXPECT_EQ(spinnerLine("*", "A", 3, 80, "\x1b[31mB").find("\x1b[31m"), std::string::npos);
}

TEST(ActivitySpinner, TheLabelMayBeSetFromAnyThread) {
  const std::string text = printedBy([] {
    ActivitySpinner spinner("label 0");
    spinner.start();
    std::thread reader([&] {
      for (int i = 0; i < 1000; ++i) spinner.setLabel("label " + std::to_string(i));
    });
    for (int i = 0; i < 1000; ++i) EXPECT_TRUE(spinner.label().starts_with("label "));
    reader.join();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    spinner.stop();
  });
  EXPECT_NE(text.find("label 999"), std::string::npos);
}

TEST(ActivitySpinner, StartsAndStopsAgainAndOnlyOnceEach) {
  const std::string text = printedBy([] {
    ActivitySpinner spinner("Working");
    spinner.stop("never started");
    spinner.start();
    spinner.start();
    spinner.stop();
    spinner.stop();
    spinner.start();
  });
  EXPECT_EQ(occurrences(text, "\x1b[?25l"), 2U);
  EXPECT_EQ(occurrences(text, "\x1b[?25h"), 2U);
  EXPECT_EQ(text.find("never started"), std::string::npos);
}

TEST(ActivitySpinner, IsAsWideAsTheTerminal) {
  ForkedTerminal child(
      [] {
        ActivitySpinner spinner(std::string(100, 'x'));
        spinner.start();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        spinner.stop();
        return 0;
      },
      24, 30);
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
  EXPECT_NE(child.output().find(std::string(21, 'x') + "…"), std::string::npos) << child.output();
  EXPECT_EQ(child.output().find(std::string(22, 'x')), std::string::npos);
}

TEST(Progress, AnUnknownTotalIsAnEmptyBar) {
  const std::string text = printedBy([] { printProgress(3, 0, "Files", Clock::now()); });
  EXPECT_TRUE(text.starts_with("\r")) << text;
  EXPECT_TRUE(text.ends_with("\x1b[K")) << text;
  EXPECT_NE(stripAnsi(text).find(repeated("░", 26) + "   0%  3/0  Files  0s"), std::string::npos) << text;
  EXPECT_EQ(text.find("█"), std::string::npos);
}

TEST(Progress, ThePartDoneIsRoundedDown) {
  const std::string text = printedBy([] { printProgress(1, 3, "Files", Clock::now()); });
  EXPECT_EQ(occurrences(text, "█"), 8U);
  EXPECT_EQ(occurrences(text, "░"), 18U);
  EXPECT_NE(text.find(" 33%  1/3  Files"), std::string::npos);
  EXPECT_EQ(text.find('\n'), std::string::npos);
  EXPECT_NE(text.find("\x1b[1;34m█"), std::string::npos);
  EXPECT_NE(text.find("\x1b[2m░"), std::string::npos);
}

TEST(Progress, TheLineEndsWithTheWork) {
  const std::string text = printedBy([] { printProgress(4, 4, "Files", Clock::now() - std::chrono::seconds(61)); });
  EXPECT_EQ(occurrences(text, "█"), 26U);
  EXPECT_NE(text.find("100%  4/4  Files"), std::string::npos);
  EXPECT_NE(text.find("61s"), std::string::npos);
  EXPECT_TRUE(text.ends_with("\n"));
  EXPECT_NE(printedBy([] { printProgress(9, 4, "Files", Clock::now()); }).find("100%  9/4"), std::string::npos);
}

TEST(Progress, ALongLabelDoesNotWrap) {
  ForkedTerminal child(
      [] {
        printProgress(1, 2, std::string(100, 'x'), Clock::now());
        return 0;
      },
      24, 60);
  EXPECT_EQ(child.end(), ProgramEnd::exited(0));
  EXPECT_EQ(cellWidth(stripAnsi(child.output().substr(1))), 59);
}

}  // namespace
}  // namespace halyard
