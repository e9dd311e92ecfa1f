// Real repositories of a test's own, made by `git` itself.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "tests/support/temporary_folder.hpp"

namespace halyard {

/// A temporary home folder with an identity for `git` in it, and an empty folder "repo" below. Nothing of the machine's
/// configuration counts. Hashes are the same in each run: names and dates are fixed.
class GitSandbox {
 public:
  GitSandbox();

  /// Runs a script of bash in a folder below the home folder; fails the test, and shows what it printed, where it
  /// fails.
  std::string sh(const std::string& script, std::string_view folder = "repo") const;
  /// "repo" with a branch "main" and these commits, each of a file "file<n>.txt".
  void makeRepository(int commits = 2) const;
  /// A bare "up.git" beside it, known as "origin" and followed by "main".
  void addUpstream() const;
  /// A commit in the upstream that "repo" doesn't have yet: the file with the content.
  void commitUpstream(std::string_view file, std::string_view content) const;

  [[nodiscard]] std::string at(std::string_view relativePath = "repo") const { return folder_.at(relativePath); }
  void write(std::string_view relativePath, std::string_view content) const { folder_.write(relativePath, content); }
  [[nodiscard]] std::string read(std::string_view relativePath) const { return folder_.read(relativePath); }
  /// What a program needs to see the sandbox alone.
  [[nodiscard]] std::map<std::string, std::string> environment() const;

 private:
  TemporaryFolder folder_;
};

/// This process's own environment and current directory set into a sandbox, for as long as it lives.
class InSandbox {
 public:
  explicit InSandbox(const GitSandbox& sandbox, std::string_view folder = "repo");
  ~InSandbox();
  InSandbox(const InSandbox&) = delete;
  InSandbox& operator=(const InSandbox&) = delete;

  /// A further variable.
  void set(const std::string& name, const std::string& value);

 private:
  std::map<std::string, std::optional<std::string>> saved_;
  std::filesystem::path workingDirectory_;
};

}  // namespace halyard
