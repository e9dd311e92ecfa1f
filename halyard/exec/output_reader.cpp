#include "halyard/exec/output_reader.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "core/app_context.hpp"
#include "halyard/exec/run_state.hpp"

namespace halyard {

namespace {

/// After the release no more is read than a pipe can have held: somebody may go on writing without end.
constexpr std::size_t mostAfterRelease = std::size_t{1} << 20U;
constexpr std::size_t pollingChunk = 4096;
constexpr auto pollingInterval = std::chrono::milliseconds(50);

struct Readiness {
  bool output = false;
  bool released = false;
};

Readiness awaitOutput(int pipe, int wake, bool released) {
  std::array<pollfd, 2> watched = {
      {{.fd = pipe, .events = POLLIN, .revents = 0}, {.fd = wake, .events = POLLIN, .revents = 0}}};
  while (poll(watched.data(), watched.size(), released ? 0 : -1) < 0 && errno == EINTR) {
  }
  return {.output = watched[0].revents != 0, .released = watched[1].revents != 0};
}

ssize_t readInto(int pipe, std::span<char> room) {
  for (;;) {
    const ssize_t size = read(pipe, room.data(), room.size());
    if (size >= 0 || errno != EINTR) return size;
  }
}

}  // namespace

void readToEnd(int pipe, int wake, OutputTaker& taker, RunState& run) {
  bool released = false;
  std::size_t allowed = mostAfterRelease;
  for (;;) {
    const Readiness ready = awaitOutput(pipe, wake, released);
    released = released || ready.released;
    if (released && (operationAborted() || allowed == 0 || !ready.output)) break;
    if (!ready.output) continue;
    const ssize_t size = readInto(pipe, taker.room());
    if (size <= 0 || !taker.take(static_cast<std::size_t>(size), run)) break;
    if (released) allowed -= std::min(allowed, static_cast<std::size_t>(size));
  }
  taker.finish();
}

void readWhileRunning(int pipe, OutputTaker& taker, RunState& run) {
  fcntl(pipe, F_SETFL, fcntl(pipe, F_GETFL) | O_NONBLOCK);
  bool running = run.awaitStart() == 0;
  while (running) {
    const std::span<char> room = taker.room();
    const ssize_t size = readInto(pipe, room.first(std::min(room.size(), pollingChunk)));
    if (size > 0 && !taker.take(static_cast<std::size_t>(size), run)) break;
    if (operationAborted()) {
      run.terminateChild();
      break;
    }
    running = run.sleepWhileRunning(pollingInterval);
  }
  taker.finish();
}

}  // namespace halyard
