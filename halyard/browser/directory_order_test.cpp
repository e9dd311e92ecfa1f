#include "halyard/browser/directory_order.hpp"

#include <algorithm>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/locid.h>

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

std::vector<std::string> sorted(const std::vector<std::string>& names) {
  std::vector<DirectoryEntry> entries;
  for (const std::string& name : names) entries.push_back({name, "/" + name, DirectoryEntry::Kind::file});
  sortByName(entries);
  std::vector<std::string> result;
  for (const DirectoryEntry& entry : entries) result.push_back(entry.name);
  return result;
}

/// The user's locale for as long as it lives.
class LocaleOfUser {
 public:
  explicit LocaleOfUser(const char* name) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale(name), status);
    EXPECT_TRUE(U_SUCCESS(status));
  }
  ~LocaleOfUser() {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(before_, status);
  }
  LocaleOfUser(const LocaleOfUser&) = delete;
  LocaleOfUser& operator=(const LocaleOfUser&) = delete;

 private:
  icu::Locale before_ = icu::Locale::getDefault();
};

TEST(DirectoryOrder, CaseDoesNotCount) {
  EXPECT_THAT(sorted({"b", "C", "a", "B2", "A1"}), ElementsAre("a", "A1", "b", "B2", "C"));
}

TEST(DirectoryOrder, NamesThatDifferInCaseAloneGoByTheirBytes) {
  EXPECT_THAT(sorted({"readme", "README", "Readme"}), ElementsAre("README", "Readme", "readme"));
  EXPECT_THAT(sorted({"Readme", "README", "readme"}), ElementsAre("README", "Readme", "readme"));
}

TEST(DirectoryOrder, UmlautsStandBesideTheirLetterComposedOrNot) {
  const std::string composed =
      "\xC3\x84"
      "b";
  const std::string decomposed =
      "A\xCC\x88"
      "c";
  EXPECT_THAT(sorted({"z", decomposed, "Ad", composed, "Aa"}), ElementsAre("Aa", composed, decomposed, "Ad", "z"));
}

TEST(DirectoryOrder, NumbersAreOrderedByTheirDigits) {
  EXPECT_THAT(sorted({"file10", "file9", "file1"}), ElementsAre("file1", "file10", "file9"));
}

TEST(DirectoryOrder, TheUsersLocaleDecides) {
  {
    const LocaleOfUser german("de_DE");
    EXPECT_THAT(sorted({"z", "ä", "b"}), ElementsAre("ä", "b", "z"));
  }
  const LocaleOfUser swedish("sv_SE");
  EXPECT_THAT(sorted({"z", "ä", "b"}), ElementsAre("b", "z", "ä"));
}

TEST(DirectoryOrder, ALocaleOfMachinesStillOrdersForPeople) {
  const LocaleOfUser machine("en_US_POSIX");
  EXPECT_THAT(sorted({"b", "C", "a"}), ElementsAre("a", "b", "C"));
}

TEST(DirectoryOrder, AnyBytesAreANameAndTheOrderIsAlwaysTheSame) {
  std::vector<std::string> names = {"\xFF",    "\xFF\xFE", "bad\xC3", "new\nline", "esc\x1b[31m", "\x01", "\x02",
                                    "emoji😀", "日本語",   "",        "a\x01",     "a",           "a\x02"};
  const std::vector<std::string> expected = sorted(names);
  std::mt19937 random(7);
  for (int round = 0; round < 20; ++round) {
    std::shuffle(names.begin(), names.end(), random);
    EXPECT_THAT(sorted(names), ElementsAreArray(expected));
  }
}

TEST(DirectoryOrder, NamesOfAnyLengthKeepTheirOrder) {
  const std::string longName(60000, 'x');
  EXPECT_THAT(sorted({longName + "b", longName, longName + "a"}),
              ElementsAre(longName, longName + "a", longName + "b"));
}

TEST(DirectoryOrder, AnEmptyListStaysEmpty) { EXPECT_THAT(sorted({}), ElementsAre()); }

}  // namespace
}  // namespace halyard
