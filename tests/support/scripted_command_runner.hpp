// A runner that runs nothing: the test says which commands are to come, in which order, and what they answer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/command_running.hpp"
#include "halyard/exec/command_runner.hpp"

namespace halyard {

/// Each expected command serves one call. A command that wasn't expected, or not yet, fails the test and prints itself;
/// those that never came fail it at the runner's end. Safe to be called from several threads.
class ScriptedCommandRunner final : public CommandRunning, public AttachedCommandRunning {
 public:
  ScriptedCommandRunner() = default;
  ~ScriptedCommandRunner() override;

  /// The next command, and what it gives. Output as the tool would write it, with its line feeds.
  ScriptedCommandRunner& expect(std::string command, std::string output = {}, std::int32_t status = 0);
  /// The same with any command that holds this text.
  ScriptedCommandRunner& expectContaining(std::string part, std::string output = {}, std::int32_t status = 0);
  /// The next wait for a simulator to boot.
  ScriptedCommandRunner& expectBoot(std::string udid);
  /// Runs at the call of the command that was expected last, before it answers: an abort, a file that appears …
  ScriptedCommandRunner& whenCalled(std::function<void()> action);
  /// A command that may come at any time and any number of times, or never. It isn't among commands().
  ScriptedCommandRunner& allow(const std::string& command, std::string output = {}, std::int32_t status = 0);

  /// What came, in order; waits for a boot as "boot <udid>".
  [[nodiscard]] std::vector<std::string> commands() const;
  /// Limits given to runs, in seconds, in the order of the commands; 0: none.
  [[nodiscard]] std::vector<double> limits() const;
  /// Reports what never came now rather than at the end.
  void verify();

  std::string run(const std::string& command) override;
  std::int32_t runLive(const std::string& command) override;
  PipeRunResult runLivePipe(const std::string& command, const StopTest& shouldStop, const LineHandler& onLine,
                            double timeout = 0) override;
  std::int32_t runWithTimeout(const std::string& command, double timeout) override;
  std::int32_t runAttached(const std::string& command) override;
  void waitForSimulatorBoot(const std::string& udid, const std::string& label) override;

 private:
  struct Expectation {
    std::string command;
    bool isPart = false;
    std::string output;
    std::int32_t status = 0;
    std::function<void()> action = {};

    [[nodiscard]] bool fits(std::string_view given) const;
  };

  /// The answer; of an unexpected command none and status 127.
  Expectation take(const std::string& command, double limit = 0);

  mutable std::mutex lock_;
  std::vector<Expectation> expected_;
  std::size_t next_ = 0;
  std::map<std::string, Expectation> allowed_;
  std::vector<std::string> commands_;
  std::vector<double> limits_;
};

}  // namespace halyard
