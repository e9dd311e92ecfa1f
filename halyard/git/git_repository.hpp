// Reads what `git` printed. The readers take any bytes and never fail: what doesn't fit yields nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "halyard/git/git_records.hpp"

namespace halyard::GitRepository {

struct ParsedStatus {
  GitRepoStatus header;
  std::vector<GitFileChange> files;

  bool operator==(const ParsedStatus&) const = default;
};

/// Of `git status --porcelain=v1 -b`. A line gives a record for its index half, one for its work-tree half, or both.
ParsedStatus parseStatus(std::string_view output, std::string_view topLevelPath);
/// Of `git branch --all`, in its order.
std::vector<GitBranch> parseBranches(std::string_view output, std::string_view currentBranch);
/// Of the lines that GitCommandRunner::log() asks for.
std::vector<GitCommit> parseLog(std::string_view output);

/// The repository of the current directory, with at most `limit` commits: six processes, one after the other. Without
/// `git` or outside a work tree an empty one that says so in its errorMessage.
GitSnapshot loadSnapshot(int limit);

/// The line that tells a person how the work tree stands, in the current language.
std::string statusSummary(const GitRepoStatus& status);

}  // namespace halyard::GitRepository
