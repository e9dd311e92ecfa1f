#include "core/app_dependencies.hpp"

#include <utility>

namespace halyard {

AppDependencies& AppDependencies::current() {
  static AppDependencies dependencies;
  return dependencies;
}

DependenciesGuard::DependenciesGuard(AppDependencies replacement)
    : saved_(std::exchange(AppDependencies::current(), replacement)) {}

DependenciesGuard::~DependenciesGuard() { AppDependencies::current() = saved_; }

std::string run(const std::string& command) { return AppDependencies::current().commandRunner->run(command); }

std::int32_t runLive(const std::string& command) { return AppDependencies::current().commandRunner->runLive(command); }

PipeRunResult runLivePipe(const std::string& command, const StopTest& shouldStop, const LineHandler& onLine,
                          double timeout) {
  return AppDependencies::current().commandRunner->runLivePipe(command, shouldStop, onLine, timeout);
}

}  // namespace halyard
