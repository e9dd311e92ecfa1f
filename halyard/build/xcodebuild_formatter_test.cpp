#include "halyard/build/xcodebuild_formatter.hpp"

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "halyard/build/build_clock_testing.hpp"
#include "halyard/build/xcodebuild_formatter_rules.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

class XcodeBuildFormatterTest : public testing::Test {
 protected:
  /// What these lines print, the end of the run included.
  std::string shown(std::initializer_list<std::string_view> lines) {
    const CapturedOutput output;
    for (const std::string_view line : lines) formatter.processLine(line);
    formatter.finish();
    return output.text();
  }

  /// The same without colours.
  std::string plain(std::initializer_list<std::string_view> lines) { return stripAnsi(shown(lines)); }

  const ContextReset context;
  StandingBuildClock clock;
  XcodeBuildFormatter formatter;
};

std::string header(const std::string& name, int length) {
  return "\n  📦 " + name + "  " + repeated("─", 79 - length - 6) + "\n";
}

TEST_F(XcodeBuildFormatterTest, EmptyLinesPrintNothing) { EXPECT_EQ(shown({"", " \t ", "    "}), ""); }

TEST_F(XcodeBuildFormatterTest, IndentedLinesAreDropped) {
  EXPECT_EQ(shown({"    CompileC a.o", "\tLd /o/App.app/App", "    Check dependencies"}), "");
  EXPECT_EQ(formatter.lastPhase(), XBPhase::none);
}

TEST_F(XcodeBuildFormatterTest, FewerThanFourBlanksAreNoIndent) {
  EXPECT_EQ(plain({"   Check dependencies"}), "  ▸ Initialization\n");
}

TEST_F(XcodeBuildFormatterTest, AnIndentedErrorIsCollectedWithoutItsIndent) {
  EXPECT_EQ(plain({"    /p/A.swift:1:2: error: bad \t"}), "  ✗  bad  A.swift:1\n");
  EXPECT_EQ(formatter.errorLines(), std::vector<std::string>{"/p/A.swift:1:2: error: bad"});
}

TEST_F(XcodeBuildFormatterTest, AnIndentedStepWithAnErrorInItIsThatStep) {
  EXPECT_EQ(plain({"    Ld /o/App.app/App: error: x"}), header("App", 3) + "     ▸ Linking & signing\n");
  EXPECT_TRUE(formatter.errorLines().empty());
}

TEST_F(XcodeBuildFormatterTest, VerdictsAndOldHeadersAreDropped) {
  EXPECT_EQ(shown({"** BUILD FAILED **: error: x", "** TEST SUCCEEDED **", "=== BUILD TARGET App OF PROJECT App ===",
                   "Build target App", "GenerateDSYMFile a", "Touch a: error: b", "RegisterWithLaunchServices a"}),
            "");
  EXPECT_TRUE(formatter.errorLines().empty());
}

TEST_F(XcodeBuildFormatterTest, TheDependencyCheckIsThePhaseOfPreparation) {
  EXPECT_EQ(shown({"Check dependencies", "Check dependencies"}), "  \x1b[34m▸\x1b[0m Initialization\n");
  EXPECT_EQ(formatter.lastPhase(), XBPhase::prepare);
}

TEST_F(XcodeBuildFormatterTest, OnlyTheWholeLineIsTheDependencyCheck) {
  EXPECT_EQ(shown({"Check dependencies now"}), "");
}

TEST_F(XcodeBuildFormatterTest, ResolvingTurnsASpinnerAndLeavesNoLine) {
  const std::string text = shown({"Resolve Package Graph", "Fetching https://host/owner/Pack.git (cached)"});
  EXPECT_EQ(formatter.lastPhase(), XBPhase::resolvePackages);
  EXPECT_EQ(text.find('\n'), std::string::npos);
  EXPECT_TRUE(text.ends_with("\r\x1b[K\x1b[?25h"));
}

TEST_F(XcodeBuildFormatterTest, PlanningResolvesToo) {
  shown({"Planning build"});
  EXPECT_EQ(formatter.lastPhase(), XBPhase::resolvePackages);
}

TEST_F(XcodeBuildFormatterTest, AFetchWithoutASpinnerPrintsNothing) {
  EXPECT_EQ(shown({"Fetching x", "Fetch y", "Cloning z: error: a"}), "");
  EXPECT_TRUE(formatter.errorLines().empty());
}

TEST_F(XcodeBuildFormatterTest, TheNextPhaseStopsTheSpinner) {
  const std::string text = shown({"Planning", "Check dependencies"});
  EXPECT_TRUE(text.ends_with("\x1b[?25h  \x1b[34m▸\x1b[0m Initialization\n"));
}

TEST_F(XcodeBuildFormatterTest, ADiagnosticBesideASpinnerStandsOnALineOfItsOwn) {
  const std::string text = shown({"Planning", "a.swift:1: warning: w"});
  EXPECT_NE(text.find("\r\x1b[K  \x1b[1;33m⚠\x1b[0m  \x1b[33mw\x1b[0m  \x1b[2ma.swift:1\x1b[0m\n"), std::string::npos);
}

