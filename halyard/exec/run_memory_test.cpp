#include <string>

#include <sys/resource.h>
#include <sys/wait.h>

#include "halyard/exec/run_testing.hpp"

namespace halyard {
namespace {

#ifndef HALYARD_SLOWED
TEST_F(Runs, ALargeOutputIsNotHeldTwice) {
  // In a process of its own, as a peak counts from a process's start on; it has our memory to begin with.
  constexpr std::size_t size = 80'000'000;
  const pid_t child = fork();
  if (child == 0) {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const long before = usage.ru_maxrss;
    const std::string line(119, 'x');
    const std::string command = "yes " + line + " | head -c " + std::to_string(size);
    const PipeRunResult result = runner.runLivePipe(command, {}, [](std::string_view) {});
    getrusage(RUSAGE_SELF, &usage);
    const bool isComplete = result.output.size() + 1 >= size;
    const bool isFrugal = usage.ru_maxrss - before <= static_cast<long>(size / 1024 * 11 / 10);
    _exit((isComplete ? 0 : 1) + (isFrugal ? 0 : 2));
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0) << "1: not all of it, 2: too much memory, 3: both; times 256";
}
#endif

}  // namespace
}  // namespace halyard
