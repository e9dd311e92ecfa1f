// The code coverage of the last test run, as xccov reports it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

// Names and paths are as the tool wrote them: they go through displaySafe() before they are drawn.

struct CoverageFile {
  std::string name;
  std::string path;
  double coverage = 0;  ///< 0 to 1
  std::int64_t coveredLines = 0;
  std::int64_t executableLines = 0;

  bool operator==(const CoverageFile&) const = default;
};

struct CoverageTarget {
  std::string name;
  double coverage = 0;  ///< 0 to 1
  std::vector<CoverageFile> files = {};

  bool operator==(const CoverageTarget&) const = default;
};

/// Lines of several files together.
struct LineCount {
  std::int64_t covered = 0;
  std::int64_t executable = 0;

  [[nodiscard]] double coverage() const;  ///< 0 to 1; without executable lines 0
  LineCount& operator+=(const LineCount& other);
  bool operator==(const LineCount&) const = default;
};
LineCount linesOf(const CoverageFile& file);
LineCount linesOf(const std::vector<CoverageTarget>& targets);

/// From `xccov view --report --json`, what stands before its first brace left out. Nothing where it isn't a report.
/// Bundles of tests don't count; an entry without a name, or of another kind, is left out.
std::optional<std::vector<CoverageTarget>> readCoverageReport(std::string_view json);

/// Of the project's newest result bundle. Nothing without a bundle or a report that can be read.
std::optional<std::vector<CoverageTarget>> loadCoverage();

}  // namespace halyard
