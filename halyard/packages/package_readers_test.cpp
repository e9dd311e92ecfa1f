#include "halyard/packages/package_readers.hpp"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/text_file.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "test_places.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

std::string pin(std::string_view body) { return R"({"pins": [{)" + std::string(body) + "}]}"; }

TEST(PackageResolved, APinHasItsIdentityVersionAndAddress) {
  EXPECT_THAT(readPackageResolved(pin(R"("identity": "lantern", "location": "https://example.com/lantern.git",
                                         "state": {"revision": "0123456789abcdef", "version": "1.2.3"})")),
              ElementsAre(SPMPackageInfo{"lantern", "1.2.3", "https://example.com/lantern.git"}));
}

TEST(PackageResolved, APinWithABranchAndNoVersionShowsTheBranch) {
  EXPECT_EQ(readPackageResolved(pin(R"("identity": "a", "state": {"branch": "main", "revision": "0123456789"})"))
                .at(0)
                .version,
            "main");
  EXPECT_EQ(readPackageResolved(pin(R"("identity": "a", "state": {"branch": "main", "version": null})")).at(0).version,
            "main");
}

TEST(PackageResolved, OtherwiseTheStartOfTheRevisionIsShown) {
  EXPECT_EQ(readPackageResolved(pin(R"("identity": "a", "state": {"revision": "0123456789abcdef"})")).at(0).version,
            "0123456");
  EXPECT_EQ(readPackageResolved(pin(R"("identity": "a", "state": {})")).at(0).version, "");
  EXPECT_EQ(readPackageResolved(pin(R"("identity": "a", "state": null)")).at(0).version, "");
}

TEST(PackageResolved, APinWithoutAUsableIdentityIsDropped) {
  EXPECT_THAT(readPackageResolved(R"({"pins": [{"location": "x"}, {"identity": 3}, {"identity": " "}, 7, null,
                                               {"identity": 3, "package": "b"}]})"),
              ElementsAre(Field(&SPMPackageInfo::identity, "b")));
}

TEST(PackageResolved, TheFirstVersionOfTheFormatIsReadToo) {
  EXPECT_THAT(readPackageResolved(R"({"object": {"pins": [{"package": "Beacon",
                  "repositoryURL": "https://example.com/Beacon", "state": {"branch": null, "version": "2.0.0"}}]},
                  "version": 1})"),
              ElementsAre(SPMPackageInfo{"Beacon", "2.0.0", "https://example.com/Beacon"}));
}

TEST(PackageResolved, WhatIsNoSuchDocumentHasNoPins) {
  for (const char* text : {"", "{", "[]", "7", R"({"pins": 3})", R"({"object": []})", "\xff\xfe"}) {
    EXPECT_THAT(readPackageResolved(text), IsEmpty()) << text;
  }
}

constexpr const char* lockFile =
    "PODS:\n"
    "  - Harbor (3.2.1):\n"
    "    - Harbor/Core (= 3.2.1)\n"
    "    - Rope\n"
    "  - Harbor/Core (3.2.1)\n"
    "  - \"Knots+Ties (0.4)\":\n"
    "    - Rope (~> 1.0)\n"
    "  - Rope (1.0.2)\n"
    "\n"
    "DEPENDENCIES:\n"
    "  - Harbor\n";

TEST(PodfileLock, EntriesWithSubDependenciesListOnlyTheDirectNames) {
  EXPECT_THAT(readPodfileLock(lockFile), ElementsAre(PodInfo{"Harbor", "3.2.1"}, PodInfo{"Harbor/Core", "3.2.1"},
                                                     PodInfo{"Knots+Ties", "0.4"}, PodInfo{"Rope", "1.0.2"}));
}

TEST(PodfileLock, ReadsBehindThePodsAndStopsAtTheNextHeading) {
  EXPECT_THAT(readPodfileLock("  - Before (1)\nPODS:\n  - A (1)\nDEPENDENCIES:\n  - B (2)\n"),
              ElementsAre(PodInfo{"A", "1"}));
  EXPECT_THAT(readPodfileLock("PODS:\r\n  - A (1):\r\n\t- deeper\r\n  - B\r\n"),
              ElementsAre(PodInfo{"A", "1"}, PodInfo{"B", ""}));
}

TEST(PodfileLock, AnUnfinishedEntryHasNoVersion) {
  EXPECT_THAT(readPodfileLock("PODS:\n  - A (1\n  - \n  - (2)\n"), ElementsAre(PodInfo{"A", ""}));
}

TEST(CartfileResolved, NamesAreTheLastPartOfTheSource) {
  EXPECT_THAT(readCartfileResolved("\n# A remark of words\n"
                                   "github \"lantern/Beacon\" \"v5.3.3\"\n"
                                   "git \"https://example.com/Ropes.git\" \"0123456789abcdef\"\r\n"
                                   "binary \"https://example.com/specs/Buoy.json\" \"1.0.0\"\n"
                                   "git \"https://example.com/Dock/\" \"2.0\"\n"
                                   "github \"alone\"\n"
                                   "github\n"),
              ElementsAre(CarthageFWInfo{"Beacon", "v5.3.3"}, CarthageFWInfo{"Ropes", "0123456789abcdef"},
                          CarthageFWInfo{"Buoy.json", "1.0.0"}, CarthageFWInfo{"Dock", "2.0"}));
}

