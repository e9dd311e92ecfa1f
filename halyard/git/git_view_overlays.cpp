#include "halyard/git/git_view_overlays.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "core/string_catalog.hpp"
#include "halyard/git/git_view_text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/overlay_box.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard::GitView {

namespace {

constexpr int lineWidth = 77;  // of the widest box
constexpr int textWidth = 75;
constexpr std::size_t textRows = 14;

struct Overlay {
  std::optional<std::string> title = {};
  std::vector<std::string> lines = {};
  std::optional<std::string_view> leftHint = {};
  std::string_view rightHint = {};
  bool centresLastLine = false;
};

struct HelpRow {
  std::string_view key;
  std::string_view textKey;
};

constexpr auto helpRows = std::to_array<HelpRow>({
    {"↑ / ↓", "git_view_help_navigation"},
    {"← / →", "git_view_help_pane_switch"},
    {"Enter", "git_view_help_enter"},
    {"A", "git_view_help_stage_all"},
    {"C", "git_view_help_commit"},
    {"L", "git_view_help_pull"},
    {"P", "git_view_help_push"},
    {"R", "git_view_help_refresh"},
    {"/", "git_view_help_search"},
    {"H", "git_view_help_help"},
    {"ESC / X", "git_view_help_close"},
    {"Space", "git_view_help_view_switch"},
    {"Q", "git_view_help_quit"},
});

std::string text(std::string_view key) { return std::string(localized(key)); }

std::string dimText(std::string_view key) { return styled(Color::dim, localized(key)); }

Overlay helpOverlay() {
  constexpr int keyWidth = 14;
  Overlay overlay{.title = text("git_view_help_title"), .centresLastLine = true};
  for (const HelpRow& row : helpRows) {
    overlay.lines.push_back(" " + padVisible(row.key, keyWidth) + text(row.textKey));
  }
  overlay.lines.emplace_back();
  overlay.lines.push_back(dimText("git_view_help_close_hint"));
  return overlay;
}

Overlay loadingOverlay() {
  return {.lines = {"", "  " + styled(Color::boldBlue, "⠋") + "  " + text("git_view_loading"), ""}};
}

/// What is being typed, with a cursor. Of a text too long for the box the end is what counts.
std::string inputLine(std::string_view promptKey, std::string_view typed) {
  const std::string prompt = text(promptKey) + " ";
  constexpr std::size_t longestTyped = 10000;
  return prompt + cutLeft(shownText(typed, longestTyped), lineWidth - visibleWidth(prompt) - 1) +
         styled(Color::boldBlue, "█");
}

Overlay inputOverlay(std::string_view titleKey, std::string_view hintKey, std::string_view promptKey,
                     std::string_view typed, std::string_view rightHintKey) {
  return {.title = text(titleKey),
          .lines = {"", dimText(hintKey), "", inputLine(promptKey, typed), ""},
          .leftHint = localized("git_view_overlay_cancel"),
          .rightHint = localized(rightHintKey)};
}

std::string hitTag(GitSearchHit::Kind kind) {
  switch (kind) {
    case GitSearchHit::Kind::branch: return styled(Color::boldBlue, "[branch]");
    case GitSearchHit::Kind::commit: return styled(Color::green, "[commit]");
    case GitSearchHit::Kind::author: return styled(Color::dim, "[author]");
  }
  return {};
}

Overlay searchResultsOverlay(const GitViewState& view) {
  Overlay overlay{.title = text("git_view_search_title"), .leftHint = localized("git_view_overlay_cancel")};
  if (view.searchHits.empty()) {
    overlay.lines = {"", dimText("git_view_search_no_results"), ""};
    return overlay;
  }
  overlay.rightHint = localized("git_view_overlay_confirm");
  const int last = std::min(view.searchScroll + searchRows, static_cast<int>(view.searchHits.size()));
  for (int index = view.searchScroll; index < last; ++index) {
    const GitSearchHit& hit = view.searchHits[static_cast<std::size_t>(index)];
    const std::string mark = index == view.searchSelection ? "▶ " : "  ";
    overlay.lines.push_back(cutRight(mark + hitTag(hit.kind) + "  " + shownText(hit.label), lineWidth));
  }
  return overlay;
}

/// Title and text of a confirmation.
std::pair<std::string, std::string> question(const GitConfirmKind& pending) {
  switch (pending.kind) {
    case GitConfirmKind::Kind::push: return {text("git_view_help_push"), text("git_view_push_running")};
    case GitConfirmKind::Kind::pull: return {text("git_view_help_pull"), text("git_view_pull_running")};
    case GitConfirmKind::Kind::discardChanges: return {text("git_view_action_cancelled"), ""};
    case GitConfirmKind::Kind::checkout: break;
  }
  return {text("git_view_checkout_title"), localizedFormat("git_view_checkout_prompt", pending.branch)};
}

/// The rows of a text, each in the style, between empty lines.
std::vector<std::string> framedRows(std::string_view content, std::string_view style) {
  std::vector<std::string> rows = {""};
  for (const std::string& row : wrappedRows(content, textWidth, textRows)) rows.push_back(styled(style, row));
  rows.emplace_back();
  return rows;
}

std::optional<Overlay> confirmOverlay(const GitViewState& view) {
  if (!view.pendingConfirm) return {};
  const auto [title, content] = question(*view.pendingConfirm);
  return Overlay{.title = title,
                 .lines = framedRows(content, ""),
                 .leftHint = localized("git_view_overlay_cancel"),
                 .rightHint = localized("git_view_overlay_confirm")};
}

std::string diffLine(std::string_view line) {
  const std::string safe = cutRight(shownText(line), lineWidth);
  if (line.starts_with('+')) return styled(Color::green, safe);
  if (line.starts_with('-')) return styled(Color::red, safe);
  return styled(line.starts_with("@@") ? Color::boldBlue : Color::dim, safe);
}

Overlay diffOverlay(const GitViewState& view) {
  Overlay overlay{.title = localizedFormat("git_view_diff_title", shownText(view.diffTitle)),
                  .leftHint = localized("git_view_overlay_cancel")};
  if (view.diffLines.empty()) {
    overlay.lines = {"", dimText("git_view_diff_empty"), ""};
    return overlay;
  }
  const int last = std::min(view.diffScroll + diffRows, static_cast<int>(view.diffLines.size()));
  for (int index = view.diffScroll; index < last; ++index) {
    overlay.lines.push_back(diffLine(view.diffLines[static_cast<std::size_t>(index)]));
  }
  return overlay;
}

Overlay messageOverlay(const GitViewState& view) {
  Overlay overlay{.lines = framedRows(view.messageText, view.messageIsError ? Color::boldRed : Color::boldGreen),
                  .leftHint = localized("git_view_overlay_cancel")};
  for (const std::string& row : wrappedRows(view.messageDetail, textWidth, 1)) {
    if (!row.empty()) overlay.lines.insert(overlay.lines.end() - 1, styled(Color::dim, row));
  }
  return overlay;
}

std::optional<Overlay> overlayOf(const GitViewState& view) {
  switch (view.mode) {
    case GitViewMode::normal: break;
    case GitViewMode::help: return helpOverlay();
    case GitViewMode::loading: return loadingOverlay();
    case GitViewMode::searchOverlay:
      return inputOverlay("git_view_search_title", "git_view_search_hint", "git_view_search_prompt", view.searchQuery,
                          "git_view_overlay_search");
    case GitViewMode::searchResults: return searchResultsOverlay(view);
    case GitViewMode::commitOverlay:
      return inputOverlay("git_view_commit_title", "git_view_commit_hint", "git_view_commit_prompt", view.commitMessage,
                          "git_view_overlay_commit");
    case GitViewMode::confirmOverlay: return confirmOverlay(view);
    case GitViewMode::diffOverlay: return diffOverlay(view);
    case GitViewMode::messageOverlay: return messageOverlay(view);
  }
  return {};
}

}  // namespace

std::string drawnOverlay(const GitViewState& view) {
  const std::optional<Overlay> overlay = overlayOf(view);
  if (!overlay) return {};
  return overlayBox(overlay->title, overlay->lines, overlay->leftHint, overlay->rightHint, overlay->centresLastLine);
}

}  // namespace halyard::GitView
