// The build flows as the journal of the demo's tools shows them: what each calls on each kind of target, in order.
// And the menu that starts them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/text.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/e2e/build_flow_session.hpp"

namespace halyard::flow {

using Calls = std::vector<std::string>;

struct Kind {
  DemoTarget target;
  std::string_view name;
  std::string_view destination;
  std::string_view sdk;  ///< behind the configuration in the name of the products' folder
  std::string_view provisioning;
};

inline constexpr Kind simulator = {DemoTarget::simulator, "Simulator", "platform=iOS Simulator,id=<simulator>",
                                   "-iphonesimulator", ""};
inline constexpr Kind device = {DemoTarget::device, "Device", "platform=iOS,id=<device>", "-iphoneos",
                                " -allowProvisioningUpdates"};
inline constexpr Kind mac = {DemoTarget::mac, "Mac", "platform=macOS", "", ""};
inline constexpr Kind kinds[] = {simulator, device, mac};

inline constexpr std::string_view otherSimulator = "3D6E9F27-840A-4B1C-8C35-B2D6E4081704";  // "iPhone 16 Pro"
inline constexpr std::string_view simulatorInstall = "xcrun simctl install";
inline constexpr std::string_view simulatorLaunch = "xcrun simctl launch";
inline constexpr std::string_view deviceInstall = "xcrun devicectl device install";
inline constexpr std::string_view deviceLaunch = "xcrun devicectl device process launch";

inline std::string products(const Kind& kind, std::string_view configuration = "Debug") {
  return std::string(configuration) + std::string(kind.sdk);
}

/// The session's calls from a mark on, with names in place of what is long. Not those of the start.
inline Calls callsOfFlow(const TerminalSession& session, const Kind& kind, std::string_view configuration = "Debug",
                         std::size_t mark = 0) {
  Calls calls;
  const std::vector<JournalEntry> journal = session.journal();
  for (std::size_t i = mark; i < journal.size(); ++i) {
    std::string line = journal[i].line();
    if (line == "xcodebuild -version" || line == "swift --version") continue;
    replaceAll(line, appPath(session, products(kind, configuration)), "<app>");
    replaceAll(line, session.inHome(demoBuildFolder), "<folder>");
    replaceAll(line, demoSimulator, "<simulator>");
    replaceAll(line, otherSimulator, "<other>");
    replaceAll(line, demoDevice, "<device>");
    calls.push_back(std::move(line));
  }
  return calls;
}

template <typename... More>
Calls together(Calls calls, const More&... more) {
  (calls.insert(calls.end(), more.begin(), more.end()), ...);
  return calls;
}

// What the flows are made of.

inline const Calls nothing;
inline const Calls bringingToFront = {"open -a Simulator"};
inline const Calls resolving = {
    "xcodebuild -project ./Harbor.xcodeproj -scheme Harbor -resolvePackageDependencies -derivedDataPath <folder>"};
inline const Calls cleaning = {"xcodebuild -project ./Harbor.xcodeproj -scheme Harbor -derivedDataPath <folder> clean"};

inline Calls checkingTarget(const Kind& kind) {
  return kind.target == DemoTarget::simulator ? Calls{"xcrun simctl list devices -j"} : nothing;
}

inline Calls preparing(const Kind& kind, std::string_view udid = "<simulator>") {
  if (kind.target != DemoTarget::simulator) return {};
  const std::string name(udid);
  return {"xcrun simctl boot " + name, "xcrun simctl bootstatus " + name + " -b", "open -a Simulator"};
}

/// As far as an abort of the boot lets it come.
inline Calls booting(std::string_view udid = "<simulator>") {
  Calls calls = preparing(simulator, udid);
  calls.pop_back();
  return calls;
}

/// The first build of a session asks for the scheme's platforms.
inline Calls building(const Kind& kind, std::string_view configuration = "Debug", bool isFirst = true) {
  std::string build = "xcodebuild -parallelizeTargets -project ./Harbor.xcodeproj -scheme Harbor -configuration ";
  build.append(configuration).append(" -destination ").append(kind.destination).append(kind.provisioning);
  build += " -derivedDataPath <folder> build COMPILER_INDEX_STORE_ENABLE=NO ONLY_ACTIVE_ARCH=YES";
  if (configuration == "Debug") build += " DEBUG_INFORMATION_FORMAT=dwarf SWIFT_COMPILATION_MODE=incremental";
  Calls calls = {
      "xcodebuild -project ./Harbor.xcodeproj -scheme Harbor -showBuildSettings "
      "-skipPackagePluginValidation"};
  if (!isFirst) calls.clear();
  calls.push_back(build);
  return calls;
}

inline Calls identifying(const Kind& kind, bool found = true) {
  Calls calls = {"defaults read <app>/Contents/Info CFBundleIdentifier"};
  if (kind.target != DemoTarget::mac || !found) calls.emplace_back("defaults read <app>/Info CFBundleIdentifier");
  return calls;
}

inline Calls installing(const Kind& kind, std::string_view udid = "<simulator>") {
  switch (kind.target) {
    case DemoTarget::simulator: return {"xcrun simctl install " + std::string(udid) + " <app>"};
    case DemoTarget::device:
      return {"xcrun devicectl list devices --json-output -",
              "xcrun devicectl device install app --device <device> <app>"};
    case DemoTarget::mac: break;
  }
  return {};
}

inline Calls starting(const Kind& kind, std::string_view udid = "<simulator>") {
  switch (kind.target) {
    case DemoTarget::simulator:
      return {"xcrun simctl launch --terminate-running-process " + std::string(udid) + " com.example.harbor"};
    case DemoTarget::device: return {"xcrun devicectl device process launch --device <device> com.example.harbor"};
    case DemoTarget::mac: break;
  }
  return {"open <app>"};
}

inline Calls finishing(const Kind& kind) { return kind.target == DemoTarget::simulator ? bringingToFront : nothing; }

/// From the app that was found to the app that runs.
inline Calls launching(const Kind& kind) {
  return together(identifying(kind), installing(kind), starting(kind), finishing(kind));
}

// The demo's switches.

inline void addSetting(SessionOptions& options, const std::string& setting) {
  options.demoSettings.pop_back();
  options.demoSettings += ", " + setting + "}";
}

inline std::string answer(std::string_view call, std::string_view output, int status) {
  return R"({"call": ")" + std::string(call) + R"(", "stdout": ")" + std::string(output) + R"(", "status": )" +
         std::to_string(status) + "}";
}

inline void addAnswers(SessionOptions& options, const std::string& answers) {
  addSetting(options, R"("answers": [)" + answers + "]");
}

/// Long enough for a Ctrl-C to come in time.
inline std::string slowAnswer(std::string_view call) {
  return R"({"call": ")" + std::string(call) + R"(", "delay": 20})";
}

inline SessionOptions withSlowCall(const Kind& kind, std::string_view call) {
  SessionOptions options = buildOptions(kind.target);
  addAnswers(options, slowAnswer(call));
  return options;
}

inline void addBuiltApp(SessionOptions& options, const Kind& kind, std::string_view configuration = "Debug",
                        bool isIdentified = true) {
  const std::string app = std::string(demoBuildFolder) + "/Build/Products/" + products(kind, configuration) +
                          (kind.target == DemoTarget::mac ? "/Harbor.app/Contents/" : "/Harbor.app/");
  options.homeFiles[app + "Info.plist"] =
      isIdentified ? "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>com.example.harbor</string>"
                     "</dict></plist>\n"
                   : "<plist version=\"1.0\"><dict></dict></plist>\n";
}

inline SessionOptions withBuiltApp(SessionOptions options, const Kind& kind) {
  addBuiltApp(options, kind);
  return options;
}

inline bool waitForCall(TerminalSession& session, std::string_view call) {
  return session.waitFor("the call", [&] {
    return std::ranges::any_of(session.journal(),
                               [&](const JournalEntry& entry) { return entry.line().starts_with(call); });
  });
}

// The menu.

inline bool isUnderCursor(const TerminalSession& session, std::string_view label) {
  constexpr std::size_t itemColumn = 10;
  const std::vector<std::string> rows = session.rows();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (const std::string_view end : {"  ", " ["}) {
      const std::size_t at = rows[i].rfind("│ " + std::string(label) + std::string(end));
      if (at == std::string::npos) continue;
      const auto column = graphemeCount(rows[i].substr(0, at)) + 2;
      if (static_cast<std::size_t>(column) < itemColumn) continue;
      const ScreenCell cell = session.cell(static_cast<int>(i), static_cast<int>(column));
      if (cell.background == CellColor::rgb(0, 0, 0)) return true;
    }
  }
  return false;
}

