// The program at the options behind a run of the sample app's unit tests.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/e2e/build_flow_session.hpp"

namespace halyard {

/// Behind the first key, whose colour ends before it.
inline constexpr std::string_view optionsShown = " to menu";

/// `tests`: what the demo does with them, as JSON.
inline std::string testSettings(std::string_view tests, std::string_view build = "{}") {
  return R"({"bootSeconds": 0, "build": )" + std::string(build) + R"(, "tests": )" + std::string(tests) + "}";
}

inline SessionOptions testOptions(std::string_view tests) {
  SessionOptions options = buildOptions(DemoTarget::simulator);
  options.rows = 120;
  options.demoSettings = testSettings(tests);
  return options;
}

/// From the next call of a tool on.
inline void changeTests(const TerminalSession& session, std::string_view tests, std::string_view build = "{}") {
  session.writeHomeFile(".halyard-demo/settings.json", testSettings(tests, build));
}

/// Presses a key and waits for the options that stand below what it led to.
inline bool leadsToOptions(TerminalSession& session, const Typed& key, std::string_view shown = optionsShown) {
  const std::size_t mark = session.outputMark();
  session.send(key);
  return session.waitForOutput(shown, mark) && session.waitUntilIdle();
}

/// Runs the unit tests by their digit.
inline bool runsUnitTests(TerminalSession& session) { return isAtMenu(session) && leadsToOptions(session, "7"); }

inline void leaveAndQuit(TerminalSession& session) {
  session.send("x");
  quit(session);
}

/// A call of xcodebuild without what all of a project's test commands have in common.
inline std::string shortened(std::string line, const TerminalSession& session) {
  for (const std::string& part :
       {std::string("xcodebuild -parallelizeTargets -project ./Harbor.xcodeproj -scheme Harbor -derivedDataPath "),
        session.inHome(demoBuildFolder) + " ",
        std::string(" -parallel-testing-enabled NO COMPILER_INDEX_STORE_ENABLE=NO ONLY_ACTIVE_ARCH=YES "
                    "ENABLE_TESTABILITY=YES SWIFT_COMPILATION_MODE=incremental DEBUG_INFORMATION_FORMAT=dwarf "
                    "IDE_TESTING_DEVICE_SUPPORT_DIAGNOSTICS=NO -enableCodeCoverage YES")}) {
    if (const std::size_t at = line.find(part); at != std::string::npos) line.erase(at, part.size());
  }
  return line;
}

/// Calls of the tools after the first `skipped` ones.
inline std::vector<std::string> callsAfter(const TerminalSession& session, std::size_t skipped) {
  std::vector<std::string> calls;
  const std::vector<JournalEntry> journal = session.journal();
  for (std::size_t i = skipped; i < journal.size(); ++i) calls.push_back(shortened(journal[i].line(), session));
  return calls;
}

inline std::string onSimulator(std::string_view udid, std::string_view rest) {
  return "-destination platform=iOS Simulator,id=" + std::string(udid) + " " + std::string(rest);
}

}  // namespace halyard
