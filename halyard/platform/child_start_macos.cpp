#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

#include "halyard/platform/child_inheritance.hpp"
#include "halyard/platform/child_start.hpp"

namespace halyard {

namespace {

/// A descriptor that an earlier action redirects is inherited anyway; one that is closed can't be.
int inheritIfOpen(posix_spawn_file_actions_t& actions, int descriptor) noexcept {
  return fcntl(descriptor, F_GETFD) < 0 ? 0 : posix_spawn_file_actions_addinherit_np(&actions, descriptor);
}

}  // namespace

int inheritStandardStreamsOnly(posix_spawn_file_actions_t& actions, short& flags) noexcept {
  flags = static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT);
  int error = 0;
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO && error == 0; ++descriptor) {
    error = inheritIfOpen(actions, descriptor);
  }
  return error;
}

sigset_t everySignal() noexcept {
  sigset_t all;
  sigfillset(&all);
  return all;
}

int openPipe(PipeEnds& ends) noexcept {
  int both[2] = {-1, -1};
  if (pipe(both) != 0) return errno;
  for (const int end : both) fcntl(end, F_SETFD, FD_CLOEXEC);
  ends = {.readEnd = both[0], .writeEnd = both[1]};
  return 0;
}

void widenPipe(int) noexcept {}  // pipes grow by themselves here

}  // namespace halyard
