#include "halyard/build/scheme_list.hpp"

#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "halyard/build/project_location.hpp"
#include "halyard/build/scheme_platforms.hpp"
#include "test_places.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using Names = std::vector<std::string>;

TEST(SchemeList, TheDocumentOfAWorkspaceOrAProjectHoldsThem) {
  EXPECT_EQ(readSchemeJson(R"json({"workspace": {"name": "W", "schemes": ["B", "A (x)"]}})json"),
            (Names{"B", "A (x)"}));
  EXPECT_EQ(readSchemeJson("note\n"
                           R"({"project": {"schemes": ["S", 3, ""], "targets": ["T"]}})"),
            Names{"S"});
  EXPECT_EQ(readSchemeJson(R"({"project": {"schemes": []}})"), Names{});
}

TEST(SchemeList, AnythingElseIsNoList) {
  for (const std::string_view text : {"", "{", "[]", "{}", R"({"workspace": {}})", R"({"project": {"schemes": 1}})",
                                      "\xff{\xff}", R"({"workspace": ["schemes"]})"}) {
    EXPECT_FALSE(readSchemeJson(text)) << text;
  }
}

TEST(SchemeList, ThePlainListEndsAtAnEmptyLine) {
  EXPECT_EQ(readSchemeText("Information about project \"P\":\n    Targets:\n        T\n\n    Schemes:\n        One\n"
                           "        Two words \r\n\n    Not this\n"),
            (Names{"One", "Two words"}));
  EXPECT_EQ(readSchemeText("nothing here"), Names{});
  EXPECT_EQ(readSchemeText("Schemes:"), Names{});
}

class Schemes : public testing::Test {
 protected:
  Schemes() {
    forgetCatalystAnswers();
    context.files.addFile("/p q/A.xcodeproj");
    setSelectedProjectFilePath("/p q/A.xcodeproj");
    detectProject();
  }
  ~Schemes() override { forgetCatalystAnswers(); }

  static std::string platformQuery(const std::string& scheme) {
    return "xcodebuild -project '/p q/A.xcodeproj' -scheme " + scheme +
           " -showBuildSettings -skipPackagePluginValidation 2>/dev/null | grep 'SUPPORTED_PLATFORMS' | head -1";
  }

  ContextReset context;
  CapturedOutput output;
};

TEST_F(Schemes, TheToolIsAskedForADocumentAndThenForThePlainList) {
  context.runner.expect("xcodebuild -project '/p q/A.xcodeproj' -list -json 2>/dev/null", "xcodebuild: error")
      .expect("xcodebuild -project '/p q/A.xcodeproj' -list 2>/dev/null", "    Schemes:\n        S");
  EXPECT_EQ(listSchemes(), Names{"S"});
}

TEST_F(Schemes, ASchemeFileIsLookedForBesideTheProject) {
  context.runner.expect("find '/p q' -path '*/xcschemes/It'\\''s \\*.xcscheme' 2>/dev/null | head -1", "/p q/x\n");
  EXPECT_EQ(schemeFilePath("It's *"), "/p q/x");
  EXPECT_EQ(schemeFilePath(""), "");
}

TEST_F(Schemes, WithoutASchemeTheAnswerIsIOSAndNothingIsAsked) {
  EXPECT_EQ(schemePlatforms(), (SchemePlatforms{true, false}));
  EXPECT_EQ(testSchemePlatforms(), (SchemePlatforms{true, false}));
  EXPECT_EQ(knownSchemePlatforms(), (SchemePlatforms{true, false}));
  EXPECT_TRUE(context.runner.commands().empty());
}

TEST_F(Schemes, PlatformsAreAskedOncePerScheme) {
  setSelectedScheme("S");
  context.runner.expect(platformQuery("'S'"), "    SUPPORTED_PLATFORMS = macosx\n");
  EXPECT_EQ(schemePlatforms(), (SchemePlatforms{false, true}));
  EXPECT_EQ(schemePlatforms(), (SchemePlatforms{false, true}));
  EXPECT_EQ(knownSchemePlatforms(), (SchemePlatforms{false, true}));
  setSelectedScheme("It's");
  EXPECT_EQ(knownSchemePlatforms(), (SchemePlatforms{true, false}));
  context.runner.expect(platformQuery("'It'\\''s'"), "");
  EXPECT_EQ(schemePlatforms(), (SchemePlatforms{true, false}));
  EXPECT_EQ(cachedPlatformsScheme(), "It's");
}

