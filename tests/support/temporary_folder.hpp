// A folder of a test's own, gone with it.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace halyard {

/// A new empty folder, removed with all that it holds at the end of its scope. The path has no symbolic link in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// The path of something below the folder, as text; the folder's own for an empty name.
  [[nodiscard]] std::string at(std::string_view relativePath = {}) const;

  /// Writes a file and the folders above it; returns its path.
  std::string write(std::string_view relativePath, std::string_view content) const;
  /// Makes a folder and those above it; returns its path.
  std::string makeFolder(std::string_view relativePath) const;
  /// A file's content; empty where it can't be read.
  [[nodiscard]] std::string read(std::string_view relativePath) const;

 private:
  std::filesystem::path path_;
};

}  // namespace halyard
