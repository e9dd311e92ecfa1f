// What the Git view costs on a large repository: 50,000 commits, 20,000 files, once clean and once with every file
// changed. Counted is the program's own processor time, without git's, which is timed beside it. The targets: 15 ms for
// a snapshot, 1 ms for a frame.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "halyard/git/git_repository.hpp"
#include "halyard/git/git_view_frame.hpp"
#include "halyard/git/git_view_overlays.hpp"
#include "halyard/git/git_view_state.hpp"

namespace {

using namespace halyard;
namespace fs = std::filesystem;

constexpr int commitCount = 50'000;
constexpr int fileCount = 20'000;
constexpr int rounds = 15;
constexpr int frameRounds = 501;
constexpr double snapshotTarget = 15e-3;
constexpr double frameTarget = 1e-3;

double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double wallSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void shell(const std::string& command) {
  if (std::system(command.c_str()) != 0) {
    fmt::print(stderr, "failed: {}\n", command);
    std::exit(2);
  }
}

std::string filePath(int number) {
  return fmt::format("Sources/Module{}/Feature{}/File{}.swift", number % 40, number % 500, number);
}

/// The whole history for `git fast-import`: the first commit brings the files, each later one changes one of them.
void writeHistory(const fs::path& path) {
  std::ofstream stream(path, std::ios::binary);
  for (int commit = 0; commit < commitCount; ++commit) {
    const std::string subject = fmt::format("Change {} so that it does what its name says", commit);
    stream << fmt::format("commit refs/heads/main\ncommitter Author {} <a{}@example.invalid> {} +0000\ndata {}\n{}\n",
                          commit % 50, commit % 50, 1'600'000'000 + commit * 60, subject.size(), subject);
    const int first = commit == 0 ? 0 : commit % fileCount;
    const int last = commit == 0 ? fileCount : first + 1;
    for (int file = first; file < last; ++file) {
      const std::string content = fmt::format("let value = {}\n", commit);
      stream << fmt::format("M 644 inline {}\ndata {}\n{}\n", filePath(file), content.size(), content);
    }
  }
}

struct Timing {
  double middle = 0;
  std::string text;
};

template <typename Work>
Timing timed(int count, double (*clock)(), Work work) {
  std::vector<double> samples;
  for (int round = 0; round < count; ++round) {
    const double begun = clock();
    work();
    samples.push_back(clock() - begun);
  }
  std::ranges::sort(samples);
  const double middle = samples[samples.size() / 2];
  return {middle, fmt::format("min {:8.2f}  median {:8.2f}  max {:8.2f} ms", samples.front() * 1e3, middle * 1e3,
                              samples.back() * 1e3)};
}

bool report(const char* what, const Timing& timing, double target) {
  fmt::print("  {:<34} {}  (target {:.0f}: {})\n", what, timing.text, target * 1e3,
             timing.middle <= target ? "met" : "MISSED");
  return timing.middle <= target;
}

bool measure(const char* state) {
  GitSnapshot snapshot;
  const Timing own =
      timed(rounds, processorSeconds, [&] { snapshot = GitRepository::loadSnapshot(GitView::historyLimit); });
  if (snapshot.commits.size() != GitView::historyLimit) std::abort();
  fmt::print("{}: {} changed files\n", state, snapshot.files.size());
  bool isMet = report("snapshot, own processor time", own, snapshotTarget);
  const Timing wall = timed(5, wallSeconds, [] { GitRepository::loadSnapshot(GitView::historyLimit); });
  fmt::print("  {:<34} {}\n", "snapshot, wall time", wall.text);
  for (const char* words : {"status --porcelain=v1 -b --untracked-files=all", "log --oneline -n 500"}) {
    const std::string command = fmt::format("git {} >/dev/null", words);
    fmt::print("  {:<34} {}\n", std::string("git ") + std::string(words).substr(0, 6) + " alone, wall time",
               timed(5, wallSeconds, [&] { shell(command); }).text);
  }
  GitView::state() = {};
  GitView::state().snapshot = std::move(snapshot);
  std::size_t bytes = 0;
  isMet &= report("frame",
                  timed(frameRounds, processorSeconds,
                        [&] {
                          ++GitView::state().commitSelection;
                          GitView::settleForDrawing();
                          bytes += GitView::drawnFrame(GitView::state(), "/home").size();
                        }),
                  frameTarget);
  GitView::state().mode = GitViewMode::help;
  isMet &= report("frame with a box",
                  timed(frameRounds, processorSeconds,
                        [&] {
                          bytes += GitView::drawnFrame(GitView::state(), "/home").size();
                          bytes += GitView::drawnOverlay(GitView::state()).size();
                        }),
                  frameTarget);
  return isMet && bytes != 0;
}

}  // namespace

int main() {
  DefaultCommandRunner runner;
  DefaultFileSystemClient files;
  AppDependencies::current() = {&runner, &files, &AppContext::shared()};
  loadStringCatalog({});
  std::string pattern = (fs::temp_directory_path() / "halyard-bench-XXXXXX").string();
  const fs::path folder = mkdtemp(pattern.data());
  setenv("HOME", folder.c_str(), 1);
  setenv("GIT_CONFIG_NOSYSTEM", "1", 1);
  fs::create_directory(folder / "repo");
  fs::current_path(folder / "repo");
  writeHistory(folder / "history");
  shell("git init -q -b main && git fast-import --quiet <../history && git reset -q --hard && git status >/dev/null");
  fs::remove(folder / "history");
  fmt::print("{} commits, {} files\n", commitCount, fileCount);
  bool isMet = measure("clean");
  shell("find Sources -name '*.swift' -exec sh -c 'for f; do echo \"// more\" >>\"$f\"; done' sh {} +");
  isMet &= measure("every file changed");
  fs::current_path("/");
  fs::remove_all(folder);
  return isMet ? 0 : 1;
}
