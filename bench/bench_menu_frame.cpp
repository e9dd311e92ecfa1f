// A cursor move: from the key to the finished frame, without a terminal at the other end.
#include <iostream>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "halyard/shell/header.hpp"
#include "halyard/shell/key_dispatch.hpp"
#include "halyard/shell/main_loop.hpp"
#include "halyard/terminal/output.hpp"

namespace {

using namespace halyard;

/// Counts the children that a real runner would have started.
class CountingRunner final : public CommandRunning {
 public:
  int calls = 0;
  std::string run(const std::string&) override {
    ++calls;
    return "main";
  }
  std::int32_t runLive(const std::string&) override { return ++calls; }
  PipeRunResult runLivePipe(const std::string&, const StopTest&, const LineHandler&, double) override {
    ++calls;
    return {};
  }
};

void cursorMove(benchmark::State& bench) {
  CountingRunner runner;
  DefaultFileSystemClient files;
  DependenciesGuard guard({&runner, &files, &AppContext::shared()});
  loadStringCatalog({});
  setSelectedDevice(SelectedDevice{"iPhone 16", "UDID-1", "iOS 18.2"});
  MainLoopState state;
  state.menu = buildMenu();
  clampCursors(state.menu, state.cursor);
  useFullBuffering();
  drawFrame(state);
  const int callsBefore = runner.calls;
  for (auto _ : bench) {
    dispatchKey(state, {RawKey::Kind::down, {}});
    clampCursors(state.menu, state.cursor);
    drawFrame(state);
  }
  bench.counters["children"] = runner.calls - callsBefore;
}
BENCHMARK(cursorMove)->Unit(benchmark::kMicrosecond);

}  // namespace

// The frames go to /dev/null, the report to standard error, which is what the caller's standard output becomes.
int main(int argc, char** argv) {
  const int nowhere = open("/dev/null", O_WRONLY);
  dup2(STDOUT_FILENO, STDERR_FILENO);
  dup2(nowhere, STDOUT_FILENO);
  benchmark::Initialize(&argc, argv);
  benchmark::ConsoleReporter reporter(benchmark::ConsoleReporter::OO_Tabular);
  reporter.SetOutputStream(&std::cerr);
  reporter.SetErrorStream(&std::cerr);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return 0;
}
