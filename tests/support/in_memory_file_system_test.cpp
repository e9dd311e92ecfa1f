#include "tests/support/in_memory_file_system.hpp"

#include <functional>
#include <system_error>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

std::errc reasonOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const std::system_error& error) {
    return static_cast<std::errc>(error.code().value());
  }
  return {};
}

TEST(InMemoryFileSystem, AFileBringsItsFolders) {
  InMemoryFileSystem files;
  files.addFile("/a/b/c.txt", "text").addFolder("/a/d").addLink("/a/l");
  EXPECT_TRUE(files.fileExists("/a/b"));
  EXPECT_THAT(files.contentsOfDirectory("/a/"), UnorderedElementsAre("b", "d", "l"));
  EXPECT_THAT(files.contentsOfDirectory("/a/d"), ElementsAre());
  EXPECT_EQ(files.content("/a/b/c.txt"), "text");
  EXPECT_EQ(files.attributesOfItem("/a/b/c.txt").size, 4u);
  EXPECT_EQ(files.attributesOfItem("/a/l").type, FileType::symbolicLink);
  EXPECT_EQ(files.homeDirectoryPath(), "/Users/demo");
  EXPECT_TRUE(files.fileExists("/Users/demo"));
}

TEST(InMemoryFileSystem, ANameThatBeginsAlikeIsNotInside) {
  InMemoryFileSystem files;
  files.addFile("/ab/x").addFile("/a/y");
  EXPECT_THAT(files.contentsOfDirectory("/a"), ElementsAre("y"));
  files.removeItem("/a");
  EXPECT_TRUE(files.fileExists("/ab/x"));
}

TEST(InMemoryFileSystem, RemovalTakesWhatIsInsideAndIsRemembered) {
  InMemoryFileSystem files;
  files.addFile("/a/b/c");
  files.removeItem("/a/b");
  EXPECT_FALSE(files.fileExists("/a/b/c"));
  EXPECT_TRUE(files.fileExists("/a"));
  EXPECT_THAT(files.removed(), ElementsAre("/a/b"));
  EXPECT_EQ(reasonOf([&] { files.removeItem("/a/b"); }), std::errc::no_such_file_or_directory);
}

TEST(InMemoryFileSystem, CreatingAFolderFollowsTheContract) {
  InMemoryFileSystem files;
  files.addFile("/file");
  EXPECT_EQ(reasonOf([&] { files.createDirectory("/x/y", false); }), std::errc::no_such_file_or_directory);
  files.createDirectory("/x/y", true);
  EXPECT_TRUE(files.fileExists("/x/y"));
  files.createDirectory("/x/y", true);
  EXPECT_EQ(reasonOf([&] { files.createDirectory("/x/y", false); }), std::errc::file_exists);
  EXPECT_EQ(reasonOf([&] { files.createDirectory("/file", true); }), std::errc::file_exists);
  EXPECT_EQ(reasonOf([&] { files.createDirectory("/file/x", true); }), std::errc::not_a_directory);
}

TEST(InMemoryFileSystem, ErrorsAreThoseOfTheRealOne) {
  InMemoryFileSystem files;
  files.addFile("/file").addFolder("/closed");
  files.deny("/closed");
  EXPECT_EQ(reasonOf([&] { static_cast<void>(files.contentsOfDirectory("/none")); }),
            std::errc::no_such_file_or_directory);
  EXPECT_EQ(reasonOf([&] { static_cast<void>(files.contentsOfDirectory("/file")); }), std::errc::not_a_directory);
  EXPECT_EQ(reasonOf([&] { static_cast<void>(files.contentsOfDirectory("/closed")); }), std::errc::permission_denied);
  EXPECT_EQ(reasonOf([&] { files.removeItem("/closed"); }), std::errc::permission_denied);
}

TEST(InMemoryFileSystem, SizesDatesAndPermissionsCanBeSet) {
  InMemoryFileSystem files;
  files.addFileOfSize("/big", 5'000'000'000);
  const auto date = std::chrono::system_clock::from_time_t(1'700'000'000);
  files.setModificationDate("/big", date);
  files.setPermissions("/big", 0600);
  const FileAttributes attributes = files.attributesOfItem("/big");
  EXPECT_EQ(attributes.size, 5'000'000'000u);
  EXPECT_EQ(attributes.modificationDate, date);
  EXPECT_EQ(attributes.posixPermissions, 0600u);
}

}  // namespace
}  // namespace halyard
