#include "tests/support/scripted_command_runner.hpp"

#include <utility>

#include <gtest/gtest.h>

#include "core/text.hpp"

namespace halyard {

bool ScriptedCommandRunner::Expectation::fits(std::string_view given) const {
  return isPart ? given.find(command) != std::string_view::npos : given == command;
}

ScriptedCommandRunner::~ScriptedCommandRunner() { verify(); }

ScriptedCommandRunner& ScriptedCommandRunner::expect(std::string command, std::string output, std::int32_t status) {
  expected_.push_back({std::move(command), false, std::move(output), status});
  return *this;
}

ScriptedCommandRunner& ScriptedCommandRunner::expectContaining(std::string part, std::string output,
                                                               std::int32_t status) {
  expected_.push_back({std::move(part), true, std::move(output), status});
  return *this;
}

ScriptedCommandRunner& ScriptedCommandRunner::expectBoot(std::string udid) { return expect("boot " + std::move(udid)); }

ScriptedCommandRunner& ScriptedCommandRunner::whenCalled(std::function<void()> action) {
  if (expected_.empty()) {
    ADD_FAILURE() << "whenCalled() without a command before it";
  } else {
    expected_.back().action = std::move(action);
  }
  return *this;
}

ScriptedCommandRunner& ScriptedCommandRunner::allow(const std::string& command, std::string output,
                                                    std::int32_t status) {
  allowed_[command] = {command, false, std::move(output), status};
  return *this;
}

std::vector<std::string> ScriptedCommandRunner::commands() const {
  const std::lock_guard guard(lock_);
  return commands_;
}

std::vector<double> ScriptedCommandRunner::limits() const {
  const std::lock_guard guard(lock_);
  return limits_;
}

void ScriptedCommandRunner::verify() {
  const std::lock_guard guard(lock_);
  if (next_ >= expected_.size()) return;
  std::string missing;
  for (; next_ < expected_.size(); ++next_) missing += "\n  " + expected_[next_].command;
  ADD_FAILURE() << "these commands never came:" << missing;
}

ScriptedCommandRunner::Expectation ScriptedCommandRunner::take(const std::string& command, double limit) {
  Expectation answer;
  {
    const std::lock_guard guard(lock_);
    const bool isNext = next_ < expected_.size() && expected_[next_].fits(command);
    const auto allowed = allowed_.find(command);
    if (!isNext && allowed != allowed_.end()) return allowed->second;
    commands_.push_back(command);
    limits_.push_back(limit);
    if (!isNext) {
      ADD_FAILURE() << "unexpected command:\n  " << command << "\nexpected here:\n  "
                    << (next_ < expected_.size() ? expected_[next_].command : "nothing more");
      return {command, false, {}, 127};
    }
    answer = expected_[next_++];
  }
  if (answer.action) answer.action();
  return answer;
}

std::string ScriptedCommandRunner::run(const std::string& command) {
  const Expectation answer = take(command);
  return std::string(trimmed(answer.output));
}

std::int32_t ScriptedCommandRunner::runLive(const std::string& command) { return take(command).status; }

PipeRunResult ScriptedCommandRunner::runLivePipe(const std::string& command, const StopTest& shouldStop,
                                                 const LineHandler& onLine, double timeout) {
  const Expectation answer = take(command, timeout);
  std::string_view rest = answer.output;
  // As the real one: a line counts when its line feed has come.
  for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
    if (onLine) onLine(rest.substr(0, end));
    rest.remove_prefix(end + 1);
    if (shouldStop && shouldStop()) break;
  }
  return {std::string(trimmed(answer.output)), answer.status};
}

std::int32_t ScriptedCommandRunner::runWithTimeout(const std::string& command, double timeout) {
  return take(command, timeout).status;
}

std::int32_t ScriptedCommandRunner::runAttached(const std::string& command) { return take(command).status; }

void ScriptedCommandRunner::waitForSimulatorBoot(const std::string& udid, const std::string&) { take("boot " + udid); }

}  // namespace halyard