/// Runs a row of a group. The group of the Mac has no letter: it is one below its neighbour's. No letter at all: the
/// first group.
inline bool startRow(TerminalSession& session, std::string_view group, std::string_view label) {
  if (!group.empty()) session.send(group.substr(0, 1));
  if (!session.waitUntilIdle()) return false;
  if (group == "S+1" && !session.sendSlowly({Key::left, Key::down})) return false;
  if (!session.waitFor(label) || !session.waitUntilIdle()) return false;
  session.send(Key::right);
  for (int i = 0; i < 20; ++i) {
    if (!session.waitUntilIdle()) return false;
    if (isUnderCursor(session, label)) {
      session.send(Key::enter);
      return true;
    }
    session.send(Key::down);
  }
  ADD_FAILURE() << "no row " << label;
  return false;
}

/// The same for a row that asks first.
inline bool runRow(TerminalSession& session, std::string_view group, std::string_view label) {
  return startRow(session, group, label) && session.waitFor("[j/N]") && session.waitUntilIdle();
}

/// A flow and what starts it: a digit, or a row that asks first.
struct Start {
  std::string_view name;
  std::string_view digit;  ///< or the row:
  std::string_view group;
  std::string_view row;
};

inline constexpr Start buildAndRun = {"BuildAndRun", "3", "", ""};
inline constexpr Start quickReset = {"QuickReset", "4", "", ""};
inline constexpr Start fullReset = {"FullReset", "", "B", "Clean (incl. PM) & Build & Launch"};
inline constexpr Start buildOnly = {"Build", "", "B", "Build"};
inline constexpr Start cleanBuild = {"CleanBuild", "", "D", "Clean Build"};
inline constexpr Start launchApp = {"Launch", "", "S", "Launch App"};
inline constexpr Start launchOnMac = {"Launch", "", "S+1", "Launch App"};
inline constexpr Start launchOnSelected = {"LaunchOnSelected", "", "S", "Launch App on Selected Simulator"};
/// A row of the probe alone: the menu has none for it.
inline constexpr Start launchOnDevice = {"Launch", "", "", "LaunchLastBuilt"};

