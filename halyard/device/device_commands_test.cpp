#include "halyard/device/device_commands.hpp"

#include <filesystem>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/device/device_apps.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct DeviceCommands : testing::Test {
  ContextReset reset;
  CapturedOutput output;
};

TEST_F(DeviceCommands, HaveExactlyTheseWords) {
  reset.runner.expect("xcrun devicectl device install app --device 'U 1' '/tmp/My App.app' 2>&1");
  EXPECT_TRUE(installOnDevice("U 1", "/tmp/My App.app").succeeded());
  reset.runner.expect("xcrun devicectl device install app '/tmp/My App.app' --device 'U 1' 2>/dev/null || true");
  EXPECT_EQ(installOnDeviceQuietly("U 1", "/tmp/My App.app"), 0);
  reset.runner.expect("xcrun devicectl device process launch --device 'U 1' 'com.a' 2>&1");
  EXPECT_TRUE(launchOnDevice("U 1", "com.a").succeeded());
  reset.runner.expect("xcrun devicectl device process launch --device 'U 1' --url 'app://x?y=1&z' 2>&1");
  EXPECT_TRUE(openUrlOnDevice("U 1", "app://x?y=1&z").succeeded());
  reset.runner.expect("xcrun devicectl device process terminate --device 'U 1' --pid 4711");
  EXPECT_TRUE(terminateOnDevice("U 1", 4711).succeeded());
  reset.runner.expect("xcrun devicectl device uninstall app --device 'U 1' 'com.a'");
  EXPECT_TRUE(uninstallFromDevice("U 1", "com.a").succeeded());
  reset.runner.expect("'/opt/bin/idevicescreenshot' -u 'U 1' '/tmp/a b.png' 2>&1");
  EXPECT_TRUE(takeDeviceScreenshot("/opt/bin/idevicescreenshot", "U 1", "/tmp/a b.png").succeeded());
  reset.runner.expect("'/opt/bin/idevicesyslog' -u 'U 1'", "", 3);
  EXPECT_EQ(followDeviceLog("/opt/bin/idevicesyslog", "U 1"), 3);
}

TEST_F(DeviceCommands, AToolIsLookedUpByItsName) {
  reset.runner.expect("which idevicesyslog 2>/dev/null", "/opt/bin/idevicesyslog\n");
  EXPECT_EQ(toolPath("idevicesyslog"), "/opt/bin/idevicesyslog");
  reset.runner.expect("which idevicescreenshot 2>/dev/null");
  EXPECT_EQ(toolPath("idevicescreenshot"), "");
}

TEST_F(DeviceCommands, LinesAreShownOnceAndKeptWithoutEmptyOnes) {
  reset.runner.expectContaining("install app", "Acquired tunnel\n\n  App \x1b[2Jinstalled:\nlast without end", 1);
  const DeviceCommandResult result = installOnDevice("U", "/a.app");
  EXPECT_FALSE(result.succeeded());
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.lines, ElementsAre("Acquired tunnel", "App \x1b[2Jinstalled:", "last without end"));
  EXPECT_EQ(stripAnsi(output.text()), "Acquired tunnel\nApp ␛[2Jinstalled:\nlast without end\n");
}

TEST_F(DeviceCommands, TheQuietInstallShowsNothing) {
  reset.runner.expectContaining("install app", "App installed\n");
  installOnDeviceQuietly("U", "/a.app");
  EXPECT_EQ(output.text(), "");
}

TEST(DeviceCommandResults, TheLastLinesAreTheDetail) {
  const DeviceCommandResult result{.status = 1, .lines = {"one", "two", "th\x1bree"}};
  EXPECT_EQ(result.lastLines(2), "two\n      th␛ree");
  EXPECT_EQ(result.lastLines(9), "one\n      two\n      th␛ree");
  EXPECT_EQ(DeviceCommandResult{}.lastLines(), "");
}

struct DeviceHints : testing::Test {
  ContextReset reset;
  static std::string hint(std::vector<std::string> lines) { return deviceHintFor(lines, "nothing fits"); }
  static std::string text(std::string_view key) { return std::string(localized(key)); }
};

TEST_F(DeviceHints, EachCauseHasItsHint) {
  EXPECT_EQ(hint({"ERROR: Developer Mode is disabled"}), text("hint_enable_developer_mode"));
  EXPECT_EQ(hint({"The device is Not Connected."}), text("hint_reconnect_device"));
  EXPECT_EQ(hint({"Could not find device 'x'"}), text("hint_reconnect_device"));
  EXPECT_EQ(hint({"no device is currently connected"}), text("hint_reconnect_device"));
  EXPECT_EQ(hint({"No profiles for 'com.a' were found"}), text("phy_build_signing_hint"));
  EXPECT_EQ(hint({"This provisioning profile cannot be installed"}), text("phy_build_signing_hint"));
  EXPECT_EQ(hint({"Code Signing failed"}), text("phy_build_signing_hint"));
  EXPECT_EQ(hint({"The developer is UNTRUSTED"}), text("phy_build_signing_hint"));
  EXPECT_EQ(hint({"unknown bundle identifier"}), text("hint_bundle_not_installed"));
  EXPECT_EQ(hint({"the app is not installed"}), text("hint_bundle_not_installed"));
  EXPECT_EQ(hint({"Could not locate installed application"}), text("hint_bundle_not_installed"));
  EXPECT_EQ(hint({"not enough disk space"}), text("hint_not_enough_space"));
  EXPECT_EQ(hint({"insufficient resources"}), text("hint_not_enough_space"));
}

