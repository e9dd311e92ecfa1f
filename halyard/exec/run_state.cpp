#include "halyard/exec/run_state.hpp"

#include <algorithm>
#include <cerrno>

#include <signal.h>
#include <sys/wait.h>

#include "core/app_context.hpp"
#include "halyard/exec/shell_child.hpp"
#include "halyard/platform/processes.hpp"

namespace halyard {

namespace {

constexpr auto abortCheckInterval = std::chrono::milliseconds(100);

}  // namespace

void RunState::startFinished(int error, pid_t child) {
  const std::lock_guard lock(mutex_);
  startError_ = error;
  if (error == 0) {
    child_ = child;
    childStart_ = processStartMark(child);
    childRunning_ = true;
  }
  changed_.notify_all();
}

void RunState::awaitAndReap() {
  siginfo_t ended{};
  while (waitid(P_PID, static_cast<id_t>(child_), &ended, WEXITED | WNOWAIT) < 0 && errno == EINTR) {
  }
  const std::lock_guard lock(mutex_);
  status_ = reap(child_);
  childRunning_ = false;
  changed_.notify_all();
}

void RunState::terminateChild() {
  const std::lock_guard lock(mutex_);
  if (childRunning_) kill(child_, SIGTERM);
  stopRequested_ = true;
  changed_.notify_all();
}

void RunState::readerLeft() {
  const std::lock_guard lock(mutex_);
  reading_ = false;
  changed_.notify_all();
}

bool RunState::sleepWhileRunning(std::chrono::milliseconds moment) {
  std::unique_lock lock(mutex_);
  return !changed_.wait_for(lock, moment, [this] { return !childRunning_ || released_; });
}

int RunState::awaitStart() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return startError_.has_value(); });
  return *startError_;
}

/// Asked of the system, as the thread that waits may not have come to say so yet.
bool RunState::childStillRuns() const {
  if (!childRunning_) return false;
  siginfo_t ended{};
  const int result = waitid(P_PID, static_cast<id_t>(child_), &ended, WEXITED | WNOWAIT | WNOHANG);
  return result == 0 && ended.si_pid == 0;
}

RunEnding RunState::awaitEnding(std::optional<SteadyTime> limit) {
  std::unique_lock lock(mutex_);
  for (;;) {
    if (operationAborted()) return RunEnding::aborted;
    if (stopRequested_) return RunEnding::stopped;
    if (!childRunning_ && !reading_) return RunEnding::byItself;
    const SteadyTime now = std::chrono::steady_clock::now();
    if (limit && now >= *limit) {
      limit.reset();
      if (childStillRuns()) return RunEnding::timeLimit;
    }
    const SteadyTime check = now + abortCheckInterval;
    changed_.wait_until(lock, limit ? std::min(check, *limit) : check);
  }
}

bool RunState::awaitChildEnd(SteadyTime until) {
  std::unique_lock lock(mutex_);
  return changed_.wait_until(lock, until, [this] { return !childRunning_; });
}

void RunState::signalChild(int signal) {
  const std::lock_guard lock(mutex_);
  if (childRunning_) kill(child_, signal);
}

void RunState::releaseReader() {
  const std::lock_guard lock(mutex_);
  released_ = true;
  changed_.notify_all();
}

std::int32_t RunState::status() const {
  const std::lock_guard lock(mutex_);
  return childRunning_ ? SIGKILL : status_;  // what it was sent last, for a child that nothing can end
}

unsigned long long RunState::childStart() const {
  const std::lock_guard lock(mutex_);
  return childStart_;
}

}  // namespace halyard
