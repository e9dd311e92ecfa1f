// Composition: the real seams, then the shell.
#include <algorithm>
#include <string_view>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "halyard/shell/main_loop.hpp"
#include "halyard/shell/preflight.hpp"
#include "halyard/terminal/keys.hpp"

int main(int argc, char** argv) {
  using namespace halyard;
  static DefaultCommandRunner commandRunner;
  static DefaultFileSystemClient fileSystemClient;
  AppDependencies::current() = {&commandRunner, &fileSystemClient, &AppContext::shared()};

  registerExitCursorRestore();
  installTerminalSignalHandlers();
  loadStringCatalog(argc > 0 ? argv[0] : "");
  runPreflight(std::find(argv + std::min(argc, 1), argv + argc, std::string_view("--mock-preflight")) != argv + argc);
  runMainLoop();
}
