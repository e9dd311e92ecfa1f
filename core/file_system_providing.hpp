// File access behind a seam, so that logic can run against a tree in memory. Paths are used as given: no tilde.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

namespace halyard {

enum class FileType { regular, directory, symbolicLink, other };

/// Of the item itself: a symbolic link is not followed.
struct FileAttributes {
  FileType type = FileType::other;
  std::uint64_t size = 0;  ///< bytes
  std::chrono::system_clock::time_point modificationDate;
  std::chrono::system_clock::time_point creationDate;  ///< the change of status where the system keeps no birth time
  std::uint32_t posixPermissions = 0;                  ///< the lower twelve bits of the mode
};

/// An item of a folder as the folder's listing gives it. A symbolic link is one, wherever it leads.
struct ListedItem {
  std::string name;
  FileType type = FileType::other;  ///< also of an item that can't be asked

  bool operator==(const ListedItem&) const = default;
};

class FileSystemProviding {
 public:
  FileSystemProviding() = default;
  FileSystemProviding(const FileSystemProviding&) = delete;
  FileSystemProviding& operator=(const FileSystemProviding&) = delete;
  virtual ~FileSystemProviding() = default;

  [[nodiscard]] virtual bool fileExists(const std::string& path) const = 0;
  /// The entries' names in no order, without "." and "..". Throws std::system_error.
  [[nodiscard]] virtual std::vector<std::string> contentsOfDirectory(const std::string& path) const = 0;
  /// The entries that aren't hidden, in no order, with their types, for folders of any size. Throws std::system_error.
  [[nodiscard]] virtual std::vector<ListedItem> visibleItems(const std::string& path) const;
  /// Throws std::system_error.
  [[nodiscard]] virtual FileAttributes attributesOfItem(const std::string& path) const = 0;
  /// Removes a file, or a folder with all that it holds. Throws std::system_error.
  virtual void removeItem(const std::string& path) = 0;
  /// An existing folder is an error, except with intermediate folders. Throws std::system_error.
  virtual void createDirectory(const std::string& path, bool withIntermediateDirectories) = 0;
  [[nodiscard]] virtual std::string homeDirectoryPath() const = 0;
};

}  // namespace halyard
