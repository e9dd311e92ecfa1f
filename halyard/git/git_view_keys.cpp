// What each key does in each mode of the Git view.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "core/string_catalog.hpp"
#include "halyard/git/git_service.hpp"
#include "halyard/git/git_view.hpp"
#include "halyard/git/git_view_search.hpp"
#include "halyard/git/git_view_state.hpp"
#include "halyard/terminal/typed_text.hpp"

namespace halyard {

namespace {

using GitView::closeOverlay;
using GitView::reload;
using GitView::showMessage;
using GitView::state;
using Kind = RawKey::Kind;
using Mode = GitViewMode;

// MARK: moving

template <typename List>
void moveIn(const List& list, int& selection, int step) {
  const int size = static_cast<int>(list.size());
  if (size > 0) selection = ((selection + step) % size + size) % size;
}

template <int Step>
void moveInPane() {
  GitViewState& view = state();
  if (view.activePane == GitViewPane::branches) {
    moveIn(view.snapshot.branches, view.branchSelection, Step);
  } else {
    moveIn(view.snapshot.commits, view.commitSelection, Step);
  }
}

template <int Step>
void moveInHits() {
  moveIn(state().searchHits, state().searchSelection, Step);
}

template <int Step>
void scrollDiff() {
  const int last = std::max(static_cast<int>(state().diffLines.size()) - 1, 0);
  state().diffScroll = std::clamp(state().diffScroll + Step, 0, last);
}

void toggleActivePane() {
  GitViewPane& pane = state().activePane;
  pane = pane == GitViewPane::branches ? GitViewPane::commits : GitViewPane::branches;
}

// MARK: opening overlays

void openHelp() { state().mode = Mode::help; }

void openSearch() {
  state().searchQuery.clear();
  state().mode = Mode::searchOverlay;
}

void openCommit() {
  state().commitMessage.clear();
  state().mode = Mode::commitOverlay;
}

void ask(GitConfirmKind question) {
  state().pendingConfirm = std::move(question);
  state().mode = Mode::confirmOverlay;
}

void askForPush() { ask({GitConfirmKind::Kind::push}); }

void askForPull() { ask({GitConfirmKind::Kind::pull}); }

void askForCheckout() {
  const GitViewState& view = state();
  const auto index = static_cast<std::size_t>(view.branchSelection);
  if (view.activePane == GitViewPane::commits || index >= view.snapshot.branches.size()) return;
  const GitBranch& branch = view.snapshot.branches[index];
  if (!branch.isCurrent) ask({GitConfirmKind::Kind::checkout, branch.fullName});
}

// MARK: acting

void reloadAndShow(const GitActionOutcome& outcome) {
  reload();
  showMessage(outcome.message, {}, !outcome.succeeded);
}

void refresh() {
  reload();
  showMessage(localized("git_view_refreshed"), {}, false);
}

void stageOrUnstageAll() {
  reloadAndShow(GitView::hasStagedFiles() ? GitService::unstageAll() : GitService::stageAll());
}

void runCheckout(const std::string& branch) {
  const GitActionOutcome outcome = GitService::checkout(branch);
  reload();
  if (outcome.succeeded) {
    closeOverlay();
  } else {
    showMessage(outcome.message, {}, true);
  }
}

void acceptConfirmation() {
  const auto accepted = std::exchange(state().pendingConfirm, std::nullopt);
  if (!accepted || accepted->kind == GitConfirmKind::Kind::discardChanges) return closeOverlay();
  state().mode = Mode::loading;
  switch (accepted->kind) {
    case GitConfirmKind::Kind::push: return reloadAndShow(GitService::push());
    case GitConfirmKind::Kind::pull: return reloadAndShow(GitService::pull());
    case GitConfirmKind::Kind::checkout: return runCheckout(accepted->branch);
    case GitConfirmKind::Kind::discardChanges: return;
  }
}

void runCommit() {
  const GitActionOutcome outcome = GitService::commit(state().commitMessage, GitView::hasStagedFiles());
  if (outcome.succeeded) reload();
  showMessage(outcome.message, {}, !outcome.succeeded);
}

// MARK: the tables

struct NamedKey {
  Mode mode;
  Kind key;
  void (*action)();
};

constexpr auto namedKeys = std::to_array<NamedKey>({
    {Mode::normal, Kind::up, moveInPane<-1>},           {Mode::normal, Kind::down, moveInPane<1>},
    {Mode::normal, Kind::left, toggleActivePane},       {Mode::normal, Kind::right, toggleActivePane},
    {Mode::normal, Kind::enter, askForCheckout},        {Mode::help, Kind::enter, closeOverlay},
    {Mode::help, Kind::escape, closeOverlay},           {Mode::searchOverlay, Kind::enter, GitView::runSearch},
    {Mode::searchOverlay, Kind::escape, closeOverlay},  {Mode::searchResults, Kind::up, moveInHits<-1>},
    {Mode::searchResults, Kind::down, moveInHits<1>},   {Mode::searchResults, Kind::enter, GitView::openSelectedHit},
    {Mode::searchResults, Kind::escape, closeOverlay},  {Mode::commitOverlay, Kind::enter, runCommit},
    {Mode::commitOverlay, Kind::escape, closeOverlay},  {Mode::confirmOverlay, Kind::enter, acceptConfirmation},
    {Mode::confirmOverlay, Kind::escape, closeOverlay}, {Mode::diffOverlay, Kind::up, scrollDiff<-1>},
    {Mode::diffOverlay, Kind::down, scrollDiff<1>},     {Mode::diffOverlay, Kind::enter, closeOverlay},
    {Mode::diffOverlay, Kind::escape, closeOverlay},
});

struct CharacterKeys {
  Mode mode;
  std::string_view characters;
  void (*action)();
};

constexpr auto characterKeys = std::to_array<CharacterKeys>({
    {Mode::normal, "hH", openHelp},
    {Mode::normal, "rR", refresh},
    {Mode::normal, "/", openSearch},
    {Mode::normal, "cC", openCommit},
    {Mode::normal, "aA", stageOrUnstageAll},
    {Mode::normal, "pP", askForPush},
    {Mode::normal, "l", askForPull},  // and no capital, whatever the footer shows
    {Mode::help, "xXhH", closeOverlay},
    {Mode::searchResults, "xX", closeOverlay},
    {Mode::confirmOverlay, "jJyY", acceptConfirmation},  // j is the German yes
    {Mode::confirmOverlay, "xXnN", closeOverlay},
    {Mode::diffOverlay, "xX", closeOverlay},
});

// MARK: typing

std::string typedInSearch(std::string_view character) {
  return isLetterDigitOr(character, " .-_/*?@:") ? std::string(character) : std::string();
}

std::string typedInMessage(std::string_view character) { return std::string(character); }

void handleCharacter(const RawKey& key) {
  GitViewState& view = state();
  if (view.mode == Mode::commitOverlay) {
    return typeCharacter(view.commitMessage, view.typedBytes, key.text, typedInMessage);
  }
  if (view.mode == Mode::searchOverlay) {
    return typeCharacter(view.searchQuery, view.typedBytes, key.text, typedInSearch);
  }
  for (const CharacterKeys& row : characterKeys) {
    if (row.mode != view.mode || key.text.size() != 1) continue;
    if (row.characters.find(key.text) != std::string_view::npos) return row.action();
  }
}

void handleNamedKey(Kind key) {
  const Mode mode = state().mode;
  for (const NamedKey& row : namedKeys) {
    if (row.mode == mode && row.key == key) return row.action();
  }
}

}  // namespace

void handleGitKey(const RawKey& key) {
  if (state().mode == Mode::messageOverlay) return closeOverlay();
  if (key.kind == Kind::character) {
    handleCharacter(key);
  } else {
    handleNamedKey(key.kind);
  }
}

}  // namespace halyard
