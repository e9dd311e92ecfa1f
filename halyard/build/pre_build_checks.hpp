// Four quick checks over the Swift files below the current directory.
#pragma once

#include <span>
#include <string_view>

namespace halyard {

enum class FindingKind { warning, error };

struct PreBuildCheck {
  std::string_view tool;  ///< that must be on the path; empty: no question
  const char* command;    ///< ends in a number
  std::string_view cleanKey;
  std::string_view findingKey;
  std::string_view missingKey;
  FindingKind kind = FindingKind::warning;
  /// What the findings add to the issues; some are shown and don't count.
  int (*issues)(int findings);
};
std::span<const PreBuildCheck> preBuildChecks();

/// What a check printed, as a number; 0 for anything else.
int findingsCount(std::string_view output);

}  // namespace halyard