TEST_F(XcodeBuildFormatterTest, CompileLinesAreCountedUntilTheNextPhase) {
  EXPECT_EQ(shown({"CompileC a", "CompileSwift b", "CompileSwiftSources c", "Check dependencies"}),
            "  \x1b[34m🔨\x1b[0m Compiling\n"
            "     \x1b[2m3 files compiled\x1b[0m\n"
            "  \x1b[34m▸\x1b[0m Initialization\n");
}

TEST_F(XcodeBuildFormatterTest, TheEndOfTheRunShowsTheCount) {
  EXPECT_EQ(plain({"SwiftCompile normal arm64 /A.swift"}), "  🔨 Compiling\n     1 files compiled\n");
}

TEST_F(XcodeBuildFormatterTest, ATargetsFirstLinePrintsItsHeader) {
  EXPECT_EQ(shown({"CompileC a b (in target 'App' from project 'P')"}),
            "\n  \x1b[34m📦\x1b[0m \x1b[1mApp\x1b[0m  \x1b[2m" + repeated("─", 70) +
                "\x1b[0m\n"
                "     \x1b[34m🔨\x1b[0m Compiling\n"
                "        \x1b[2m1 files compiled\x1b[0m\n");
  EXPECT_EQ(formatter.currentTarget(), "App");
}

TEST_F(XcodeBuildFormatterTest, ALongNameLeavesNoRule) {
  const std::string name(90, 'n');
  EXPECT_EQ(plain({"SwiftDriver " + name}), "\n  📦 " + name + "  \n     🔨 Compiling\n        1 files compiled\n");
}

TEST_F(XcodeBuildFormatterTest, TheRuleIsMeasuredInCharacters) {
  EXPECT_EQ(plain({"SwiftDriver Bücher"}), header("Bücher", 6) + "     🔨 Compiling\n        1 files compiled\n");
}

TEST_F(XcodeBuildFormatterTest, ANewTargetShowsThePhaseAgainBehindTheCountOfTheOld) {
  EXPECT_EQ(plain({"SwiftDriver A", "SwiftDriver A", "SwiftDriver B"}),
            header("A", 1) + "     🔨 Compiling\n        2 files compiled\n" + header("B", 1) +
                "     🔨 Compiling\n        1 files compiled\n");
}

TEST_F(XcodeBuildFormatterTest, ATargetThatComesBackGoesOnInThePhase) {
  EXPECT_EQ(plain({"SwiftDriver A", "SwiftDriver B", "SwiftDriver A"}),
            header("A", 1) + "     🔨 Compiling\n        1 files compiled\n" + header("B", 1) +
                "     🔨 Compiling\n        2 files compiled\n");
  EXPECT_EQ(formatter.currentTarget(), "A");
}

TEST_F(XcodeBuildFormatterTest, LinkingAndSigningAreOnePhase) {
  EXPECT_EQ(plain({"Ld /o/App.app/App normal", "CodeSign /o/App.app (in target 'App')", "Sign x", "Validate y"}),
            header("App", 3) + "     ▸ Linking & signing\n");
  EXPECT_EQ(formatter.lastPhase(), XBPhase::link);
}

TEST_F(XcodeBuildFormatterTest, ARunOfResourcesShowsItsFirst) {
  EXPECT_EQ(shown({"CpResource /o/a.png /s/b.png", "CpResource /o/c.png /s/d.png"}),
            "  \x1b[34m📋\x1b[0m Copy resources  \x1b[2mb.png\x1b[0m\n");
}

TEST_F(XcodeBuildFormatterTest, AResourceWithoutAFileHasNoDetail) {
  EXPECT_EQ(shown({"CpResource"}), "  \x1b[34m📋\x1b[0m Copy resources\n");
}

TEST_F(XcodeBuildFormatterTest, AResourceNamesNoTarget) {
  shown({"CopySwiftLibs /o/App.app (in target 'App' from project 'P')"});
  EXPECT_EQ(formatter.currentTarget(), "");
}

TEST_F(XcodeBuildFormatterTest, AnErrorForcesTheCountAndAWarningDoesNot) {
  EXPECT_EQ(plain({"CompileC a", "a.c:1:1: warning: w", "a.c:2:1: error: e", "CompileC b"}),
            "  🔨 Compiling\n  ⚠  w  a.c:1\n     1 files compiled\n  ✗  e  a.c:2\n     1 files compiled\n");
}

TEST_F(XcodeBuildFormatterTest, DiagnosticsAreIndentedBelowATarget) {
  EXPECT_EQ(plain({"Ld A", "a.c:1:1: warning: w"}), header("A", 1) + "     ▸ Linking & signing\n     ⚠  w  a.c:1\n");
}

TEST_F(XcodeBuildFormatterTest, ALineWithBothMarkersIsAnError) {
  shown({"a.c:1: warning: b: error: c"});
  EXPECT_EQ(formatter.errorLines().size(), 1U);
  EXPECT_TRUE(formatter.warningLines().empty());
}

