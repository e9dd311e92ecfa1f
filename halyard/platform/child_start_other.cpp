#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

#include "halyard/platform/child_inheritance.hpp"
#include "halyard/platform/child_start.hpp"

namespace halyard {

int inheritStandardStreamsOnly(posix_spawn_file_actions_t& actions, short&) noexcept {
  return posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
}

sigset_t everySignal() noexcept {
  // sigfillset leaves out two signals of the C library, which posix_spawn would then start the child with ignored.
  sigset_t all;
  std::memset(&all, 0xFF, sizeof all);
  return all;
}

int openPipe(PipeEnds& ends) noexcept {
  int both[2] = {-1, -1};
  if (pipe2(both, O_CLOEXEC) != 0) return errno;
  ends = {.readEnd = both[0], .writeEnd = both[1]};
  return 0;
}

void widenPipe(int end) noexcept {
  constexpr int mostForEveryone = 1 << 20;  // the default of /proc/sys/fs/pipe-max-size
  fcntl(end, F_SETPIPE_SZ, mostForEveryone);
}

}  // namespace halyard
