// Search through 500,000 files in 50,000 folders beside find(1) with the same patterns, and beside fd with one thread.
// All run as processes of their own, in turn, with a warm cache.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "halyard/browser/directory_search.hpp"
#include "halyard/browser/directory_walk_worker.hpp"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int rounds = 5;
constexpr double mostOfFind = 0.8;
constexpr double mostMegabytes = 60;

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// 50 groups of 20 modules of 49 folders each, with ten files per folder: some 50,000 and 500,000.
void makeTree(const std::string& root) {
  constexpr const char* names[] = {"AppDelegate.swift", "ContentView.swift", "Model.swift", "README.md", "Info.plist",
                                   "icon@2x.png",       "data.json",         "style.css",   "Makefile",  "notes.txt"};
  for (int group = 0; group < 50; ++group) {
    for (int module = 0; module < 20; ++module) {
      const std::string folder = root + "/Group" + std::to_string(group) + "/Module" + std::to_string(module);
      fs::create_directories(folder);
      for (int leaf = 0; leaf < 49; ++leaf) {
        const int number = (group * 20 + module) * 49 + leaf;
        const std::string inner = folder + "/" + (number % 97 == 0 ? "NeedleKit" : "Sources") + std::to_string(leaf);
        mkdir(inner.c_str(), 0755);
        for (int file = 0; file < 10; ++file) {
          const bool isNeedle = file == 2 && number % 31 == 0;
          const std::string path = inner + "/" + (isNeedle ? "Needle" : "") + std::to_string(number) + names[file];
          close(open(path.c_str(), O_WRONLY | O_CREAT, 0644));
        }
      }
    }
  }
}

struct Sample {
  double milliseconds = 0;
  double megabytes = 0;
};

/// Runs a child to its end, with its output to nowhere.
template <typename Work>
Sample measured(Work work) {
  const auto start = Clock::now();
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    work();
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) std::fprintf(stderr, "a child failed: %d\n", status);
  return {millisecondsSince(start), static_cast<double>(usage.ru_maxrss) / 1024};
}

/// As the program searches, from the typed text to the sorted hits.
std::size_t search(const std::string& root, std::string_view text) {
  using namespace halyard;
  directoryViewState().list.currentPath = root;
  openSearchOverlay();
  directoryViewState().searchState->inputText = text;
  startSearch();
  while (directoryWalkWorker().isRunning()) usleep(200);
  return directoryWalkWorker().takeResult()->size();
}

std::vector<std::string> findCommand(const std::string& root, const std::string& file, const std::string& directory) {
  return {"find", root,     "-mindepth", "1",  "-name", ".*", "-prune", "-o", "(", "-type",
          "d",    "-iname", directory,   "-o", "-type", "f",  "-iname", file, ")", "-print"};
}

std::vector<std::string> fdCommand(const std::string& root, const std::string& file, const std::string& directory) {
  // One glob for both types: it has no pattern per type.
  const std::string& glob = file == directory ? file : directory;
  return {"fdfind", "--threads", "1",  "--no-ignore", "--ignore-case", "--type", "f", "--type",
          "d",      "--glob",    glob, root};
}

[[noreturn]] void execute(const std::vector<std::string>& words) {
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  execvp(arguments.front(), arguments.data());
  _exit(127);
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

bool isInstalled(const char* tool) {
  return std::system((std::string("command -v ") + tool + " >/dev/null").c_str()) == 0;
}

void compare(const std::string& root, const std::string& text, const std::string& file, const std::string& directory) {
  std::vector<double> own, find, fd;
  double megabytes = 0;
  const bool hasFd = isInstalled("fdfind");
  for (int round = 0; round <= rounds; ++round) {  // the first warms the cache
    const Sample sample = measured([&] { _exit(search(root, text) > 0 ? 0 : 1); });
    const Sample other = measured([&] { execute(findCommand(root, file, directory)); });
    const Sample third = hasFd ? measured([&] { execute(fdCommand(root, file, directory)); }) : Sample{};
    if (round == 0) continue;
    own.push_back(sample.milliseconds);
    find.push_back(other.milliseconds);
    fd.push_back(third.milliseconds);
    megabytes = std::max(megabytes, sample.megabytes);
  }
  const auto row = [&](const char* name, const std::vector<double>& times) {
    std::printf("  %-8s %8.1f ms  (%.1f to %.1f)   x%.2f of find\n", name, median(times),
                *std::min_element(times.begin(), times.end()), *std::max_element(times.begin(), times.end()),
                median(times) / median(find));
  };
  std::printf("text \"%s\": %zu hits\n", text.c_str(), search(root, text));
  row("halyard", own);
  row("find", find);
  if (hasFd) row("fd -j1", fd);
  std::printf("  memory   %8.1f MB  (at most %.0f)   time wanted: at most x%.1f\n", megabytes, mostMegabytes,
              mostOfFind);
}

/// From the cancelling to the end of the walk's thread.
void measureCancelling(const std::string& root) {
  using namespace halyard;
  std::vector<double> times;
  for (int round = 0; round < 50; ++round) {
    directoryViewState().list.currentPath = root;
    openSearchOverlay();
    directoryViewState().searchState->inputText = round % 2 == 0 ? "*" : "needle";
    startSearch();
    std::this_thread::sleep_for(std::chrono::milliseconds(10 + round * 5));
    const auto start = Clock::now();
    directoryWalkWorker().cancel();
    while (directoryWalkWorker().isRunning()) std::this_thread::yield();
    times.push_back(millisecondsSince(start));
  }
  std::printf("a cancelled walk ends after %.3f ms (median), %.3f ms (worst of %zu)\n", median(times),
              *std::max_element(times.begin(), times.end()), times.size());
}

}  // namespace

int main() {
  std::string root = (fs::temp_directory_path() / "halyard-bench-search-XXXXXX").string();
  if (mkdtemp(root.data()) == nullptr) return 1;
  makeTree(root);
  compare(root, "needle", "needle*.*", "*needle*");
  compare(root, "*needle*", "*needle*", "*needle*");
  compare(root, "*.swift", "*.swift", "*.swift");
  compare(root, "*", "*", "*");
  measureCancelling(root);
  fs::remove_all(root);
  return 0;
}
