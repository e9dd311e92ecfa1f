// Records where the time of a long action goes, and prints a report of it at the end.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "halyard/build/duration.hpp"
#include "halyard/build/timeline_record.hpp"

namespace halyard {

/// One timeline at a time is the current one, and all operations work on it. Without an active one they are harmless,
/// so code reports its phases without asking whether an action has opened a timeline. For the action's thread only.
class BuildTimeline : public TimelineRecord {
 public:
  using Step = TimelineStep;
  using Phase = TimelinePhase;
  using PhasePointer = std::shared_ptr<Phase>;

  BuildTimeline() = default;
  explicit BuildTimeline(std::string titleText);

  /// The timeline that records, or the inactive placeholder.
  static const BuildTimeline& current();

  /// Opens a timeline. One that was open is dropped without a report.
  static void begin(std::string title);
  /// Closes the open phase, as a success if nothing else was said, and prints the report if there was a phase.
  static void end();

  /// Closes an open phase, as a success if nothing else was said, and opens the next. Never null: without an active
  /// timeline it is a phase that is recorded nowhere.
  static PhasePointer beginPhase(std::string name, std::string icon, std::string detail = {});
  /// `technicalError`: the tool failed, not the project; it wins over `success`. A closed phase stays as it is.
  static void endPhase(bool success, bool technicalError = false);
  static void skipPhase();
  /// Removes the last phase; the one before it becomes the current one.
  static void dropLastPhase();
  /// To the current phase, also when it is closed already.
  static void addStep(std::string name, bool success, double duration);

  /// Runs the callable and records its time as a step, successful unless the operation was aborted.
  template <typename Work>
  static auto measureStep(std::string name, Work&& work);
  /// Runs the callable in a phase of its own, successful unless the operation was aborted.
  template <typename Work>
  static auto withPhase(std::string name, std::string icon, std::string detail, Work&& work);

  PhasePointer currentPhase;  ///< null without one
  bool isActive = false;

 private:
  static void addMeasuredStep(std::string name, BuildTime start);
  static void endPhaseUnlessAborted();
};

/// While it holds a list, each line of a report is also appended to it, without colours.
std::optional<std::vector<std::string>>& reportCapture();

template <typename Work>
auto BuildTimeline::measureStep(std::string name, Work&& work) {
  const BuildTime begun = buildTimeNow();
  if constexpr (std::is_void_v<std::invoke_result_t<Work>>) {
    std::forward<Work>(work)();
    addMeasuredStep(std::move(name), begun);
  } else {
    auto result = std::forward<Work>(work)();
    addMeasuredStep(std::move(name), begun);
    return result;
  }
}

template <typename Work>
auto BuildTimeline::withPhase(std::string name, std::string icon, std::string detail, Work&& work) {
  beginPhase(std::move(name), std::move(icon), std::move(detail));
  if constexpr (std::is_void_v<std::invoke_result_t<Work>>) {
    std::forward<Work>(work)();
    endPhaseUnlessAborted();
  } else {
    auto result = std::forward<Work>(work)();
    endPhaseUnlessAborted();
    return result;
  }
}

}  // namespace halyard
