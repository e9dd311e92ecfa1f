#include "halyard/terminal/overlay_box.hpp"

#include <algorithm>

#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr int narrowestBox = 40;
constexpr int widestBox = Layout::ruleWidth;
constexpr int firstRow = 6;  // from 0: below the header
constexpr int rowsBelowHeader = 25;

std::string accented(std::string_view text) {
  return std::string(Color::boldBlue) + std::string(text) + std::string(Color::reset);
}

/// The rows of the box from top to bottom, all of one width.
class BoxRows {
 public:
  explicit BoxRows(int width) : width_(width) {}

  void top(std::optional<std::string_view> title) {
    if (!title) return rule("┌", "┐");
    const std::string name = " " + clippedVisible(*title, width_ - 4) + " ";
    const int dashes = std::max(width_ - visibleWidth(name), 2);
    rows_.push_back(accented("┌" + repeated("─", dashes / 2)) + std::string(Color::boldBlue) +
                    std::string(Color::bold) + name + std::string(Color::reset) +
                    accented(repeated("─", dashes - dashes / 2) + "┐"));
  }

  void rule(std::string_view left, std::string_view right) {
    rows_.push_back(accented(std::string(left) + repeated("─", width_) + std::string(right)));
  }

  void line(std::string_view text) {
    const std::string fitting = visibleWidth(text) > width_ - 2 ? clippedVisible(text, width_ - 2) : std::string(text);
    rows_.push_back(accented("│") + " " + padVisible(fitting, width_ - 2) + std::string(Color::reset) + " " +
                    accented("│"));
  }

  void centred(std::string_view text) {
    line(std::string(static_cast<std::size_t>(std::max((width_ - 2 - visibleWidth(text)) / 2, 0)), ' ') +
         std::string(text));
  }

  void hints(std::string_view left, std::string_view right) {
    const int gap = std::max(width_ - 2 - visibleWidth(left) - visibleWidth(right), 1);
    line(std::string(left) + std::string(static_cast<std::size_t>(gap), ' ') + std::string(right));
  }

  [[nodiscard]] const std::vector<std::string>& rows() const { return rows_; }

 private:
  int width_;
  std::vector<std::string> rows_;
};

int boxWidth(std::optional<std::string_view> title, const std::vector<std::string>& lines,
             std::optional<std::string_view> leftHint, std::string_view rightHint) {
  int inner = 0;
  if (title) inner = visibleWidth(*title) + 6;
  if (leftHint) inner = std::max(inner, visibleWidth(*leftHint) + 4 + visibleWidth(rightHint));
  for (const std::string& line : lines) inner = std::max(inner, visibleWidth(line));
  return std::clamp(inner + 4, narrowestBox, widestBox);
}

}  // namespace

std::string overlayBox(std::optional<std::string_view> title, const std::vector<std::string>& lines,
                       std::optional<std::string_view> leftHint, std::string_view rightHint, bool centreLastLine) {
  const int width = boxWidth(title, lines, leftHint, rightHint);
  BoxRows box(width);
  box.top(title);
  for (std::size_t index = 0; index < lines.size(); ++index) {
    const bool centre = centreLastLine && index + 1 == lines.size() && !lines[index].empty();
    centre ? box.centred(lines[index]) : box.line(lines[index]);
  }
  if (leftHint) {
    box.rule("├", "┤");
    box.hints(*leftHint, rightHint);
  }
  box.rule("└", "┘");

  // For the placing, a title counts as a row of its own.
  const int countedRows = static_cast<int>(lines.size()) + (title ? 3 : 2) + (leftHint ? 2 : 0);
  int row = firstRow + std::max((rowsBelowHeader - countedRows) / 2, 0) + 1;
  const int column = (Layout::frameWidth - width) / 2 + 1;
  std::string drawn;
  for (const std::string& text : box.rows()) drawn += cursorTo(row++, column) + text;
  return drawn + cursorTo(rowBelowFrame, 1);
}

void drawOverlayBox(std::optional<std::string_view> title, const std::vector<std::string>& lines,
                    std::optional<std::string_view> leftHint, std::string_view rightHint, bool centreLastLine) {
  print(overlayBox(title, lines, leftHint, rightHint, centreLastLine));
}

}  // namespace halyard
