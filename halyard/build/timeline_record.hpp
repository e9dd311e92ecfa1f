// What a timeline has recorded.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "halyard/build/duration.hpp"

namespace halyard {

/// A part of a phase.
struct TimelineStep {
  std::string name;
  double duration = 0;  ///< seconds
  bool success = true;
};

/// Shared with the action, which may go on to set its remark or its outcome.
struct TimelinePhase {
  std::string name;  ///< "Build", "Test", "Clean", "Resolve" … the insights of the report go by it
  std::string icon;  ///< one emoji, or empty
  BuildTime start;
  std::optional<BuildTime> end;  ///< absent while the phase is open
  bool success = true;
  bool skipped = false;
  bool technicalError = false;
  std::string detail;  ///< a short remark
  std::vector<TimelineStep> steps;

  /// Up to now for an open phase.
  [[nodiscard]] double duration() const;
};

struct TimelineRecord {
  std::string title;
  BuildTime start;
  std::vector<std::shared_ptr<TimelinePhase>> phases;

  /// Up to the latest end of a phase, or up to now where none has ended. Seconds.
  [[nodiscard]] double totalDuration() const;
};

}  // namespace halyard
