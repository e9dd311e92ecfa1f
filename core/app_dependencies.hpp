#pragma once

#include "core/app_context.hpp"
#include "core/command_running.hpp"
#include "core/file_system_providing.hpp"

namespace halyard {

/// The seams to the world. The program installs the real ones at start; a test swaps in its own by a
/// DependenciesGuard. The pointed-to objects must outlive their use here.
struct AppDependencies {
  CommandRunning* commandRunner = nullptr;
  FileSystemProviding* fileSystemClient = nullptr;
  AppContextProviding* appContext = nullptr;

  /// The value that free functions use.
  static AppDependencies& current();
};

/// Swaps the current dependencies and swaps them back at its end.
class DependenciesGuard {
 public:
  explicit DependenciesGuard(AppDependencies replacement);
  ~DependenciesGuard();
  DependenciesGuard(const DependenciesGuard&) = delete;
  DependenciesGuard& operator=(const DependenciesGuard&) = delete;

 private:
  AppDependencies saved_;
};

/// The three operations of the current runner as plain functions; most of the program calls these.
std::string run(const std::string& command);
std::int32_t runLive(const std::string& command);
PipeRunResult runLivePipe(const std::string& command, const StopTest& shouldStop, const LineHandler& onLine,
                          double timeout = 0);

}  // namespace halyard
