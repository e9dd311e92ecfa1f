#include "halyard/browser/file_patterns.hpp"

#include <clocale>
#include <random>

#include <fnmatch.h>
#include <gtest/gtest.h>

namespace halyard {
namespace {

bool matches(const std::string& pattern, const std::string& name) { return NamePattern(pattern).matches(name.c_str()); }

/// Sets the process's own locale for fnmatch(3), and back.
class Utf8Process {
 public:
  Utf8Process() : before_(std::setlocale(LC_CTYPE, nullptr)) {
    for (const char* name : {"C.UTF-8", "UTF-8", "en_US.UTF-8"}) {
      if (std::setlocale(LC_CTYPE, name) != nullptr) return;
    }
    ADD_FAILURE() << "no UTF-8 locale here";
  }
  ~Utf8Process() { std::setlocale(LC_CTYPE, before_.c_str()); }
  Utf8Process(const Utf8Process&) = delete;
  Utf8Process& operator=(const Utf8Process&) = delete;

 private:
  std::string before_;
};

TEST(FilePatterns, ATextWithoutWildcardsIsExpanded) {
  EXPECT_EQ(expandFilePattern("foo"), "foo*.*");
  EXPECT_EQ(expandDirectoryPattern("foo"), "*foo*");
  EXPECT_EQ(expandFilePattern("a.swift"), "a.swift*.*");
}

TEST(FilePatterns, NothingTypedStandsForEverything) {
  EXPECT_EQ(expandFilePattern(""), "*.*");
  EXPECT_EQ(expandDirectoryPattern(""), "*");
  EXPECT_EQ(expandFilePattern("   "), "*.*");
  EXPECT_EQ(expandDirectoryPattern("   "), "*");
}

TEST(FilePatterns, ATextWithWildcardsStays) {
  for (const char* text : {"a*", "*", "?", "x?y", "*.swift"}) {
    EXPECT_EQ(expandFilePattern(text), text);
    EXPECT_EQ(expandDirectoryPattern(text), text);
  }
}

TEST(FilePatterns, BlanksRoundTheTextAreDroppedAndThoseInsideKept) {
  EXPECT_EQ(expandFilePattern("  my file "), "my file*.*");
  EXPECT_EQ(expandDirectoryPattern("  my file "), "*my file*");
  EXPECT_EQ(expandFilePattern(" a* "), "a*");
}

TEST(NamePattern, CaseDoesNotCount) {
  EXPECT_TRUE(matches("foo*.*", "FooBar.Swift"));
  EXPECT_TRUE(matches("FOO*.*", "foobar.swift"));
  EXPECT_FALSE(matches("foo*.*", "afoo.swift"));
  EXPECT_FALSE(matches("foo*.*", "foo"));
}

TEST(NamePattern, TheExpandedFilePatternNeedsADot) {
  EXPECT_TRUE(matches("*.*", "a.b"));
  EXPECT_TRUE(matches("*.*", "a."));
  EXPECT_FALSE(matches("*.*", "Makefile"));
}

TEST(NamePattern, QuestionMarksStandForOneCharacter) {
  EXPECT_TRUE(matches("a?c", "abc"));
  EXPECT_FALSE(matches("a?c", "ac"));
  EXPECT_FALSE(matches("a?c", "abbc"));
  EXPECT_TRUE(matches("*?.?", "xy.z"));
}

TEST(NamePattern, UmlautsAreOneCharacterWhateverTheLocaleAndTheirCaseDoesNotCount) {
  EXPECT_TRUE(matches("übersicht*.*", "Übersicht.md"));
  EXPECT_TRUE(matches("?bersicht.md", "übersicht.md"));
  EXPECT_TRUE(matches("*grün*", "Immergrün.txt"));
  EXPECT_TRUE(matches("*.md", "🎉 Übersicht.md"));
}

TEST(NamePattern, NamesThatAreNotUtf8AreMatchedToo) {
  EXPECT_TRUE(matches("*.txt", "b\xff\xfe.txt"));
  EXPECT_FALSE(matches("*.txt", "b\xff\xfe.md"));
  EXPECT_TRUE(matches("*", "\xc3"));
}

TEST(NamePattern, BracketsAndBackslashesMeanWhatTheyMeanToTheSystem) {
  EXPECT_TRUE(matches("[ab]*", "Banana"));
  EXPECT_FALSE(matches("[!ab]*", "Banana"));
  EXPECT_TRUE(matches("\\*", "*"));
  EXPECT_FALSE(matches("\\*", "x"));
  EXPECT_FALSE(matches("[", "x"));
}

TEST(NamePattern, ALongPatternOfStarsIsQuick) {
  std::string pattern;
  for (int count = 0; count < 100; ++count) pattern += "*a";
  EXPECT_FALSE(matches(pattern + "b", std::string(250, 'a')));
}

TEST(NamePattern, AgreesWithTheSystemOnRandomNames) {
  const Utf8Process utf8;
  std::mt19937 random(20261121);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same names each time
  const auto word = [&](std::string_view letters, std::size_t longest) {
    std::string text;
    for (std::size_t left = random() % (longest + 1); left > 0; --left) text += letters[random() % letters.size()];
    return text;
  };
  int hits = 0;
  for (int round = 0; round < 200'000; ++round) {
    const std::string pattern = word(round % 4 == 0 ? "aAbB*?.[]\\!-" : "aAbB*?.", 8);
    const std::string name = word(round % 3 == 0 ? "aAbB.\xc3\xbc\xe2\x84\xaa/" : "aAbB. -", 10);
    const bool expected = fnmatch(pattern.c_str(), name.c_str(), FNM_CASEFOLD) == 0;
    ASSERT_EQ(matches(pattern, name), expected) << '"' << pattern << "\" on \"" << name << '"';
    hits += expected ? 1 : 0;
  }
  EXPECT_GT(hits, 1000);
}

TEST(FilePatterns, AnExtensionIsWhatFollowsTheLastDotInLowerCase) {
  EXPECT_EQ(lowercasedExtension("A.Swift"), "swift");
  EXPECT_EQ(lowercasedExtension("archive.tar.GZ"), "gz");
  EXPECT_EQ(lowercasedExtension("Makefile"), "");
  EXPECT_EQ(lowercasedExtension("odd."), "");
}

}  // namespace
}  // namespace halyard
