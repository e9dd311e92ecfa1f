// Every row that deletes, in both languages, with the demo's caches in the home folder.
#include "tests/e2e/cache_session.hpp"

namespace halyard {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

struct CleaningRow {
  const char* name;
  const char* language;
  const char* label;
  std::vector<const char*> questions;  ///< each answered with a yes
  const char* success;
  std::vector<std::string_view> removed;
  std::vector<std::string_view> emptied;
  std::vector<std::string_view> kept;
  std::vector<std::string> calls;  ///< of simctl
};

std::ostream& operator<<(std::ostream& stream, const CleaningRow& row) { return stream << row.name; }

using namespace CacheFolder;

const std::vector<std::string_view> otherPlaces = {archives, deviceSupport, devices, packages, logs};
const std::vector<std::string_view> safeRemoved = {derivedData, moduleCache, xcodeCaches, simulatorCache};
const std::vector<std::string_view> safeEmptied = {packages, packageData, logs, reports};
const std::vector<std::string_view> deepRemoved = {derivedData,    moduleCache, xcodeCaches,
                                                   simulatorCache, archives,    deviceSupport};

const std::vector<CleaningRow> rows = {
    {"ProjectBuildFolder",
     "en",
     "Delete Derived Data (CapstanLightBuild-Harbor)",
     {"Delete DerivedData/CapstanLightBuild-Harbor? ("},
     "✓ Derived Data of the project deleted.",
     {demoBuildFolder},
     {},
     {derivedData, moduleCache, archives, devices},
     {}},
    {"DerivedData",
     "en",
     "Delete Derived Data [1]",
     {"Delete Derived Data (3.8G)? [j/N]"},
     "✓ Derived Data deleted.",
     {derivedData},
     {},
     {moduleCache, archives, devices, packages},
     {}},
    {"WithoutPackageManagers",
     "en",
     "Delete directories (without package manager)",
     {"Delete directories (without SPM)? [j/N]"},
     "✓ Directories deleted (SPM preserved).",
     {demoBuildFolder, moduleCache, simulatorCache, xcodeCaches},
     {},
     {derivedData, packages, archives, devices, pods},
     {}},
    {"WithPackageManagers",
     "en",
     "Delete directories (with package manager) [2]",
     {"Delete all directories incl. SPM? [j/N]"},
     "✓ All directories deleted.",
     {demoBuildFolder, moduleCache, simulatorCache, xcodeCaches, packages},
     {},
     {derivedData, packageData, archives, devices, pods, carthage},
     {}},
    {"Safe",
     "en",
     "Delete Directories (Safe)",
     {"Run safe cleanup? [j/N]", "Run Delete Directories (Safe) now and delete permanently? [j/N]"},
     "✓ Safe cleanup complete.",
     safeRemoved,
     safeEmptied,
     {archives, deviceSupport, devices, sourcePackages, pods},
     {}},
    {"Deep",
     "en",
     "Delete Directories (Deep)",
     {"Run deep cleanup? [j/N]", "Run Delete Directories (Deep) now and delete permanently? [j/N]"},
     "✓ Deep cleanup complete.",
     deepRemoved,
     safeEmptied,
     {sourcePackages, pods, carthage, previews},
     {"simctl delete all"}},
    {"Complete",
     "en",
     "Delete Directories (Complete)",
     {"Run complete cleanup? [j/N]", "Run Delete Directories (Complete) now and delete permanently? [j/N]",
      "Also delete simulator runtimes? (Re-download required) [j/N]"},
     "✓ Complete cleanup complete.",
     deepRemoved,
     safeEmptied,
     {sourcePackages, pods, carthage, previews},
     {"simctl delete all", "simctl runtime delete all"}},
    {"FullReset",
     "en",
     "Delete Directories (Full Reset)",
     {"Run full reset? [j/N]", "Run Delete Directories (Full Reset) now and delete permanently? [j/N]",
      "Also delete simulator runtimes? (Re-download required) [j/N]"},
     "✓ Full reset complete.",
     {derivedData, moduleCache, xcodeCaches, simulatorCache, archives, deviceSupport, sourcePackages, pods, carthage},
     safeEmptied,
     {previews},
     {"simctl delete all", "simctl runtime delete all"}},
    {"DerivedDataInGerman",
     "de",
     "Derived Data löschen [1]",
     {"Derived Data löschen (3.8G)? [j/N]"},
     "✓ Derived Data gelöscht.",
     {derivedData},
     {},
     {moduleCache},
     {}},
    {"WithPackageManagersInGerman",
     "de",
     "Verzeichnisse löschen (mit Paketmanager) [2]",
     {"Alle Verzeichnisse inkl. SPM löschen? [j/N]"},
     "✓ Alle Verzeichnisse gelöscht.",
     {moduleCache, packages},
     {},
     {derivedData},
     {}},
    {"FullResetInGerman",
     "de",
     "Verzeichnisse löschen (Komplett-Reset)",
     {"Komplett-Reset ausführen? [j/N]",
      "„Verzeichnisse löschen (Komplett-Reset)“ jetzt ausführen und endgültig löschen? [j/N]",
      "Auch Simulator-Runtimes löschen? (Erneuter Download nötig) [j/N]"},
     "✓ Komplett-Reset abgeschlossen.",
     {derivedData, archives, pods, carthage},
     safeEmptied,
     {previews},
     {"simctl delete all", "simctl runtime delete all"}},
};

class CleaningRows : public testing::TestWithParam<CleaningRow> {
 public:
  /// The calls of the simulators' tool that delete something.
  static std::vector<std::string> deletions(const TerminalSession& session) {
    std::vector<std::string> calls;
    for (const std::string& call : session.callsOf("xcrun")) {
      if (call.find(" delete ") != std::string::npos) calls.push_back(call.substr(std::string("xcrun ").size()));
    }
    return calls;
  }

