#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace halyard {

/// One line that turns and counts seconds while a quiet command runs, drawn by a thread of its own. One at a time, and
/// nobody else prints while it runs.
class ActivitySpinner {
 public:
  explicit ActivitySpinner(std::string label);
  ~ActivitySpinner();
  ActivitySpinner(const ActivitySpinner&) = delete;
  ActivitySpinner& operator=(const ActivitySpinner&) = delete;

  [[nodiscard]] std::string label() const;
  /// From any thread; a running spinner shows it on its next frame. A detail stands behind the label in dim.
  void setLabel(std::string label, std::string detail = {});

  void start();
  /// Clears the line; a text that isn't empty stays behind as a line with a check mark.
  void stop(std::string_view finalText = {});

 private:
  struct State;
  std::shared_ptr<State> state_;
  std::thread thread_;
};

/// The spinner's line for a terminal of this many columns: frame, label, detail and seconds on one line that never
/// wraps.
std::string spinnerLine(std::string_view frame, std::string_view label, long elapsedSeconds, int columns,
                        std::string_view detail = {});

/// One line of progress: bar of 26 cells, percentage, done/total, label and the seconds since `start`.
void printProgress(int done, int total, std::string_view label, std::chrono::steady_clock::time_point start);

}  // namespace halyard
