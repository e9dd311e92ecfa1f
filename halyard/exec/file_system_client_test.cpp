#include "halyard/exec/file_system_client.hpp"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/in_memory_file_system.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

struct FileSystemClient : testing::Test {
  TemporaryFolder folder;
  DefaultFileSystemClient client;
};

TEST_F(FileSystemClient, AFolderExistsLikeAFile) {
  folder.write("a", "");
  EXPECT_TRUE(client.fileExists(folder.at("a")));
  EXPECT_TRUE(client.fileExists(folder.at()));
  EXPECT_FALSE(client.fileExists(folder.at("b")));
  EXPECT_FALSE(client.fileExists(folder.at("a/b")));
  EXPECT_FALSE(client.fileExists(""));
}

TEST_F(FileSystemClient, ALinkToNowhereDoesNotExist) {
  std::filesystem::create_symlink("nowhere", folder.at("link"));
  EXPECT_FALSE(client.fileExists(folder.at("link")));
}

TEST_F(FileSystemClient, ATildeIsAName) { EXPECT_FALSE(client.fileExists("~")); }

TEST_F(FileSystemClient, ContentsAreTheEntriesNames) {
  EXPECT_TRUE(client.contentsOfDirectory(folder.at()).empty());
  folder.write("file", "");
  folder.write(".hidden", "");
  folder.write("sub/inner", "");
  EXPECT_THAT(client.contentsOfDirectory(folder.at()), UnorderedElementsAre("file", ".hidden", "sub"));
}

TEST_F(FileSystemClient, ContentsOfWhatIsNoFolderAreAnError) {
  folder.write("file", "");
  EXPECT_THROW(static_cast<void>(client.contentsOfDirectory(folder.at("missing"))), std::system_error);
  EXPECT_THROW(static_cast<void>(client.contentsOfDirectory(folder.at("file"))), std::system_error);
}

TEST_F(FileSystemClient, AttributesTellSizeTypeDatesAndPermissions) {
  const auto before = std::chrono::system_clock::now() - std::chrono::seconds(2);
  const std::string path = folder.write("file", "12345");
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  const FileAttributes attributes = client.attributesOfItem(path);
  EXPECT_EQ(attributes.type, FileType::regular);
  EXPECT_EQ(attributes.size, 5U);
  EXPECT_EQ(attributes.posixPermissions, 0640U);
  for (const auto date : {attributes.modificationDate, attributes.creationDate}) {
    EXPECT_GE(date, before);
    EXPECT_LE(date, std::chrono::system_clock::now());
  }
  EXPECT_EQ(client.attributesOfItem(folder.at()).type, FileType::directory);
  EXPECT_EQ(client.attributesOfItem("/dev/null").type, FileType::other);
}

TEST_F(FileSystemClient, AttributesOfALinkAreItsOwn) {
  std::filesystem::create_symlink("nowhere", folder.at("link"));
  EXPECT_EQ(client.attributesOfItem(folder.at("link")).type, FileType::symbolicLink);
}

TEST_F(FileSystemClient, AttributesOfWhatIsMissingAreAnErrorThatSaysWhy) {
  try {
    static_cast<void>(client.attributesOfItem(folder.at("missing")));
    FAIL() << "no error";
  } catch (const std::system_error& error) {
    EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
  }
}

TEST_F(FileSystemClient, AFolderIsRemovedWithAllThatItHolds) {
  folder.write("sub/inner/file", "");
  client.removeItem(folder.at("sub"));
  EXPECT_FALSE(client.fileExists(folder.at("sub")));
}

TEST_F(FileSystemClient, RemovingALinkLeavesWhatItShows) {
  folder.write("sub/file", "");
  std::filesystem::create_directory_symlink("sub", folder.at("link"));
  client.removeItem(folder.at("link"));
  EXPECT_TRUE(client.fileExists(folder.at("sub/file")));
  EXPECT_THAT(client.contentsOfDirectory(folder.at()), UnorderedElementsAre("sub"));
}

TEST_F(FileSystemClient, RemovingWhatIsMissingIsAnError) {
  EXPECT_THROW(client.removeItem(folder.at("missing")), std::system_error);
}

TEST_F(FileSystemClient, IntermediateFoldersAreMadeAndAnExistingFolderIsFine) {
  client.createDirectory(folder.at("a/b/c"), true);
  EXPECT_EQ(client.attributesOfItem(folder.at("a/b/c")).type, FileType::directory);
  EXPECT_NO_THROW(client.createDirectory(folder.at("a/b/c"), true));
}

TEST_F(FileSystemClient, WithoutIntermediateFoldersTheParentMustExistAndTheFolderNot) {
  EXPECT_THROW(client.createDirectory(folder.at("a/b"), false), std::system_error);
  client.createDirectory(folder.at("a"), false);
  EXPECT_THROW(client.createDirectory(folder.at("a"), false), std::system_error);
}

TEST_F(FileSystemClient, AFileInTheWayIsAnError) {
  folder.write("file", "");
  EXPECT_THROW(client.createDirectory(folder.at("file"), true), std::system_error);
  EXPECT_THROW(client.createDirectory(folder.at("file"), false), std::system_error);
}

TEST_F(FileSystemClient, TheHomeFolderIsThatOfTheEnvironment) {
  EXPECT_EQ(client.homeDirectoryPath(), std::getenv("HOME"));
}

TEST_F(FileSystemClient, VisibleItemsComeWithTheirTypesFromTheDiskAndFromATreeInMemory) {
  folder.write("file", "");
  folder.write(".hidden", "");
  folder.makeFolder("folder");
  std::filesystem::create_symlink("folder", folder.at("link"));
  InMemoryFileSystem memory;
  memory.addFile("/t/file").addFile("/t/.hidden").addFolder("/t/folder").addLink("/t/link");
  const std::vector<ListedItem> expected = {
      {"file", FileType::regular}, {"folder", FileType::directory}, {"link", FileType::symbolicLink}};
  EXPECT_THAT(client.visibleItems(folder.at()), UnorderedElementsAreArray(expected));
  EXPECT_THAT(memory.visibleItems("/t"), UnorderedElementsAreArray(expected));
  EXPECT_THAT(memory.visibleItems("/t/"), UnorderedElementsAreArray(expected));
  EXPECT_THROW(static_cast<void>(client.visibleItems(folder.at("nowhere"))), std::system_error);
  EXPECT_THROW(static_cast<void>(memory.visibleItems("/nowhere")), std::system_error);
}

}  // namespace
}  // namespace halyard
