// What a large project's coverage costs: a report of 20 MB with 10,000 files, read and drawn, as the table with all
// files and as the tree. The targets: 60 ms of processor time to read, 100 ms to draw either.
// With a path as argument the report is written there, for a measurement beside another reader.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "halyard/testruns/coverage_data.hpp"
#include "halyard/testruns/coverage_drawing.hpp"
#include "halyard/testruns/coverage_tree.hpp"

namespace {

constexpr int targetCount = 20;
constexpr int filesPerTarget = 500;
constexpr int functionsPerFile = 10;
constexpr int rounds = 21;
constexpr double readingTarget = 60e-3;
constexpr double drawingTarget = 100e-3;

double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

std::string pathOf(int target, int file) {
  return fmt::format("Modules/Module{}/Sources/Feature{}/Views{}/Component{}View.swift", target, file % 12, file % 7,
                     file);
}

std::string functionText(int target, int file, int function) {
  return fmt::format(
      R"({{"coveredLines":{},"lineCoverage":0.{},"lineNumber":{},"executionCount":{},)"
      R"("name":"Module{}.Component{}View.configure(section:row:animated:) -> Swift.Bool","executableLines":{}}})",
      file % 9, function, 10 + function * 14, file * function, target, file, 12);
}

std::string fileText(int target, int file) {
  std::string functions;
  for (int function = 0; function < functionsPerFile; ++function) {
    if (function > 0) functions += ',';
    functions += functionText(target, file, function);
  }
  return fmt::format(
      R"({{"coveredLines":{},"lineCoverage":0.{:03},"path":"/Users/demo/Projects/Large/{}","functions":[{}],)"
      R"("name":"Component{}View.swift","executableLines":{}}})",
      file % 120, file % 1000, pathOf(target, file), functions, file, 120);
}

std::string document() {
  std::string text = R"({"coveredLines":1,"lineCoverage":0.5,"targets":[)";
  for (int target = 0; target < targetCount; ++target) {
    text += fmt::format("{}{{\"name\":\"Module{}.framework\",\"lineCoverage\":0.51,\"files\":[", target == 0 ? "" : ",",
                        target);
    for (int file = 0; file < filesPerTarget; ++file) {
      if (file > 0) text += ',';
      text += fileText(target, file);
    }
    text += "]}";
  }
  return text + "]}";
}

std::vector<std::string> paths() {
  std::vector<std::string> files;
  for (int target = 0; target < targetCount; ++target) {
    for (int file = 0; file < filesPerTarget; ++file) files.push_back(pathOf(target, file));
  }
  return files;
}

template <typename Work>
bool measured(const char* what, double target, Work&& work) {
  std::vector<double> times;
  for (int round = 0; round < rounds; ++round) {
    const double begun = processorSeconds();
    work();
    times.push_back(processorSeconds() - begun);
  }
  std::ranges::sort(times);
  const bool met = times[rounds / 2] <= target;
  fmt::print("{:<22} min {:.2f}  median {:.2f}  max {:.2f} ms  (target {:.0f}: {})\n", what, times.front() * 1e3,
             times[rounds / 2] * 1e3, times.back() * 1e3, target * 1e3, met ? "met" : "MISSED");
  return met;
}

}  // namespace

int main(int count, char** arguments) {
  using namespace halyard;
  const std::string json = document();
  if (count > 1) {
    std::FILE* const file = std::fopen(arguments[1], "w");
    if (file == nullptr || std::fwrite(json.data(), 1, json.size(), file) != json.size()) return 2;
    std::fclose(file);
  }
  const auto targets = readCoverageReport(json);
  const std::vector<std::string> files = paths();
  if (!targets || targets->size() != targetCount) std::abort();
  std::size_t drawn = 0;
  fmt::print("{} bytes of JSON, {} files\n", json.size(), targetCount * filesPerTarget);
  bool met = measured("read", readingTarget, [&] {
    if (readCoverageReport(json)->size() != targetCount) std::abort();
  });
  met &= measured("table with all files", drawingTarget, [&] { drawn = drawCoverageTable(*targets, true).size(); });
  met &= measured("tree", drawingTarget, [&] {
    drawn = drawCoverageTree(coverageTree(files, "/Users/demo/Projects/Large", *targets)).size();
  });
  fmt::print("{} bytes drawn\n", drawn);
  return met ? 0 : 1;
}
