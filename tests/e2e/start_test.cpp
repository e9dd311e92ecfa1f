// The start: tools missing, saved selections, damaged files, odd folders.
#include <csignal>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "test_places.hpp"
#include "tests/support/terminal_session.hpp"

namespace halyard {
namespace {

bool atMenu(TerminalSession& session) { return session.waitFor("9:Update") && session.waitUntilIdle(); }

TEST(Preflight, MockModeShowsBothToolsAsMissingAndEndsAtEnter) {
  SessionOptions options;
  options.arguments = {"--mock-preflight"};
  options.preferences["language"] = "de";
  TerminalSession session(options);
  ASSERT_TRUE(session.waitFor("Press Enter to quit …") && session.waitUntilIdle());
  session.expectShows("[MOCK] Test mode — tools are simulated as missing");
  session.expectGoldenScreen("preflight_mock");
  EXPECT_TRUE(session.callsOf("which").empty());
  session.send({"Q", Key::escape});
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("System Requirements");
  session.send(Key::enter);
  session.expectCleanEnd(ProgramEnd::exited(1));
}

TEST(Preflight, AMissingToolIsNamed) {
  SessionOptions options;
  options.missingTools = {"xcodebuild"};
  TerminalSession session(options);
  ASSERT_TRUE(session.waitFor("Press Enter to quit …") && session.waitUntilIdle());
  session.expectShows("Not found");
  session.expectShowsNot("[MOCK]");
  session.expectShows("xcode-select --install");
  session.send(Key::enter);
  session.expectCleanEnd(ProgramEnd::exited(1));
}

TEST(Preferences, SurviveAStartAndASave) {
  SessionOptions options;
  options.preferences = {{"scheme", "Harbor"},
                         {"testScheme", "HarborTests"},
                         {"testPlan", "container:Smoke.xctestplan"},
                         {"testPlanFromScheme", "1"},
                         {"config", "Release"},
                         {"bundleID", "dev.example.harbor"},
                         {"language", "en"},
                         {"simSort", "os"},
                         {"simName", "iPhone 16"},
                         {"simUDID", "UDID-1"},
                         {"simOSLabel", "iOS 18.2"},
                         {"parallelTesting", "1"},
                         {"autoBuildInterval", "2.5"},
                         {"autoBuildExtraConfigs", "[\"Debug\",\"Beta\"]"}};
  TerminalSession session(options);
  ASSERT_TRUE(atMenu(session));
  session.expectShows("Harbor");
  session.expectShows("HarborTests");
  session.expectShows("Smoke");
  session.expectShows("dev.example.harbor");
  session.expectShows("iPhone 16 (iOS 18.2)");
  session.expectShows("Release");
  session.send("l");
  ASSERT_TRUE(session.waitFor("Löschen") && session.waitUntilIdle());
  auto expected = options.preferences;
  expected["testPlan"] = "Smoke";
  expected["language"] = "de";
  const auto saved = session.preferences();
  for (const auto& [key, value] : expected) EXPECT_EQ(saved.at(key), value) << key;
  EXPECT_EQ(saved.count("phyName"), 0U);
}

TEST(Preferences, ASavedFolderThatIsGoneClearsTheSelectionSilently) {
  SessionOptions options;
  options.preferences = {{"scheme", "Harbor"},
                         {"config", "Release"},
                         {"workingDirectory", "/nowhere/at/all"},
                         {"bundleID", "dev.example.harbor"},
                         {"simName", "iPhone 16"},
                         {"simUDID", "UDID-1"}};
  TerminalSession session(options);
  ASSERT_TRUE(atMenu(session));
  session.expectShows("← please select!");
  session.expectShows("~/Harbor");
  const auto saved = session.preferences();
  EXPECT_EQ(saved.at("scheme"), "");
  EXPECT_EQ(saved.at("workingDirectory"), "");
  EXPECT_EQ(saved.at("config"), "Release") << "the configuration isn't part of it";
  EXPECT_EQ(saved.count("simName"), 0U);
}

TEST(Preferences, AWorkingDirectoryThatIsAFileStaysButIsNotEntered) {
  SessionOptions options;
  options.preferences["workingDirectory"] = "/etc/hostname";
  TerminalSession session(options);
  ASSERT_TRUE(atMenu(session));
  session.expectShows("/etc/hostname");
  session.expectShows("Projekt: Harbor");
}

class DamagedPreferences : public testing::TestWithParam<std::pair<const char*, std::string>> {};

TEST_P(DamagedPreferences, LeaveTheDefaultsAndTheFile) {
  SessionOptions options;
  options.homeFiles[".capstanlight_prefs.json"] = GetParam().second;
  TerminalSession session(options);
  ASSERT_TRUE(atMenu(session));
  session.expectShows("← please select!");
  EXPECT_EQ(session.readHomeFile(".capstanlight_prefs.json"), GetParam().second);
  session.send("Q");
  session.expectCleanEnd();
}

INSTANTIATE_TEST_SUITE_P(
    Files, DamagedPreferences,
    testing::Values(std::pair<const char*, std::string>{"Empty", ""},
                    std::pair<const char*, std::string>{"CutInHalf", R"({"scheme": "Harb)"},
                    std::pair<const char*, std::string>{"NotAnObject", R"(["scheme"])"},
                    std::pair<const char*, std::string>{"NumbersInside", R"({"scheme": "Harbor", "config": 3})"},
                    std::pair<const char*, std::string>{"Binary", std::string("\x00\xff\xfe{\x01", 5)},
                    std::pair<const char*, std::string>{"Huge", "{\"scheme\": \"" + std::string(2000000, 'x')}),
    [](const auto& each) { return std::string(each.param.first); });

TEST(Preferences, AFileThatCannotBeWrittenChangesNothing) {
  SessionOptions options;
  options.homeFiles[".capstanlight_prefs.json/inside"] = "a folder in the file's place";
  TerminalSession session(options);
  ASSERT_TRUE(atMenu(session));
  session.send("l");
  ASSERT_TRUE(session.waitFor("Löschen") && session.waitUntilIdle());
  session.send("Q");
  session.expectCleanEnd();
}

class OddFolder : public testing::TestWithParam<std::pair<const char*, std::string>> {};

TEST_P(OddFolder, IsWorkedInAndShownSafely) {
  SessionOptions options;
  options.sampleProject = false;
  options.homeFiles[GetParam().second + "/App.xcodeproj/project.pbxproj"] = "// !$*UTF8*$!\n{}\n";
  options.workingDirectory = GetParam().second;
  TerminalSession session(options);
  ASSERT_TRUE(atMenu(session));
  session.expectShows("Projekt: App.xcodeproj");
  session.expectShows("Configuration        Debug");
  EXPECT_EQ(session.title(), "") << "no sequence of the name reached the terminal";
  session.send("Q");
  session.expectCleanEnd();
}

INSTANTIATE_TEST_SUITE_P(Names, OddFolder,
                         testing::Values(std::pair<const char*, std::string>{"Blanks", "two  blanks here "},
                                         std::pair<const char*, std::string>{"Quotes", "it's \"quoted\" `and` $(this)"},
                                         std::pair<const char*, std::string>{"LineFeed", "line\nfeed"},
                                         std::pair<const char*, std::string>{"Umlauts", "Übergröße é"},
                                         std::pair<const char*, std::string>{"Control", "a\x1b]0;owned\x07\x1b[2Jb\r"}),
                         [](const auto& each) { return std::string(each.param.first); });

TEST(Folder, DeletedUnderTheRunningProgramDoesNoHarm) {
  SessionOptions options;
  options.sampleProject = false;
  options.homeFiles["gone/App.xcodeproj/project.pbxproj"] = "{}";
  options.workingDirectory = "gone";
  TerminalSession session(options);
  ASSERT_TRUE(atMenu(session));
  session.expectShows("App.xcodeproj");
  std::filesystem::remove_all(session.inHome("gone"));
  session.send("l");
  ASSERT_TRUE(session.waitFor("Löschen") && session.waitUntilIdle());
  session.send(Key::enter);
  ASSERT_TRUE(session.waitFor("[x] Zurück") && session.waitUntilIdle());
  session.send({"x", Key::enter});
  ASSERT_TRUE(atMenu(session));
  session.send("Q");
  session.expectCleanEnd();
}

TEST(Input, AtItsEndTheMenuStaysAndUsesNoProcessor) {
  SessionOptions options;
  options.program = "/bin/bash";
  options.arguments = {"-c", "exec " HALYARD_PROGRAM " < /dev/null"};
  TerminalSession session(options);
  ASSERT_TRUE(session.waitFor("9:Update"));
  const auto sleeps = [&] {
    std::ifstream file("/proc/" + std::to_string(session.processId()) + "/stat");
    std::string text{std::istreambuf_iterator<char>(file), {}};
    return text.substr(text.rfind(')') + 2, 1) == "S";
  };
  ASSERT_TRUE(session.waitFor("the program to sleep", sleeps));
  const auto processorTime = [&] {
    std::ifstream file("/proc/" + std::to_string(session.processId()) + "/schedstat");
    long long nanoseconds = 0;
    file >> nanoseconds;
    return nanoseconds;
  };
  const long long before = processorTime();
  const std::size_t mark = session.outputMark();
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(processorTime(), before) << "what stands still takes no time at all";
  EXPECT_EQ(session.outputMark(), mark);
  session.signal(SIGTERM);
  session.expectCleanEnd(ProgramEnd::signaled(SIGTERM));
}

TEST(Idle, AtTheMenuTheProgramUsesNoProcessor) {
  TerminalSession session;
  ASSERT_TRUE(atMenu(session));
  const auto processorTime = [&] {
    std::ifstream file("/proc/" + std::to_string(session.processId()) + "/schedstat");
    long long nanoseconds = 0;
    file >> nanoseconds;
    return nanoseconds;
  };
  const long long before = processorTime();
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(processorTime(), before);
}

}  // namespace
}  // namespace halyard
