#include "core/string_catalog.hpp"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/wait.h>
#include <unistd.h>

#include "core/app_context.hpp"
#include "core/embedded_catalog.hpp"
#include "test_places.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// A document with one key in both languages.
std::string documentOf(std::string_view key, std::string_view en, std::string_view de) {
  return nlohmann::json{
      {"strings",
       {{key,
         {{"localizations", {{"en", {{"stringUnit", {{"value", en}}}}}, {"de", {{"stringUnit", {{"value", de}}}}}}}}}}}}
      .dump();
}

std::string entry(std::string_view key, std::string_view body) { return fmt::format(R"("{}":{})", key, body); }

/// "localizations" with one language.
std::string inLanguage(std::string_view language, std::string_view value) {
  return fmt::format(R"({{"localizations":{{"{}":{{"stringUnit":{{"state":"translated","value":"{}"}}}}}}}})", language,
                     value);
}

std::string strings(std::string_view entries) { return fmt::format(R"({{"strings":{{{}}}}})", entries); }

struct ChildResult {
  std::string output;
  int status = 0;
};

constexpr int returned = 42;

/// Runs something that may end its process, and reads what it prints.
ChildResult inChild(const std::function<void()>& work) {
  int ends[2];
  if (pipe(ends) != 0) return {};
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
    work();
    std::fflush(stdout);
    _exit(returned);
  }
  close(ends[1]);
  ChildResult result;
  char chunk[4096];
  for (ssize_t size = 0; (size = read(ends[0], chunk, sizeof chunk)) > 0;) {
    result.output.append(chunk, static_cast<std::size_t>(size));
  }
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

class StringCatalog : public testing::Test {
 protected:
  StringCatalog() {
    unloadStringCatalog();
    setCurrentLanguage("en");
    installPreferencesSaver(nullptr);
  }
  ~StringCatalog() override {
    unloadStringCatalog();
    setCurrentLanguage("en");
    installPreferencesSaver(nullptr);
  }
};

TEST_F(StringCatalog, ALookUpBeforeTheFirstLoadYieldsTheKey) {
  EXPECT_EQ(localized("some_key"), "some_key");
  EXPECT_EQ(localized("  some  key "), "  some  key ");
  EXPECT_EQ(catalogSize(), 0U);
}

TEST_F(StringCatalog, ATextComesInTheCurrentLanguage) {
  ASSERT_TRUE(readStringCatalog(documentOf("hello", "Hello", "Hallo")));
  EXPECT_EQ(localized("hello"), "Hello");
  setCurrentLanguage("de");
  EXPECT_EQ(localized("hello"), "Hallo");
  setCurrentLanguage("fr");
  EXPECT_EQ(localized("hello"), "Hello");
}

TEST_F(StringCatalog, AKeyWithBlanksAtItsEndsFindsTheTrimmedOne) {
  ASSERT_TRUE(readStringCatalog(documentOf("long key", "found", "gefunden")));
  for (const std::string_view key : {"  long key", "long key \t", "\nlong key\r\n", " long key"}) {
    EXPECT_EQ(localized(key), "found") << key;
  }
}

TEST_F(StringCatalog, RowsOfBlanksInsideAKeyCountAsOne) {
  ASSERT_TRUE(readStringCatalog(documentOf("long key", "found", "gefunden")));
  EXPECT_EQ(localized("long  key"), "found");
  EXPECT_EQ(localized("long     key"), "found");
  EXPECT_EQ(localized("long\tkey"), "long\tkey");
}

TEST_F(StringCatalog, EscapedLineEndsInAKeyAreRemoved) {
  ASSERT_TRUE(readStringCatalog(documentOf("long key", "found", "gefunden")));
  EXPECT_EQ(localized("long \\\nkey"), "found");
  EXPECT_EQ(localized("long\\\r\n key"), "found");
  EXPECT_EQ(localized("lo\\\rng \\\n  key\\\n"), "found");
  EXPECT_EQ(localized("long key\\"), "long key\\");
  EXPECT_EQ(localized("long\\nkey"), "long\\nkey");
}

