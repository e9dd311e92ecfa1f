#include "halyard/browser/directory_walk.hpp"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>

#include <dirent.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

WalkVerdict everything(const char* /*name*/, bool isDirectory) {
  return {.hit = isDirectory ? DirectoryEntry::Kind::directory : DirectoryEntry::Kind::file};
}

std::vector<DirectoryEntry> walk(const std::string& root, const WalkJudge& judge = everything) {
  const std::atomic<bool> isCancelled = false;
  return walkDirectory(root, judge, isCancelled);
}

/// Paths below the root, a folder with a slash behind it.
std::set<std::string> found(const std::string& root, const WalkJudge& judge = everything) {
  std::set<std::string> paths;
  for (const DirectoryEntry& entry : walk(root, judge)) {
    EXPECT_EQ(fs::path(entry.url).filename(), entry.name);
    const bool isDirectory = entry.kind == DirectoryEntry::Kind::directory;
    EXPECT_TRUE(paths.insert(entry.url.substr(root.size() + 1) + (isDirectory ? "/" : "")).second) << entry.url;
  }
  return paths;
}

std::size_t openDescriptors() {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator("/dev/fd"), fs::directory_iterator()));
}

/// A chain of folders of this depth, each with a file; every tenth has, beside the next, a side folder with a file. The
/// path may be longer than the system takes at once.
void makeChain(const std::string& root, int depth) {
  int folder = open(root.c_str(), O_RDONLY | O_DIRECTORY);
  for (int level = 0; level < depth; ++level) {
    if (level % 10 == 0) {
      ASSERT_EQ(mkdirat(folder, "side", 0700), 0);
      close(openat(folder, "side/leaf", O_CREAT | O_WRONLY, 0600));
    }
    close(openat(folder, "file", O_CREAT | O_WRONLY, 0600));
    ASSERT_EQ(mkdirat(folder, "a-longer-name-of-a-level", 0700), 0);
    const int next = openat(folder, "a-longer-name-of-a-level", O_RDONLY | O_DIRECTORY);
    close(folder);
    folder = next;
  }
  close(folder);
}

/// std::filesystem fails where paths get too long.
void removeTree(const std::string& folder) {
  const std::string command = "rm -rf '" + folder + "'";
  EXPECT_EQ(std::system(command.c_str()), 0);  // NOLINT(cert-env33-c,concurrency-mt-unsafe)
}

/// Lowers the number of descriptors for its lifetime.
class FewDescriptors {
 public:
  explicit FewDescriptors(rlim_t count) {
    getrlimit(RLIMIT_NOFILE, &before_);
    rlimit now = before_;
    now.rlim_cur = count;
    setrlimit(RLIMIT_NOFILE, &now);
  }
  ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }
  FewDescriptors(const FewDescriptors&) = delete;
  FewDescriptors& operator=(const FewDescriptors&) = delete;

 private:
  rlimit before_{};
};

TEST(DirectoryWalk, FindsWhatLiesBelowTheFolderAndNotTheFolderItself) {
  const TemporaryFolder folder;
  folder.write("a.txt", "");
  folder.write("sub/deeper/b.txt", "");
  folder.makeFolder("empty");
  EXPECT_THAT(found(folder.at()), UnorderedElementsAre("a.txt", "sub/", "sub/deeper/", "sub/deeper/b.txt", "empty/"));
}

TEST(DirectoryWalk, PassesOverHiddenItemsAndWhatLiesInThem) {
  const TemporaryFolder folder;
  folder.write(".hidden", "");
  folder.write(".git/config", "");
  folder.write("shown/..odd", "");
  folder.write("shown/x", "");
  EXPECT_THAT(found(folder.at()), UnorderedElementsAre("shown/", "shown/x"));
}

TEST(DirectoryWalk, PassesOverSymbolicLinksAlsoInLoops) {
  const TemporaryFolder folder;
  folder.write("real/file", "");
  fs::create_directory_symlink("..", folder.at("real/loop"));
  fs::create_directory_symlink("real", folder.at("other"));
  fs::create_symlink("real/file", folder.at("link"));
  fs::create_symlink("nowhere", folder.at("dangling"));
  EXPECT_THAT(found(folder.at()), UnorderedElementsAre("real/", "real/file"));
}

TEST(DirectoryWalk, BeginsAlsoAtALinkToAFolder) {
  const TemporaryFolder folder;
  folder.write("real/file", "");
  fs::create_directory_symlink("real", folder.at("other"));
  EXPECT_THAT(found(folder.at("other")), ElementsAre("file"));
}

TEST(DirectoryWalk, PassesOverWhatIsNeitherFileNorFolder) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.at("pipe").c_str(), 0600), 0);
  folder.write("file", "");
  EXPECT_THAT(found(folder.at()), ElementsAre("file"));
}

TEST(DirectoryWalk, AFolderThatIsNoneOrIsGoneHasNoHits) {
  const TemporaryFolder folder;
  folder.write("file", "");
  EXPECT_THAT(walk(folder.at("file")), IsEmpty());
  EXPECT_THAT(walk(folder.at("missing")), IsEmpty());
  EXPECT_THAT(walk(""), IsEmpty());
  EXPECT_THAT(walk("/" + std::string(8000, 'x')), IsEmpty());
}

