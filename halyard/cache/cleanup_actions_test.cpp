#include "halyard/cache/cleanup_actions.hpp"

#include "core/string_catalog.hpp"
#include "halyard/cache/cache_testing.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

struct Level {
  const char* name;
  void (*action)();
  const char* title;
  const char* question;
  const char* success;
  std::size_t listed;
  std::size_t steps;
  bool offersRuntimes;
};

std::ostream& operator<<(std::ostream& stream, const Level& level) { return stream << level.name; }

const std::vector<std::string> commands = {
    "rm -rf ~/Library/Developer/Xcode/DerivedData",
    "rm -rf ~/Library/Developer/Xcode/ModuleCache",
    "rm -rf ~/Library/Caches/org.swift.swiftpm/* 2>/dev/null; rm -rf ~/Library/org.swift.swiftpm/* 2>/dev/null; true",
    "rm -rf ~/Library/Caches/com.apple.dt.Xcode",
    "rm -rf ~/Library/Developer/CoreSimulator/Caches",
    "rm -rf ~/Library/Developer/Xcode/Logs/* 2>/dev/null; rm -rf ~/Library/Logs/DiagnosticReports/* 2>/dev/null; true",
    "rm -rf '/Users/demo/Library/Developer/Xcode/Archives'",
    "rm -rf '/Users/demo/Library/Developer/Xcode/iOS DeviceSupport'",
    "xcrun simctl delete all 2>/dev/null; true",
    "rm -rf '/Users/demo/Library/Developer/Xcode/SourcePackages'",
    "rm -rf ~/Library/Caches/CocoaPods",
    "rm -rf ~/Library/Caches/org.carthage.CarthageKit",
};

const std::vector<std::string> successes = {
    "Derived Data deleted.",   "Module Cache deleted.",      "SPM Cache deleted.",
    "Xcode Caches deleted.",   "Simulator Cache deleted.",   "Xcode logs and diagnostic reports deleted.",
    "Archives deleted.",       "iOS DeviceSupport deleted.", "Simulators deleted.",
    "SourcePackages deleted.", "CocoaPods cache deleted.",   "Carthage cache deleted.",
};

const std::vector<std::string> listRows = {
    "DerivedData (complete)  : ~/Library/Developer/Xcode/DerivedData",
    "ModuleCache             : ~/Library/Developer/Xcode/ModuleCache",
    "SwiftPM Cache           : ~/Library/Caches/org.swift.swiftpm",
    "SwiftPM Data            : ~/Library/org.swift.swiftpm",
    "Xcode Caches            : ~/Library/Caches/com.apple.dt.Xcode",
    "Simulator Cache         : ~/Library/Developer/CoreSimulator/Caches",
    "Xcode Logs              : ~/Library/Developer/Xcode/Logs",
    "Diagnostic Reports      : ~/Library/Logs/DiagnosticReports",
    "Archives                : ~/Library/Developer/Xcode/Archives",
    "iOS DeviceSupport       : ~/Library/Developer/Xcode/iOS DeviceSupport",
    "Simulators              : ~/Library/Developer/CoreSimulator/Devices",
    "SourcePackages          : ~/Library/Developer/Xcode/SourcePackages",
    "CocoaPods               : ~/Library/Caches/CocoaPods",
    "Carthage                : ~/Library/Caches/org.carthage.CarthageKit",
};
const std::string runtimesRow = "Simulator Runtimes      : (queried separately)";
const std::string runtimesCommand = "xcrun simctl runtime delete all 2>/dev/null; true";
const std::string runtimesQuestion = "? Also delete simulator runtimes? (Re-download required) [j/N] ";

class Cleanup : public CacheTest {};
class EachLevel : public Cleanup, public testing::WithParamInterface<Level> {
 public:
  void expectSteps() {
    for (std::size_t i = 0; i < GetParam().steps; ++i) runner.expect(commands.at(i));
  }
};

TEST_P(EachLevel, ListsWhatGoes) {
  const std::string text = shownBy(GetParam().action, "n");
  std::string list;
  for (std::size_t i = 0; i < GetParam().listed; ++i) list += "  " + listRows.at(i) + "\n";
  if (GetParam().offersRuntimes) list += "  " + runtimesRow + "\n";
  EXPECT_THAT(text, AllOf(HasSubstr("▶  " + std::string(GetParam().title)), HasSubstr("\n\n" + list + "\n")));
}