TEST(PackageResolvedSearch, IsSpelledAsEachPlaceNeedsIt) {
  EXPECT_EQ(packageResolvedSearch,
            R"(find . \( -path '*/xcshareddata/swiftpm/Package.resolved' -o \( -name 'Package.resolved' )"
            R"(-not -path '*/Carthage/*' -not -path '*/Pods/*' -not -path '*/.build/*' \) \) 2>/dev/null | head -1)");
  EXPECT_EQ(packageResolvedToShowSearch,
            "find . -name 'Package.resolved' -not -path '*/Carthage/*' -not -path '*/Pods/*' 2>/dev/null | head -1");
  EXPECT_EQ(packageResolvedSearchIn("/a b"),
            "find '/a b' -maxdepth 5 -name 'Package.resolved' -not -path '*/Pods/*' -not -path '*/Carthage/*' "
            "2>/dev/null | head -1");
}

class LockFiles : public testing::Test {
 protected:
  LockFiles() { std::filesystem::current_path(folder.path()); }
  ~LockFiles() override { std::filesystem::current_path(before); }

  std::filesystem::path before = std::filesystem::current_path();
  TemporaryFolder folder;
  DefaultCommandRunner runner;
  DefaultFileSystemClient files;
  DependenciesGuard guard{{.commandRunner = &runner, .fileSystemClient = &files, .appContext = nullptr}};
};

TEST_F(LockFiles, AreFoundAndReadFromTheCurrentFolder) {
  folder.write("Pods/x/Package.resolved", pin(R"("identity": "other")"));
  folder.write("App.xcodeproj/project.xcworkspace/xcshareddata/swiftpm/Package.resolved",
               pin(R"("identity": "lantern")"));
  folder.write("Podfile.lock", lockFile);
  folder.write("Cartfile.resolved", "github \"a/B\" \"1\"\n");
  EXPECT_THAT(pinnedPackages(), ElementsAre(Field(&SPMPackageInfo::identity, "lantern")));
  EXPECT_EQ(lockedPods().size(), 4U);
  EXPECT_THAT(lockedFrameworks(), ElementsAre(CarthageFWInfo{"B", "1"}));
}

TEST_F(LockFiles, AreNoneInAnEmptyFolder) {
  EXPECT_THAT(pinnedPackages(), IsEmpty());
  EXPECT_THAT(lockedPods(), IsEmpty());
  EXPECT_THAT(lockedFrameworks(), IsEmpty());
}

TEST_F(LockFiles, OfAProjectAreFoundWhateverItsFolderIsCalled) {
  const std::string hostile = "a'b $(touch x) `id`;\n z";
  folder.write(hostile + "/Package.resolved", pin(R"("identity": "lantern")"));
  EXPECT_THAT(pinnedPackagesIn("./" + hostile), IsEmpty());  // the search answers in lines
  folder.write("a'b $(touch x) `touch y`;/Package.resolved", pin(R"("identity": "lantern")"));
  EXPECT_THAT(pinnedPackagesIn("a'b $(touch x) `touch y`;"), ElementsAre(Field(&SPMPackageInfo::identity, "lantern")));
  EXPECT_FALSE(std::filesystem::exists("x") || std::filesystem::exists("y"));
}

/// Files that real tools wrote, where they are at hand.
std::vector<std::filesystem::path> recorded(std::string_view beginning) {
  std::vector<std::filesystem::path> paths;
  const std::filesystem::path source(HALYARD_SOURCE_DIR);
  std::error_code none;
  for (const auto& entry : std::filesystem::directory_iterator(source / "../shared/recordings/packages", none)) {
    if (entry.path().filename().string().starts_with(beginning)) paths.push_back(entry.path());
  }
  return paths;
}

TEST(RecordedLockFiles, AllListWhatTheyHold) {
  EXPECT_EQ(readPodfileLock(lockFile).size(), 4U);
  for (const auto& path : recorded("Podfile.lock")) {
    const auto pods = readPodfileLock(readTextFile(path.string()).value_or(""));
    EXPECT_GT(pods.size(), 5U) << path;
    for (const PodInfo& pod : pods) {
      EXPECT_EQ(pod.name.find_first_of("\" ():"), std::string::npos) << path << pod.name;
      EXPECT_NE(pod.version, "") << path << pod.name;
    }
  }
  for (const auto& path : recorded("Package.resolved")) {
    const auto packages = readPackageResolved(readTextFile(path.string()).value_or(""));
    EXPECT_FALSE(packages.empty()) << path;
    for (const SPMPackageInfo& package : packages) EXPECT_NE(package.identity, "") << path;
  }
  for (const auto& path : recorded("Cartfile.resolved")) {
    EXPECT_THAT(readCartfileResolved(readTextFile(path.string()).value_or("")),
                ElementsAre(CarthageFWInfo{"realm-cocoa", "v5.3.3"}, CarthageFWInfo{"ReactiveCocoa", "11.0.0"},
                            CarthageFWInfo{"Alamofire", "5.2.2"}, CarthageFWInfo{"binaryspec.json", "1.0.0"}))
        << path;
  }
}

}  // namespace
}  // namespace halyard
