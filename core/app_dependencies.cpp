#include "core/app_dependencies.hpp"

#include <cassert>
#include <utility>

namespace halyard {

AppDependencies& AppDependencies::current() {
  static AppDependencies dependencies;
  return dependencies;
}

DependenciesGuard::DependenciesGuard(AppDependencies replacement)
    : saved_(std::exchange(AppDependencies::current(), replacement)) {}

DependenciesGuard::~DependenciesGuard() { AppDependencies::current() = saved_; }

namespace {

CommandRunning& commandRunner() {
  CommandRunning* runner = AppDependencies::current().commandRunner;
  assert(runner != nullptr);
  return *runner;
}

}  // namespace

std::string run(const std::string& command) { return commandRunner().run(command); }

std::int32_t runLive(const std::string& command) { return commandRunner().runLive(command); }

PipeRunResult runLivePipe(const std::string& command, const StopTest& shouldStop, const LineHandler& onLine,
                          double timeout) {
  return commandRunner().runLivePipe(command, shouldStop, onLine, timeout);
}

}  // namespace halyard