TEST_P(EachLevel, NeedsTwoYesesAndThenPerformsItsSteps) {
  expectSteps();
  if (GetParam().offersRuntimes) runner.expect(runtimesCommand);
  const std::string text = shownBy(GetParam().action, GetParam().offersRuntimes ? "jjjx" : "jjx");
  std::string lines;
  for (std::size_t i = 0; i < GetParam().steps; ++i) lines += "  ✓ " + successes.at(i) + "\n";
  EXPECT_THAT(text, HasSubstr("? " + std::string(GetParam().question) + " [j/N] j"));
  EXPECT_THAT(text, HasSubstr("? Run " + std::string(GetParam().title) + " now and delete permanently? [j/N] j"));
  EXPECT_THAT(text, HasSubstr(lines));
  EXPECT_THAT(text, AllOf(HasSubstr("  ✓ " + std::string(GetParam().success) + "\n"), HasSubstr("[X] 🔙 Back")));
  if (GetParam().offersRuntimes) {
    EXPECT_THAT(text, HasSubstr(runtimesQuestion + "j\n  ✓ Simulator runtimes deleted.\n"));
  } else {
    EXPECT_THAT(text, Not(HasSubstr("runtimes?")));
  }
}

TEST_P(EachLevel, ANoAtEitherQuestionDeletesNothing) {
  for (const char* keys : {"n", "jn", "\n", "j\n", ""}) {
    const std::string text = shownBy(GetParam().action, keys);
    EXPECT_THAT(text, AllOf(HasSubstr("Cancelled"), Not(HasSubstr("✓")), Not(HasSubstr("[X]")))) << keys;
  }
  EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST_P(EachLevel, ANoToTheRuntimesSkipsOnlyThem) {
  expectSteps();
  const std::string text = shownBy(GetParam().action, "jjnx");
  EXPECT_THAT(text, AllOf(HasSubstr("  ✓ " + std::string(GetParam().success) + "\n"), HasSubstr("[X] 🔙 Back"),
                          Not(HasSubstr("Simulator runtimes deleted."))));
}

TEST_P(EachLevel, AnAbortEndsItBetweenTwoSteps) {
  runner.expect(commands.at(0)).expect(commands.at(1)).whenCalled([] { setOperationAborted(true); });
  const std::string text = shownBy(GetParam().action, "jjj");
  EXPECT_THAT(text, AllOf(Not(HasSubstr("SPM Cache deleted.")), Not(HasSubstr("runtimes?")),
                          Not(HasSubstr(GetParam().success))));
}

TEST_P(EachLevel, RefusesWithoutAUsableHome) {
  const HomeSetting setting("");
  EXPECT_THAT(shownBy(GetParam().action, "jjjx"),
              AllOf(HasSubstr("✗ Nothing was deleted: HOME names no usable home folder."), HasSubstr("[X]"),
                    Not(HasSubstr("[j/N]"))));
  EXPECT_THAT(runner.commands(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Levels, EachLevel,
                         testing::Values(Level{"Safe", runSafeCleanup, "Delete Directories (Safe)", "Run safe cleanup?",
                                               "Safe cleanup complete.", 8, 6, false},
                                         Level{"Deep", runDeepCleanup, "Delete Directories (Deep)", "Run deep cleanup?",
                                               "Deep cleanup complete.", 11, 9, false},
                                         Level{"Complete", runCompleteCleanup, "Delete Directories (Complete)",
                                               "Run complete cleanup?", "Complete cleanup complete.", 11, 9, true},
                                         Level{"FullReset", runFullReset, "Delete Directories (Full Reset)",
                                               "Run full reset?", "Full reset complete.", 14, 12, true}),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_F(Cleanup, ALinkInPlaceOfAFolderThatIsEmptiedIsToldAndKept) {
  files.addLink(home("Library/Developer/Xcode/Logs"));
  for (std::size_t i = 0; i < 5; ++i) runner.expect(commands.at(i));
  runner.expect("rm -rf ~/Library/Logs/DiagnosticReports/* 2>/dev/null; true");
  EXPECT_THAT(shownBy(runSafeCleanup, "jjx"),
              HasSubstr("⚠ ~/Library/Developer/Xcode/Logs is a symbolic link: its target is left as it is.\n"
                        "  ✓ Xcode logs and diagnostic reports deleted.\n"));
}

TEST_F(Cleanup, SpeaksGerman) {
  setCurrentLanguage("de");
  for (std::size_t i = 0; i < 6; ++i) runner.expect(commands.at(i));
  EXPECT_THAT(shownBy(runSafeCleanup, "jjx"),
              AllOf(HasSubstr("Sichere Bereinigung ausführen? [j/N] j"),
                    HasSubstr("„Verzeichnisse löschen (sicher)“ jetzt ausführen und endgültig löschen? [j/N] j"),
                    HasSubstr("Diagnoseberichte        : "), HasSubstr("✓ Sichere Bereinigung abgeschlossen.")));
}

}  // namespace
}  // namespace halyard
