#include "halyard/shell/header.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/browser/directory_text.hpp"
#include "halyard/build/active_target.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/shell/hotkey_mark.hpp"
#include "halyard/shell/version.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/control_sequences.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr int labelWidth = 20;
constexpr int valueWidth = Layout::frameWidth - labelWidth - 3;
constexpr int longestProject = 72;

struct HeaderCache {
  std::optional<std::string> xcodeVersion;
  std::optional<std::string> swiftVersion;
  std::optional<std::string> branch;
};

HeaderCache& cache() {
  static HeaderCache cached;
  return cached;
}

HeaderFacts headerFacts() {
  HeaderCache& known = cache();
  if (!known.xcodeVersion) {
    std::string version = run("xcodebuild -version 2>/dev/null | head -1");
    replaceAll(version, "Xcode ", "");
    known.xcodeVersion = std::move(version);
    known.swiftVersion = run("swift --version 2>/dev/null | grep -oE '[0-9]+\\.[0-9]+\\.?[0-9]*' | head -1");
  }
  if (!known.branch) known.branch = std::string(trimmed(run("git branch --show-current 2>/dev/null")));
  return {*known.xcodeVersion, *known.swiftVersion, *known.branch};
}

std::string orDash(std::string_view value) { return value.empty() ? "—" : displaySafe(value); }

std::string styled(std::string_view style, std::string_view text) {
  return fmt::format("{}{}{}", style, text, Color::reset);
}

std::string workingDirectoryValue() {
  std::error_code error;
  std::string path = selectedWorkingDirectory();
  const bool isChosen = !path.empty();
  if (!isChosen) path = std::filesystem::current_path(error).string();
  const std::string home = AppDependencies::current().fileSystemClient->homeDirectoryPath();
  if (!home.empty() && (path == home || path.starts_with(home + "/"))) path.replace(0, home.size(), "~");
  const std::string shown = shortenedFront(orDash(path), valueWidth);
  return isChosen ? shown : styled(Color::dim, shown);
}

std::string platformText() {
  const auto& platforms = cachedPlatforms();
  if (!platforms || cachedPlatformsScheme() != selectedScheme()) return {};
  if (platforms->iOS && platforms->macCatalyst) return "Universal";
  if (platforms->iOS) return "iOS/iPadOS";
  return platforms->macCatalyst ? "macOS" : "";
}

std::string schemeValue() {
  if (selectedScheme().empty()) return styled(Color::boldRed, localized("please_select"));
  const std::string platform = platformText();
  const std::string suffix = platform.empty() ? "" : fmt::format(" ({})", platform);
  return shortened(displaySafe(selectedScheme()), valueWidth - graphemeCount(suffix)) + suffix;
}

std::string testSchemeValue() {
  const bool isChosen = !selectedTestScheme().empty();
  std::string name = shortened(orDash(isChosen ? selectedTestScheme() : selectedScheme()), valueWidth / 2);
  if (!isChosen) name = styled(Color::dim, name);
  if (selectedTestPlan().empty()) return name;
  return fmt::format("{}  {}", name,
                     styled(Color::dim, "· " + shortened(displaySafe(selectedTestPlan()), valueWidth / 2 - 5)));
}

std::string bundleValue() {
  if (selectedBundleID().empty()) return styled(Color::boldRed, localized("please_enter"));
  return shortened(displaySafe(selectedBundleID()), valueWidth);
}

std::string deviceValue() {
  const auto target = activeTarget();
  if (!target) return styled(Color::boldRed, localized("please_select"));
  const std::string label = target->osLabel.empty() ? "" : fmt::format(" ({})", target->osLabel);
  return shortened(displaySafe(target->name + label), valueWidth);
}

std::string configurationValue() { return shortened(displaySafe(selectedConfig()), valueWidth); }

/// A row of the selection. The key that changes it is marked in its label: the one for both languages where the label
/// holds it, else the one that begins the word of this language.
struct SelectionRow {
  std::string_view labelKey;
  char letter;
  char otherLetter;
  std::string (*value)();
};

constexpr auto selectionRows = std::to_array<SelectionRow>({
    {"working_directory", 'A', 'W', workingDirectoryValue},
    {"select_scheme", 'S', 'S', schemeValue},
    {"select_test_target", 'T', 'T', testSchemeValue},
    {"Bundle-ID", 'B', 'B', bundleValue},
    {"select_device", 'D', 'G', deviceValue},
    {"configuration", 'K', 'C', configurationValue},
});

std::string line(std::string_view text) { return boxLine(text, Color::boldBlue) + "\n"; }

