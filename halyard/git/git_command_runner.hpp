// Every `git` command line of the Git view. They run in the current directory, in the C locale, through run().
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "halyard/git/git_records.hpp"

namespace halyard::GitCommandRunner {

/// 128 for a text that begins with "fatal:" or "error:" or holds "not a git repository", in any letter case; else 0.
/// So a failure that prints something else first counts as success.
std::int32_t derivedExitCode(std::string_view output);

bool isGitAvailable();
bool isInsideWorkTree();
/// Empty outside a work tree.
std::string topLevelPath();

GitCommandResult status();
GitCommandResult branches();
/// The newest commits, a line of six fields with tabs between for each.
GitCommandResult log(int limit);
/// Of a file against the index, or of the index against the last commit when `cached`.
GitCommandResult diff(std::string_view path, bool cached);

GitCommandResult stage(std::string_view path);
GitCommandResult unstage(std::string_view path);
GitCommandResult stageAll();
GitCommandResult unstageAll();
GitCommandResult checkout(std::string_view branch);
GitCommandResult commit(std::string_view message);
GitCommandResult pull();
GitCommandResult push();

/// Both ask what a snapshot takes from the status.
std::string currentBranchName();
/// False when detached.
bool hasSymbolicHead();

}  // namespace halyard::GitCommandRunner
