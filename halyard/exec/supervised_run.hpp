#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace halyard {

class RunState;

/// How the run's output is read: on the reader's thread, until it returns. `wake` becomes readable when the run is over
/// although the pipe may still be open.
using RunReader = std::function<void(int pipe, int wake, RunState& run)>;

struct RunOutcome {
  int startError = 0;  ///< the system's error number; with it the status is -1
  bool timedOut = false;
  std::int32_t status = 0;
};

/// Runs a command from its start to its end, with Ctrl-C as an abort. Without a reader the child has our terminal.
/// An abort, the limit (seconds) or a reader that terminates the child end it, and whatever it leaves behind, within
/// 0.8 seconds. Prints nothing.
RunOutcome superviseRun(const std::string& command, std::optional<double> limit, const RunReader& reader);

}  // namespace halyard
