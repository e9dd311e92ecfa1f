// A clean slate for a test of actions, and after it.
#pragma once

#include <filesystem>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "tests/support/in_memory_file_system.hpp"
#include "tests/support/scripted_command_runner.hpp"

namespace halyard {

/// For its lifetime the current dependencies are a scripted runner and a tree in memory. Context, language (English,
/// with the program's own texts loaded) and the dialogs' flags are at their defaults at its start, and again at its
/// end; the current directory is at its end what it was at its start.
class ContextReset {
 public:
  ContextReset();
  ~ContextReset();
  ContextReset(const ContextReset&) = delete;
  ContextReset& operator=(const ContextReset&) = delete;

  ScriptedCommandRunner runner;
  InMemoryFileSystem files;

 private:
  DependenciesGuard dependencies_;
  std::filesystem::path workingDirectory_;
};

}  // namespace halyard
