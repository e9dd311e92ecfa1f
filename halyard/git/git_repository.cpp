#include "halyard/git/git_repository.hpp"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>
#include <utility>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/git/git_command_runner.hpp"

namespace halyard::GitRepository {

namespace {

using ChangeType = GitFileChange::ChangeType;
using Location = GitFileChange::Location;

/// Calls `take(line, index)` for each piece between line feeds.
template <typename Take>
void eachLine(std::string_view text, Take take) {
  for (std::size_t index = 0;; ++index) {
    const std::size_t end = text.find('\n');
    take(text.substr(0, end), index);
    if (end == std::string_view::npos) return;
    text.remove_prefix(end + 1);
  }
}

std::size_t lineCount(std::string_view text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
}

/// Byte offset behind this many characters, or nothing where there are fewer.
std::optional<std::size_t> offsetBehind(std::string_view text, std::size_t characters) {
  const auto continues = [&](std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  std::size_t at = 0;
  for (; characters > 0; --characters) {
    if (at >= text.size()) return {};
    ++at;
    while (continues(at)) ++at;
  }
  return at;
}

// MARK: status

/// 0 for what isn't a number as a whole, or too large a one.
int numberOrZero(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end ? number : 0;
}

/// One piece of "ahead 2, behind 1". "gone" and unknown words have no effect.
void readDistance(std::string_view piece, GitRepoStatus& header) {
  constexpr std::string_view ahead = "ahead ";
  constexpr std::string_view behind = "behind ";
  if (piece.starts_with(ahead)) {
    header.aheadCount = numberOrZero(piece.substr(ahead.size()));
  } else if (piece.starts_with(behind)) {
    header.behindCount = numberOrZero(piece.substr(behind.size()));
  }
}

void readDistances(std::string_view text, GitRepoStatus& header) {
  std::string plain(text);
  std::erase(plain, ']');
  std::string_view rest = plain;
  for (;;) {
    const std::size_t comma = rest.find(',');
    readDistance(trimmedBlanks(rest.substr(0, comma)), header);
    if (comma == std::string_view::npos) return;
    rest.remove_prefix(comma + 1);
  }
}

/// "main...origin/main [ahead 2, behind 1]".
void readHeader(std::string_view text, GitRepoStatus& header) {
  if (text.find("(no branch)") != std::string_view::npos) {
    header.isDetached = true;
    return;
  }
  if (const std::size_t bracket = text.find(" ["); bracket != std::string_view::npos) {
    readDistances(text.substr(bracket + 2), header);
    text = text.substr(0, bracket);
  }
  const std::size_t dots = text.find("...");
  header.hasUpstream = dots != std::string_view::npos;
  header.currentBranch = text.substr(0, dots);
}

std::optional<ChangeType> changeOf(char code) {
  switch (code) {
    case 'M':
    case 'm': return ChangeType::modified;
    case 'A': return ChangeType::added;
    case 'D': return ChangeType::deleted;
    case 'R': return ChangeType::renamed;
    case 'C': return ChangeType::copied;
    case 'T': return ChangeType::typeChange;
    default: return {};
  }
}

bool isConflict(std::string_view codes) {
  for (const std::string_view pair : {"DD", "AU", "UD", "UA", "DU", "AA", "UU"}) {
    if (codes == pair) return true;
  }
  return false;
}

void addChange(std::vector<GitFileChange>& files, std::string_view path, Location location, ChangeType type) {
  constexpr std::string_view arrow = " -> ";
  GitFileChange& change = files.emplace_back();
  change.location = location;
  change.changeType = type;
  if (const std::size_t at = path.find(arrow); at != std::string_view::npos) {
    change.originalPath.emplace(path.substr(0, at));
    path.remove_prefix(at + arrow.size());
  }
  change.path = path;
}

void readFileLine(std::string_view line, std::vector<GitFileChange>& files) {
  const auto pathStart = offsetBehind(line, 3);
  if (!pathStart || *pathStart == line.size()) return;
  const std::string_view path = line.substr(*pathStart);
  const std::string_view codes = line.substr(0, 2);
  if (codes == "??") {
    files.push_back({std::string(path), Location::untracked, ChangeType::untracked});
  } else if (isConflict(codes)) {
    files.push_back({std::string(path), Location::unstaged, ChangeType::conflict});
  } else {
    const std::size_t second = *offsetBehind(line, 1);
    if (const auto type = changeOf(line[0])) addChange(files, path, Location::staged, *type);
    if (const auto type = changeOf(line[second])) addChange(files, path, Location::unstaged, *type);
  }
}

// MARK: branches

GitBranch readBranch(std::string_view line, bool isMarked, std::string_view currentBranch) {
  constexpr std::string_view remotes = "remotes/";
  GitBranch branch;
  if (line.starts_with(remotes)) {
    line.remove_prefix(remotes.size());
    const std::size_t slash = line.find('/');
    branch.kind = GitBranch::Kind::remote;
    branch.name = slash == std::string_view::npos ? line : line.substr(slash + 1);
  } else {
    branch.name = line;
    branch.isCurrent = isMarked || line == currentBranch;
  }
  branch.fullName = line;
  return branch;
}

// MARK: log

std::string_view withoutParentheses(std::string_view refs) {
  constexpr std::string_view dropped = " ()";
  const std::size_t first = refs.find_first_not_of(dropped);
  if (first == std::string_view::npos) return {};
  return refs.substr(first, refs.find_last_not_of(dropped) - first + 1);
}

std::optional<GitCommit> readCommit(std::string_view line) {
  std::string_view fields[5];
  for (std::string_view& field : fields) {
    const std::size_t tab = line.find('\t');
    if (tab == std::string_view::npos) return {};
    field = line.substr(0, tab);
    line.remove_prefix(tab + 1);
  }
  GitCommit commit;
  commit.shortHash = fields[0];
  commit.fullHash = fields[1];
  commit.date = fields[2];
  commit.author = fields[3];
  commit.refs = withoutParentheses(fields[4]);
  commit.subject = line;  // with what tabs it has
  return commit;
}

// MARK: summary

std::string distanceText(int ahead, int behind) {
  if (ahead > 0 && behind > 0) return localizedFormat("git_view_status_diverged", ahead, behind);
  if (ahead > 0) return localizedFormat("git_view_status_ahead", ahead);
  if (behind > 0) return localizedFormat("git_view_status_behind", behind);
  return {};
}

GitSnapshot unavailable(std::string_view messageKey) {
  GitSnapshot snapshot;
  snapshot.errorMessage = localized(messageKey);
  return snapshot;
}

}  // namespace

ParsedStatus parseStatus(std::string_view output, std::string_view topLevelPath) {
  constexpr std::string_view headerMark = "## ";
  ParsedStatus parsed;
  parsed.header.isRepository = true;
  parsed.header.topLevelPath = topLevelPath;
  parsed.files.reserve(lineCount(output));
  bool sawHeader = false;
  eachLine(output, [&](std::string_view line, std::size_t) {
    if (!sawHeader && line.starts_with(headerMark)) {
      readHeader(line.substr(headerMark.size()), parsed.header);
      sawHeader = true;
    } else {
      readFileLine(line, parsed.files);
    }
  });
  parsed.header.dirtyFileCount = static_cast<int>(parsed.files.size());
  return parsed;
}

std::vector<GitBranch> parseBranches(std::string_view output, std::string_view currentBranch) {
  std::vector<GitBranch> branches;
  branches.reserve(lineCount(output));
  eachLine(output, [&](std::string_view line, std::size_t) {
    if (line.empty()) return;
    const bool isMarked = line.starts_with('*');
    if (const auto nameStart = offsetBehind(line, 2)) line.remove_prefix(*nameStart);
    if (line.find("HEAD -> ") != std::string_view::npos) return;
    branches.push_back(readBranch(line, isMarked, currentBranch));
  });
  return branches;
}

std::vector<GitCommit> parseLog(std::string_view output) {
  std::vector<GitCommit> commits;
  commits.reserve(lineCount(output));
  eachLine(output, [&](std::string_view line, std::size_t index) {
    auto commit = readCommit(line);
    if (!commit) return;
    commit->isHead = index == 0;
    commits.push_back(std::move(*commit));
  });
  return commits;
}

GitSnapshot loadSnapshot(int limit) {
  if (!GitCommandRunner::isGitAvailable()) return unavailable("git_view_error_git_missing");
  if (!GitCommandRunner::isInsideWorkTree()) return unavailable("git_view_error_no_repo");
  const std::string topLevel = GitCommandRunner::topLevelPath();
  ParsedStatus status = parseStatus(GitCommandRunner::status().output, topLevel);
  GitSnapshot snapshot;
  snapshot.branches = parseBranches(GitCommandRunner::branches().output, status.header.currentBranch);
  snapshot.commits = parseLog(GitCommandRunner::log(limit).output);
  snapshot.status = std::move(status.header);
  snapshot.files = std::move(status.files);
  return snapshot;
}

std::string statusSummary(const GitRepoStatus& status) {
  if (!status.isRepository) return std::string(localized("git_view_status_no_repo"));
  if (status.isDetached) return std::string(localized("git_view_status_detached"));
  std::string text(localized(status.dirtyFileCount > 0 ? "git_view_status_modified" : "git_view_status_clean"));
  const std::string remote = status.hasUpstream ? distanceText(status.aheadCount, status.behindCount)
                                                : std::string(localized("git_view_status_no_remote"));
  return remote.empty() ? text : text + " · " + remote;
}

}  // namespace halyard::GitRepository