TEST_F(XcodeBuildFormatterTest, CommentsAreNoDiagnostics) {
  EXPECT_EQ(shown({"// foo.swift: error: bar", "//: warning: x", "    // x: error: y"}), "");
}

TEST_F(XcodeBuildFormatterTest, AnErrorWithoutAPlaceIsNotCollected) {
  EXPECT_EQ(shown({"error: no such module", "warning: x"}), "");
}

TEST_F(XcodeBuildFormatterTest, AMarkerWithoutABlankBehindIsCollectedAsAWholeLine) {
  EXPECT_EQ(plain({"a.c:1: error:x"}), "  ✗  a.c:1: error:x\n");
}

TEST_F(XcodeBuildFormatterTest, DuplicatesAreKept) {
  shown({"a.c:1: error: e", "a.c:1: error: e"});
  EXPECT_EQ(formatter.errorLines().size(), 2U);
}

TEST_F(XcodeBuildFormatterTest, UnknownLinesAreDropped) {
  EXPECT_EQ(shown({"WriteAuxiliaryFile /x", "note: something", "Sig", "ld: library not found"}), "");
}

TEST_F(XcodeBuildFormatterTest, EachChangeOfTargetClosesAnInterval) {
  for (const auto& [line, seconds] : std::initializer_list<std::pair<std::string_view, double>>{
           {"SwiftDriver A", 1}, {"SwiftDriver A", 2}, {"SwiftDriver B", 4}, {"SwiftDriver A", 8}}) {
    formatter.processLine(line);
    clock.advance(seconds);
  }
  formatter.finish();
  formatter.finish();
  const auto& timings = formatter.targetTimings();
  ASSERT_EQ(timings.size(), 3U);
  EXPECT_EQ(timings[0].name, "A");
  EXPECT_DOUBLE_EQ(timings[0].duration, 3);
  EXPECT_EQ(timings[1].name, "B");
  EXPECT_DOUBLE_EQ(timings[1].duration, 4);
  EXPECT_EQ(timings[2].name, "A");
  EXPECT_DOUBLE_EQ(timings[2].duration, 8);
}

TEST_F(XcodeBuildFormatterTest, ARunWithoutTargetsHasNoTimings) {
  shown({"Check dependencies"});
  EXPECT_TRUE(formatter.targetTimings().empty());
}

TEST_F(XcodeBuildFormatterTest, WhatTheToolWritesCannotDriveTheTerminal) {
  const std::string text = shown({"SwiftDriver \x1b[2JEvil\x1b]0;t\x07", "CpResource /a/\x1b[31mx.png",
                                  "\x1b[1m/p/A.swift:1:2: error: \x1b[31mbad\rworse\x1b[0m"});
  EXPECT_EQ(text.find("\x1b[2J"), std::string::npos);
  EXPECT_EQ(text.find("\x1b]"), std::string::npos);
  EXPECT_EQ(text.find('\x07'), std::string::npos);
  EXPECT_EQ(text.find('\r'), std::string::npos);
  EXPECT_NE(text.find("bad␍worse"), std::string::npos);
}

TEST_F(XcodeBuildFormatterTest, OddBytesAreTaken) {
  using namespace std::string_view_literals;
  EXPECT_EQ(plain({"\0\0CompileC a"sv, "Downloading 1%\rDownloading 2%"sv, "\xff\xfe: nothing"sv, ":"sv, ": error"sv}),
            "");
  EXPECT_EQ(plain({"a\0b.c:1: error: \xff\0"sv}), "  ✗  �␀  a␀b.c:1\n");
}

TEST_F(XcodeBuildFormatterTest, AVeryLongLineIsTakenToo) {
  const std::string blanks = "    " + std::string(10'000'000, ':');
  EXPECT_EQ(shown({blanks}), "");
  EXPECT_EQ(plain({blanks + " a: error: b"}).size(), std::string("  ✗  b").size() + 1);
  EXPECT_EQ(formatter.errorLines().at(0).size(), 10'000'012U);
}

TEST(BuildLineKinds, TheOrderOfTheRulesIsKept) {
  EXPECT_EQ(buildLineKind("** BUILD SUCCEEDED **"), BuildLineKind::ignored);
  EXPECT_EQ(buildLineKind("** CLEAN SUCCEEDED **"), BuildLineKind::other);
  EXPECT_EQ(buildLineKind("CompileSwift normal"), BuildLineKind::compile);
  EXPECT_EQ(buildLineKind("CompileSwift"), BuildLineKind::other);
  EXPECT_EQ(buildLineKind("CompileXIB"), BuildLineKind::resource);
  EXPECT_EQ(buildLineKind("CompileStoryboard /a"), BuildLineKind::resource);
  EXPECT_EQ(buildLineKind("CodeSigning"), BuildLineKind::link);
  EXPECT_EQ(buildLineKind("Resolve Package Graph"), BuildLineKind::resolve);
  EXPECT_EQ(buildLineKind("Fetch a"), BuildLineKind::fetch);
  EXPECT_EQ(buildLineKind(""), BuildLineKind::other);
  EXPECT_EQ(buildLineKind("\xff"), BuildLineKind::other);
}

}  // namespace
}  // namespace halyard
