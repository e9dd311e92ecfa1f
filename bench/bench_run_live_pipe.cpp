// How long runLivePipe takes for 500 MB of output in short lines, next to the same child piped into `wc -l`, and how
// much memory it takes at most. The targets: twice the time, the output and a tenth.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <string>
#include <string_view>

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/utsname.h>
#include <sys/wait.h>
#include <unistd.h>

#include "halyard/exec/command_runner.hpp"

namespace {

constexpr std::size_t lineLength = 120;
constexpr std::size_t lineCount = 500'000'000 / lineLength;
constexpr int rounds = 5;

std::string writer() { return fmt::format("yes {} | head -n {}", std::string(lineLength - 1, 'x'), lineCount); }

template <typename Work>
double seconds(Work work) {
  const auto begun = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
}

template <typename Work>
double bestOf(Work work) {
  double best = seconds(work);
  for (int round = 1; round < rounds; ++round) best = std::min(best, seconds(work));
  return best;
}

std::size_t readThrough() {
  return halyard::DefaultCommandRunner().runLivePipe(writer(), {}, [](std::string_view) {}).output.size();
}

void readThroughWc() {
  if (std::system((writer() + " | wc -l >/dev/null").c_str()) != 0) std::exit(1);
}

/// In a process of its own, as the peak counts from a process's start. 1 where the output isn't what was written.
int peakMegabytes() {
  const pid_t child = fork();
  if (child == 0) _exit(readThrough() == lineCount * lineLength - 1 ? 0 : 1);
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child || status != 0) return -1;
#ifdef __APPLE__
  constexpr long unit = 1'000'000;
#else
  constexpr long unit = 1'000'000 / 1024;
#endif
  return static_cast<int>(usage.ru_maxrss / unit);
}

}  // namespace

int main() {
  utsname machine{};
  uname(&machine);
  const int peak = peakMegabytes();
  const double viaWc = bestOf(readThroughWc);
  const double viaRunner = bestOf(readThrough);
  fmt::print("{} {} {}, {} processors, {:%Y-%m-%d}\n", machine.sysname, machine.release, machine.machine,
             sysconf(_SC_NPROCESSORS_ONLN), fmt::localtime(std::time(nullptr)));
  fmt::print("{} lines of {} bytes, best of {}\n", lineCount, lineLength, rounds);
  fmt::print("piped into wc -l  {:.3f} s\nrunLivePipe       {:.3f} s\nratio             {:.2f} (at most 2)\n", viaWc,
             viaRunner, viaRunner / viaWc);
  fmt::print("peak of memory    {} MB for {} MB of output (at most {})\n", peak, lineCount * lineLength / 1'000'000,
             lineCount * lineLength / 1'000'000 * 11 / 10);
  return peak > 0 ? 0 : 1;
}
