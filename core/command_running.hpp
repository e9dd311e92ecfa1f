// The one door to every external tool: a command string for /bin/bash.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace halyard {

/// Takes one line of a child's output, without its line end. Called on the reader's thread.
using LineHandler = std::function<void(std::string_view line)>;
/// Asked once per chunk of output, on the reader's thread; true ends the child.
using StopTest = std::function<bool()>;

/// What a piped run leaves behind. `output` is trimmed at both ends. `status` is the child's termination status:
/// its exit status, or the signal's number where a signal ended it; -1: could not be started; 124: time limit.
struct PipeRunResult {
  std::string output;
  std::int32_t status = 0;
};

class CommandRunning {
 public:
  CommandRunning() = default;
  CommandRunning(const CommandRunning&) = delete;
  CommandRunning& operator=(const CommandRunning&) = delete;
  virtual ~CommandRunning() = default;

  /// Captures the whole output, trimmed; the exit status is not kept. No limit, no abort.
  virtual std::string run(const std::string& command) = 0;
  /// Prints each line in gray as it comes. Returns the status.
  virtual std::int32_t runLive(const std::string& command) = 0;
  /// Hands each line that ends in a line feed to `onLine` as it comes. `timeout` in seconds; 0 or less: no limit.
  virtual PipeRunResult runLivePipe(const std::string& command, const StopTest& shouldStop, const LineHandler& onLine,
                                    double timeout = 0) = 0;
};

}  // namespace halyard
