// The report of a timeline: a flow chart of boxes for few phases, bars over a time axis for many.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "halyard/build/timeline_record.hpp"

namespace halyard {

/// All lines of the report, with colours, beginning with an empty one.
std::vector<std::string> timelineReport(const TimelineRecord& timeline);

/// Columns without colour sequences: emoji count two, joiners and variation selectors none, all else one.
int displayWidth(std::string_view text);
/// A text that is wider ends in "…" at this width.
std::string truncateDisplay(std::string_view text, int width);
/// Blanks on both sides up to the width, the odd one to the right.
std::string centerDisplay(std::string_view text, int width);

}  // namespace halyard
