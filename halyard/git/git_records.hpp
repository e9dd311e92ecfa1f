// What the program knows of a Git repository: plain values, filled by git_repository and shown by the view.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace halyard {

/// The outcome of one `git` command.
struct GitCommandResult {
  std::string output;         ///< everything the command printed
  std::int32_t exitCode = 0;  ///< 0 or 128, told from the text; never the real status

  [[nodiscard]] bool succeeded() const { return exitCode == 0; }
  bool operator==(const GitCommandResult&) const = default;
};

struct GitRepoStatus {
  bool isRepository = false;  ///< the working directory lies inside a work tree
  std::string topLevelPath;
  std::string currentBranch;  ///< empty when detached
  bool isDetached = false;
  int aheadCount = 0;
  int behindCount = 0;
  bool hasUpstream = false;
  int dirtyFileCount = 0;  ///< records, so a file that is staged and changed again counts twice

  bool operator==(const GitRepoStatus&) const = default;
};

/// One line of the status, or one half of it.
struct GitFileChange {
  enum class Location { staged, unstaged, untracked };
  enum class ChangeType { modified, added, deleted, renamed, copied, typeChange, untracked, conflict };

  std::string path;  ///< as `git` printed it, quotes included; for a rename the new path
  Location location = Location::unstaged;
  ChangeType changeType = ChangeType::modified;
  std::optional<std::string> originalPath = {};  ///< of a rename or copy

  bool operator==(const GitFileChange&) const = default;
};

struct GitBranch {
  enum class Kind { local, remote };

  std::string name;      ///< of a remote branch without the remote's name
  std::string fullName;  ///< of a remote branch with it, as in "origin/main"
  Kind kind = Kind::local;
  bool isCurrent = false;  ///< never of a remote branch

  bool operator==(const GitBranch&) const = default;
};

struct GitCommit {
  std::string shortHash;
  std::string fullHash;
  std::string subject;
  std::string author;
  std::string date;     ///< 2026-01-31
  std::string refs;     ///< decorations without their parentheses
  bool isHead = false;  ///< the first line of the log

  bool operator==(const GitCommit&) const = default;
};

/// What a search in the view found.
struct GitSearchHit {
  enum class Kind { branch, commit, author };

  Kind kind = Kind::branch;
  std::string label;
  std::string detail;
  std::string payload;  ///< full name, full hash or author: where the hit leads

  bool operator==(const GitSearchHit&) const = default;
};

struct GitSnapshot {
  GitRepoStatus status;
  std::vector<GitBranch> branches;
  std::vector<GitCommit> commits;
  std::vector<GitFileChange> files;
  std::string errorMessage;  ///< localized; empty when all went well

  bool operator==(const GitSnapshot&) const = default;
};

}  // namespace halyard
