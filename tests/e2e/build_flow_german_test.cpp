// The flows' screens in German: their words on success, on failure and after an abort, and no English one among them.
#include <string>
#include <string_view>
#include <vector>

#include "halyard/terminal/screen.hpp"
#include "test_places.hpp"
#include "tests/e2e/build_flow_calls.hpp"

namespace halyard::flow {
namespace {

constexpr Start cleanWithout = {"QuickReset", "", "B", "Bereinigen (ohne PM), bauen & starten"};
constexpr Start cleanWith = {"FullReset", "", "B", "Bereinigen (inkl. PM), bauen & starten"};
constexpr Start cleaned = {"CleanBuild", "", "L", "Build bereinigen"};
constexpr Start launched = {"Launch", "", "S", "App starten"};
constexpr Start launchedOnMac = {"Launch", "", "S+1", "App starten"};
constexpr Start launchedOnSelected = {"LaunchOnSelected", "", "S", "App auf ausgewähltem Simulator starten"};
constexpr std::string_view offered = "[+] Weiterer Simulator  ·  [x] Zurück zum Menü";
constexpr std::string_view goingBack = "[X] 🔙 Zurück";

using Texts = std::vector<std::string>;

struct GermanCase {
  Kind kind;
  std::string_view name;
  Start start;
  std::string_view buildSettings;
  std::string answers;
  Texts texts;
  std::string_view end;
  bool hasBuiltApp = false;
};

SessionOptions inGerman(const Kind& kind, std::string_view buildSettings = "{}") {
  SessionOptions options = buildOptions(kind.target, buildSettings);
  options.rows = 130;
  options.preferences["language"] = "de";
  return options;
}

/// What the English screens of the flows say; the tools' own words aren't among it.
void expectNoEnglish(const std::string& output) {
  const std::string text = stripAnsi(output);
  for (const std::string_view word :
       {"Build Timeline", "Total:",      "Longest phase",     "Sub-steps",     "Starting build",    "Live output",
        "Compiling",      "Linking",     "Scheme: Harbor  ·", "Configuration", "to stop",           "Step ",
        "Building",       "App running", "App started",       "App path",      "Duration",          "warnings found",
        "errors found",   "Deleting",    "deleted",           "Reason",        "could not be",      "Could not read",
        "was probably",   "Check ",      "Launching",         "Installing",    "Operation aborted", "Another simulator",
        "Back",           "Cancelled",   "Packages resolved", "Retry"}) {
    EXPECT_EQ(text.find(word), std::string::npos) << word;
  }
}

std::string_view endOf(const Kind& kind) { return kind.target == DemoTarget::simulator ? offered : goingBack; }

Texts launchWords(const Kind& kind) {
  switch (kind.target) {
    case DemoTarget::simulator:
      return {"App wird auf iPhone 16 (iOS 18.2) installiert", "App wird auf iPhone 16 (iOS 18.2) gestartet"};
    case DemoTarget::device:
      return {"App wird auf Demo iPhone (iOS 18.2) installiert …", "App wird auf Demo iPhone (iOS 18.2) gestartet …"};
    case DemoTarget::mac: break;
  }
  return {"macOS-App wird gestartet …"};
}

std::vector<GermanCase> successes() {
  const std::string runs = "✓ App läuft! Bundle-ID: com.example.harbor";
  const std::string warned = R"({"warnings": 2})";
  const Texts building = {"Schema: Harbor  ·  Konfiguration: Debug",
                          "Inkrementeller Debug-Build (nur aktive Architektur)",
                          "Ctrl+C zum Stoppen",
                          "Build wird gestartet …  (Live-Ausgabe)",
                          "🔨 Kompilieren",
                          "Linken & Signieren",
                          "Dauer: ",
                          "App-Pfad:",
                          "Build-Datum:",
                          "Größe:",
                          "Längste Phase: "};
  std::vector<GermanCase> cases;
  for (const Kind& kind : kinds) {
    const Texts words = together(building, launchWords(kind), Texts{runs});
    cases.push_back({kind, "BuildAndRun", buildAndRun, R"({"warnings": 2})", "",
                     together(words, Texts{"Harbor [Debug] wird gebaut …", "2 Build-Warnungen gefunden",
                                           "Build-Zeitachse – Build & Run   Gesamt: "}),
                     endOf(kind)});
    cases.push_back(
        {kind, "QuickReset", cleanWithout, "{}", "",
         together(words,
                  Texts{"Bereinigen (ohne PM), bauen & starten? [j/N] j", "Keine Build-Warnungen gefunden.",
                        "Schritt 1/3 – DerivedData löschen", "DerivedData wird gelöscht …",
                        "DerivedData gelöscht. DerivedData/CapstanLightBuild-Harbor", "Schritt 2/3 – Build [Debug]",
                        "Schritt 3/3 – App starten", "Build-Zeitachse – Bereinigen (ohne PM), bauen & starten"}),
         endOf(kind)});
    cases.push_back(
        {kind, "FullReset", cleanWith, "{}", "",
         together(
             words,
             Texts{"„Bereinigen (inkl. PM), bauen & starten“ ausführen? [j/N] j", "Schritt 1/4 – Caches löschen",
                   "Derived Data löschen (DerivedData/CapstanLightBuild-Harbor)", "Modul-Cache wird gelöscht …",
                   "SPM-Cache wird gelöscht …", "Alle Verzeichnisse gelöscht.", "Schritt 2/4 – SPM-Pakete auflösen",
                   "✓ Pakete aufgelöst.", "Schritt 3/4 – Build [Debug]", "Schritt 4/4 – App starten"}),
         endOf(kind)});
    cases.push_back({kind, "Build", buildOnly, "{}", "",
                     Texts{"„Build“ ausführen? [j/N] j", "Die App wird nicht gestartet.", "Build-Zeitachse – Build   "},
                     goingBack});
    cases.push_back({kind, "CleanBuild", cleaned, "{}", "",
                     Texts{"xcodebuild clean ausführen? [j/N] j", "✓ xcodebuild clean abgeschlossen."}, goingBack});
  }
  cases.push_back({simulator, "Launch", launched, "{}", "",
                   together(launchWords(simulator), Texts{"App starten? [j/N] j", "✓ App gestartet: iPhone 16"}),
                   offered, true});
  cases.push_back({simulator, "LaunchOnSelected", launchedOnSelected, "{}", "",
                   together(launchWords(simulator), Texts{"✓ App gestartet: iPhone 16"}), offered, true});
  cases.push_back(
      {device, "Launch", launchOnDevice, "{}", "",
       together(launchWords(device), Texts{"App auf physischem Gerät starten", "App gestartet: Demo iPhone"}),
       goingBack, true});
  cases.push_back({mac, "Launch", launchedOnMac, "{}", "", together(launchWords(mac), Texts{"✓ App gestartet: My Mac"}),
                   goingBack, true});
  return cases;
}

std::vector<GermanCase> failures() {
  const std::string reason = "Grund:";
  const std::string noLaunch = "App konnte nicht gestartet werden.";
  std::vector<GermanCase> cases;
  for (const Kind& kind : kinds) {
    cases.push_back(
        {kind, "BuildFails", buildAndRun, R"({"fails": true})", "", {"1 Build-Fehler gefunden", "Dauer: "}, goingBack});
    cases.push_back({kind,
                     "NoApp",
                     buildAndRun,
                     R"({"product": false})",
                     "",
                     {"Keine .app im Build-Ordner gefunden.", reason,
                      "Der Build war vermutlich nicht erfolgreich oder das Build-Verzeichnis ist leer.",
                      "Build-Ausgabe oben auf Fehler prüfen. Abhilfe: 01) Derived Data löschen."},
                     goingBack});
    cases.push_back({kind,
                     "NoIdentifier",
                     cleanWith,
                     R"({"identifier": false})",
                     "",
                     {"Bundle-ID konnte nicht aus der App gelesen werden.", reason,
                      "Info.plist fehlt oder ist beschädigt. (iOS: .app/Info.plist, macOS: ",
                      "Prüfen, ob die App korrekt gebaut wurde.", "App-Pfad: "},
                     goingBack});
  }
  cases.push_back({simulator,
                   "InstallFails",
                   cleanWithout,
                   "{}",
                   answer(simulatorInstall, "Invalid device", 1),
                   {"App konnte nicht auf dem Simulator installiert werden.", reason,
                    "Prüfen, ob der Simulator gestartet und das richtige Gerät ausgewählt ist.", "Geräte-UDID: "},
                   offered});
  cases.push_back({simulator,
                   "LaunchFails",
                   buildAndRun,
                   "{}",
                   answer(simulatorLaunch, "error 4", 4),
                   {noLaunch, "Prüfen, ob die Bundle-ID korrekt und die App installiert ist."},
                   offered});
  cases.push_back({device,
                   "InstallFails",
                   buildAndRun,
                   "{}",
                   answer(deviceInstall, "no", 1),
                   {"Die App konnte nicht auf dem Gerät installiert werden.",
                    "`xcrun devicectl device install app` meldet einen Fehler.",
                    "In Xcode prüfen: Team, Provisioning-Profil und automatische Signierung"},
                   goingBack});
  cases.push_back({device,
                   "LaunchFails",
                   buildAndRun,
                   "{}",
                   answer(deviceLaunch, "not connected", 1),
                   {"Die App konnte auf dem Gerät nicht gestartet werden.", "Gerät neu verbinden oder Kopplung"},
                   goingBack});
  cases.push_back({mac, "LaunchFails", buildAndRun, "{}", answer("open", "no", 1), {noLaunch}, goingBack});
  cases.push_back({simulator,
                   "CleanFails",
                   cleaned,
                   "{}",
                   answer("xcodebuild -project ./Harbor.xcodeproj -scheme Harbor", "no", 65),
                   {"✗ xcodebuild clean fehlgeschlagen."},
                   goingBack});
  return cases;
}

class GermanFlow : public testing::TestWithParam<GermanCase> {};

TEST_P(GermanFlow, SpeaksGermanAllTheWay) {
  const GermanCase& flow = GetParam();
  SessionOptions options = inGerman(flow.kind, flow.buildSettings);
  if (flow.hasBuiltApp) addBuiltApp(options, flow.kind);
  if (isOfProbe(flow.start)) options.program = HALYARD_PROBE;
  addAnswers(options, flow.answers);
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  const std::size_t mark = session.outputMark();
  ASSERT_TRUE(start(session, flow.start));
  ASSERT_TRUE(waitForEnd(session, flow.end));
  for (const std::string& text : flow.texts) session.expectShows(text);
  if (!isOfProbe(flow.start)) expectNoEnglish(session.rawOutput(mark));
  leave(session);
}

INSTANTIATE_TEST_SUITE_P(Successes, GermanFlow, testing::ValuesIn(successes()), caseName<GermanCase>);
INSTANTIATE_TEST_SUITE_P(Failures, GermanFlow, testing::ValuesIn(failures()), caseName<GermanCase>);

// Ends before the flow's own.

struct GermanEnd {
  Kind kind;
  std::string_view name;
  Start start;
  std::string_view call;
};

class GermanAbort : public testing::TestWithParam<GermanEnd> {};

TEST_P(GermanAbort, IsCalledAnAbortAndNothingElse) {
  SessionOptions options = inGerman(GetParam().kind);
  addAnswers(options, slowAnswer(GetParam().call));
  TerminalSession session(options);
  ASSERT_TRUE(start(session, GetParam().start));
  ASSERT_TRUE(waitForCall(session, GetParam().call));
  const std::size_t mark = session.outputMark();
  session.send(Key::ctrlC);
  ASSERT_TRUE(session.waitForOutput("Vorgang abgebrochen.", mark));
  ASSERT_TRUE(isAtMenu(session));
  const std::string output = session.rawOutput(mark);
  EXPECT_NE(output.find("Build-Zeitachse"), std::string::npos);
  EXPECT_EQ(output.find("konnte"), std::string::npos);
  EXPECT_EQ(output.find("Operation aborted"), std::string::npos);
  quit(session);
}

INSTANTIATE_TEST_SUITE_P(CtrlC, GermanAbort,
                         testing::Values(GermanEnd{simulator, "Build", buildAndRun, "xcodebuild -parallelizeTargets"},
                                         GermanEnd{simulator, "Boot", cleanWithout, "xcrun simctl bootstatus"},
                                         GermanEnd{device, "Build", buildOnly, "xcodebuild -parallelizeTargets"},
                                         GermanEnd{device, "Install", buildAndRun, deviceInstall},
                                         GermanEnd{mac, "Resolve", cleanWith,
                                                   "xcodebuild -project ./Harbor.xcodeproj -scheme Harbor -res"},
                                         GermanEnd{mac, "Build", cleanWith, "xcodebuild -parallelizeTargets"}),
                         caseName<GermanEnd>);

TEST(GermanFlows, FailuresWithinTheCleanStepsAreToldInGerman) {
  SessionOptions options = inGerman(simulator, R"({"fails": true})");
  options.homeFiles["Harbor/Podfile"] = "pod 'Lantern', '~> 2.1'\n";
  options.homeFiles["Harbor/Cartfile"] = "github \"example/Sounding\" ~> 1.4\n";
  options.missingTools = {"carthage"};
  addAnswers(options, answer("pod install", "[!] no host", 1));
  TerminalSession session(options);
  ASSERT_TRUE(start(session, cleanWith));
  ASSERT_TRUE(waitForEnd(session, goingBack));
  for (const std::string_view text :
       {"CocoaPods-Cache wird gelöscht …", "Podfile erkannt – CocoaPods-Pakete werden synchronisiert.",
        "pod install wird ausgeführt …", "✗ pod install fehlgeschlagen – siehe Log.",
        "Cartfile gefunden, aber das Tool „carthage“ ist nicht installiert – wird übersprungen.",
        "Der Build läuft trotz fehlgeschlagener Synchronisierung der Paketmanager weiter.",
        "1 Build-Fehler gefunden"}) {
    session.expectShows(text);
  }
  leave(session);
}

TEST(GermanFlows, UnresolvedPackagesAreToldInGerman) {
  SessionOptions options = inGerman(simulator);
  addSetting(options, R"("packages": {"network": "down"})");
  TerminalSession session(options);
  ASSERT_TRUE(start(session, cleanWith));
  ASSERT_TRUE(waitForEnd(session, goingBack));
  session.expectShows("✗ SPM-Pakete konnten nicht aufgelöst werden:");
  session.expectShowsNot("Schritt 3/4");
  leave(session);
}

TEST(GermanFlows, ANoIsAnAbgebrochen) {
  TerminalSession session(inGerman(simulator));
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(runRow(session, "B", "Build & Run"));
  session.expectShows("App bauen und starten? [j/N]");
  const std::size_t mark = session.outputMark();
  session.send("n");
  ASSERT_TRUE(session.waitForOutput("Abgebrochen", mark));
  quit(session);
}

TEST(GermanFlows, WithoutAnAppTheQuestionIsGerman) {
  TerminalSession session(inGerman(simulator));
  ASSERT_TRUE(start(session, launched));
  ASSERT_TRUE(waitForEnd(session, "App jetzt bauen und starten? [j/N]"));
  session.expectShows("Keine gebaute App in DerivedData gefunden.");
  session.expectShows("App mit „Build & Run“ neu bauen.");
  session.send("n");
  quit(session);
}

TEST(GermanFlows, AnotherSimulatorIsStartedInGerman) {
  TerminalSession session(inGerman(simulator));
  ASSERT_TRUE(start(session, buildAndRun));
  ASSERT_TRUE(waitForEnd(session, offered));
  session.send("+");
  ASSERT_TRUE(session.waitFor("iPhone 16 Pro") && session.waitUntilIdle());
  const std::string row = session.row(session.find("iPhone 16 Pro").row);
  session.send({row.substr(row.find_first_of("0123456789"), 2), Key::enter});
  ASSERT_TRUE(session.waitFor("✓ App gestartet: iPhone 16 Pro") && session.waitUntilIdle());
  leave(session);
}

TEST(GermanFlows, ThePromptsAreGerman) {
  TerminalSession session(inGerman(simulator));
  ASSERT_TRUE(isAtMenu(session));
  session.send("k");
  ASSERT_TRUE(session.waitFor("[1–2] [RETURN]") && session.waitUntilIdle());
  session.expectShows("Konfiguration: Release");
  session.send({"2", Key::enter});
  ASSERT_TRUE(waitForEnd(session, goingBack));
  session.expectShows("Konfigurationswechsel → Release – Cache wird geleert");
  session.expectShows("Modul-Cache wird gelöscht …");
  session.expectShows("✓ Fertig");
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  session.send("b");
  ASSERT_TRUE(session.waitFor("- = leeren") && session.waitUntilIdle());
  session.send({"com.example.typed", Key::enter});
  ASSERT_TRUE(session.waitFor("Bundle-ID gespeichert: com.example.typed") && session.waitUntilIdle());
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  session.send("b");
  ASSERT_TRUE(session.waitFor("- = leeren") && session.waitUntilIdle());
  session.send({"-", Key::enter});
  ASSERT_TRUE(session.waitFor("Bundle-ID geleert.") && session.waitUntilIdle());
  leave(session);
}

}  // namespace
}  // namespace halyard::flow
