// Whole logs of builds through the live view: small ones of our own, and real ones where they lie beside the sources.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "core/text.hpp"
#include "halyard/build/build_result.hpp"
#include "halyard/build/xcodebuild_formatter.hpp"
#include "halyard/terminal/screen.hpp"
#include "test_places.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

struct Replay {
  std::string shown;
  std::size_t errors = 0;
  std::size_t warnings = 0;
  std::size_t targets = 0;
};

Replay replayed(std::string_view log) {
  XcodeBuildFormatter formatter;
  Replay replay;
  {
    const CapturedOutput output;
    for (const std::string_view line : splitLines(log)) formatter.processLine(line);
    formatter.finish();
    replay.shown = output.text();
  }
  replay.errors = formatter.errorLines().size();
  replay.warnings = formatter.warningLines().size();
  replay.targets = formatter.targetTimings().size();
  return replay;
}

/// Lines that hold the marker, by the plainest search there is.
std::size_t linesWith(std::string_view log, std::string_view marker) {
  return static_cast<std::size_t>(std::ranges::count_if(
      splitLines(log), [marker](std::string_view line) { return line.find(marker) != std::string_view::npos; }));
}

constexpr std::string_view smallLog = R"(Command line invocation:
    /usr/bin/xcodebuild -scheme App build

Check dependencies
SwiftDriver Kit normal arm64 com.apple.xcode.tools.swift.compiler (in target 'Kit' from project 'App')
    cd /src/App
    builtin-SwiftDriver -- swiftc -module-name Kit
SwiftCompile normal arm64 Compiling\ A.swift,\ B.swift /src/A.swift /src/B.swift (in target 'Kit' from project 'App')
/src/A.swift:3:7: warning: variable 'x' was never used
    let x = 1
        ^
SwiftCompile normal arm64 /src/B.swift (in target 'Kit' from project 'App')
Ld /out/Kit.framework/Kit normal (in target 'Kit' from project 'App')
CpResource /out/App.app/data.json /src/data.json (in target 'App' from project 'App')
CpResource /out/App.app/more.json /src/more.json (in target 'App' from project 'App')
SwiftDriver App normal arm64 com.apple.xcode.tools.swift.compiler (in target 'App' from project 'App')
/src/App.swift:10:5: error: cannot find 'Foo' in scope
** BUILD FAILED **
)";

TEST(BuildRecordings, ASmallBuildIsShownInAFewLines) {
  const ContextReset context;
  const Replay replay = replayed(smallLog);
  const auto header = [](const std::string& name) { return "\n  📦 " + name + "  " + repeated("─", 70) + "\n"; };
  EXPECT_EQ(stripAnsi(replay.shown), "  ▸ Initialization\n" + header("Kit") +
                                         "     🔨 Compiling\n"
                                         "     ⚠  variable 'x' was never used  A.swift:3\n"
                                         "        3 files compiled\n"
                                         "     ▸ Linking & signing\n"
                                         "     📋 Copy resources  data.json\n" +
                                         header("App") +
                                         "     🔨 Compiling\n"
                                         "        1 files compiled\n"
                                         "     ✗  cannot find 'Foo' in scope  App.swift:10\n");
}

/// What holds for any log.
void expectSane(const std::string& log) {
  const Replay replay = replayed(log);
  EXPECT_LE(replay.errors, linesWith(log, ": error:"));
  EXPECT_LE(replay.warnings, linesWith(log, ": warning:"));
  EXPECT_EQ(replay.shown.find('\0'), std::string::npos);
  EXPECT_TRUE(isValidUtf8(replay.shown));
  // All that is drawn is ours: colours, the spinner's line and the cursor.
  EXPECT_EQ(stripAnsi(replay.shown).find("\x1b["), stripAnsi(replay.shown).find("\x1b[?25"));
  EXPECT_LT(linesWith(replay.shown, ""), 2 * linesWith(log, "") + 2);
}

TEST(BuildRecordings, NoLogConfusesTheView) {
  const ContextReset context;
  expectSane(std::string(smallLog));
  expectSane("Planning\r\nFetching https://h/o/P.git\r\na.c:1: error: \x1b[31mred\xff\r\n\r\rCompileC a");
  const auto recordings = std::filesystem::path(HALYARD_SOURCE_DIR) / "../shared/recordings/xcodebuild-build";
  if (!std::filesystem::exists(recordings)) return;
  for (const auto& entry : std::filesystem::directory_iterator(recordings)) {
    SCOPED_TRACE(entry.path().filename().string());
    std::ifstream file(entry.path(), std::ios::binary);
    expectSane(decodedText(std::string(std::istreambuf_iterator<char>(file), {})));
  }
}

}  // namespace
}  // namespace halyard
