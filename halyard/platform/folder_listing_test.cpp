#include "halyard/platform/folder_listing.hpp"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST(FolderListing, TellsTheTypeOfEachItemItself) {
  const TemporaryFolder folder;
  folder.write("file", "");
  folder.makeFolder("folder");
  std::filesystem::create_symlink("folder", folder.at("link"));
  std::filesystem::create_symlink("nowhere", folder.at("dangling"));
  ASSERT_EQ(mkfifo(folder.at("pipe").c_str(), 0600), 0);
  EXPECT_THAT(
      visibleFolderItems(folder.at()),
      UnorderedElementsAre(ListedItem{"file", FileType::regular}, ListedItem{"folder", FileType::directory},
                           ListedItem{"link", FileType::symbolicLink}, ListedItem{"dangling", FileType::symbolicLink},
                           ListedItem{"pipe", FileType::other}));
}

TEST(FolderListing, LeavesHiddenItemsOut) {
  const TemporaryFolder folder;
  folder.write(".file", "");
  folder.makeFolder(".folder");
  folder.makeFolder("...");
  EXPECT_THAT(visibleFolderItems(folder.at()), IsEmpty());
}

TEST(FolderListing, NamesMayHoldAnyBytes) {
  const TemporaryFolder folder;
  for (const auto* name : {"a\nb", "\x1b[31m", "caf\xC3\xA9", "cafe\xCC\x81", " "}) folder.write(name, "");
  EXPECT_EQ(visibleFolderItems(folder.at()).size(), 5U);
}

TEST(FolderListing, SaysWhyAFolderCannotBeRead) {
  const TemporaryFolder folder;
  const auto failureOf = [](const std::string& path) {
    try {
      visibleFolderItems(path);
      return 0;
    } catch (const std::system_error& error) {
      return error.code().value();
    }
  };
  EXPECT_EQ(failureOf(folder.at("nowhere")), ENOENT);
  EXPECT_EQ(failureOf(folder.write("file", "")), ENOTDIR);
  EXPECT_EQ(failureOf(folder.at(std::string(300, 'x'))), ENAMETOOLONG);
  EXPECT_EQ(failureOf(""), ENOENT);
  EXPECT_EQ(failureOf(folder.at() + "/" + std::string(6000, '/') + "nowhere"), ENOENT);
}

TEST(FolderListing, AClosedFolderIsNotRead) {
  const TemporaryFolder folder;
  folder.write("closed/inside", "");
  std::filesystem::permissions(folder.at("closed"), std::filesystem::perms::none);
  // Root may read everything: a child without its rights looks.
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    if (geteuid() == 0 && (chmod(folder.at().c_str(), 0755) != 0 || setuid(65534) != 0)) _exit(2);
    const int descriptor = openFolder(folder.at("closed"));
    _exit(descriptor == -1 && errno == EACCES ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  std::filesystem::permissions(folder.at("closed"), std::filesystem::perms::owner_all);
}

TEST(FolderListing, APathMayBeLongerThanTheSystemTakes) {
  const TemporaryFolder folder;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  std::string path = folder.at();
  const std::string part(250, 'p');
  for (int depth = 0; depth < 40; ++depth) {
    std::filesystem::create_directory(part);
    std::filesystem::current_path(part);
    path += "/" + part;
  }
  std::filesystem::create_directory("end");
  std::filesystem::current_path(before);
  ASSERT_GT(path.size(), 10000U);
  EXPECT_THAT(visibleFolderItems(path), UnorderedElementsAre(ListedItem{"end", FileType::directory}));
  EXPECT_THROW(visibleFolderItems(path + "/nowhere"), std::system_error);
}

TEST(FolderListing, LeavesNoDescriptorOpen) {
  const TemporaryFolder folder;
  const int before = open("/dev/null", O_RDONLY | O_CLOEXEC);
  close(before);
  for (int i = 0; i < 50; ++i) {
    visibleFolderItems(folder.at());
    EXPECT_THROW(visibleFolderItems(folder.at("nowhere")), std::system_error);
  }
  const int after = open("/dev/null", O_RDONLY | O_CLOEXEC);
  close(after);
  EXPECT_EQ(after, before);
}

}  // namespace
}  // namespace halyard
