#include "halyard/git/git_view_frame.hpp"

#include <array>
#include <cstddef>

#include "core/string_catalog.hpp"
#include "halyard/git/git_repository.hpp"
#include "halyard/git/git_view_text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/control_sequences.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard::GitView {

namespace {

constexpr int leftWidth = 26;
constexpr int rightWidth = 56;
constexpr int emptyTextRow = 10;
constexpr std::size_t frameBytes = 16384;
constexpr std::string_view accent = Color::boldBlue;

static_assert(leftWidth + 1 + rightWidth == Layout::frameWidth);

struct FooterCell {
  std::string_view key;
  std::string_view label;
  int width;
};

constexpr auto footerCells = std::to_array<FooterCell>({
    {"↑↓ ←→", ":Nav", 11},
    {"Ent", ":Run", 6},  // stands out by one column
    {"A", ":All", 6},
    {"C", ":Cmt", 6},
    {"L", ":Pull", 6},
    {"P", ":Push", 7},
    {"R", ":Rfsh", 8},
    {"/ Search · H Help", "", 26},
});

static_assert([] {
  int columns = static_cast<int>(footerCells.size()) - 1;
  for (const FooterCell& footer : footerCells) columns += footer.width;
  return columns == Layout::frameWidth;
}());

std::string accented(std::string_view text) { return styled(accent, text); }

const std::string& bar() {
  static const std::string drawn = accented("│");
  return drawn;
}

// MARK: summary

std::string orDash(std::string_view text) { return text.empty() ? "—" : shownText(text); }

std::string shownPath(std::string_view path, std::string_view home) {
  constexpr std::size_t longestPath = 8192;
  if (path.empty()) return "—";
  const bool isBelowHome =
      !home.empty() && path.starts_with(home) && (path.size() == home.size() || path[home.size()] == '/');
  if (!isBelowHome) return shownText(path, longestPath);
  return "~" + shownText(path.substr(home.size()), longestPath);
}

std::string branchValue(const GitRepoStatus& status) {
  if (!status.isRepository) return "—";
  return status.isDetached ? "Detached HEAD" : orDash(status.currentBranch);
}

/// `cut` shortens the value to what its row has room for.
void addSummaryRow(std::string& frame, std::string_view labelKey, const std::string& value,
                   std::string (*cut)(std::string_view, int)) {
  constexpr int textWidth = Layout::frameWidth - 1;
  const std::string label(localized(labelKey));
  std::string row = " ";
  row += accented(label + ":");
  row += " ";
  row += cut(value, textWidth - visibleWidth(row));
  frame += bar() + padVisible(row, textWidth) + " " + bar() + "\n";
}

void addSummary(std::string& frame, const GitRepoStatus& status, std::string_view home) {
  addSummaryRow(frame, "git_view_label_repo", shownPath(status.topLevelPath, home), cutLeft);
  addSummaryRow(frame, "git_view_label_branch", branchValue(status), cutRight);
  addSummaryRow(frame, "git_view_label_status", GitRepository::statusSummary(status), cutRight);
}

// MARK: panes

std::string branchRow(const GitBranch& branch) {
  const bool isLocal = branch.kind == GitBranch::Kind::local;
  const std::string name = shownText(branch.name);
  std::string row = isLocal ? " • " : " ↻ ";
  row += isLocal ? name : styled(Color::dim, name);
  if (branch.isCurrent) row += " ★";
  return row;
}

std::string commitRow(const GitCommit& commit) {
  const std::string hash = shownText(commit.shortHash);
  const std::string date = shownText(commit.date);
  const std::string subject = shownText(commit.subject);
  const std::string author = shownText(commit.author);
  std::string plain;
  for (const std::string_view part :
       {std::string_view(" "), std::string_view(hash), std::string_view("  "), std::string_view(date),
        std::string_view("  "), std::string_view(subject), std::string_view("  — "), std::string_view(author)}) {
    plain += part;
  }
  if (visibleWidth(plain) >= rightWidth) return cutRight(plain, rightWidth - 1);
  return " " + accented(hash) + "  " + styled(Color::dim, date) + "  " + subject + "  " +
         styled(Color::dim, "— " + author);
}

/// A selected row is one in its whole width, so its own colours yield.
std::string highlighted(std::string_view row, bool isPaneActive) {
  std::string style(Color::dim);
  if (isPaneActive) {
    style = Color::bgYellow;
    style.append(Color::fgBlack).append(Color::bold);
  }
  return styled(style, stripAnsi(row));
}

/// What a pane shows, whichever of the two it is.
struct Pane {
  std::string_view titleKey;
  std::string_view emptyKey;
  int width;
  bool isActive;
  int size;
  int selection;
  int scroll;
};

std::string paneTitle(const Pane& pane) {
  return cell(" " + styled(pane.isActive ? accent : Color::dim, localized(pane.titleKey)), pane.width);
}

/// `row(index)` draws a row of the pane's list.
template <typename Row>
std::string paneRow(const Pane& pane, int line, Row row) {
  if (pane.size == 0 && line == emptyTextRow) {
    return cell(centred(styled(Color::dim, localized(pane.emptyKey)), pane.width), pane.width);
  }
  const int index = pane.scroll + line;
  if (index >= pane.size) return cell("", pane.width);
  const std::string drawn = cell(row(static_cast<std::size_t>(index)), pane.width);
  return index == pane.selection ? highlighted(drawn, pane.isActive) : drawn;
}

void addPanes(std::string& frame, const GitViewState& view) {
  const auto& branches = view.snapshot.branches;
  const auto& commits = view.snapshot.commits;
  const Pane left{"git_view_section_branches",
                  "git_view_empty_branches",
                  leftWidth,
                  view.activePane == GitViewPane::branches,
                  static_cast<int>(branches.size()),
                  view.branchSelection,
                  view.branchScroll};
  const Pane right{"git_view_section_history",
                   "git_view_empty_history",
                   rightWidth,
                   view.activePane == GitViewPane::commits,
                   static_cast<int>(commits.size()),
                   view.commitSelection,
                   view.commitScroll};
  const auto addRow = [&](const std::string& leftCell, const std::string& rightCell) {
    frame += bar();
    frame += leftCell;
    frame += bar();
    frame += rightCell;
    frame += bar();
    frame += '\n';
  };
  addRow(paneTitle(left), paneTitle(right));
  for (int line = 0; line < paneRows; ++line) {
    addRow(paneRow(left, line, [&](std::size_t index) { return branchRow(branches[index]); }),
           paneRow(right, line, [&](std::size_t index) { return commitRow(commits[index]); }));
  }
}

// MARK: rules and footer

void addRule(std::string& frame, std::string_view left, std::string_view middle, std::string_view right) {
  frame += accented(std::string(left) + repeated("─", leftWidth) + std::string(middle) + repeated("─", rightWidth) +
                    std::string(right)) +
           "\n";
}

void addFooter(std::string& frame) {
  std::string keys;
  std::string rule;
  for (const FooterCell& footer : footerCells) {
    keys += bar();
    keys += padVisible(accented(footer.key) + std::string(footer.label), footer.width);
    rule += rule.empty() ? "└" : "┴";
    rule += repeated("─", footer.width);
  }
  frame += keys + bar() + "\n" + accented(rule + "┘") + "\n";
}

}  // namespace

std::string drawnFrame(const GitViewState& view, std::string_view home) {
  std::string frame;
  frame.reserve(frameBytes);
  addSummary(frame, view.snapshot.status, home);
  addRule(frame, "├", "┬", "┤");
  addPanes(frame, view);
  addRule(frame, "├", "┴", "┤");
  addFooter(frame);
  return frame;
}

bool holdsWideCharacters(std::string_view frame) {
  constexpr std::string_view emojiMark = "\xEF\xB8\x8F";  // asks for the wide picture of a narrow character
  if (frame.find(emojiMark) != std::string_view::npos) return true;
  while (!frame.empty()) {
    const ScalarPiece piece = scalarAt(frame);
    if (piece.cells == 2) return true;
    frame.remove_prefix(piece.length);
  }
  return false;
}

}  // namespace halyard::GitView