TEST_F(Schemes, TheTestSchemeHasItsOwnAnswerOrTheSchemeStandsIn) {
  setSelectedScheme("S");
  context.runner.expect(platformQuery("'S'"), "SUPPORTED_PLATFORMS = iphoneos macosx");
  EXPECT_EQ(testSchemePlatforms(), (SchemePlatforms{true, true}));
  EXPECT_FALSE(cachedPlatforms());
  setSelectedTestScheme("T");
  context.runner.expect(platformQuery("'T'"), "SUPPORTED_PLATFORMS = macosx");
  EXPECT_EQ(testSchemePlatforms(), (SchemePlatforms{false, true}));
  EXPECT_EQ(testSchemePlatforms(), (SchemePlatforms{false, true}));
}

TEST_F(Schemes, CatalystIsAskedOncePerSchemeAndRun) {
  setSelectedScheme("S");
  context.runner.expect(
      "xcodebuild -project '/p q/A.xcodeproj' -scheme 'S' -showBuildSettings 2>/dev/null | grep -E "
      "'SUPPORTS_MACCATALYST|SUPPORTED_PLATFORMS' | head -10",
      "    SUPPORTS_MACCATALYST = YES");
  EXPECT_TRUE(supportsCatalyst());
  EXPECT_TRUE(supportsCatalyst());
}

TEST(SchemePlatformsReading, GoesByTheFamiliesThatTheValueNames) {
  EXPECT_EQ(readSupportedPlatforms("SUPPORTED_PLATFORMS = iphoneos iphonesimulator"), (SchemePlatforms{true, false}));
  EXPECT_EQ(readSupportedPlatforms("SUPPORTED_PLATFORMS = IPHONEOS MacOSX"), (SchemePlatforms{true, true}));
  EXPECT_EQ(readSupportedPlatforms("macosx"), (SchemePlatforms{false, true}));
  EXPECT_EQ(readSupportedPlatforms("SUPPORTED_PLATFORMS = appletvos appletvsimulator"), (SchemePlatforms{true, false}));
  EXPECT_EQ(readSupportedPlatforms(""), (SchemePlatforms{true, false}));
}

TEST(SchemePlatformsReading, CatalystIsASettingOfItsOwnOrBothFamilies) {
  EXPECT_TRUE(readsAsCatalyst("SUPPORTS_MACCATALYST = YES"));
  EXPECT_TRUE(readsAsCatalyst("SUPPORTS_MACCATALYST = NO\nSUPPORTED_PLATFORMS=iphoneos macosx"));
  EXPECT_TRUE(readsAsCatalyst("    SUPPORTED_PLATFORMS  =  macosx iphoneos iphonesimulator"));
  EXPECT_FALSE(readsAsCatalyst("SUPPORTED_PLATFORMS = iphoneos\nSUPPORTED_PLATFORMS = macosx"));
  EXPECT_FALSE(readsAsCatalyst("SUPPORTED_PLATFORMS = iphoneos = macosx"));
  EXPECT_FALSE(readsAsCatalyst("SUPPORTS_MACCATALYST = NO"));
  EXPECT_FALSE(readsAsCatalyst(""));
}

TEST(SchemeList, RecordedAnswersAreRead) {
  const std::filesystem::path recordings = std::filesystem::path(HALYARD_SOURCE_DIR) / "../shared/recordings";
  for (const char* folder : {"xcodebuild-info", "project"}) {
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(recordings / folder, missing)) {
      const std::string name = entry.path().filename().string();
      std::ifstream file(entry.path());
      const std::string text{std::istreambuf_iterator<char>(file), {}};
      const Names schemes = readSchemeJson(text).value_or(readSchemeText(text));
      const bool isList = name.starts_with("list-") || name.find("-list-") != std::string::npos;
      const bool isListing =
          isList && name.find("sdk") == std::string::npos && name.find("templates") == std::string::npos;
      EXPECT_FALSE(isListing && schemes.empty()) << name;
    }
  }
  EXPECT_EQ(readSchemeText("Schemes:\n    A"), Names{"A"});
}

}  // namespace
}  // namespace halyard
