// A test run through the whole path, from the child to the screen's text: what 50,000 tests leave in memory, and how
// far the view falls behind a child that writes 20,000 lines a second. Standard output takes the view.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "halyard/testruns/test_run.hpp"

namespace {

using namespace halyard;

constexpr long mostKilobytes = 60'000;
constexpr double mostLag = 0.2;  // seconds

constexpr std::string_view fiftyThousand = R"(awk 'BEGIN {
  print "Test Suite \047HarborTests.xctest\047 started at 2024-11-10 01:41:30.711."
  for (s = 0; s < 500; ++s) {
    print "Test Suite \047Suite" s "Tests\047 started at 2024-11-10 01:41:30.711."
    for (t = 0; t < 100; ++t) {
      n = "\047-[HarborTests.Suite" s "Tests testThatTheBerthWithTheNumber" t "IsFree]\047"
      print "Test Case " n " started."
      print "Test Case " n " passed (0.001 seconds)."
    }
    print "Test Suite \047Suite" s "Tests\047 passed at 2024-11-10 01:41:30.711."
  }
  print "** TEST SUCCEEDED **"
}')";

// Each name holds the moment at which its line was written.
constexpr std::string_view paced = R"(python3 -c '
import sys, time
q, end = chr(39), time.monotonic() + 3
due = time.monotonic()
while due < end:
    time.sleep(max(0, due - time.monotonic()))
    due += 0.01
    sys.stdout.write("".join("Test Case %s-[H.Pier t%d]%s passed (0.001 seconds).\n"
                             % (q, time.monotonic_ns(), q) for _ in range(200)))
    sys.stdout.flush()
print("** TEST SUCCEEDED **")
')";

long kilobytes(std::string_view field) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(field)) return std::strtol(line.c_str() + field.size() + 1, nullptr, 10);
  }
  return 0;
}

/// The real runner, which looks at the clock when a line has been dealt with.
class TimedRunner final : public CommandRunning {
 public:
  std::string run(const std::string& command) override { return runner_.run(command); }
  std::int32_t runLive(const std::string& command) override { return runner_.runLive(command); }
  PipeRunResult runLivePipe(const std::string& command, const StopTest& shouldStop, const LineHandler& onLine,
                            double timeout) override {
    return runner_.runLivePipe(
        command, shouldStop,
        [&](std::string_view line) {
          onLine(line);
          note(line);
        },
        timeout);
  }

  double worstLag = 0;
  std::size_t lines = 0;

 private:
  void note(std::string_view line) {
    constexpr std::string_view before = "Pier t";
    const std::size_t at = line.find(before);
    if (at == std::string_view::npos) return;
    const std::string digits(line.substr(at + before.size(), 20));
    const double written = static_cast<double>(std::strtoll(digits.c_str(), nullptr, 10)) / 1e9;
    const double now = std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    worstLag = std::max(worstLag, now - written);
    ++lines;
  }

  DefaultCommandRunner runner_;
};

bool measureMemory() {
  const long before = kilobytes("VmRSS:");
  const TestRunData data = runTests(std::string(fiftyThousand));
  const long after = kilobytes("VmRSS:");
  fmt::print(stderr, "{} tests: {} kB before, {} kB at the end, {} kB at most (target {} kB)\n", data.passed.size(),
             before, after, kilobytes("VmHWM:"), mostKilobytes);
  return data.passed.size() == 50'000 && classify(data) == TestRunOutcome::success && after < mostKilobytes;
}

bool measureLag(TimedRunner& runner) {
  const auto begun = std::chrono::steady_clock::now();
  runTests(std::string(paced));
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
  fmt::print(stderr, "{} lines in {:.1f} s, {:.0f} a second: at most {:.3f} s behind (target {} s)\n", runner.lines,
             seconds, static_cast<double>(runner.lines) / seconds, runner.worstLag, mostLag);
  return runner.lines >= 50'000 && runner.worstLag <= mostLag;
}

}  // namespace

int main(int /*count*/, char** words) {
  TimedRunner runner;
  DefaultFileSystemClient files;
  AppDependencies::current() = {&runner, &files, &AppContext::shared()};
  loadStringCatalog(words[0]);
  const int nothing = open("/dev/null", O_WRONLY);
  dup2(nothing, STDOUT_FILENO);
  const bool isSmall = measureMemory();
  return measureLag(runner) && isSmall ? 0 : 1;
}