TEST_F(StringCatalog, AMissingKeyKeepsItsOriginalSpacing) {
  ASSERT_TRUE(readStringCatalog(documentOf("hello", "Hello", "Hallo")));
  EXPECT_EQ(localized("  not   there \\\n"), "  not   there \\\n");
  EXPECT_EQ(localized(""), "");
  EXPECT_EQ(localized("   "), "   ");
  EXPECT_EQ(localized("caf\xC3\xA9  \xFF"), "caf\xC3\xA9  \xFF");
}

TEST_F(StringCatalog, AKeyBeyondAsciiIsFound) {
  ASSERT_TRUE(readStringCatalog(documentOf("dangerous_ops_as_…", "Dangerous", "Riskant")));
  EXPECT_EQ(localized("dangerous_ops_as_…"), "Dangerous");
  EXPECT_EQ(localized("\xC2\xA0 dangerous_ops_as_…\xE2\x80\xA8"), "Dangerous");
}

TEST_F(StringCatalog, AMissingTranslationFallsBackToEnglish) {
  ASSERT_TRUE(readStringCatalog(strings(entry("only_en", inLanguage("en", "English")))));
  setCurrentLanguage("de");
  EXPECT_EQ(localized("only_en"), "English");
}

TEST_F(StringCatalog, AKeyThatOnlyHasGermanShowsItselfInEnglish) {
  ASSERT_TRUE(readStringCatalog(strings(entry("only_de", inLanguage("de", "Deutsch")))));
  EXPECT_EQ(localized("only_de"), "only_de");
  setCurrentLanguage("de");
  EXPECT_EQ(localized("only_de"), "Deutsch");
}

TEST_F(StringCatalog, AnEmptyTextIsAText) {
  ASSERT_TRUE(readStringCatalog(documentOf("silent", "", "")));
  EXPECT_EQ(localized("silent"), "");
}

TEST_F(StringCatalog, TextsOfTheCatalogAreNotCopied) {
  ASSERT_TRUE(readStringCatalog(documentOf("hello", "Hello", "Hallo")));
  EXPECT_EQ(localized("hello").data(), localized(" hello ").data());
}

TEST_F(StringCatalog, AnEntryThatLacksALevelIsSkippedWithoutAMessage) {
  const std::string bodies[] = {
      "{}",
      R"({"localizations":{}})",
      R"({"localizations":{"en":{}}})",
      R"({"localizations":{"en":{"stringUnit":{}}}})",
      R"({"localizations":{"en":{"stringUnit":{"state":"new"}}}})",
  };
  for (const std::string& body : bodies) {
    ASSERT_TRUE(readStringCatalog(strings(entry("holey", body) + "," + entry("whole", inLanguage("en", "Whole")))));
    EXPECT_EQ(localized("holey"), "holey") << body;
    EXPECT_EQ(localized("whole"), "Whole") << body;
    EXPECT_EQ(catalogSize(), 1U) << body;
  }
}

TEST_F(StringCatalog, AnEntryWithAWrongTypeIsSkipped) {
  const std::string bodies[] = {
      "null",
      "7",
      R"("text")",
      "[]",
      R"({"localizations":[]})",
      R"({"localizations":"en"})",
      R"({"localizations":{"en":"text"}})",
      R"({"localizations":{"en":[{"stringUnit":{"value":"text"}}]}})",
      R"({"localizations":{"en":{"stringUnit":"text"}}})",
      R"({"localizations":{"en":{"stringUnit":{"value":7}}}})",
      R"({"localizations":{"en":{"stringUnit":{"value":null}}}})",
  };
  for (const std::string& body : bodies) {
    ASSERT_TRUE(readStringCatalog(strings(entry("wrong", body) + "," + entry("right", inLanguage("en", "Right")))));
    EXPECT_EQ(localized("wrong"), "wrong") << body;
    EXPECT_EQ(localized("right"), "Right") << body;
  }
}

