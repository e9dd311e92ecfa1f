#include "halyard/exec/file_system_client.hpp"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <sys/stat.h>

#include "halyard/platform/folder_listing.hpp"
#include "halyard/platform/home_directory.hpp"
#include "halyard/platform/item_status.hpp"

namespace fs = std::filesystem;

namespace halyard {

bool DefaultFileSystemClient::fileExists(const std::string& path) const {
  std::error_code ignored;
  return fs::exists(path, ignored);
}

std::vector<std::string> DefaultFileSystemClient::contentsOfDirectory(const std::string& path) const {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

std::vector<ListedItem> DefaultFileSystemClient::visibleItems(const std::string& path) const {
  return visibleFolderItems(path);
}

FileAttributes DefaultFileSystemClient::attributesOfItem(const std::string& path) const {
  const ItemStatus status = itemStatus(path);
  FileAttributes attributes;
  if (S_ISREG(status.mode)) attributes.type = FileType::regular;
  if (S_ISDIR(status.mode)) attributes.type = FileType::directory;
  if (S_ISLNK(status.mode)) attributes.type = FileType::symbolicLink;
  attributes.size = status.size;
  attributes.modificationDate = status.modified;
  attributes.creationDate = status.created;
  attributes.posixPermissions = status.mode & 07777U;
  return attributes;
}

void DefaultFileSystemClient::removeItem(const std::string& path) {
  if (fs::remove_all(path) == 0)
    throw fs::filesystem_error("remove", path, std::error_code(ENOENT, std::generic_category()));
}

void DefaultFileSystemClient::createDirectory(const std::string& path, bool withIntermediateDirectories) {
  if (withIntermediateDirectories) {
    fs::create_directories(path);
    if (!fs::is_directory(path)) {
      throw fs::filesystem_error("create directory", path, std::error_code(EEXIST, std::generic_category()));
    }
  } else if (!fs::create_directory(path)) {
    throw fs::filesystem_error("create directory", path, std::error_code(EEXIST, std::generic_category()));
  }
}

std::string DefaultFileSystemClient::homeDirectoryPath() const { return homeDirectory(); }

}  // namespace halyard
