// A shell without a world: fresh context, English, the embedded catalog, a runner that answers from a table.
#pragma once

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/git/git_view_state.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "tests/support/in_memory_file_system.hpp"

namespace halyard {

/// Answers each command from a table, or with nothing, and remembers all of them.
class TableCommandRunner final : public CommandRunning {
 public:
  std::map<std::string, std::string> answers;
  std::vector<std::string> commands;

  std::string run(const std::string& command) override {
    commands.push_back(command);
    const auto found = answers.find(command);
    return found == answers.end() ? std::string() : found->second;
  }
  std::int32_t runLive(const std::string& command) override {
    commands.push_back(command);
    return 0;
  }
  PipeRunResult runLivePipe(const std::string& command, const StopTest&, const LineHandler&, double) override {
    return {run(command), 0};
  }
};

class ShellTest : public testing::Test {
 protected:
  ShellTest() : guard_({&runner, &files, &AppContext::shared()}) {
    AppContext::shared().reset();
    loadStringCatalog({});
    setCurrentLanguage("en");
    setLaunchedByHotkey(false);
    setSuppressBackPrompt(false);
    GitView::state() = {};
  }
  ~ShellTest() override {
    AppContext::shared().reset();
    setCurrentLanguage("en");
  }

  static void selectSimulator() { setSelectedDevice(SelectedDevice{"iPhone 16", "UDID-1", "iOS 18.2"}); }
  static void selectMac() { setSelectedDevice(SelectedDevice{"My Mac", "local", "macOS 15.1"}); }
  static void selectPhysicalDevice() {
    PhysicalDeviceInfo device;
    device.name = "Ada's iPhone";
    device.udid = "00008110-000A";
    device.osName = "iOS";
    device.osVersion = "18.1";
    setSelectedPhysicalDevice(device);
    setLastSelectedDeviceKind("physical");
  }

  TableCommandRunner runner;
  InMemoryFileSystem files{std::getenv("HOME")};

 private:
  DependenciesGuard guard_;
};

}  // namespace halyard