inline bool isOfProbe(const Start& flow) { return flow.digit.empty() && flow.group.empty(); }

/// From the menu; a question is answered by yes.
inline bool start(TerminalSession& session, const Start& flow) {
  if (!isAtMenu(session)) return false;
  if (!flow.digit.empty()) {
    session.send(flow.digit);
    return true;
  }
  if (!runRow(session, flow.group, flow.row)) return false;
  session.send("j");
  return true;
}

inline constexpr std::string_view offer = "[+] Another simulator";
inline constexpr std::string_view back = "[X]";

inline std::string_view endOfLaunch(const Kind& kind) { return kind.target == DemoTarget::simulator ? offer : back; }

inline bool waitForEnd(TerminalSession& session, std::string_view end) {
  return session.waitFor(end) && session.waitUntilIdle();
}

inline void leave(TerminalSession& session) {
  session.send("x");
  quit(session);
}

/// The report's last box in an output, that of the phase that was reached last: its name and its mark.
inline std::string lastBox(std::string_view output) {
  const std::string text = stripAnsi(output);
  const std::vector<std::string_view> lines = splitLines(text);
  const auto content = [](std::string_view line) {
    constexpr std::string_view edge = "│";
    const std::size_t right = line.rfind(edge);
    if (right == std::string_view::npos || right == 0) return std::string_view();
    const std::size_t left = line.rfind(edge, right - 1);
    return left == std::string_view::npos ? std::string_view()
                                          : trimmed(line.substr(left + edge.size(), right - left - edge.size()));
  };
  for (std::size_t i = lines.size(); i-- > 3;) {
    if (!lines[i].starts_with("  └──────────────┘")) continue;
    return std::string(content(lines[i - 3])).append(" ").append(content(lines[i - 1]));
  }
  return {};
}

inline std::string kindName(const testing::TestParamInfo<Kind>& info) { return std::string(info.param.name); }

template <typename Case>
std::string caseName(const testing::TestParamInfo<Case>& info) {
  return std::string(info.param.kind.name) + std::string(info.param.name);
}

}  // namespace halyard::flow