  /// Answers all questions but the last with a yes, and the last as given.
  static bool answer(TerminalSession& session, std::size_t questions, const char* last) {
    for (std::size_t i = 0; i < questions; ++i) {
      if (!session.waitFor(GetParam().questions.at(i)) || !session.waitUntilIdle()) return false;
      session.send(i + 1 == questions ? last : "j");
    }
    return true;
  }
};

TEST_P(CleaningRows, DeletesItsPlacesAndNoOthers) {
  const CleaningRow& row = GetParam();
  TerminalSession session(cacheOptions(row.language));
  ASSERT_TRUE(runCacheRow(session, row.label));
  ASSERT_TRUE(answer(session, row.questions.size(), "j"));
  ASSERT_TRUE(session.waitFor(row.success) && session.waitFor("[X]") && session.waitUntilIdle());
  for (const std::string_view place : row.removed) EXPECT_FALSE(isThere(session, place)) << place;
  for (const std::string_view place : row.emptied) EXPECT_TRUE(isEmptyFolder(session, place)) << place;
  for (const std::string_view place : row.kept) {
    EXPECT_TRUE(isThere(session, place) && !isEmptyFolder(session, place)) << place;
  }
  EXPECT_EQ(deletions(session), row.calls);
  EXPECT_EQ(isEmptyFolder(session, devices), !row.calls.empty());
  EXPECT_EQ(session.readHomeFile("Documents/letter"), "stays");
  session.send("x");
  quit(session);
}

TEST_P(CleaningRows, ANoAtAnyQuestionBeforeTheFirstDeletionDeletesNothing) {
  const CleaningRow& row = GetParam();
  const std::size_t askedBefore = std::min<std::size_t>(row.questions.size(), 2);
  TerminalSession session(cacheOptions(row.language));
  ASSERT_TRUE(isAtMenu(session));
  const std::size_t items = itemsInHome(session);
  for (std::size_t count = 1; count <= askedBefore; ++count) {
    ASSERT_TRUE(runCacheRow(session, row.label));
    ASSERT_TRUE(answer(session, count, "n"));
    ASSERT_TRUE(isAtMenu(session)) << "back at once";
  }
  EXPECT_EQ(itemsInHome(session), items);
  EXPECT_THAT(deletions(session), testing::IsEmpty());
  quit(session);
}

INSTANTIATE_TEST_SUITE_P(Rows, CleaningRows, testing::ValuesIn(rows),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(Cleaning, ANoToTheRuntimesKeepsThemAndTheLevelIsComplete) {
  TerminalSession session(cacheOptions());
  ASSERT_TRUE(runCacheRow(session, "Delete Directories (Complete)"));
  for (const char* question : {"Run complete cleanup? [j/N]", "delete permanently? [j/N]"}) {
    ASSERT_TRUE(session.waitFor(question) && session.waitUntilIdle());
    session.send("j");
  }
  ASSERT_TRUE(session.waitFor("Also delete simulator runtimes?") && session.waitUntilIdle());
  EXPECT_FALSE(isThere(session, archives)) << "the question comes at the end";
  session.send("n");
  ASSERT_TRUE(session.waitFor("✓ Complete cleanup complete.") && session.waitFor("[X]") && session.waitUntilIdle());
  EXPECT_THAT(CleaningRows::deletions(session), testing::ElementsAre("simctl delete all"));
  session.send("x");
  quit(session);
}

TEST(Cleaning, TheDigitOneDeletesDerivedDataWithoutAsking) {
  TerminalSession session(cacheOptions());
  ASSERT_TRUE(isAtMenu(session));
  session.send("1");
  ASSERT_TRUE(session.waitFor("✓ Derived Data deleted.") && session.waitFor("[X]") && session.waitUntilIdle());
  session.expectShowsNot("[j/N]");
  EXPECT_FALSE(isThere(session, derivedData));
  EXPECT_TRUE(isThere(session, moduleCache));
  session.send("x");
  quit(session);
}

TEST(Cleaning, TheDigitTwoDeletesWithThePackageManagersOfTheProject) {
  SessionOptions options = cacheOptions("de");
  options.homeFiles["Harbor/Podfile"] = "platform :ios\n";
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  session.send("2");
  ASSERT_TRUE(session.waitFor("✓ Alle Verzeichnisse gelöscht.") && session.waitFor("[X]") && session.waitUntilIdle());
  session.expectShowsNot("[j/N]");
  for (const std::string_view place : {packages, pods, moduleCache}) EXPECT_FALSE(isThere(session, place)) << place;
  for (const std::string_view place : {derivedData, carthage, packageData}) EXPECT_TRUE(isThere(session, place));
  session.send("x");
  quit(session);
}

TEST(Cleaning, APlaceThatIsGoneIsAskedForWithADash) {
  TerminalSession session(cacheOptions());
  ASSERT_TRUE(isAtMenu(session));
  std::filesystem::remove_all(session.inHome(derivedData));
  ASSERT_TRUE(runCacheRow(session, "Delete Derived Data [1]"));
  ASSERT_TRUE(session.waitFor("Delete Derived Data (—)? [j/N]") && session.waitUntilIdle());
  session.send("j");
  ASSERT_TRUE(session.waitFor("✓ Derived Data deleted.") && session.waitUntilIdle());
  session.send("x");
  quit(session);
}

TEST(Cleaning, AHomeThatIsNoneIsRefused) {
  for (const std::string home : {"", "relative", "/"}) {
    SessionOptions options = cacheOptions();
    options.preferences.clear();  // they are below the home folder, which isn't found
    options.environment["HOME"] = home;
    TerminalSession session(options);
    ASSERT_TRUE(runCacheRow(session, "Delete Directories (Safe)"));
    session.expectShows("Nothing was deleted: HOME names no usable home folder.");
    session.expectShows("HOME=" + home);
    session.send("x");
    ASSERT_TRUE(isAtMenu(session));
    session.send("1");
    ASSERT_TRUE(session.waitFor("HOME names no usable home folder.") && session.waitUntilIdle());
    session.send("x");
    ASSERT_TRUE(isAtMenu(session));
    EXPECT_TRUE(isThere(session, derivedData));
    session.send("Q");
    session.expectCleanEnd();
  }
}

}  // namespace
}  // namespace halyard
