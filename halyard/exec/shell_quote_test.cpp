#include "halyard/exec/shell_quote.hpp"

#include <string>

#include <gtest/gtest.h>

#include "halyard/exec/command_runner.hpp"

namespace halyard {
namespace {

TEST(ShellQuote, AnEmptyTextIsTwoQuotes) { EXPECT_EQ(shellQuote(""), "''"); }

TEST(ShellQuote, AnApostropheLeavesTheQuotesAndComesBack) { EXPECT_EQ(shellQuote("it's"), R"('it'\''s')"); }

TEST(ShellQuote, ANulByteIsDropped) { EXPECT_EQ(shellQuote(std::string_view("a\0b", 3)), "'ab'"); }

TEST(ShellQuote, TheShellReadsTheTextBack) {
  for (const std::string text : {"it's", "'", "''", "$(echo x) `echo y` $HOME", "a\nb", "\\", "\"", "*", "~", "!x",
                                 "-n", "a;b|c&d>e<f#g", "Größe 🚀", "a\tb"}) {
    EXPECT_EQ(DefaultCommandRunner().run("printf '<%s>' " + shellQuote(text)), "<" + text + ">");
  }
}

}  // namespace
}  // namespace halyard
