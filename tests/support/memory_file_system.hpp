// A file tree in memory. A folder has to be added before what it holds is listed.
#pragma once

#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "core/file_system_providing.hpp"

namespace halyard {

class MemoryFileSystem final : public FileSystemProviding {
 public:
  /// Adds the folders above it as well.
  void add(const std::string& path, FileType type = FileType::regular) {
    const std::size_t slash = path.rfind('/');
    if (slash != std::string::npos && slash > 0 && !items_.contains(path.substr(0, slash))) {
      add(path.substr(0, slash), FileType::directory);
    }
    items_[path] = type;
  }
  void addFolder(const std::string& path) { add(path, FileType::directory); }
  /// Listing the folder fails from now on.
  void makeUnreadable(const std::string& path) { unreadable_.insert(path); }

  [[nodiscard]] bool fileExists(const std::string& path) const override { return path == "/" || items_.contains(path); }

  [[nodiscard]] std::vector<std::string> contentsOfDirectory(const std::string& path) const override {
    if (unreadable_.contains(path)) throw std::system_error(std::make_error_code(std::errc::permission_denied), path);
    if (attributesOfItem(path).type != FileType::directory) {
      throw std::system_error(std::make_error_code(std::errc::not_a_directory), path);
    }
    const std::string prefix = path == "/" ? path : path + "/";
    std::vector<std::string> names;
    for (auto item = items_.upper_bound(prefix); item != items_.end() && item->first.starts_with(prefix); ++item) {
      const std::string name = item->first.substr(prefix.size());
      if (name.find('/') == std::string::npos) names.push_back(name);
    }
    return names;
  }

  [[nodiscard]] FileAttributes attributesOfItem(const std::string& path) const override {
    FileAttributes attributes;
    if (path == "/") {
      attributes.type = FileType::directory;
      return attributes;
    }
    const auto item = items_.find(path);
    if (item == items_.end()) {
      throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory), path);
    }
    attributes.type = item->second;
    return attributes;
  }

  void removeItem(const std::string& path) override {
    if (items_.erase(path) == 0) {
      throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory), path);
    }
    std::erase_if(items_, [&](const auto& item) { return item.first.starts_with(path + "/"); });
  }

  void createDirectory(const std::string& path, bool withIntermediateDirectories) override {
    if (fileExists(path) && !withIntermediateDirectories) {
      throw std::system_error(std::make_error_code(std::errc::file_exists), path);
    }
    addFolder(path);
  }

  /// The test's own home folder, so that what the program keeps there can be written and read.
  [[nodiscard]] std::string homeDirectoryPath() const override {
    const char* home = std::getenv("HOME");
    return home != nullptr ? home : "/";
  }

 private:
  std::map<std::string, FileType> items_;
  std::set<std::string> unreadable_;
};

}  // namespace halyard
