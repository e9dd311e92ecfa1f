#include "halyard/build/xcodebuild_formatter.hpp"

#include <algorithm>
#include <cstddef>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/diagnostics.hpp"
#include "halyard/build/target_names.hpp"
#include "halyard/build/xcodebuild_formatter_rules.hpp"
#include "halyard/terminal/activity_spinner.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr int headerFrame = 6;  // what stands beside name and rule in a target's header

bool isIndented(std::string_view line) { return line.starts_with("    ") || line.starts_with('\t'); }

/// "https://host/owner/Name.git" gives "Name", also behind other words.
std::string repositoryName(std::string_view fetched) {
  std::string name(fetched.substr(fetched.rfind('/') + 1));
  replaceAll(name, ".git", "");
  return name;
}

}  // namespace

XcodeBuildFormatter::XcodeBuildFormatter() : targetStart_(buildTimeNow()) {}

XcodeBuildFormatter::~XcodeBuildFormatter() = default;

void XcodeBuildFormatter::processLine(std::string_view line) {
  const std::string_view step = trimmedBlanks(line);
  if (step.empty()) return;
  if (isIndented(line) && diagnosticMarker(step) == DiagnosticMarker::none) return;
  switch (buildLineKind(step)) {
    case BuildLineKind::ignored: return;
    case BuildLineKind::prepare: return enterPhase(XBPhase::prepare, localized("build_step_init"));
    case BuildLineKind::resolve: return enterPhase(XBPhase::resolvePackages, localized("build_step_resolve"));
    case BuildLineKind::fetch: return showFetch(step);
    case BuildLineKind::compile: return countCompile(step);
    case BuildLineKind::link: noteTargetOf(step); return enterPhase(XBPhase::link, localized("build_step_link"));
    case BuildLineKind::resource: return showResource(step);
    case BuildLineKind::other: return collectDiagnostic(step);
  }
}

void XcodeBuildFormatter::finish() {
  flushCompileCount();
  stopSpinner();
  closeInterval();
}

void XcodeBuildFormatter::noteTarget(std::string_view name) {
  if (name == currentTarget_) return;
  closeInterval();
  trackingTarget_ = name;
  targetStart_ = buildTimeNow();
  currentTarget_ = name;
  if (shownTargets_.contains(name)) return;
  flushCompileCount();
  stopSpinner();
  lastPhase_ = XBPhase::none;
  shownTargets_.emplace(name);
  const std::string shown = shownToolText(name);
  const int rule = Layout::ruleWidth - static_cast<int>(graphemeCount(shown)) - headerFrame;
  print(fmt::format("\n  {}📦{} {}{}{}  {}{}{}\n", Color::blue, Color::reset, Color::bold, shown, Color::reset,
                    Color::dim, repeated("─", rule), Color::reset));
  flushOutput();
}

void XcodeBuildFormatter::noteTargetOf(std::string_view line) {
  if (const auto name = extractTargetName(line)) noteTarget(*name);
}

void XcodeBuildFormatter::enterPhase(XBPhase phase, std::string_view label) {
  if (lastPhase_ == phase) return;
  if (phase != XBPhase::resolvePackages) return showPhase(phase, "▸", label);
  flushCompileCount();
  stopSpinner();
  lastPhase_ = phase;
  activeSpinner_ = std::make_unique<ActivitySpinner>(std::string(label));
  activeSpinner_->start();
}

void XcodeBuildFormatter::showPhase(XBPhase phase, std::string_view icon, std::string_view label) {
  flushCompileCount();
  stopSpinner();
  lastPhase_ = phase;
  printIndented(fmt::format("{}{}{} {}", Color::blue, icon, Color::reset, label));
}

void XcodeBuildFormatter::flushCompileCount() {
  if (lastPhase_ != XBPhase::compile || compileCount_ < 1) return;
  printIndented(
      fmt::format("   {}{}{}", Color::dim, localizedFormat("build_step_compile_count", compileCount_), Color::reset));
  compileCount_ = 0;
}

void XcodeBuildFormatter::closeInterval() {
  if (trackingTarget_.empty()) return;
  targetTimings_.push_back({trackingTarget_, secondsBetween(targetStart_, buildTimeNow())});
  trackingTarget_.clear();
}

void XcodeBuildFormatter::stopSpinner() {
  if (!activeSpinner_) return;
  activeSpinner_->stop();
  activeSpinner_.reset();
}

void XcodeBuildFormatter::showFetch(std::string_view line) {
  if (!activeSpinner_) return;
  activeSpinner_->setLabel(std::string(localized("build_step_resolve")),
                           repositoryName(line.substr(line.find(' ') + 1)));
}

void XcodeBuildFormatter::countCompile(std::string_view line) {
  noteTargetOf(line);
  if (lastPhase_ != XBPhase::compile) showPhase(XBPhase::compile, "🔨", localized("build_step_compile"));
  ++compileCount_;
}

void XcodeBuildFormatter::showResource(std::string_view line) {
  if (lastPhase_ == XBPhase::copyResources) return;
  std::string label(localized("build_step_resources"));
  if (const std::string_view detail = resourceDetail(line); !detail.empty()) {
    label += fmt::format("  {}{}{}", Color::dim, shownToolText(detail), Color::reset);
  }
  showPhase(XBPhase::copyResources, "📋", label);
}

void XcodeBuildFormatter::collectDiagnostic(std::string_view line) {
  const DiagnosticMarker marker = diagnosticMarker(line);
  if (marker == DiagnosticMarker::none || line.starts_with("//")) return;
  const bool isError = marker == DiagnosticMarker::error;
  (isError ? errorLines_ : warningLines_).emplace_back(line);
  if (isError) flushCompileCount();
  printIndented(liveDiagnosticLine(parseDiagnostic(line, isError)));
}

void XcodeBuildFormatter::printIndented(std::string_view text) {
  // A running spinner has its line half written; it goes on in the next.
  std::string line;
  if (activeSpinner_) line.append("\r").append(Cursor::eraseLineEnd);
  line.append(shownTargets_.empty() ? "  " : "     ").append(text).append("\n");
  print(line);
  flushOutput();
}

}  // namespace halyard
