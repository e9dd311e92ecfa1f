// The program as it is, with a first group of rows that run the command of HALYARD_PROBE_COMMAND each in its own way.
// So a test can watch a running child, a prompt or a crash from the menu, whatever the menu's own rows do. The last
// rows are flows that the menu has no row for.
#include <cstdlib>
#include <string>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_flows.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "halyard/shell/main_loop.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/keys.hpp"
#include "halyard/terminal/line_input.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/testruns/test_actions.hpp"

namespace {

using namespace halyard;

std::string command() {
  const char* text = std::getenv("HALYARD_PROBE_COMMAND");
  return text == nullptr ? "echo no command" : text;
}

/// An action's frame: header, work, what came of it, the wait.
template <typename Work>
LightMenuItem row(const char* label, Work work) {
  return {.label = label,
          .action =
              [label, work] {
                printActionHeader(label, "A row of the probe.");
                const std::string result = work();
                printInfo("result " + displaySafe(result));
                waitForBack();
              },
          .hotkey = {}};
}

/// A flow, which brings its own frame.
LightMenuItem flow(const char* label, void (*action)()) { return {.label = label, .action = action, .hotkey = {}}; }

Menu probeMenu() {
  LightMenuCategory group;
  group.name = "Probe";
  group.items = {
      row("Live", [] { return std::to_string(runLive(command())); }),
      row("Pipe", [] { return runLivePipe(command(), {}, [](std::string_view) {}).output; }),
      row("Attached", [] { return std::to_string(runAttached(command())); }),
      row("Cooked", [] { return std::to_string(runAttachedCooked(command())); }),
      row("Limited", [] { return std::to_string(runWithTimeout(command(), 30)); }),
      row("Capture", [] { return run(command()); }),
      row("Quiet", [] { return runQuiet("Working", command()); }),
      row("Prompt", [] { return promptWithDefault("Name?", "nobody"); }),
      row("Paste", [] { return readPastedText(); }),
      row("Choice", [] { return readChoice(); }),
      row("Confirm", [] { return std::string(confirm("Really?") ? "yes" : "no"); }),
      row("Crash", []() -> std::string { std::abort(); }),
      flow("GuidedClean", guidedClean),
      flow("BuildSettings", showBuildSettings),
      flow("LaunchLastBuilt", launchLastBuiltApp),
      flow("Test plans", runAllTestPlans),
  };
  Menu menu = buildMenu();
  menu.insert(menu.begin(), group);
  return menu;
}

}  // namespace

int main(int, char** argv) {
  static DefaultCommandRunner commandRunner;
  static DefaultFileSystemClient fileSystemClient;
  AppDependencies::current() = {&commandRunner, &fileSystemClient, &AppContext::shared()};
  registerExitCursorRestore();
  loadStringCatalog(argv[0]);
  runMainLoop(probeMenu);
}
