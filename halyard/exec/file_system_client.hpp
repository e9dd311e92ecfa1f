#pragma once

#include "core/file_system_providing.hpp"

namespace halyard {

/// The real file system.
class DefaultFileSystemClient final : public FileSystemProviding {
 public:
  [[nodiscard]] bool fileExists(const std::string& path) const override;
  [[nodiscard]] std::vector<std::string> contentsOfDirectory(const std::string& path) const override;
  [[nodiscard]] std::vector<ListedItem> visibleItems(const std::string& path) const override;
  [[nodiscard]] FileAttributes attributesOfItem(const std::string& path) const override;
  void removeItem(const std::string& path) override;
  void createDirectory(const std::string& path, bool withIntermediateDirectories) override;
  [[nodiscard]] std::string homeDirectoryPath() const override;
};

}  // namespace halyard
