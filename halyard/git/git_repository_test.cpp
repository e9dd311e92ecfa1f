#include "halyard/git/git_repository.hpp"

#include <array>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {

void PrintTo(const GitFileChange& change, std::ostream* stream) {
  *stream << change.path << " from " << change.originalPath.value_or("-") << " location "
          << static_cast<int>(change.location) << " type " << static_cast<int>(change.changeType);
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Change = GitFileChange::ChangeType;
using Location = GitFileChange::Location;
using GitRepository::parseBranches;
using GitRepository::parseLog;
using GitRepository::parseStatus;
using GitRepository::statusSummary;

std::vector<GitFileChange> filesOf(std::string_view output) { return parseStatus(output, "").files; }

// MARK: status lines

TEST(GitStatus, EmptyOutputIsACleanRepositoryWithoutABranch) {
  GitRepoStatus expected;
  expected.isRepository = true;
  expected.topLevelPath = "/top";
  EXPECT_EQ(parseStatus("", "/top").header, expected);
  EXPECT_THAT(filesOf(""), IsEmpty());
}

struct LineCase {
  const char* line;
  std::vector<GitFileChange> records;
};

TEST(GitStatus, EachLineGivesItsRecords) {
  const std::vector<LineCase> cases = {
      {"M  a.txt", {{"a.txt", Location::staged, Change::modified}}},
      {" M a.txt", {{"a.txt", Location::unstaged, Change::modified}}},
      {"MM a.txt", {{"a.txt", Location::staged, Change::modified}, {"a.txt", Location::unstaged, Change::modified}}},
      {" m sub", {{"sub", Location::unstaged, Change::modified}}},
      {"A  a.txt", {{"a.txt", Location::staged, Change::added}}},
      {"AM a.txt", {{"a.txt", Location::staged, Change::added}, {"a.txt", Location::unstaged, Change::modified}}},
      {"AD a.txt", {{"a.txt", Location::staged, Change::added}, {"a.txt", Location::unstaged, Change::deleted}}},
      {" A a.txt", {{"a.txt", Location::unstaged, Change::added}}},
      {"D  a.txt", {{"a.txt", Location::staged, Change::deleted}}},
      {" D a.txt", {{"a.txt", Location::unstaged, Change::deleted}}},
      {"T  a.txt", {{"a.txt", Location::staged, Change::typeChange}}},
      {" T a.txt", {{"a.txt", Location::unstaged, Change::typeChange}}},
      {"R  old.txt -> new.txt", {{"new.txt", Location::staged, Change::renamed, "old.txt"}}},
      {"RM old.txt -> new.txt",
       {{"new.txt", Location::staged, Change::renamed, "old.txt"},
        {"new.txt", Location::unstaged, Change::modified, "old.txt"}}},
      {"C  old.txt -> new.txt", {{"new.txt", Location::staged, Change::copied, "old.txt"}}},
      {" R old.txt -> new.txt", {{"new.txt", Location::unstaged, Change::renamed, "old.txt"}}},
      {"M  a -> b -> c", {{"b -> c", Location::staged, Change::modified, "a"}}},
      {" M \"a -> b\"", {{"b\"", Location::unstaged, Change::modified, "\"a"}}},
      {"M   -> b", {{"b", Location::staged, Change::modified, ""}}},
      {"?? b.txt", {{"b.txt", Location::untracked, Change::untracked}}},
      {"?? \"with blank.txt\"", {{"\"with blank.txt\"", Location::untracked, Change::untracked}}},
      {"!! c.txt", {}},
      {"DD a", {{"a", Location::unstaged, Change::conflict}}},
      {"AU a", {{"a", Location::unstaged, Change::conflict}}},
      {"UD a", {{"a", Location::unstaged, Change::conflict}}},
      {"UA a", {{"a", Location::unstaged, Change::conflict}}},
      {"DU a", {{"a", Location::unstaged, Change::conflict}}},
      {"AA a", {{"a", Location::unstaged, Change::conflict}}},
      {"UU a.txt", {{"a.txt", Location::unstaged, Change::conflict}}},
      {"UU a -> b", {{"a -> b", Location::unstaged, Change::conflict}}},
      {"U  a", {}},
      {"?M a", {{"a", Location::unstaged, Change::modified}}},
      {"X  a", {}},
      {"M x", {}},
      {"M", {}},
      {"", {}},
      {"   ", {}},
      {"    ", {}},
      {"M  \xc3\xbc", {{"\xc3\xbc", Location::staged, Change::modified}}},
      {"M \xc3\xbc", {}},  // three characters, though four bytes
      {"\xc3\xbcM a", {{"a", Location::unstaged, Change::modified}}},
      {"M  \xff", {{"\xff", Location::staged, Change::modified}}},
      {"a  b", {}},
  };
  for (const LineCase& each : cases) EXPECT_EQ(filesOf(each.line), each.records) << each.line;
}

TEST(GitStatus, RecordsKeepTheOrderOfTheLinesAndAreCounted) {
  const auto parsed = parseStatus("## main\nMM b\n?? a\n!! x\nUU c\n", "/top");
  EXPECT_EQ(parsed.header.currentBranch, "main");
  EXPECT_EQ(parsed.header.topLevelPath, "/top");
  EXPECT_EQ(parsed.header.dirtyFileCount, 4) << "a file that is staged and changed again counts twice";
  std::vector<std::string> paths;
  for (const GitFileChange& file : parsed.files) paths.push_back(file.path);
  EXPECT_THAT(paths, ElementsAre("b", "b", "a", "c"));
}

TEST(GitStatus, ALaterHeaderIsAFileLine) {
  const auto parsed = parseStatus("## main\n## other\nM  a\n", "");
  EXPECT_EQ(parsed.header.currentBranch, "main");
  EXPECT_EQ(parsed.files.size(), 1U) << "'#' is no code";
  EXPECT_EQ(parseStatus("M  a\n## late\n", "").header.currentBranch, "late");
}

// MARK: header

struct HeaderCase {
  const char* text;
  const char* branch;
  bool isDetached;
  bool hasUpstream;
  int ahead;
  int behind;
};

TEST(GitStatus, TheHeaderIsRead) {
  constexpr auto cases = std::to_array<HeaderCase>({
      {"main", "main", false, false, 0, 0},
      {"main...origin/main", "main", false, true, 0, 0},
      {"main...origin/main [ahead 2]", "main", false, true, 2, 0},
      {"main...origin/main [behind 3]", "main", false, true, 0, 3},
      {"main...origin/main [ahead 2, behind 1]", "main", false, true, 2, 1},
      {"main...origin/main [behind 1,ahead 2]", "main", false, true, 2, 1},
      {"main...origin/main [gone]", "main", false, true, 0, 0},
      {"main...origin/main [ahead ]", "main", false, true, 0, 0},
      {"main...origin/main [ahead x]", "main", false, true, 0, 0},
      {"main...origin/main [ahead 2x, behind 1]", "main", false, true, 0, 1},
      {"main...origin/main [ahead 99999999999]", "main", false, true, 0, 0},
      {"main...origin/main [different]", "main", false, true, 0, 0},
      {"main...origin/main [ahead 1] [behind 2]", "main", false, true, 0, 0},
      {"main...origin/main [", "main", false, true, 0, 0},
      {"main [ahead 4", "main", false, false, 4, 0},
      {"No commits yet on main", "No commits yet on main", false, false, 0, 0},
      {"No commits yet on main...origin/main [gone]", "No commits yet on main", false, true, 0, 0},
      {"HEAD (no branch)", "", true, false, 0, 0},
      {"HEAD (no branch) main...origin/main [ahead 1]", "", true, false, 0, 0},
      {"feature/x...origin/feature/x", "feature/x", false, true, 0, 0},
      {"a...b...c", "a", false, true, 0, 0},
      {"", "", false, false, 0, 0},
  });
  for (const HeaderCase& each : cases) {
    const GitRepoStatus header = parseStatus(std::string("## ") + each.text, "").header;
    EXPECT_EQ(header.currentBranch, each.branch) << each.text;
    EXPECT_EQ(header.isDetached, each.isDetached) << each.text;
    EXPECT_EQ(header.hasUpstream, each.hasUpstream) << each.text;
    EXPECT_EQ(header.aheadCount, each.ahead) << each.text;
    EXPECT_EQ(header.behindCount, each.behind) << each.text;
  }
}

// MARK: branches

GitBranch local(const char* name, bool isCurrent = false) { return {name, name, GitBranch::Kind::local, isCurrent}; }

GitBranch remote(const char* name, const char* fullName) { return {name, fullName, GitBranch::Kind::remote, false}; }

TEST(GitBranches, AreReadInTheirOrder) {
  EXPECT_EQ(
      parseBranches("  alpha\n* main\n+ linked\n  remotes/origin/HEAD -> origin/main\n  remotes/origin/feature/x\n"
                    "  remotes/origin/main\n",
                    "main"),
      (std::vector<GitBranch>{local("alpha"), local("main", true), local("linked"),
                              remote("feature/x", "origin/feature/x"), remote("main", "origin/main")}));
}

TEST(GitBranches, ADetachedHeadIsABranchOfThatText) {
  EXPECT_EQ(parseBranches("* (HEAD detached at 1a2b3c4)\n  main", ""),
            (std::vector<GitBranch>{local("(HEAD detached at 1a2b3c4)", true), local("main")}));
}

TEST(GitBranches, TheNameOfTheHeaderMarksTheCurrentOneToo) {
  EXPECT_EQ(parseBranches("  main", "main"), (std::vector<GitBranch>{local("main", true)}));
  EXPECT_EQ(parseBranches("* remotes/origin/main", "remotes/origin/main"),
            (std::vector<GitBranch>{remote("main", "origin/main")}))
      << "a remote branch is never current";
}

TEST(GitBranches, OddLinesAreTakenByTheSameRules) {
  EXPECT_THAT(parseBranches("", ""), IsEmpty());
  EXPECT_THAT(parseBranches("\n\n", ""), IsEmpty());
  EXPECT_EQ(parseBranches("*", "other"), (std::vector<GitBranch>{local("*", true)}));
  EXPECT_EQ(parseBranches("x", "other"), (std::vector<GitBranch>{local("x")})) << "too short to lose its columns";
  EXPECT_EQ(parseBranches("  remotes/lonely", ""), (std::vector<GitBranch>{remote("lonely", "lonely")}));
  EXPECT_EQ(parseBranches("  remotes/", ""), (std::vector<GitBranch>{remote("", "")}));
  EXPECT_EQ(parseBranches("  odd HEAD -> x", ""), std::vector<GitBranch>());
  EXPECT_EQ(parseBranches("\xc3\xbc\xc3\xbcname", ""), (std::vector<GitBranch>{local("name")}));
}

// MARK: log

TEST(GitLog, AFullLineIsACommit) {
  EXPECT_EQ(
      parseLog("1a2b\t1a2b3c4d\t2026-01-31\tAda\t (HEAD -> main, origin/main)\tAdd it\n"
               "0000\t00001111\t2026-01-30\tBob\t\tBefore"),
      (std::vector<GitCommit>{{"1a2b", "1a2b3c4d", "Add it", "Ada", "2026-01-31", "HEAD -> main, origin/main", true},
                              {"0000", "00001111", "Before", "Bob", "2026-01-30", "", false}}));
}

TEST(GitLog, ASubjectKeepsItsTabs) {
  EXPECT_EQ(parseLog("h\tH\td\ta\t\tone\ttwo\t")[0].subject, "one\ttwo\t");
  EXPECT_EQ(parseLog("h\tH\td\ta\t\t")[0].subject, "");
}

TEST(GitLog, ALineOfFiveFieldsIsDropped) {
  EXPECT_THAT(parseLog("h\tH\td\ta\trefs"), IsEmpty());
  EXPECT_THAT(parseLog("fatal: your current branch 'main' does not have any commits yet"), IsEmpty());
  EXPECT_THAT(parseLog(""), IsEmpty());
}

TEST(GitLog, OnlyTheFirstLineOfTheOutputIsHead) {
  EXPECT_FALSE(parseLog("dropped\nh\tH\td\ta\t\ts")[0].isHead);
  EXPECT_FALSE(parseLog("\nh\tH\td\ta\t\ts")[0].isHead);
  EXPECT_TRUE(parseLog("h\tH\td\ta\t\ts\n")[0].isHead);
}

TEST(GitLog, RefsLoseBlanksAndParenthesesAtTheirEnds) {
  for (const auto& [text, refs] : std::to_array<std::pair<const char*, const char*>>(
           {{" (tag: v1)", "tag: v1"}, {"(a(b)c)", "a(b)c"}, {"  ((  ", ""}, {"", ""}, {"x", "x"}})) {
    EXPECT_EQ(parseLog(std::string("h\tH\td\ta\t") + text + "\ts")[0].refs, refs);
  }
}

// MARK: summary

GitRepoStatus statusWith(bool hasUpstream, int ahead = 0, int behind = 0, int dirty = 0) {
  GitRepoStatus status;
  status.isRepository = true;
  status.hasUpstream = hasUpstream;
  status.aheadCount = ahead;
  status.behindCount = behind;
  status.dirtyFileCount = dirty;
  return status;
}

TEST(GitSummary, SaysHowTheWorkTreeStands) {
  const ContextReset reset;
  EXPECT_EQ(statusSummary({}), "Current directory is not a Git repository.");
  EXPECT_EQ(statusSummary(statusWith(false)), "clean · no remote");
  EXPECT_EQ(statusSummary(statusWith(true)), "clean");
  EXPECT_EQ(statusSummary(statusWith(true, 2)), "clean · 2 ahead");
  EXPECT_EQ(statusSummary(statusWith(true, 0, 3, 1)), "modified · 3 behind");
  EXPECT_EQ(statusSummary(statusWith(true, 2, 3, 1)), "modified · diverged (2/3)");
  EXPECT_EQ(statusSummary(statusWith(false, 2, 3, 1)), "modified · no remote");
  GitRepoStatus detached = statusWith(true, 2, 3, 1);
  detached.isDetached = true;
  EXPECT_EQ(statusSummary(detached), "Detached HEAD");
}

TEST(GitSummary, SpeaksGerman) {
  const ContextReset reset;
  setCurrentLanguage("de");
  EXPECT_EQ(statusSummary({}), "Das aktuelle Verzeichnis ist kein Git-Repository.");
  EXPECT_EQ(statusSummary(statusWith(true, 2, 3, 1)), "geändert · divergiert (2/3)");
  EXPECT_EQ(statusSummary(statusWith(true, 2)), "sauber · 2 voraus");
  EXPECT_EQ(statusSummary(statusWith(true, 0, 2)), "sauber · 2 zurück");
  EXPECT_EQ(statusSummary(statusWith(false)), "sauber · kein Remote");
}

// MARK: snapshot

constexpr const char* which = "which git 2>/dev/null";
constexpr const char* inside = "LC_ALL=C git rev-parse --is-inside-work-tree";
constexpr const char* topLevel = "LC_ALL=C git rev-parse --show-toplevel";
constexpr const char* status = "LC_ALL=C git status --porcelain=v1 -b --untracked-files=all";
constexpr const char* branches = "LC_ALL=C git branch --all --no-color";
constexpr const char* logOfTen =
    "LC_ALL=C git log --no-color --date=short --pretty=format:'%h%x09%H%x09%ad%x09%an%x09%d%x09%s' -n 10";

TEST(GitSnapshots, TakeSixCommandsInTheirOrder) {
  ContextReset reset;
  reset.runner.expect(which, "/usr/bin/git\n")
      .expect(inside, "true\n")
      .expect(topLevel, "/work/repo\n")
      .expect(status, "## main...origin/main [ahead 1]\n M a.txt\n")
      .expect(branches, "  alpha\n* main\n")
      .expect(logOfTen, "h\tH\t2026-01-31\tAda\t (HEAD -> main)\tSubject\n");
  const GitSnapshot snapshot = GitRepository::loadSnapshot(10);
  EXPECT_EQ(snapshot.status.topLevelPath, "/work/repo");
  EXPECT_EQ(snapshot.status.currentBranch, "main");
  EXPECT_EQ(snapshot.status.aheadCount, 1);
  EXPECT_EQ(snapshot.status.dirtyFileCount, 1);
  EXPECT_EQ(snapshot.branches, (std::vector<GitBranch>{local("alpha"), local("main", true)}));
  EXPECT_EQ(snapshot.commits.size(), 1U);
  EXPECT_EQ(snapshot.files.size(), 1U);
  EXPECT_EQ(snapshot.errorMessage, "");
}

TEST(GitSnapshots, WithoutGitOneIsEmptyAndSaysSo) {
  ContextReset reset;
  reset.runner.expect(which);
  GitSnapshot expected;
  expected.errorMessage = "Git is not installed or not in PATH.";
  EXPECT_EQ(GitRepository::loadSnapshot(10), expected);
}

TEST(GitSnapshots, OutsideAWorkTreeOneIsEmptyAndSaysSo) {
  ContextReset reset;
  reset.runner.expect(which, "git").expect(inside, "fatal: not a git repository (or any parent): .git\n", 128);
  GitSnapshot expected;
  expected.errorMessage = "Current directory is not a Git repository.";
  EXPECT_EQ(GitRepository::loadSnapshot(10), expected);
}

TEST(GitSnapshots, FailedCommandsYieldWhatTheirTextYields) {
  ContextReset reset;
  reset.runner.expect(which, "git")
      .expect(inside, "true")
      .expect(topLevel, "fatal: odd", 128)
      .expect(status, "fatal: odd", 128)
      .expect(branches, "fatal: odd", 128)
      .expect(logOfTen, "fatal: odd", 128);
  const GitSnapshot snapshot = GitRepository::loadSnapshot(10);
  EXPECT_TRUE(snapshot.status.isRepository);
  EXPECT_EQ(snapshot.status.topLevelPath, "");
  EXPECT_THAT(snapshot.commits, IsEmpty());
  EXPECT_EQ(snapshot.branches, (std::vector<GitBranch>{local("tal: odd")}));
  EXPECT_EQ(snapshot.errorMessage, "");
}

}  // namespace
}  // namespace halyard
