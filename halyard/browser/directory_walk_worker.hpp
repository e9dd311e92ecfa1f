// The one thread on which the directory browser's walks run.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "halyard/browser/directory_state.hpp"

namespace halyard {

class DirectoryWalkWorker {
 public:
  /// A walk with copies of all that it needs. It returns soon after the flag is set.
  using Job = std::function<std::vector<DirectoryEntry>(const std::atomic<bool>& isCancelled)>;

  DirectoryWalkWorker() = default;
  /// Cancels what runs and waits for its end.
  ~DirectoryWalkWorker();
  DirectoryWalkWorker(const DirectoryWalkWorker&) = delete;
  DirectoryWalkWorker& operator=(const DirectoryWalkWorker&) = delete;

  /// Ends the walk before, if one still runs, and starts this one. Where the system gives no thread its result is
  /// empty.
  void start(Job job);
  /// Tells the walk to end and doesn't wait; its result won't be seen.
  void cancel();
  /// The hits, once, when the walk has come to its end.
  std::optional<std::vector<DirectoryEntry>> takeResult();
  /// True until the walk has come to its end, also a cancelled one.
  [[nodiscard]] bool isRunning() const { return isRunning_; }

 private:
  void end();

  std::thread thread_;
  std::atomic<bool> isCancelled_ = false;
  std::atomic<bool> isRunning_ = false;
  std::mutex lock_;
  std::optional<std::vector<DirectoryEntry>> result_;  ///< guarded by lock_
};

/// The browser's; at the program's end it is ended with it.
DirectoryWalkWorker& directoryWalkWorker();

/// True where "x" is typed within the polling period of 0.12 s; the rest of the period is waited out otherwise, and
/// every other key dropped.
bool walkCancelledByKey();

}  // namespace halyard
