// The result of one build, and the summary that shows it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

struct BuildResult {
  bool success = false;       ///< never of an aborted build
  int warnings = 0;           ///< lines, duplicates included
  int errors = 0;             ///< lines, duplicates included
  std::string duration = {};  ///< as of formatDuration()
  std::vector<std::string> errorLines = {};
  std::vector<std::string> warningLines = {};
};

/// Status 0 and one of the tool's marks of success in the output. Without a mark a status of 0 is a failure.
bool buildSucceeded(std::string_view output, std::int32_t status);

/// The block of banner, counts and diagnostics, each diagnostic once.
void printBuildResult(const BuildResult& result);

}  // namespace halyard