TEST(DirectoryWalk, GoesOnBesideAFolderThatCannotBeRead) {
  const TemporaryFolder folder;
  folder.write("closed/inside", "");
  folder.write("open/inside", "");
  // The superuser reads any folder, so one that vanishes under the walk stands for one that can't be read.
  const auto judge = [&](const char* name, bool isDirectory) {
    if (std::strcmp(name, "closed") == 0) fs::rename(folder.at("closed"), folder.at(".moved"));
    return everything(name, isDirectory);
  };
  const auto paths = found(folder.at(), judge);
  EXPECT_TRUE(paths.contains("open/inside"));
  EXPECT_TRUE(paths.contains("closed/"));
  EXPECT_FALSE(paths.contains("closed/inside"));
}

TEST(DirectoryWalk, AFolderThatBecomesALinkMeanwhileIsNotFollowed) {
  const TemporaryFolder folder;
  folder.write("victim/inside", "");
  folder.write("outside/secret", "");
  const auto judge = [&](const char* name, bool isDirectory) {
    if (std::strcmp(name, "victim") == 0) {
      fs::rename(folder.at("victim"), folder.at(".victim"));
      fs::create_directory_symlink("outside", folder.at("victim"));
    }
    return everything(name, isDirectory);
  };
  EXPECT_FALSE(found(folder.at(), judge).contains("victim/secret"));
}

TEST(DirectoryWalk, StaysOutOfFoldersThatAreNotToBeDescendedInto) {
  const TemporaryFolder folder;
  folder.write("App.xcodeproj/project.pbxproj", "");
  folder.write("Sources/a.swift", "");
  const auto judge = [](const char* name, bool isDirectory) {
    WalkVerdict verdict = everything(name, isDirectory);
    verdict.descends = std::strcmp(name, "App.xcodeproj") != 0;
    return verdict;
  };
  EXPECT_THAT(found(folder.at(), judge), UnorderedElementsAre("App.xcodeproj/", "Sources/", "Sources/a.swift"));
}

TEST(DirectoryWalk, DescendsIntoFoldersThatAreNoHitThemselves) {
  const TemporaryFolder folder;
  folder.write("a/b/c", "");
  const auto filesOnly = [](const char* name, bool isDirectory) {
    return isDirectory ? WalkVerdict{} : everything(name, isDirectory);
  };
  EXPECT_THAT(found(folder.at(), filesOnly), ElementsAre("a/b/c"));
}

TEST(DirectoryWalk, TakesNamesOfAnyBytes) {
  const TemporaryFolder folder;
  const std::vector<std::string> names = {"u\xcc\x88mlaut.txt", "ümlaut.txt",    "🎉.md",      "new\nline.txt",
                                          "bell\a\x1b[31m.c",   "\xff\xfe.data", "$(touch x)", "it's \"quoted\""};
  std::set<std::string> expected;
  for (const std::string& name : names) {
    folder.write("in here/" + name, "");
    expected.insert("in here/" + name);
  }
  expected.insert("in here/");
  EXPECT_EQ(found(folder.at()), expected);
}

TEST(DirectoryWalk, FindsItsWayThroughThousandsOfLevelsWithFewDescriptors) {
  constexpr int depth = 2000;
  const TemporaryFolder folder;
  const std::string root = folder.makeFolder("chain");
  makeChain(root, depth);
  const std::size_t before = openDescriptors();
  std::size_t most = 0;
  int countdown = 0;
  const auto judge = [&](const char* name, bool isDirectory) {
    if (countdown-- == 0) {
      most = std::max(most, openDescriptors());
      countdown = 50;
    }
    return everything(name, isDirectory);
  };
  const auto hits = walk(root, judge);
  EXPECT_EQ(hits.size(), 2U * depth + 2U * depth / 10);
  EXPECT_LE(most, before + 70);
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_TRUE(std::ranges::any_of(hits, [](const auto& hit) { return hit.url.size() > 50'000; }));
  removeTree(root);
}

TEST(DirectoryWalk, ManagesWhereDescriptorsAreShort) {
  const TemporaryFolder folder;
  const std::string root = folder.makeFolder("chain");
  makeChain(root, 40);
  const FewDescriptors few(static_cast<rlim_t>(openDescriptors() + 4));
  EXPECT_EQ(walk(root).size(), 88U);
}

TEST(DirectoryWalk, ABranchMovedAwayUnderADeepWalkEndsNothingElse) {
  const TemporaryFolder folder;
  const std::string root = folder.makeFolder("chain");
  makeChain(root, 100);
  int seen = 0;
  const auto judge = [&](const char* name, bool isDirectory) {
    // Half way down, the way back is cut.
    if (std::strcmp(name, "file") == 0 && ++seen == 90) {
      fs::rename(root + "/a-longer-name-of-a-level/a-longer-name-of-a-level", folder.at("elsewhere"));
    }
    return everything(name, isDirectory);
  };
  const auto hits = walk(root, judge);
  EXPECT_GT(hits.size(), 180U);
  EXPECT_LE(hits.size(), 220U);
}

TEST(DirectoryWalk, ACancelledOneEndsAtItsNextItem) {
  const TemporaryFolder folder;
  for (int count = 0; count < 200; ++count)
    folder.write("sub" + std::to_string(count % 20) + "/" + std::to_string(count), "");
  std::atomic<bool> isCancelled = false;
  int judged = 0;
  const auto judge = [&](const char* name, bool isDirectory) {
    if (++judged == 30) isCancelled = true;
    return everything(name, isDirectory);
  };
  walkDirectory(folder.at(), judge, isCancelled);
  EXPECT_EQ(judged, 30);
}

}  // namespace
}  // namespace halyard
