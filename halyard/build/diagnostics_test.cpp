#include "halyard/build/diagnostics.hpp"

#include <gtest/gtest.h>

#include "core/text.hpp"
#include "tests/support/captured_output.hpp"

namespace halyard {
namespace {

TEST(Diagnostics, AnErrorHasFileLineAndMessage) {
  EXPECT_EQ(parseDiagnostic("/path/File.swift:12:5: error: message", true),
            (XBDiagnostic{true, "File.swift", "12", "message"}));
}

TEST(Diagnostics, AWarningHasAMarkerOfItsOwn) {
  EXPECT_EQ(parseDiagnostic("/p/A.m:3: warning: \t unused \t", false), (XBDiagnostic{false, "A.m", "3", "unused"}));
  EXPECT_EQ(parseDiagnostic("/p/A.m:3: warning: x", true), (XBDiagnostic{true, "", "", "/p/A.m:3: warning: x"}));
}

TEST(Diagnostics, APlaceMayLackItsLine) {
  EXPECT_EQ(parseDiagnostic("ld: error: nothing", true), (XBDiagnostic{true, "ld", "", "nothing"}));
  EXPECT_EQ(parseDiagnostic(": error: nothing", true), (XBDiagnostic{true, "", "", "nothing"}));
}

TEST(Diagnostics, WithoutABlankBehindTheColonTheWholeLineIsTheMessage) {
  EXPECT_EQ(parseDiagnostic("a.swift:1: error:x", true), (XBDiagnostic{true, "", "", "a.swift:1: error:x"}));
}

TEST(Diagnostics, TheFirstMarkerCounts) {
  EXPECT_EQ(parseDiagnostic("a.swift:1:2: error: b: error: c", true),
            (XBDiagnostic{true, "a.swift", "1", "b: error: c"}));
}

TEST(Diagnostics, TheMarkerIsFoundAnywhereAndAnErrorsWins) {
  EXPECT_EQ(diagnosticMarker("a: error:"), DiagnosticMarker::error);
  EXPECT_EQ(diagnosticMarker("a: warning: b: error: c"), DiagnosticMarker::error);
  EXPECT_EQ(diagnosticMarker("::: warning:"), DiagnosticMarker::warning);
  EXPECT_EQ(diagnosticMarker("error: a"), DiagnosticMarker::none);
  EXPECT_EQ(diagnosticMarker("a: error"), DiagnosticMarker::none);
  EXPECT_EQ(diagnosticMarker("a:"), DiagnosticMarker::none);
  EXPECT_EQ(diagnosticMarker({}), DiagnosticMarker::none);
}

TEST(Diagnostics, TheLocationIsDimAndOptional) {
  EXPECT_EQ(locationSuffix({true, "", "12", "m"}), "");
  EXPECT_EQ(locationSuffix({true, "A.swift", "", "m"}), "  \x1b[2mA.swift\x1b[0m");
  EXPECT_EQ(locationSuffix({true, "A.swift", "12", "m"}), "  \x1b[2mA.swift:12\x1b[0m");
}

TEST(Diagnostics, TheLiveLineIsColoured) {
  EXPECT_EQ(liveDiagnosticLine({true, "A.swift", "12", "bad"}),
            "\x1b[1;31m✗\x1b[0m  \x1b[31mbad\x1b[0m  \x1b[2mA.swift:12\x1b[0m");
  EXPECT_EQ(liveDiagnosticLine({false, "", "", "odd"}), "\x1b[1;33m⚠\x1b[0m  \x1b[33modd\x1b[0m");
}

TEST(Diagnostics, NothingOfTheToolsTextReachesTheTerminalAsASequence) {
  EXPECT_EQ(shownToolText("\x1b[31mred\x1b[0m"), "red");
  const std::string line = liveDiagnosticLine({true, "\x1b]0;t\x07", "\x1b[2J", "a\rb\x1b[?25lc\x9b"});
  EXPECT_EQ(line.find('\r'), std::string::npos);
  EXPECT_EQ(line.find('\x07'), std::string::npos);
  EXPECT_EQ(line.find("\x1b]"), std::string::npos);
  EXPECT_EQ(line.find("\x1b[?"), std::string::npos);
  EXPECT_EQ(line.find("\x1b[2J"), std::string::npos);
  EXPECT_TRUE(isValidUtf8(line));
}

TEST(Diagnostics, EachIsPrintedOnceInItsOrder) {
  const CapturedOutput output;
  printDiagnostics({"/a/B.swift:2:1: error: two", "/a/A.swift:1:1: error: one", "/other/B.swift:2:9: error: two"},
                   true);
  EXPECT_EQ(output.text(),
            "  \x1b[1;31m✗\x1b[0m  \x1b[2mtwo\x1b[0m  \x1b[2mB.swift:2\x1b[0m\n"
            "  \x1b[1;31m✗\x1b[0m  \x1b[2mone\x1b[0m  \x1b[2mA.swift:1\x1b[0m\n");
}

TEST(Diagnostics, WarningsArePrintedWithTheirMark) {
  const CapturedOutput output;
  printDiagnostics({"w.c:1: warning: w"}, false);
  EXPECT_EQ(output.text(), "  \x1b[1;33m⚠\x1b[0m  \x1b[2mw\x1b[0m  \x1b[2mw.c:1\x1b[0m\n");
}

}  // namespace
}  // namespace halyard
