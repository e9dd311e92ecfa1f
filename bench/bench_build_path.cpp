// The whole way of a build's output, child to screen, over a log of 100 MB: beside the same child read by runLivePipe
// with nothing to do. The screen is /dev/null; the report goes to standard error. A plain program: each way runs in a
// process of its own, whose memory is measured.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/utsname.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/build/live_build.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/file_system_client.hpp"

namespace {

using namespace halyard;

constexpr std::size_t logBytes = 100'000'000;
constexpr int rounds = 5;

/// A build of many files, in the shapes and proportions of real ones: long command lines below short headings.
void writeLog(const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  const std::string command = "    builtin-swiftc " + std::string(900, 'f') + " -Xcc -I/build/include\n";
  std::size_t written = 0;
  for (int number = 0; written < logBytes; ++number) {
    std::string part = fmt::format(
        "SwiftCompile normal arm64 Compiling\\ F{0}.swift /src/F{0}.swift (in target 'Target{1}' from project 'P')\n"
        "    cd /src\n",
        number, number / 400);
    part += command + "\n";
    if (number % 50 == 0) part += fmt::format("/src/F{}.swift:3:7: warning: unused variable\n    let x = 1\n", number);
    file << part;
    written += part.size();
  }
  file << "** BUILD SUCCEEDED **\n";
}

struct Cost {
  double seconds = 1e9;
  long megabytes = 0;
};

template <typename Work>
Cost measured(Work work) {
  Cost cost;
  for (int round = 0; round < rounds; ++round) {
    const auto begun = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
      work();
      _exit(0);
    }
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child || status != 0) std::exit(1);
#ifdef __APPLE__
    const long unit = 1'000'000;
#else
    const long unit = 1'000'000 / 1024;
#endif
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
    cost.seconds = std::min(cost.seconds, seconds);
    cost.megabytes = std::max(cost.megabytes, usage.ru_maxrss / unit);
  }
  return cost;
}

void print(std::string_view name, const Cost& cost) {
  fmt::print(stderr, "{:<30} {:.3f} s  {:4} MB\n", name, cost.seconds, cost.megabytes);
}

}  // namespace

int main() {
  static DefaultCommandRunner runner;
  static DefaultFileSystemClient files;
  AppDependencies::current() = {&runner, &files, &AppContext::shared()};
  loadStringCatalog({});
  std::string path = "/tmp/halyard-bench-XXXXXX";
  const int file = mkstemp(path.data());
  if (file < 0) return 1;
  close(file);
  writeLog(path);
  const int screen = open("/dev/null", O_WRONLY);
  dup2(STDOUT_FILENO, STDERR_FILENO);
  dup2(screen, STDOUT_FILENO);

  const std::string command = "cat " + path;
  const Cost plain = measured([&] { runLivePipe(command, {}, [](std::string_view) {}); });
  const Cost whole = measured([&] { runFormatted(command, 0); });
  unlink(path.c_str());

  utsname machine{};
  uname(&machine);
  fmt::print(stderr, "{} {} {}, {} processors, {:%Y-%m-%d}; {} MB, best of {}\n", machine.sysname, machine.release,
             machine.machine, sysconf(_SC_NPROCESSORS_ONLN), fmt::localtime(std::time(nullptr)), logBytes / 1'000'000,
             rounds);
  print("runLivePipe, nothing to do", plain);
  print("the live view of a build", whole);
  fmt::print(stderr, "ratio {:.2f} (at most 1.5), memory {} MB over the output (at most 20)\n",
             whole.seconds / plain.seconds, whole.megabytes - static_cast<long>(logBytes / 1'000'000));
  return 0;
}
