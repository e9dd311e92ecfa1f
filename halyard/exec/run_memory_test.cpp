#include <algorithm>
#include <string>

#include <sys/resource.h>

#include "halyard/exec/run_fixture.hpp"

namespace halyard {
namespace {

#ifndef HALYARD_SLOWED
TEST_F(Runs, ALargeOutputIsNotHeldTwice) {
  // In a process of its own: the peak counts from a process's start.
  constexpr std::size_t size = 80'000'000;
  const pid_t child = fork();
  if (child == 0) {
    const std::string command = "yes | head -c " + std::to_string(size);
    const PipeRunResult result = runner.runLivePipe(command, {}, [](std::string_view) {});
    _exit(result.output.size() == size - 1 ? 0 : 1);
  }
  int status = 0;
  rusage usage{};
  ASSERT_EQ(wait4(child, &status, 0, &usage), child);
  EXPECT_EQ(status, 0);
  constexpr long programItself = 16 * 1024;
  EXPECT_LT(usage.ru_maxrss, static_cast<long>(size / 1024 * 11 / 10) + programItself);
}
#endif

}  // namespace
}  // namespace halyard