TEST_F(StringCatalog, OneLanguageMayBeBrokenAndTheOtherWhole) {
  ASSERT_TRUE(readStringCatalog(
      R"({"strings":{"half":{"localizations":{"de":{"stringUnit":7},"en":{"stringUnit":{"value":"Half"}}}}}})"));
  setCurrentLanguage("de");
  EXPECT_EQ(localized("half"), "Half");
}

TEST_F(StringCatalog, OtherLanguagesAreSkipped) {
  ASSERT_TRUE(readStringCatalog(strings(entry("french", inLanguage("fr", "Bonjour")))));
  EXPECT_FALSE(catalogHasKey("french"));
  setCurrentLanguage("fr");
  EXPECT_EQ(localized("french"), "french");
}

TEST_F(StringCatalog, TheLastOfTwoEntriesWithOneKeyCounts) {
  ASSERT_TRUE(readStringCatalog(
      strings(entry("twice", inLanguage("en", "First")) + "," + entry("twice", inLanguage("en", "Second")))));
  EXPECT_EQ(localized("twice"), "Second");
  EXPECT_EQ(catalogSize(), 1U);
}

TEST_F(StringCatalog, EscapesInKeysAndTextsAreRead) {
  ASSERT_TRUE(readStringCatalog(strings(entry(R"(a\u0062c)", inLanguage("en", R"(line\nquote \" \uD83D\uDE4C)")))));
  EXPECT_EQ(localized("abc"), "line\nquote \" 🙌");
}

TEST_F(StringCatalog, ADocumentWithoutStringsIsEmptyAndNoError) {
  for (const std::string_view document : {"{}", R"({"strings":[]})", R"({"strings":null})", R"({"strings":{}})"}) {
    EXPECT_TRUE(readStringCatalog(document)) << document;
    EXPECT_EQ(catalogSize(), 0U);
  }
}

TEST_F(StringCatalog, WhatIsNoJsonObjectLeavesTheCatalogAsItWas) {
  ASSERT_TRUE(readStringCatalog(documentOf("hello", "Hello", "Hallo")));
  const std::string deep = std::string(100'000, '[') + std::string(100'000, ']');
  const std::string documents[] = {"",
                                   " ",
                                   "[]",
                                   "7",
                                   "nil",
                                   R"({"strings")",
                                   R"({"a":1,})",
                                   documentOf("hello", "Bye", "").substr(1),
                                   deep,
                                   "{} {}",
                                   std::string("{}\0{", 4)};
  for (const std::string& document : documents) {
    EXPECT_FALSE(readStringCatalog(document)) << document.substr(0, 40);
    EXPECT_EQ(localized("hello"), "Hello");
  }
}

TEST_F(StringCatalog, InvalidUtf8IsNoJson) {
  EXPECT_FALSE(readStringCatalog(strings(entry("bytes", inLanguage("en", "\xC3\x28")))));
  EXPECT_FALSE(readStringCatalog(strings(entry("surrogate", inLanguage("en", "\xED\xA0\x80")))));
}

TEST_F(StringCatalog, AHugeDocumentIsReadWhole) {
  std::string entries;
  const std::string filler(50'000, 'x');
  for (int number = 0; number < 1000; ++number) {
    entries += entry(fmt::format("key_{}", number), inLanguage("en", filler + std::to_string(number))) + ",";
  }
  ASSERT_TRUE(readStringCatalog(strings(entries + entry("last", inLanguage("en", "Last")))));
  EXPECT_EQ(catalogSize(), 1001U);
  EXPECT_EQ(localized("key_999"), filler + "999");
  EXPECT_EQ(localized("last"), "Last");
}

// --- loading ------------------------------------------------------------------------------------

class CatalogLoading : public StringCatalog {
 protected:
  CatalogLoading() : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder.makeFolder("elsewhere"));
  }
  ~CatalogLoading() override { std::filesystem::current_path(before_); }

  /// A catalog in a folder, whose one text tells the place.
  void putCatalog(const std::string& place) const {
    static_cast<void>(folder.write(place + "/Localizable.xcstrings", documentOf("place", place, place)));
  }

  TemporaryFolder folder;
  std::string executable = folder.at("a/b/c/bin/halyard");

 private:
  std::filesystem::path before_;
};