std::string border(std::string_view left, std::optional<int> splitColumn, std::string_view right) {
  const int split = splitColumn.value_or(Layout::frameWidth);
  std::string text = std::string(left) + repeated("─", split);
  if (splitColumn) text += "┬" + repeated("─", Layout::frameWidth - split - 1);
  return styled(Color::boldBlue, text + std::string(right)) + "\n";
}

/// Both texts on one line, the second flush right.
std::string spread(const std::string& left, const std::string& right) {
  const int gap = Layout::frameWidth - visibleWidth(left) - visibleWidth(right) - 1;
  return left + std::string(static_cast<std::size_t>(gap > 1 ? gap : 1), ' ') + right;
}

/// As much of a text from outside as a line has columns left: the end of a path tells more than its beginning.
std::string fittedEnd(std::string_view text, int columns) { return cutOnLeft(displaySafe(text), columns); }

/// A line whose text is measured by the columns that it takes, wide characters and all.
std::string measuredLine(const std::string& text) {
  const int missing = std::max(Layout::frameWidth - cellWidth(stripAnsi(text)), 0);
  return styled(Color::boldBlue, "│") + text + std::string(static_cast<std::size_t>(missing), ' ') +
         styled(Color::boldBlue, "│") + "\n";
}

std::string clipboardLine(const std::string& title, const std::string& clipboard) {
  const std::string_view label = localized("dirview_header_clipboard");
  const int free = Layout::frameWidth - visibleWidth(title) - visibleWidth(label) - 5;
  const std::string path = fittedEnd(clipboard, free);
  const std::string gap(static_cast<std::size_t>(std::max(free - cellWidth(path), 0) + 2), ' ');
  return measuredLine(fmt::format("{}{}{}{}:{} {}", title, gap, Color::dim, label, Color::reset, path));
}

std::string toastLine(const HeaderNotice& notice) {
  const std::string text = displaySafe(notice.toast);
  const std::string detail = fittedEnd(notice.toastDetail, Layout::frameWidth - cellWidth(text) - 4);
  return measuredLine(fmt::format(" {}  {}", styled(Color::bold, text), detail));
}

std::string titleLines(bool compact, const HeaderNotice& notice) {
  const std::string title = fmt::format(" {}  {}", styled(Color::bold, localized("menu_title_halyard")),
                                        styled(Color::dim, localizedFormat("version_display", programVersion())));
  const std::string titleLine = notice.clipboard.empty()
                                    ? line(spread(title, styled(Color::dim, localized("header_credit"))))
                                    : clipboardLine(title, notice.clipboard);
  const std::string links =
      notice.toast.empty()
          ? line(" " + styled(Color::dim, localized(compact ? "header_links_compact" : "header_links")))
          : toastLine(notice);
  return border("┌", {}, "┐") + titleLine + links;
}

std::string placeLabel(std::string_view label, std::string_view value) {
  return fmt::format(" {}{}{}", Color::boldBlue, padVisible(fmt::format("{}:{}", label, Color::reset), 9), value);
}

std::string factLines(const HeaderFacts& facts) {
  std::string project = orDash(std::filesystem::path(projectPath()).filename().string());
  if (graphemeCount(project) > longestProject) project = shortened(project, longestProject);
  return line(boxLabel("Xcode", orDash(facts.xcodeVersion)) + "  " + boxLabel("Swift", orDash(facts.swiftVersion))) +
         line(placeLabel("Projekt", project)) +
         line(placeLabel("Branch", shortened(orDash(facts.branch), longestProject)));
}

std::string selectionLine(const SelectionRow& row) {
  const std::string label(localized(row.labelKey));
  const char letter = holdsLetter(label, row.letter) ? row.letter : row.otherLetter;
  const std::string marked = markedHotkey(label, letter, Color::boldBlue, Color::defaultForeground);
  return line(fmt::format(" {} {}", padVisible(marked, labelWidth), row.value()));
}

}  // namespace

std::string headerFrame(const HeaderFacts& facts, std::optional<int> splitColumn, bool compact,
                        const HeaderNotice& notice) {
  std::string frame = titleLines(compact, notice);
  if (!compact) {
    frame += factLines(facts) + border("├", {}, "┤");
    for (const SelectionRow& row : selectionRows) frame += selectionLine(row);
  }
  return frame + (splitColumn ? border("├", splitColumn, "┤") : border("└", {}, "┘"));
}

void drawHeader(bool clear, std::optional<int> splitColumn, bool compact, const HeaderNotice& notice) {
  if (clear) clearScreen();
  print(headerFrame(compact ? HeaderFacts{} : headerFacts(), splitColumn, compact, notice));
}

void resetHeaderCache() { cache().branch.reset(); }

void forgetHeaderFacts() { cache() = {}; }

}  // namespace halyard
