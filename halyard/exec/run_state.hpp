#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>

#include <sys/types.h>

namespace halyard {

using SteadyTime = std::chrono::steady_clock::time_point;

/// Why a run that goes on must be ended, or that it needs no ending.
enum class RunEnding { byItself, aborted, timeLimit, stopped };

/// What the threads of one run tell each other: the caller, the reader of the output and the one that waits for the
/// child. All operations may be called from each of them.
class RunState {
 public:
  explicit RunState(bool withReader) : reading_(withReader) {}

  /// The child's thread: start and end.
  void startFinished(int error, pid_t child);
  void awaitAndReap();

  /// The reader: the child is to be ended; the reader is through.
  void terminateChild();
  void readerLeft();
  /// Sleeps for a moment, or until the child has ended or the reader is released. True while reading is to go on.
  bool sleepWhileRunning(std::chrono::milliseconds moment);

  /// The caller and the reader. Blocks until the start is known and gives its error number.
  int awaitStart();
  /// The caller. Blocks until the child has ended and the reader has left, or there is a reason to end them. A limit is
  /// asked for once and counts only if the child is running then.
  RunEnding awaitEnding(std::optional<SteadyTime> limit);
  /// Blocks until the child has ended, at most until then. True when it has.
  bool awaitChildEnd(SteadyTime until);
  void signalChild(int signal);
  /// The reader is not to wait for more output.
  void releaseReader();

  [[nodiscard]] std::int32_t status() const;
  [[nodiscard]] unsigned long long childStart() const;

 private:
  [[nodiscard]] bool childStillRuns() const;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<int> startError_;
  pid_t child_ = -1;
  unsigned long long childStart_ = 0;
  bool childRunning_ = false;  // cleared under the lock with the reaping, so that no signal meets a stranger
  std::int32_t status_ = 0;
  bool reading_;
  bool released_ = false;
  bool stopRequested_ = false;
};

}  // namespace halyard