TEST_F(CatalogLoading, TheSearchGoesFromTheExecutableUpwardsToTheWorkingDirectory) {
  EXPECT_THAT(catalogSearchPaths("/one/two/three/four/halyard"),
              ElementsAre("/one/two/three/four/Localizable.xcstrings", "/one/two/Localizable.xcstrings",
                          "/one/Localizable.xcstrings", folder.at("elsewhere/Localizable.xcstrings")));
}

TEST_F(CatalogLoading, ARelativeExecutableIsTakenFromTheWorkingDirectory) {
  EXPECT_EQ(catalogSearchPaths("bin/halyard").front(), folder.at("elsewhere/bin/Localizable.xcstrings"));
  EXPECT_EQ(catalogSearchPaths("halyard").front(), folder.at("elsewhere/Localizable.xcstrings"));
  EXPECT_EQ(catalogSearchPaths("").size(), 4U);
}

TEST_F(CatalogLoading, TheFirstFileThatCanBeReadIsTaken) {
  for (const char* place : {"elsewhere", "a", "a/b", "a/b/c/bin"}) {
    unloadStringCatalog();
    putCatalog(place);
    loadStringCatalog("", executable);
    EXPECT_EQ(localized("place"), place);
  }
}

TEST_F(CatalogLoading, TheFolderJustAboveTheExecutablesIsNotSearched) {
  putCatalog("a/b/c");
  putCatalog("elsewhere");
  loadStringCatalog("", executable);
  EXPECT_EQ(localized("place"), "elsewhere");
}

TEST_F(CatalogLoading, AFolderOfThatNameIsPassedOver) {
  static_cast<void>(folder.makeFolder("a/b/c/bin/Localizable.xcstrings"));
  putCatalog("a");
  loadStringCatalog("", executable);
  EXPECT_EQ(localized("place"), "a");
}

TEST_F(CatalogLoading, TheEmbeddedCatalogGoesFirst) {
  putCatalog("a/b/c/bin");
  loadStringCatalog("eyJzdHJpbmdzIjp7fX0=", executable);
  EXPECT_EQ(localized("place"), "place");
}

TEST_F(CatalogLoading, AnEmbeddedCatalogThatDoesNotDecodeIsNone) {
  putCatalog("a");
  for (const std::string_view broken : {"eyJzdHJpbmdzIjp7fX0", "not base64!!", "eyJz=HJpbmdz"}) {
    unloadStringCatalog();
    loadStringCatalog(broken, executable);
    EXPECT_EQ(localized("place"), "a") << broken;
  }
}

TEST_F(CatalogLoading, ASecondLoadDoesNothing) {
  putCatalog("a");
  loadStringCatalog("", executable);
  putCatalog("a/b");
  loadStringCatalog("", executable);
  EXPECT_EQ(localized("place"), "a");
}

TEST_F(CatalogLoading, NoCatalogAnywhereEndsTheProgramWithTheSearchedPaths) {
  const ChildResult result = inChild([this] { loadStringCatalog("", executable); });
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output,
            fmt::format("\n\x1b[1;31m✗ ERROR: Localizable.xcstrings not found.\x1b[0m\n"
                        "  Searched paths:\n"
                        "    {}\n    {}\n    {}\n    {}\n"
                        "  Place Localizable.xcstrings next to the binary or in the working directory.\n\n",
                        folder.at("a/b/c/bin/Localizable.xcstrings"), folder.at("a/b/Localizable.xcstrings"),
                        folder.at("a/Localizable.xcstrings"), folder.at("elsewhere/Localizable.xcstrings")));
}

