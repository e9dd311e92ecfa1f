#include "halyard/build/timeline_record.hpp"

#include <algorithm>

namespace halyard {

double TimelinePhase::duration() const { return secondsBetween(start, end ? *end : buildTimeNow()); }

double TimelineRecord::totalDuration() const {
  std::optional<BuildTime> latest;
  for (const std::shared_ptr<TimelinePhase>& phase : phases) {
    if (phase->end && (!latest || *phase->end > *latest)) latest = phase->end;
  }
  return secondsBetween(start, latest ? *latest : buildTimeNow());
}

}  // namespace halyard
