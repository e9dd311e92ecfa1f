#include "halyard/build/build_timeline.hpp"

#include <algorithm>

#include "core/app_context.hpp"
#include "halyard/build/timeline_report.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

BuildTimeline& recorder() {
  static BuildTimeline current;
  return current;
}

bool isOpen(const BuildTimeline::PhasePointer& phase) { return phase && !phase->end; }

void closeOpenPhase(const BuildTimeline& timeline) {
  if (isOpen(timeline.currentPhase)) timeline.currentPhase->end = buildTimeNow();
}

void writeReportLine(const std::string& line) {
  printLine(line);
  if (auto& capture = reportCapture()) capture->push_back(stripAnsi(line));
}

}  // namespace

BuildTimeline::BuildTimeline(std::string titleText)
    : TimelineRecord{std::move(titleText), buildTimeNow(), {}}, isActive(true) {}

const BuildTimeline& BuildTimeline::current() { return recorder(); }

void BuildTimeline::begin(std::string title) { recorder() = BuildTimeline(std::move(title)); }

void BuildTimeline::end() {
  closeOpenPhase(recorder());
  const BuildTimeline ended = std::exchange(recorder(), BuildTimeline());
  if (!ended.isActive || ended.phases.empty()) return;
  for (const std::string& line : timelineReport(ended)) writeReportLine(line);
  flushOutput();
}

BuildTimeline::PhasePointer BuildTimeline::beginPhase(std::string name, std::string icon, std::string detail) {
  auto phase = std::make_shared<Phase>();
  phase->name = std::move(name);
  phase->icon = std::move(icon);
  phase->detail = std::move(detail);
  phase->start = buildTimeNow();
  BuildTimeline& timeline = recorder();
  if (!timeline.isActive) return phase;
  closeOpenPhase(timeline);
  timeline.phases.push_back(phase);
  timeline.currentPhase = phase;
  return phase;
}

void BuildTimeline::endPhase(bool success, bool technicalError) {
  Phase* const phase = recorder().currentPhase.get();
  if (!isOpen(recorder().currentPhase)) return;
  phase->end = buildTimeNow();
  phase->technicalError = technicalError;
  phase->success = success && !technicalError;
}

void BuildTimeline::skipPhase() {
  if (!isOpen(recorder().currentPhase)) return;
  closeOpenPhase(recorder());
  recorder().currentPhase->skipped = true;
}

void BuildTimeline::dropLastPhase() {
  BuildTimeline& timeline = recorder();
  if (timeline.phases.empty()) return;
  timeline.phases.pop_back();
  timeline.currentPhase = timeline.phases.empty() ? nullptr : timeline.phases.back();
}

void BuildTimeline::addStep(std::string name, bool success, double duration) {
  const PhasePointer& phase = recorder().currentPhase;
  if (phase) phase->steps.push_back({std::move(name), duration, success});
}

void BuildTimeline::addMeasuredStep(std::string name, BuildTime start) {
  addStep(std::move(name), !operationAborted(), secondsBetween(start, buildTimeNow()));
}

void BuildTimeline::endPhaseUnlessAborted() { endPhase(!operationAborted()); }

std::optional<std::vector<std::string>>& reportCapture() {
  static std::optional<std::vector<std::string>> lines;
  return lines;
}

}  // namespace halyard
