#include "halyard/exec/supervised_run.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

#include <signal.h>
#include <unistd.h>

#include "core/app_context.hpp"
#include "halyard/exec/interrupt_guard.hpp"
#include "halyard/exec/run_state.hpp"
#include "halyard/exec/shell_child.hpp"
#include "halyard/platform/all_signals_held.hpp"
#include "halyard/platform/child_start.hpp"
#include "halyard/platform/processes.hpp"

namespace halyard {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// The way from an abort to the prompt: up to 0.1 s until it is noticed, then these.
constexpr auto firstSignalGrace = milliseconds(500);
constexpr auto totalGrace = milliseconds(550);
constexpr auto lastGrace = milliseconds(40);
constexpr auto killGrace = milliseconds(60);
constexpr auto leftoverCheckInterval = milliseconds(10);

class OwnedPipe {
 public:
  OwnedPipe() = default;
  ~OwnedPipe() {
    closeEnd(ends_.readEnd);
    closeEnd(ends_.writeEnd);
  }
  OwnedPipe(const OwnedPipe&) = delete;
  OwnedPipe& operator=(const OwnedPipe&) = delete;

  int open() { return openPipe(ends_); }
  void closeWriteEnd() { closeEnd(ends_.writeEnd); }
  [[nodiscard]] int readEnd() const { return ends_.readEnd; }
  [[nodiscard]] int writeEnd() const { return ends_.writeEnd; }

 private:
  static void closeEnd(int& end) {
    if (const int closing = std::exchange(end, -1); closing >= 0) close(closing);
  }

  PipeEnds ends_;
};

/// The threads of one run. The state is shared because the thread that waits for the child stays behind where nothing
/// can end the child: one that runs as another user, say.
class SupervisedRun {
 public:
  explicit SupervisedRun(const RunReader& reader)
      : reader_(reader), state_(std::make_shared<RunState>(static_cast<bool>(reader))) {}
  ~SupervisedRun();
  SupervisedRun(const SupervisedRun&) = delete;
  SupervisedRun& operator=(const SupervisedRun&) = delete;

  /// Gives the error number.
  int start(const std::string& command);
  RunOutcome finish(std::optional<double> limit);

 private:
  int openPipes();
  void startReader();
  void endChild(RunEnding ending);
  void endLeftovers(SteadyTime until);
  void wakeReader();

  const RunReader& reader_;
  std::shared_ptr<RunState> state_;
  OwnedPipe output_;
  OwnedPipe wake_;
  std::thread readerThread_;
  std::thread childThread_;
};

SupervisedRun::~SupervisedRun() {
  output_.closeWriteEnd();
  if (readerThread_.joinable()) readerThread_.join();
  if (childThread_.joinable()) {
    if (state_->awaitChildEnd(steady_clock::now())) {
      childThread_.join();
    } else {
      childThread_.detach();
    }
  }
}

int SupervisedRun::openPipes() {
  const int error = output_.open();
  if (error != 0) return error;
  widenPipe(output_.writeEnd());
  return wake_.open();
}

void SupervisedRun::startReader() {
  readerThread_ = std::thread([this] {
    reader_(output_.readEnd(), wake_.readEnd(), *state_);
    state_->readerLeft();
  });
}

int SupervisedRun::start(const std::string& command) {
  if (reader_) {
    if (const int error = openPipes(); error != 0) return error;
  }
  try {
    const AllSignalsHeld signals;
    // The reader stands before there is anything to read.
    if (reader_) startReader();
    childThread_ = std::thread([state = state_, command, output = output_.writeEnd()] {
      pid_t child = -1;
      const int error = startShell(command, output, child);
      state->startFinished(error, child);
      if (error == 0) state->awaitAndReap();
    });
  } catch (const std::system_error& error) {
    state_->startFinished(error.code().value(), -1);
  }
  const int error = state_->awaitStart();
  output_.closeWriteEnd();
  return error;
}

RunOutcome SupervisedRun::finish(std::optional<double> limit) {
  constexpr double longestLimit = 1e8;  // some years: far from what the clock can't count
  std::optional<SteadyTime> deadline;
  if (limit) {
    const std::chrono::duration<double> seconds(*limit > 0 ? std::min(*limit, longestLimit) : 0);
    deadline = steady_clock::now() + std::chrono::duration_cast<steady_clock::duration>(seconds);
  }
  const RunEnding ending = state_->awaitEnding(deadline);
  if (ending != RunEnding::byItself) endChild(ending);
  if (readerThread_.joinable()) readerThread_.join();
  return {.startError = 0, .timedOut = ending == RunEnding::timeLimit, .status = state_->status()};
}

void SupervisedRun::endChild(RunEnding ending) {
  const SteadyTime begun = steady_clock::now();
  if (ending == RunEnding::aborted) state_->signalChild(SIGINT);
  if (ending == RunEnding::timeLimit) state_->signalChild(SIGTERM);
  state_->awaitChildEnd(begun + firstSignalGrace);
  if (ending == RunEnding::aborted) state_->signalChild(SIGTERM);
  endLeftovers(std::max(begun + totalGrace, steady_clock::now() + lastGrace));
  wakeReader();
}

/// The shell may be gone while the tool it started is not: it would go on working, and hold the pipe.
void SupervisedRun::endLeftovers(SteadyTime until) {
  const unsigned long long oldest = state_->childStart();
  std::size_t left = signalRunLeftovers(oldest, SIGTERM);
  while (left > 0 && steady_clock::now() < until) {
    std::this_thread::sleep_for(leftoverCheckInterval);
    left = signalRunLeftovers(oldest, 0);
  }
  state_->signalChild(SIGKILL);
  if (left > 0) signalRunLeftovers(oldest, SIGKILL);
  state_->awaitChildEnd(steady_clock::now() + killGrace);
}

void SupervisedRun::wakeReader() {
  state_->releaseReader();
  if (wake_.writeEnd() < 0) return;
  const char byte = 0;
  while (write(wake_.writeEnd(), &byte, 1) < 0 && errno == EINTR) {
  }
}

}  // namespace

RunOutcome superviseRun(const std::string& command, std::optional<double> limit, const RunReader& reader) {
  const InterruptGuard interrupts;
  SupervisedRun run(reader);
  if (const int error = run.start(command); error != 0) return {.startError = error, .timedOut = false, .status = -1};
  return run.finish(limit);
}

}  // namespace halyard
