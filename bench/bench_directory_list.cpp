// A folder of 100,000 entries: from the key that enters it to its first frame, beside `ls` on the same folder; and a
// cursor move in it. Folder and frames are warm; nothing but the frame leaves the process.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/browser/directory_list.hpp"
#include "halyard/browser/directory_view.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "halyard/shell/key_dispatch.hpp"
#include "halyard/shell/main_loop.hpp"
#include "halyard/terminal/output.hpp"

namespace {

using namespace halyard;

constexpr int entryCount = 100000;

/// Counts the children that a real runner would have started.
class CountingRunner final : public CommandRunning {
 public:
  int calls = 0;
  std::string run(const std::string&) override { return ++calls, ""; }
  std::int32_t runLive(const std::string&) override { return ++calls; }
  PipeRunResult runLivePipe(const std::string&, const StopTest&, const LineHandler&, double) override {
    return ++calls, PipeRunResult{};
  }
};

/// The real file system, with a count of how often a folder was read.
class CountingFiles final : public FileSystemProviding {
 public:
  mutable int reads = 0;
  [[nodiscard]] bool fileExists(const std::string& path) const override { return disk_.fileExists(path); }
  [[nodiscard]] std::vector<std::string> contentsOfDirectory(const std::string& path) const override {
    return ++reads, disk_.contentsOfDirectory(path);
  }
  [[nodiscard]] std::vector<ListedItem> visibleItems(const std::string& path) const override {
    return ++reads, disk_.visibleItems(path);
  }
  [[nodiscard]] FileAttributes attributesOfItem(const std::string& path) const override {
    return ++reads, disk_.attributesOfItem(path);
  }
  void removeItem(const std::string&) override { std::abort(); }
  void createDirectory(const std::string&, bool) override { std::abort(); }
  [[nodiscard]] std::string homeDirectoryPath() const override { return disk_.homeDirectoryPath(); }

 private:
  DefaultFileSystemClient disk_;
};

/// A tenth of them folders; names as a person gives them, in no order, some with umlauts.
class LargeFolder {
 public:
  LargeFolder() {
    std::string path = (std::filesystem::temp_directory_path() / "halyard-bench-XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr) std::abort();
    path_ = path;
    static constexpr const char* words[] = {"Harbor", "tide", "Übersicht", "invoice", "Größe", "Screen Shot", "report"};
    for (unsigned i = 0; i < entryCount; ++i) {
      const unsigned mixed = i * 2654435761U;
      const std::string name =
          path_ + "/" + words[mixed % 7] + " " + std::to_string(mixed % 1000003U) + "-" + std::to_string(i);
      if (i % 10 == 0) {
        std::filesystem::create_directory(name);
      } else {
        const int file = open((name + ".txt").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        if (file < 0) std::abort();
        close(file);
      }
    }
  }
  ~LargeFolder() { std::filesystem::remove_all(path_); }
  LargeFolder(const LargeFolder&) = delete;
  LargeFolder& operator=(const LargeFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

const LargeFolder& largeFolder() {
  static const LargeFolder folder;
  return folder;
}

/// The loop at the directory view, on the large folder.
class View {
 public:
  View() : guard_({&runner, &files, &AppContext::shared()}) {
    loadStringCatalog({});
    setSelectedWorkingDirectory(largeFolder().path());
    directoryViewState() = {};
    prepareDirectoryView();
    state.activeView = AppViewMode::directory;
    state.needsFullRedraw = false;
    useFullBuffering();
    drawFrame(state);
    if (directoryViewState().list.entries.size() != entryCount + 1) std::abort();
  }

  CountingRunner runner;
  CountingFiles files;
  MainLoopState state;

 private:
  DependenciesGuard guard_;
};

void enterFolderAndDrawIt(benchmark::State& bench) {
  View view;
  for (auto _ : bench) {
    enterDirectory(largeFolder().path());
    drawFrame(view.state);
  }
  bench.counters["children"] = view.runner.calls;
}
BENCHMARK(enterFolderAndDrawIt)->Unit(benchmark::kMillisecond)->UseRealTime();

void listIt(benchmark::State& bench, const char* options) {
  const std::string command = "ls " + std::string(options) + " " + largeFolder().path() + " > /dev/null";
  for (auto _ : bench) {
    if (std::system(command.c_str()) != 0) bench.SkipWithError("ls failed");
  }
}
// In the order of the user's locale, and told what is a folder, as the browser is.
BENCHMARK_CAPTURE(listIt, ls, "-1")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(listIt, ls_directories_marked, "-1p --group-directories-first")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(listIt, ls_unsorted, "-1U")->Unit(benchmark::kMillisecond)->UseRealTime();

void moveCursor(benchmark::State& bench) {
  View view;
  const int reads = view.files.reads;
  for (auto _ : bench) {
    dispatchKey(view.state, {RawKey::Kind::down, {}});
    drawFrame(view.state);
  }
  bench.counters["children"] = view.runner.calls;
  bench.counters["reads"] = view.files.reads - reads;
}
BENCHMARK(moveCursor)->Unit(benchmark::kMicrosecond);

void jumpBetweenTheEnds(benchmark::State& bench) {
  View view;
  bool toEnd = true;
  for (auto _ : bench) {
    dispatchKey(view.state, {RawKey::Kind::character, toEnd ? "e" : "a"});
    drawFrame(view.state);
    toEnd = !toEnd;
  }
}
BENCHMARK(jumpBetweenTheEnds)->Unit(benchmark::kMicrosecond);

}  // namespace

// The frames go to /dev/null, the report to standard error, which is what the caller's standard output becomes.
int main(int argc, char** argv) {
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(STDOUT_FILENO, STDERR_FILENO);
  dup2(nowhere, STDOUT_FILENO);
  setenv("LC_ALL", "C.UTF-8", 0);
  benchmark::Initialize(&argc, argv);
  benchmark::ConsoleReporter reporter(benchmark::ConsoleReporter::OO_Tabular);
  reporter.SetOutputStream(&std::cerr);
  reporter.SetErrorStream(&std::cerr);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return 0;
}
