#include "halyard/browser/directory_text.hpp"

#include "halyard/browser/browser_testing.hpp"

namespace halyard {
namespace {

class DirectoryText : public BrowserTest {};

TEST_F(DirectoryText, TheHomeFolderIsATilde) {
  const std::string home = AppDependencies::current().fileSystemClient->homeDirectoryPath();
  EXPECT_EQ(shownPath(home), "~");
  EXPECT_EQ(shownPath(home + "/a"), "~/a");
  EXPECT_EQ(shownPath(home + "a"), home + "a") << "a neighbour of the home folder";
  EXPECT_EQ(shownPath("/x" + home), "/x" + home);
  EXPECT_EQ(shownPath("/"), "/");
}

TEST_F(DirectoryText, NothingThatATerminalObeysIsShown) {
  EXPECT_EQ(shownPath("/a\x1b[31m\nb\x7F\xFF\xC2\x9B"), "/a␛[31m␊b␡��");
}

TEST_F(DirectoryText, CutsByTheColumnsThatCharactersTake) {
  EXPECT_EQ(cutOnLeft("abcdef", 6), "abcdef");
  EXPECT_EQ(cutOnLeft("abcdef", 5), "…cdef");
  EXPECT_EQ(cutOnLeft("abcdef", 1), "…");
  EXPECT_EQ(cutOnLeft("abcdef", 0), "");
  EXPECT_EQ(cutOnRight("abcdef", 6), "abcdef");
  EXPECT_EQ(cutOnRight("abcdef", 5), "abcd…");
  EXPECT_EQ(cutOnRight("abcdef", 0), "");
  EXPECT_EQ(cutOnRight("日本語", 6), "日本語");
  EXPECT_EQ(cutOnRight("日本語", 5), "日本…");
  EXPECT_EQ(cutOnRight("日本語", 4), "日…") << "half a character is none";
  EXPECT_EQ(cutOnLeft("日本語", 4), "…語");
  EXPECT_EQ(paddedColumns("日本", 6), "日本  ");
  EXPECT_EQ(paddedColumns("abc", 2), "abc");
}

TEST_F(DirectoryText, AnAccentGoesWithItsLetter) {
  EXPECT_EQ(cutOnLeft("ao\xCC\x88"
                      "bc",
                      3),
            "…bc");
  EXPECT_EQ(cutOnRight("ao\xCC\x88"
                       "bc",
                       3),
            "ao\xCC\x88…");
}

}  // namespace
}  // namespace halyard
