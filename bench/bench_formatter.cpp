// How fast the live view of a build reads, beside tools that do less with the same bytes: real logs where they lie
// beside the sources, else a made one. Prints what it finds to standard error, as standard output takes the view.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <sys/utsname.h>
#include <unistd.h>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/xcodebuild_formatter.hpp"

namespace {

std::atomic<std::size_t> allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
  allocations.fetch_add(1, std::memory_order_relaxed);
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace {

constexpr std::size_t leastBytes = 64'000'000;
constexpr int rounds = 7;
constexpr double target = 400;  // MB/s

/// A build of many files, in the shapes and proportions of real ones.
std::string madeLog() {
  const std::string command = "    builtin-swiftc " + std::string(900, 'f') + " -Xcc -I/build/include\n";
  std::string log = "Check dependencies\n";
  for (int file = 0; file < 4000; ++file) {
    const std::string place = fmt::format("(in target 'Target{}' from project 'P')\n", file / 400);
    log += fmt::format("SwiftCompile normal arm64 Compiling\\ F{0}.swift /src/F{0}.swift {1}", file, place);
    log += "    cd /src\n" + command + "\n";
    if (file % 50 == 0) log += fmt::format("/src/F{}.swift:3:7: warning: unused variable\n    let x = 1\n", file);
  }
  return log + "** BUILD SUCCEEDED **\n";
}

/// Without the lines that start a spinner: what that costs is a thread's time, not the reader's.
std::string recordedLog() {
  const auto folder = std::filesystem::path(__FILE__).parent_path() / "../../shared/recordings/xcodebuild-build";
  if (!std::filesystem::exists(folder)) return {};
  std::string log;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string text = halyard::decodedText(std::string(std::istreambuf_iterator<char>(file), {}));
    for (const std::string_view line : halyard::splitLines(text)) {
      if (line.starts_with("Resolve Package Graph") || line.starts_with("Planning")) continue;
      log.append(line).append("\n");
    }
  }
  return log;
}

template <typename Work>
double bestOf(Work work) {
  double best = 1e9;
  for (int round = 0; round < rounds; ++round) {
    const auto begun = std::chrono::steady_clock::now();
    work();
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count());
  }
  return best;
}

std::size_t format(std::string_view log) {
  halyard::XcodeBuildFormatter formatter;
  std::size_t lines = 0;
  while (!log.empty()) {
    const std::size_t end = std::min(log.find('\n'), log.size());
    formatter.processLine(log.substr(0, end));
    log.remove_prefix(std::min(end + 1, log.size()));
    ++lines;
  }
  formatter.finish();
  return lines;
}

std::size_t allocationsOfDroppedLines() {
  halyard::XcodeBuildFormatter formatter;
  const std::string indented = "    " + std::string(5000, 'x') + ": note: nothing";
  formatter.processLine("SwiftDriver App");
  const std::size_t before = allocations;
  for (int i = 0; i < 1000; ++i) {
    formatter.processLine(indented);
    formatter.processLine("WriteAuxiliaryFile /out/x: y (in target 'App' from project 'P')");
    formatter.processLine("SwiftCompile normal arm64 /src/A.swift (in target 'App' from project 'P')");
    formatter.processLine("Touch /out/App.app");
    if (i == 0) allocations = before;  // the first compile line is shown
  }
  return allocations - before;
}

void report(std::string_view name, double seconds, std::size_t bytes) {
  fmt::print(stderr, "{:<22} {:.4f} s  {:6.0f} MB/s\n", name, seconds, static_cast<double>(bytes) / 1e6 / seconds);
}

/// `sink` for grep isn't /dev/null: there it would stop at its first hit.
void reportTool(const std::string& command, std::string_view sink, const std::string& path, std::size_t bytes) {
  const std::string line = fmt::format("{} '{}' {}", command, path, sink);
  report(command, bestOf([&] {
           if (std::system(line.c_str()) < 0) std::exit(1);
         }),
         bytes);
}

}  // namespace

int main(int /*count*/, char** words) {
  std::string log = recordedLog();
  const bool isRecorded = !log.empty();
  if (!isRecorded) log = madeLog();
  const std::string once = log;
  while (log.size() < leastBytes) log += once;

  std::string path = "/tmp/halyard-bench-XXXXXX";
  const int file = mkstemp(path.data());
  if (file < 0 || !(std::ofstream(path, std::ios::binary) << log)) return 1;
  close(file);
  const int nothing = open("/dev/null", O_WRONLY);
  dup2(nothing, STDOUT_FILENO);
  halyard::loadStringCatalog(words[0]);

  utsname machine{};
  uname(&machine);
  fmt::print(stderr, "{} {} {}, {} processors, {:%Y-%m-%d}\n", machine.sysname, machine.release, machine.machine,
             sysconf(_SC_NPROCESSORS_ONLN), fmt::localtime(std::time(nullptr)));
  fmt::print(stderr, "{} bytes of {} logs, {} lines, best of {}\n", log.size(), isRecorded ? "real" : "made",
             format(log), rounds);
  const double seconds = bestOf([&] { format(log); });
  report("formatter", seconds, log.size());
  reportTool("cat", ">/dev/null", path, log.size());
  reportTool("wc -l", ">/dev/null", path, log.size());
  reportTool("grep -c error:", "| cat >/dev/null", path, log.size());
  unlink(path.c_str());
  const std::size_t allocated = allocationsOfDroppedLines();
  const bool isFast = static_cast<double>(log.size()) / 1e6 / seconds >= target;
  fmt::print(stderr, "target {} MB/s: {}\nallocations for 4000 dropped lines: {} (target 0)\n", target,
             isFast ? "reached" : "missed", allocated);
  return isFast && allocated == 0 ? 0 : 1;
}
