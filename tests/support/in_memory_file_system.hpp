#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/file_system_providing.hpp"

namespace halyard {

/// A tree in memory. Paths are absolute and taken as they are but for a slash at the end; links aren't followed. The
/// root and the home folder are there from the start.
class InMemoryFileSystem final : public FileSystemProviding {
 public:
  explicit InMemoryFileSystem(std::string home = "/Users/demo");

  /// Puts an entry there, with the folders above it. Returns itself, so that a tree can be written in one go.
  InMemoryFileSystem& addFile(const std::string& path, std::string content = {});
  InMemoryFileSystem& addFolder(const std::string& path);
  InMemoryFileSystem& addLink(const std::string& path);
  /// A file of a size, without its content.
  InMemoryFileSystem& addFileOfSize(const std::string& path, std::uint64_t size);
  void setModificationDate(const std::string& path, std::chrono::system_clock::time_point date);
  void setPermissions(const std::string& path, std::uint32_t permissions);
  /// From here on, listing, removing and reading this very path throw "permission denied".
  void deny(const std::string& path);

  [[nodiscard]] std::string content(const std::string& path) const;
  /// All paths that were removed, in order.
  [[nodiscard]] const std::vector<std::string>& removed() const { return removed_; }

  [[nodiscard]] bool fileExists(const std::string& path) const override;
  [[nodiscard]] std::vector<std::string> contentsOfDirectory(const std::string& path) const override;
  [[nodiscard]] FileAttributes attributesOfItem(const std::string& path) const override;
  void removeItem(const std::string& path) override;
  void createDirectory(const std::string& path, bool withIntermediateDirectories) override;
  [[nodiscard]] std::string homeDirectoryPath() const override { return home_; }

 private:
  struct Entry {
    FileAttributes attributes;
    std::string content;
    bool isDenied = false;
  };

  Entry& add(const std::string& path, FileType type);
  [[nodiscard]] const Entry& entryAt(const std::string& path) const;
  [[nodiscard]] Entry& entryAt(const std::string& path);

  std::string home_;
  std::map<std::string, Entry> entries_;
  std::vector<std::string> removed_;
};

}  // namespace halyard
