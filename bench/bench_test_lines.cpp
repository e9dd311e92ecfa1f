// How fast the lines of test runs are read, beside tools that do less with the same bytes: real logs, where they lie
// beside the sources, and one in which each line is a test.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <fmt/format.h>
#include <unistd.h>

#include "core/text.hpp"
#include "halyard/testruns/test_line_parser.hpp"

namespace {

constexpr std::size_t leastBytes = 64'000'000;
constexpr int rounds = 7;
constexpr double target = 250;  // MB/s

class NoEvents final : public halyard::TestRunEvents {
 public:
  void buildStepBegan(halyard::TestBuildStep /*step*/) override {}
  void buildErrorFound(std::string_view /*line*/) override {}
  void testPhaseBegan() override {}
  void suiteBegan(std::string_view /*name*/) override {}
  void testEnded(std::string_view /*name*/, bool /*passed*/, double /*duration*/) override {}
  void suiteEnded(const halyard::SuiteResult& /*result*/) override {}
  void shutdownBegan() override {}
};

/// Worse than any real one: no line can be passed over, and each other one is a test to be kept.
std::string madeLog() {
  std::string log = "Test Suite 'HarborTests.xctest' started at 2024-11-10 01:41:30.711.\n";
  for (int suite = 0; suite < 500; ++suite) {
    log += fmt::format("Test Suite 'Suite{}Tests' started at 2024-11-10 01:41:30.712.\n", suite);
    for (int test = 0; test < 100; ++test) {
      const std::string name = fmt::format("'-[HarborTests.Suite{}Tests testThatBerth{}IsFree]'", suite, test);
      log += fmt::format("Test Case {0} started.\nTest Case {0} passed (0.001 seconds).\n", name);
    }
    log += fmt::format("Test Suite 'Suite{}Tests' passed at 2024-11-10 01:41:30.731.\n", suite);
  }
  return log;
}

std::string recordedLog() {
  const auto folder = std::filesystem::path(__FILE__).parent_path() / "../../shared/recordings/xcodebuild-test";
  if (!std::filesystem::exists(folder)) return {};
  std::string log;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    log += halyard::decodedText(std::string(std::istreambuf_iterator<char>(file), {}));
  }
  return log;
}

template <typename Work>
double bestOf(Work work) {
  double best = 1e9;
  for (int round = 0; round < rounds; ++round) {
    const auto begun = std::chrono::steady_clock::now();
    work();
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count());
  }
  return best;
}

void read(std::string_view log) {
  NoEvents events;
  halyard::TestLineParser parser(events);
  while (!log.empty()) {
    const std::size_t end = std::min(log.find('\n'), log.size());
    parser.processLine(log.substr(0, end));
    log.remove_prefix(std::min(end + 1, log.size()));
  }
}

double report(std::string_view name, double seconds, std::size_t bytes) {
  const double speed = static_cast<double>(bytes) / 1e6 / seconds;
  fmt::print("  {:<22} {:.4f} s  {:6.0f} MB/s\n", name, seconds, speed);
  return speed;
}

/// `sink` for grep isn't /dev/null: there it would stop at its first hit.
void reportTool(const std::string& command, std::string_view sink, const std::string& path, std::size_t bytes) {
  const std::string line = fmt::format("{} '{}' {}", command, path, sink);
  report(command, bestOf([&] {
           if (std::system(line.c_str()) < 0) std::exit(1);
         }),
         bytes);
}

double measure(std::string_view kind, const std::string& once) {
  std::string log = once;
  while (log.size() < leastBytes) log += once;
  std::string path = "/tmp/halyard-bench-XXXXXX";
  const int file = mkstemp(path.data());
  if (file < 0 || !(std::ofstream(path, std::ios::binary) << log)) return 0;
  close(file);
  fmt::print("{} bytes of {} logs, best of {}\n", log.size(), kind, rounds);
  const double speed = report("parser", bestOf([&] { read(log); }), log.size());
  reportTool("wc -l", ">/dev/null", path, log.size());
  reportTool("grep -c 'passed'", "| cat >/dev/null", path, log.size());
  reportTool("grep -ci 'test case'", "| cat >/dev/null", path, log.size());
  unlink(path.c_str());
  return speed;
}

}  // namespace

int main() {
  const std::string recorded = recordedLog();
  const double speed = recorded.empty() ? target : measure("real", recorded);
  fmt::print("  target {} MB/s: {}\n", target, speed >= target ? "reached" : "missed");
  measure("made", madeLog());
  return speed >= target ? 0 : 1;
}