TEST_F(CatalogLoading, ASearchedPathCannotSteerTheTerminal) {
  const ChildResult result = inChild([this] { loadStringCatalog("", folder.at("\x1b[2J/halyard")); });
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output.find("\x1b[2J"), std::string::npos);
  EXPECT_THAT(result.output, HasSubstr("␛[2J"));
}

constexpr std::string_view notJson =
    "\n\x1b[1;31m✗ ERROR: Localizable.xcstrings is not valid JSON.\x1b[0m\n"
    "  Tip: Validate JSON with 'plutil -lint Localizable.xcstrings'.\n\n";

TEST_F(CatalogLoading, AFileThatIsNoJsonObjectEndsTheProgram) {
  for (const std::string_view content : {"", "{", "[]", "\"text\"", "\xFF\xFE{}"}) {
    static_cast<void>(folder.write("a/b/Localizable.xcstrings", content));
    putCatalog("a");
    const ChildResult result = inChild([this] { loadStringCatalog("", executable); });
    EXPECT_EQ(result.status, 1) << content;
    EXPECT_EQ(result.output, notJson) << content;
  }
}

TEST_F(CatalogLoading, AnEmbeddedCatalogThatIsNoJsonObjectEndsTheProgram) {
  putCatalog("a");
  const ChildResult result = inChild([this] { loadStringCatalog("W10=", executable); });
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, notJson);
}

TEST_F(CatalogLoading, ASoundCatalogPrintsNothing) {
  const ChildResult result = inChild([this] { loadStringCatalog(executable); });
  EXPECT_EQ(result.status, returned);
  EXPECT_EQ(result.output, "");
}

TEST_F(StringCatalog, TheProgramCarriesEachTextOfTheDocument) {
  std::ifstream file(HALYARD_SOURCE_DIR "/halyard/resources/Localizable.xcstrings", std::ios::binary);
  const nlohmann::json document = nlohmann::json::parse(file);
  loadStringCatalog("");
  EXPECT_EQ(catalogSize(), document["strings"].size());
  for (const char* language : {"en", "de"}) {
    setCurrentLanguage(language);
    for (const auto& [key, value] : document["strings"].items()) {
      EXPECT_EQ(localized(key), value["localizations"][language]["stringUnit"]["value"].get<std::string>());
    }
  }
}

// --- the language -------------------------------------------------------------------------------

TEST_F(StringCatalog, TheLanguageIsEnglishAtTheStart) { EXPECT_EQ(currentLanguage(), "en"); }

TEST_F(StringCatalog, TogglingTurnsEnglishIntoGermanAndAnythingElseIntoEnglish) {
  toggleLanguage();
  EXPECT_EQ(currentLanguage(), "de");
  toggleLanguage();
  EXPECT_EQ(currentLanguage(), "en");
  for (const char* language : {"fr", "", "EN", "de"}) {
    setCurrentLanguage(language);
    toggleLanguage();
    EXPECT_EQ(currentLanguage(), "en") << language;
  }
}

TEST_F(StringCatalog, TogglingSavesAfterTheChange) {
  static std::string saved;
  saved.clear();
  installPreferencesSaver([] { saved += std::string(currentLanguage()) + " "; });
  toggleLanguage();
  toggleLanguage();
  EXPECT_EQ(saved, "de en ");
}

TEST_F(StringCatalog, LanguagesBearTheirOwnNames) {
  EXPECT_EQ(languageName("de"), "Deutsch");
  EXPECT_EQ(languageName("en"), "English");
  EXPECT_EQ(languageName("pt-br"), "PT-BR");
  EXPECT_EQ(languageName("DE"), "DE");
  EXPECT_EQ(languageName(""), "");
}

}  // namespace
}  // namespace halyard
