// Starts children through /bin/bash, reads them while they run, ends them on an abort or a time limit.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/command_running.hpp"

namespace halyard {

/// The runs that need the terminal or a limit rather than a line handler. They stand beside CommandRunning, whose three
/// operations every substitute must have; a substitute that also implements this gets these runs too.
class AttachedCommandRunning {
 public:
  AttachedCommandRunning() = default;
  AttachedCommandRunning(const AttachedCommandRunning&) = delete;
  AttachedCommandRunning& operator=(const AttachedCommandRunning&) = delete;
  virtual ~AttachedCommandRunning() = default;
  virtual std::int32_t runWithTimeout(const std::string& command, double timeout) = 0;
  virtual std::int32_t runAttached(const std::string& command) = 0;
  virtual void waitForSimulatorBoot(const std::string& udid, const std::string& label) = 0;
};

class DefaultCommandRunner final : public CommandRunning, public AttachedCommandRunning {
 public:
  std::string run(const std::string& command) override;
  std::int32_t runLive(const std::string& command) override;
  PipeRunResult runLivePipe(const std::string& command, const StopTest& shouldStop, const LineHandler& onLine,
                            double timeout = 0) override;
  std::int32_t runWithTimeout(const std::string& command, double timeout) override;
  std::int32_t runAttached(const std::string& command) override;
  void waitForSimulatorBoot(const std::string& udid, const std::string& label) override;
};

/// Prints the child's lines; ends it after `timeout` seconds with status 124. A limit of 0 fires at once.
std::int32_t runWithTimeout(const std::string& command, double timeout = 120);
/// Blocks behind a spinner until the simulator has booted. An empty label gives the usual text.
void waitForSimulatorBoot(const std::string& udid, const std::string& label = {});
/// The child shares the program's terminal.
std::int32_t runAttached(const std::string& command);
/// The same with the terminal in line mode around it.
std::int32_t runAttachedCooked(const std::string& command);

/// Runs quietly behind a spinner; the output as of run().
std::string runQuiet(const std::string& label, const std::string& command);

}  // namespace halyard
