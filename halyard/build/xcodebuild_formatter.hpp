// Condenses the thousands of lines of an xcodebuild run into the twenty that a person wants to see, as they come.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "halyard/build/duration.hpp"

namespace halyard {

class ActivitySpinner;

/// What a build is at. Nothing enters `sign`: signing shows together with linking.
enum class XBPhase : std::uint8_t { none, prepare, resolvePackages, compile, link, copyResources, sign };

/// The time between two changes of target. A target that the tool comes back to has several.
struct TargetTiming {
  std::string name;
  double duration = 0;  ///< seconds
};

/// Prints a header for each target, a line for each phase, the number of compiled files, and each error and warning at
/// once; collects what a caller needs afterwards. One instance for one run: lines come on the reader's thread, finish()
/// and the results are the caller's after the run. No lock, as the runner orders the two.
class XcodeBuildFormatter {
 public:
  XcodeBuildFormatter();
  ~XcodeBuildFormatter();
  XcodeBuildFormatter(const XcodeBuildFormatter&) = delete;
  XcodeBuildFormatter& operator=(const XcodeBuildFormatter&) = delete;

  /// One line of the tool, without its line feed; any bytes.
  void processLine(std::string_view line);
  /// To be called once, after the last line.
  void finish();

  /// Lines as the tool wrote them, without blanks at their ends, duplicates included.
  [[nodiscard]] const std::vector<std::string>& errorLines() const { return errorLines_; }
  [[nodiscard]] const std::vector<std::string>& warningLines() const { return warningLines_; }
  /// In the order in which they ended.
  [[nodiscard]] const std::vector<TargetTiming>& targetTimings() const { return targetTimings_; }
  [[nodiscard]] XBPhase lastPhase() const { return lastPhase_; }
  /// The target of the last line that named one.
  [[nodiscard]] const std::string& currentTarget() const { return currentTarget_; }

 private:
  void noteTarget(std::string_view name);
  void noteTargetOf(std::string_view line);
  void enterPhase(XBPhase phase, std::string_view label);
  void flushCompileCount();
  void closeInterval();
  void stopSpinner();

  void showPhase(XBPhase phase, std::string_view icon, std::string_view label);
  void showFetch(std::string_view line);
  void countCompile(std::string_view line);
  void showResource(std::string_view line);
  void collectDiagnostic(std::string_view line);
  void printIndented(std::string_view text);

  std::vector<std::string> errorLines_;
  std::vector<std::string> warningLines_;
  std::vector<TargetTiming> targetTimings_;
  XBPhase lastPhase_ = XBPhase::none;
  std::string currentTarget_;
  int compileCount_ = 0;
  std::set<std::string, std::less<>> shownTargets_;
  std::unique_ptr<ActivitySpinner> activeSpinner_;
  std::string trackingTarget_;  ///< of the open interval, or empty
  BuildTime targetStart_;
};

}  // namespace halyard