TEST_F(DeviceHints, ADiskWithoutSpaceIsSaid) {
  EXPECT_EQ(hint({"Disk space is insufficient"}),
            "Insufficient free storage on the device. Free up space and try again.");
}

TEST_F(DeviceHints, TheFirstRowOfTheTableDecides) {
  EXPECT_EQ(hint({"The device is not connected", "Developer Mode may be off"}), text("hint_enable_developer_mode"));
  EXPECT_EQ(hint({"insufficient", "not installed", "untrusted"}), text("phy_build_signing_hint"));
}

TEST_F(DeviceHints, WithoutACauseTheCallersHintStands) {
  EXPECT_EQ(hint({"something else"}), "nothing fits");
  EXPECT_EQ(hint({}), "nothing fits");
  EXPECT_EQ((DeviceCommandResult{.status = 1, .lines = {"x"}}).hint("mine"), "mine");
  EXPECT_EQ((DeviceCommandResult{.status = 1, .lines = {"untrusted"}}).hint("mine"), text("phy_build_signing_hint"));
}

/// Runs each command in a real shell in which the tools are functions that write down their words.
class NotingShell final : public CommandRunning {
 public:
  explicit NotingShell(std::string tool) : tool_(std::move(tool)) {}

  TemporaryFolder folder;

  /// The words of the last call.
  [[nodiscard]] std::vector<std::string> words() const {
    std::vector<std::string> all;
    std::string noted = folder.read("words");
    for (std::size_t end = noted.find('\0'); end != std::string::npos; end = noted.find('\0')) {
      all.push_back(noted.substr(0, end));
      noted.erase(0, end + 1);
    }
    return all;
  }
  std::string run(const std::string& command) override { return real_.run(prepared(command)); }
  std::int32_t runLive(const std::string& command) override { return real_.runLive(prepared(command)); }
  PipeRunResult runLivePipe(const std::string& command, const StopTest& stop, const LineHandler& onLine,
                            double timeout) override {
    return real_.runLivePipe(prepared(command), stop, onLine, timeout);
  }

 private:
  [[nodiscard]] std::string prepared(const std::string& command) const {
    const std::string words = shellQuote(folder.at("words"));
    const std::string note = "() { printf '%s\\0' \"$@\" >" + words + "; }\n";
    return "cd " + shellQuote(folder.at()) + "\nxcrun" + note + tool_ + note + command;
  }

  std::string tool_;
  DefaultCommandRunner real_;
};

TEST(HostileNames, ReachTheToolsAsOneWordAndNeverRun) {
  const std::string bad = "a'b $(touch x) `touch y` \"; touch z\n&";
  NotingShell shell("/opt/tool");
  const DependenciesGuard guard({&shell, nullptr, nullptr});
  const CapturedOutput output;
  const auto expectWords = [&](const std::function<void()>& command, const std::vector<std::string>& words) {
    command();
    EXPECT_EQ(shell.words(), words);
    std::filesystem::remove(shell.folder.at("words"));
    EXPECT_TRUE(std::filesystem::is_empty(shell.folder.path()));
  };
  expectWords([&] { installOnDevice(bad, bad); }, {"devicectl", "device", "install", "app", "--device", bad, bad});
  expectWords([&] { installOnDeviceQuietly(bad, bad); },
              {"devicectl", "device", "install", "app", bad, "--device", bad});
  expectWords([&] { launchOnDevice(bad, bad); }, {"devicectl", "device", "process", "launch", "--device", bad, bad});
  expectWords([&] { openUrlOnDevice(bad, bad); },
              {"devicectl", "device", "process", "launch", "--device", bad, "--url", bad});
  expectWords([&] { terminateOnDevice(bad, 12); },
              {"devicectl", "device", "process", "terminate", "--device", bad, "--pid", "12"});
  expectWords([&] { uninstallFromDevice(bad, bad); },
              {"devicectl", "device", "uninstall", "app", "--device", bad, bad});
  expectWords([&] { installedApps(bad); },
              {"devicectl", "device", "info", "apps", "--device", bad, "--json-output", "-"});
  expectWords([&] { runningProcessID(bad, bad); },
              {"devicectl", "device", "info", "processes", "--device", bad, "--json-output", "-"});
  expectWords([&] { takeDeviceScreenshot("/opt/tool", bad, bad); }, {"-u", bad, bad});
  expectWords([&] { followDeviceLog("/opt/tool", bad); }, {"-u", bad});
}

}  // namespace
}  // namespace halyard
