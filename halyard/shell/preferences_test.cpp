#include "halyard/shell/preferences.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

namespace fs = std::filesystem;

/// The file's place is settled by the first call in the process: here, with the tests' own home folder.
class PreferencesPlace : public testing::Environment {
 public:
  void SetUp() override {
    DefaultFileSystemClient files;
    const DependenciesGuard guard({nullptr, &files, &AppContext::shared()});
    ASSERT_EQ(preferencesPath(), std::string(std::getenv("HOME")) + "/.capstanlight_prefs.json");
  }
};

[[maybe_unused]] const auto* const place = testing::AddGlobalTestEnvironment(new PreferencesPlace);

class Preferences : public testing::Test {
 protected:
  Preferences() : before_(fs::current_path()) { startAfresh(); }
  ~Preferences() override {
    startAfresh();
    fs::current_path(before_);
    fs::remove_all(preferencesPath());
  }

  static void startAfresh() {
    AppContext::shared().reset();
    setCurrentLanguage("en");
  }

  static void writeFile(std::string_view content) {
    std::ofstream(preferencesPath(), std::ios::binary | std::ios::trunc) << content;
  }

  static std::string fileContent() {
    std::ifstream file(preferencesPath(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  /// What the context holds, as text: to see whether anything changed.
  static std::string state() { return nlohmann::json(collectPreferences()).dump(); }

 private:
  fs::path before_;
};

// --- the document -------------------------------------------------------------------------------

TEST_F(Preferences, ADocumentIsAnObjectOfTexts) {
  EXPECT_THAT(readPreferences(R"({"scheme":"Demo","config":""})").value(),
              ElementsAre(Pair("config", ""), Pair("scheme", "Demo")));
  EXPECT_THAT(readPreferences("{}").value(), IsEmpty());
  EXPECT_EQ(readPreferences(R"({"a":"\u00e4\n\ud83d\ude4c"})")->at("a"), "ä\n🙌");
}

TEST_F(Preferences, AnythingElseIsNoDocument) {
  const std::string_view documents[] = {"",
                                        " ",
                                        "[]",
                                        "7",
                                        "null",
                                        R"("text")",
                                        "{",
                                        R"({"a":"b")",
                                        R"({"a":"b",})",
                                        R"({"a":1})",
                                        R"({"a":null})",
                                        R"({"a":true})",
                                        R"({"a":["b"]})",
                                        R"({"a":{"b":"c"}})",
                                        R"({"scheme":"Demo","a":1})",
                                        "{\"a\":\"\xFF\"}",
                                        R"({"a":"b"} x)",
                                        "\x7F"
                                        "ELF\x02\x01\x01"};
  for (const std::string_view document : documents) {
    EXPECT_EQ(readPreferences(document), std::nullopt) << document;
  }
}

TEST_F(Preferences, TheLastOfTwoValuesWithOneKeyCounts) {
  EXPECT_EQ(readPreferences(R"({"a":"1","a":"2"})")->at("a"), "2");
}

// --- taking values over -------------------------------------------------------------------------

TEST_F(Preferences, EmptyTextsLeaveWhatMustNotBeEmpty) {
  setSelectedScheme("Demo");
  setSelectedBundleID("com.example.demo");
  setSelectedWorkingDirectory("/somewhere");
  applyPreferences({{"scheme", ""}, {"config", ""}, {"bundleID", ""}, {"workingDirectory", ""}});
  EXPECT_EQ(selectedScheme(), "Demo");
  EXPECT_EQ(selectedConfig(), "Debug");
  EXPECT_EQ(selectedBundleID(), "com.example.demo");
  EXPECT_EQ(selectedWorkingDirectory(), "/somewhere");
}

TEST_F(Preferences, EmptyTextsClearTheOthers) {
  setSelectedTestScheme("Tests");
  setSelectedTestPlan("Plan");
  setSelectedFileBrowserPath("/a");
  setSelectedProjectFilePath("/b");
  setSelectedProjectJsonPath("/c");
  applyPreferences({{"testScheme", ""},
                    {"testPlan", ""},
                    {"fileBrowserPath", ""},
                    {"selectedProjectFile", ""},
                    {"projectJsonConfig", ""},
                    {"simSort", ""}});
  EXPECT_EQ(selectedTestScheme(), "");
  EXPECT_EQ(selectedTestPlan(), "");
  EXPECT_EQ(selectedFileBrowserPath(), "");
  EXPECT_EQ(selectedProjectFilePath(), "");
  EXPECT_EQ(selectedProjectJsonPath(), "");
  EXPECT_EQ(selectedSimSort(), "");
}

TEST_F(Preferences, ATestPlanLosesItsContainerAndItsEnding) {
  const std::pair<const char*, const char*> rows[] = {{"container:Foo.xctestplan", "Foo"},
                                                      {"Foo.xctestplan", "Foo"},
                                                      {"container:Foo", "Foo"},
                                                      {"Foo", "Foo"},
                                                      {"container:.xctestplan", ""},
                                                      {"my container:Foo", "my container:Foo"},
                                                      {"container:a/b.xctestplan", "a/b"}};
  for (const auto& [saved, loaded] : rows) {
    applyPreferences({{"testPlan", saved}});
    EXPECT_EQ(selectedTestPlan(), loaded);
  }
}

TEST_F(Preferences, OnlyTheTwoLanguagesAreTaken) {
  applyPreferences({{"language", "de"}});
  EXPECT_EQ(currentLanguage(), "de");
  for (const char* other : {"fr", "", "DE", "en "}) {
    applyPreferences({{"language", other}});
    EXPECT_EQ(currentLanguage(), "de") << other;
  }
  applyPreferences({{"language", "en"}});
  EXPECT_EQ(currentLanguage(), "en");
}

TEST_F(Preferences, OnlyAOneIsTrue) {
  for (const char* text : {"true", "yes", "", "0", " 1", "11"}) {
    setParallelTestingEnabled(true);
    setSelectedTestPlanIsFromScheme(true);
    setAutoBuildRunXcodebuildClean(true);
    setAutoBuildSyncPackageManagers(true);
    applyPreferences({{"parallelTesting", text},
                      {"testPlanFromScheme", text},
                      {"autoBuildXcodebuildClean", text},
                      {"autoBuildSyncPackageManagers", text}});
    EXPECT_FALSE(parallelTestingEnabled()) << text;
    EXPECT_FALSE(selectedTestPlanIsFromScheme()) << text;
    EXPECT_FALSE(autoBuildRunXcodebuildClean()) << text;
    EXPECT_FALSE(autoBuildSyncPackageManagers()) << text;
  }
  applyPreferences({{"parallelTesting", "1"}});
  EXPECT_TRUE(parallelTestingEnabled());
}

TEST_F(Preferences, OnlyTheTwoKindsOfDeviceAreTaken) {
  applyPreferences({{"lastDeviceKind", "physical"}});
  EXPECT_EQ(lastSelectedDeviceKind(), "physical");
  applyPreferences({{"lastDeviceKind", "mac"}});
  EXPECT_EQ(lastSelectedDeviceKind(), "physical");
  applyPreferences({{"lastDeviceKind", "simulator"}});
  EXPECT_EQ(lastSelectedDeviceKind(), "simulator");
}

TEST_F(Preferences, AnIntervalThatIsNotPositiveBecomesAnHour) {
  for (const char* text : {"0", "0.0", "-2", "-0.5", "0e0"}) {
    setAutoBuildIntervalHours(4);
    applyPreferences({{"autoBuildInterval", text}});
    EXPECT_EQ(autoBuildIntervalHours(), 1.0) << text;
  }
}

TEST_F(Preferences, AnIntervalThatIsNoNumberLeavesTheOldOne) {
  for (const char* text : {"abc", "", "1h", "1,5", "nan", "inf", "1e999", "-", ".", " 2", "2 ", "--2"}) {
    setAutoBuildIntervalHours(4);
    applyPreferences({{"autoBuildInterval", text}});
    EXPECT_EQ(autoBuildIntervalHours(), 4.0) << text;
  }
  applyPreferences({{"autoBuildInterval", "0.016666666666666666"}});
  EXPECT_EQ(autoBuildIntervalHours(), 1.0 / 60);
}

TEST_F(Preferences, ACleanLevelThatIsNoWholeNumberLeavesTheOldOne) {
  for (const char* text : {"abc", "", "2.5", "99999999999", " 3", "3 ", "+-3", "++3", "+"}) {
    setAutoBuildCleanLevel(2);
    applyPreferences({{"autoBuildCleanLevel", text}});
    EXPECT_EQ(autoBuildCleanLevel(), 2) << text;
  }
  applyPreferences({{"autoBuildCleanLevel", "+4"}});
  EXPECT_EQ(autoBuildCleanLevel(), 4);
}

TEST_F(Preferences, ASimulatorNeedsItsNameAndItsIdentifier) {
  applyPreferences({{"simName", "iPhone 16"}, {"simOSLabel", "iOS 18.2"}});
  EXPECT_EQ(selectedDevice(), std::nullopt);
  applyPreferences({{"simName", ""}, {"simUDID", "1"}});
  EXPECT_EQ(selectedDevice(), std::nullopt);
  applyPreferences({{"simName", "iPhone 16"}, {"simUDID", ""}});
  EXPECT_EQ(selectedDevice(), std::nullopt);
  applyPreferences({{"simName", "iPhone 16"}, {"simUDID", "1"}});
  EXPECT_EQ(selectedDevice(), (SelectedDevice{"iPhone 16", "1", ""}));
}

TEST_F(Preferences, APhysicalDeviceNeedsItsNameAndItsIdentifier) {
  applyPreferences({{"phyName", "Ada's iPhone"}, {"phyOSName", "iOS"}});
  EXPECT_EQ(selectedPhysicalDevice(), std::nullopt);
  applyPreferences({{"phyName", "Ada's iPhone"}, {"phyUDID", "2"}});
  ASSERT_TRUE(selectedPhysicalDevice().has_value());
  EXPECT_EQ(selectedPhysicalDevice()->udid, "2");
  EXPECT_EQ(selectedPhysicalDevice()->productType, "");
  EXPECT_EQ(selectedPhysicalDevice()->osVersion, "");
}

TEST_F(Preferences, FurtherDevicesWithoutNameOrIdentifierAreSkipped) {
  applyPreferences({{"autoBuildExtraDevices",
                     R"([{"name":"A","udid":"1","osLabel":"iOS 18"},{"name":"B"},{"udid":"3"},{"name":"","udid":"4"},7,
                         null,[],{"name":5,"udid":"6"},{"name":"C","udid":"7"},{"name":"D","udid":"8","osLabel":9}])"}});
  EXPECT_EQ(autoBuildExtraDevices(),
            (std::vector<SelectedDevice>{{"A", "1", "iOS 18"}, {"C", "7", ""}, {"D", "8", ""}}));
}

TEST_F(Preferences, AListThatDoesNotParseLeavesTheOldOne) {
  const std::vector<SelectedDevice> devices{{"A", "1", ""}};
  for (const char* text : {"", "{}", "[", "Debug", R"(["a",])", "null"}) {
    setAutoBuildExtraDevices(devices);
    setAutoBuildExtraConfigs({"Debug"});
    setAutoBuildExtraSchemes({"Demo"});
    applyPreferences(
        {{"autoBuildExtraDevices", text}, {"autoBuildExtraConfigs", text}, {"autoBuildExtraSchemes", text}});
    EXPECT_EQ(autoBuildExtraDevices(), devices) << text;
    EXPECT_THAT(autoBuildExtraConfigs(), ElementsAre("Debug")) << text;
    EXPECT_THAT(autoBuildExtraSchemes(), ElementsAre("Demo")) << text;
  }
}

TEST_F(Preferences, AListOfAnythingButTextsDoesNotCount) {
  setAutoBuildExtraConfigs({"Debug"});
  applyPreferences({{"autoBuildExtraConfigs", R"(["Release",7])"}});
  EXPECT_THAT(autoBuildExtraConfigs(), ElementsAre("Debug"));
  applyPreferences({{"autoBuildExtraConfigs", "[]"}});
  EXPECT_THAT(autoBuildExtraConfigs(), IsEmpty());
}

TEST_F(Preferences, UnknownKeysAreIgnored) {
  const std::string before = state();
  applyPreferences({{"", "x"}, {"schemes", "x"}, {"Scheme", "x"}, {"cachedPlatforms", "x"}});
  EXPECT_EQ(state(), before);
}

// --- what is saved ------------------------------------------------------------------------------

TEST_F(Preferences, AFreshContextSavesTheSameKeysEachTime) {
  EXPECT_THAT(
      collectPreferences(),
      ElementsAre(Pair("autoBuildCleanLevel", "0"), Pair("autoBuildInterval", "1.0"),
                  Pair("autoBuildSyncPackageManagers", "0"), Pair("autoBuildXcodebuildClean", "0"),
                  Pair("bundleID", ""), Pair("config", "Debug"), Pair("fileBrowserPath", ""), Pair("language", "en"),
                  Pair("lastDeviceKind", "simulator"), Pair("parallelTesting", "0"), Pair("projectJsonConfig", ""),
                  Pair("scheme", ""), Pair("selectedProjectFile", ""), Pair("simSort", "name"), Pair("testPlan", ""),
                  Pair("testPlanFromScheme", "0"), Pair("testScheme", ""), Pair("workingDirectory", "")));
}

TEST_F(Preferences, ListsAreSavedAsCompactJson) {
  setAutoBuildExtraDevices({{"iPhone \"16\"", "1", "iOS 18"}});
  setAutoBuildExtraConfigs({"Debug", "Release"});
  setAutoBuildExtraSchemes({"Ä"});
  const PreferenceValues values = collectPreferences();
  EXPECT_EQ(values.at("autoBuildExtraDevices"), R"([{"name":"iPhone \"16\"","osLabel":"iOS 18","udid":"1"}])");
  EXPECT_EQ(values.at("autoBuildExtraConfigs"), R"(["Debug","Release"])");
  EXPECT_EQ(values.at("autoBuildExtraSchemes"), R"(["Ä"])");
}

TEST_F(Preferences, TheRunningStateIsNotSaved) {
  setAutoBuildActive(true);
  setAutoBuildLastLogPath("/log");
  setCachedPlatformsScheme("Demo");
  EXPECT_EQ(collectPreferences().size(), 18U);
}

void fillContext() {
  setSelectedScheme("Demo ä \"x\"");
  setSelectedTestScheme("DemoTests");
  setSelectedTestPlan("Plan");
  setSelectedTestPlanIsFromScheme(true);
  setSelectedConfig("Release");
  setSelectedBundleID("com.example.demo");
  setCurrentLanguage("de");
  setSelectedWorkingDirectory("/nowhere/at/all");
  setSelectedFileBrowserPath("/tmp\n\t\\");
  setSelectedProjectFilePath("/p/Demo.xcworkspace");
  setSelectedSimSort("os");
  setParallelTestingEnabled(true);
  setSelectedProjectJsonPath("/p/repository-demo.json");
  setLastSelectedDeviceKind("physical");
  setAutoBuildIntervalHours(1.0 / 3);
  setAutoBuildCleanLevel(-4);
  setAutoBuildRunXcodebuildClean(true);
  setAutoBuildSyncPackageManagers(true);
  setSelectedDevice(SelectedDevice{"iPhone 16", "1", "iOS 18.2"});
  PhysicalDeviceInfo phone;
  phone.name = "Ada's iPhone";
  phone.udid = "2";
  phone.productType = "iPhone17,1";
  phone.osVersion = "18.1";
  phone.osName = "iOS";
  setSelectedPhysicalDevice(phone);
  setAutoBuildExtraDevices({{"iPad", "3", ""}, {"My Mac", "local", "macOS 15"}});
  setAutoBuildExtraConfigs({"Debug", ""});
  setAutoBuildExtraSchemes({"A", "B"});
}

TEST_F(Preferences, EachFieldComesBackAsItWasSaved) {
  fillContext();
  const PreferenceValues saved = collectPreferences();
  EXPECT_EQ(saved.size(), 29U);
  const std::optional<PhysicalDeviceInfo> phone = selectedPhysicalDevice();
  savePreferences();
  startAfresh();
  loadPreferences();
  EXPECT_EQ(collectPreferences(), saved);
  EXPECT_EQ(autoBuildIntervalHours(), 1.0 / 3);
  EXPECT_EQ(selectedPhysicalDevice(), phone);
  EXPECT_EQ(currentLanguage(), "de");
}

TEST_F(Preferences, AClearedSelectionIsStoredByLeavingItsKeysOut) {
  fillContext();
  savePreferences();
  setSelectedDevice(std::nullopt);
  setSelectedPhysicalDevice(std::nullopt);
  setAutoBuildExtraConfigs({});
  savePreferences();
  EXPECT_EQ(fileContent().find("simName"), std::string::npos);
  EXPECT_EQ(fileContent().find("phyUDID"), std::string::npos);
  startAfresh();
  loadPreferences();
  EXPECT_EQ(selectedDevice(), std::nullopt);
  EXPECT_EQ(selectedPhysicalDevice(), std::nullopt);
  EXPECT_THAT(autoBuildExtraConfigs(), IsEmpty());
}

TEST_F(Preferences, TheFileIsReadableJsonOfTextsOnly) {
  fillContext();
  savePreferences();
  const nlohmann::json document = nlohmann::json::parse(fileContent());
  for (const auto& [key, value] : document.items()) EXPECT_TRUE(value.is_string()) << key;
  EXPECT_THAT(fileContent(), HasSubstr("\n  \"scheme\": \"Demo ä \\\"x\\\"\""));
}

// --- files --------------------------------------------------------------------------------------

TEST_F(Preferences, AMissingFileIsTheNormalFirstRun) {
  const std::string before = state();
  const CapturedOutput output;
  loadPreferences();
  EXPECT_EQ(state(), before);
  EXPECT_EQ(output.text(), "");
}

TEST_F(Preferences, ADamagedFileChangesNothingAndSaysNothing) {
  fillContext();
  savePreferences();
  const std::string whole = fileContent();
  startAfresh();
  const std::string before = state();
  const CapturedOutput output;
  const std::string contents[] = {"",
                                  whole.substr(0, whole.size() / 2),
                                  whole.substr(1),
                                  "\xFF\xFE" + whole,
                                  std::string(4096, '\0'),
                                  R"({"scheme":"Demo","parallelTesting":true})",
                                  std::string(100'000, '[')};
  for (const std::string& content : contents) {
    writeFile(content);
    loadPreferences();
    EXPECT_EQ(state(), before) << content.substr(0, 60);
  }
  EXPECT_EQ(output.text(), "");
}

TEST_F(Preferences, AHugeFileIsNotOurs) {
  writeFile(R"({"scheme":"Demo"})");
  fs::resize_file(preferencesPath(), std::uintmax_t{1} << 36U);
  loadPreferences();
  EXPECT_EQ(selectedScheme(), "");
}

TEST_F(Preferences, ALongValueIsTaken) {
  const std::string scheme(5'000'000, 'x');
  writeFile(fmt::format(R"({{"scheme":"{}"}})", scheme));
  loadPreferences();
  EXPECT_EQ(selectedScheme(), scheme);
}

TEST_F(Preferences, AFolderOrAPipeInItsPlaceIsLeftAlone) {
  const std::string before = state();
  fs::create_directory(preferencesPath());
  loadPreferences();
  savePreferences();
  EXPECT_TRUE(fs::is_directory(preferencesPath()));
  fs::remove(preferencesPath());
  ASSERT_EQ(mkfifo(preferencesPath().c_str(), 0600), 0);
  loadPreferences();
  EXPECT_EQ(state(), before);
}

TEST_F(Preferences, AFailedWriteIsSilent) {
  fs::create_directory(preferencesPath());
  const CapturedOutput output;
  savePreferences();
  EXPECT_EQ(output.text(), "");
}

TEST_F(Preferences, AWriteProtectedFileKeepsItsContent) {
  if (geteuid() == 0) {
    // Nothing is protected from this user; a full device fails in the same silent way.
    fs::create_symlink("/dev/full", preferencesPath());
  } else {
    writeFile("{}");
    fs::permissions(preferencesPath(), fs::perms::owner_read);
  }
  setSelectedScheme("Demo");
  const CapturedOutput output;
  savePreferences();
  EXPECT_EQ(output.text(), "");
  startAfresh();
  loadPreferences();
  EXPECT_EQ(selectedScheme(), "");
}

TEST_F(Preferences, AShorterDocumentLeavesNothingOfTheLongerOne) {
  setSelectedScheme(std::string(10'000, 'x'));
  savePreferences();
  setSelectedScheme("Demo");
  savePreferences();
  EXPECT_TRUE(nlohmann::json::accept(fileContent()));
}

TEST_F(Preferences, AValueThatCannotBeWrittenWarnsAndKeepsTheFile) {
  savePreferences();
  const std::string before = fileContent();
  setSelectedScheme("\xFF\xFE");
  const CapturedOutput output;
  savePreferences();
  EXPECT_EQ(fileContent(), before);
  EXPECT_NE(output.text(), "");
}

TEST_F(Preferences, ListsWithBytesBeyondUtf8AreSavedReadably) {
  setAutoBuildExtraSchemes({"gr\xFC\xDF"});
  setAutoBuildExtraDevices({{"\xE4", "1", "\xFF"}});
  savePreferences();
  startAfresh();
  loadPreferences();
  EXPECT_THAT(autoBuildExtraSchemes(), ElementsAre("grüß"));
  EXPECT_EQ(autoBuildExtraDevices(), (std::vector<SelectedDevice>{{"ä", "1", "ÿ"}}));
}

// --- the working directory ----------------------------------------------------------------------

TEST_F(Preferences, ASavedWorkingDirectoryIsEntered) {
  const TemporaryFolder folder;
  writeFile(nlohmann::json{{"workingDirectory", folder.at()}}.dump());
  loadPreferences();
  EXPECT_EQ(selectedWorkingDirectory(), folder.at());
  EXPECT_EQ(fs::current_path(), folder.path());
}

TEST_F(Preferences, AWorkingDirectoryThatIsAFileOrGoneIsStoredButNotEntered) {
  const TemporaryFolder folder;
  const fs::path before = fs::current_path();
  for (const std::string& path : {folder.write("file", "x"), folder.at("gone"), std::string("a\0b", 3)}) {
    writeFile(nlohmann::json{{"workingDirectory", path}}.dump());
    loadPreferences();
    EXPECT_EQ(selectedWorkingDirectory(), path);
    EXPECT_EQ(fs::current_path(), before);
  }
}

}  // namespace
}  // namespace halyard
