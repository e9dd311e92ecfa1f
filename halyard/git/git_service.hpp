// The actions of the Git view: each runs one command and says in the user's language what came of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "halyard/git/git_records.hpp"

namespace halyard {

struct GitActionOutcome {
  bool succeeded = false;
  std::string message;  ///< may hold what `git` printed, as it was printed

  bool operator==(const GitActionOutcome&) const = default;
};

namespace GitService {

GitSnapshot load(int limit);

GitActionOutcome checkout(std::string_view branch);
/// Unstages what is staged and stages everything else.
GitActionOutcome toggleStaging(const GitFileChange& file);
GitActionOutcome stageAll();
GitActionOutcome unstageAll();
/// Runs nothing without a message or without anything staged.
GitActionOutcome commit(std::string_view message, bool hasStagedFiles);
GitActionOutcome pull();
GitActionOutcome push();

/// The lines of a file's diff; none where it failed.
std::vector<std::string> diffLines(const GitFileChange& file);

}  // namespace GitService

}  // namespace halyard
