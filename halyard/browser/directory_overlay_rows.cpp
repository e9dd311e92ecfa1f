#include "halyard/browser/directory_overlay_rows.hpp"

#include <array>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/browser/directory_text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr int widestRow = 77;  // of the widest box
constexpr std::array<std::string_view, spinnerFrames> pictures = {"⠋", "⠙", "⠹", "⠸", "⠼", "⠴", "⠦", "⠧", "⠇", "⠏"};

std::string styled(std::string_view style, std::string_view text) {
  return fmt::format("{}{}{}", style, text, Color::reset);
}

}  // namespace

std::string overlayPathRow(std::string_view path) {
  const std::string label(localized("dirview_overlay_path"));
  return label + " " + cutOnLeft(shownPath(path), widestRow - visibleWidth(label) - 1);
}

std::string overlayInputRow(std::string_view label, std::string_view text) {
  const std::string input = cutOnLeft(displaySafe(text), widestRow - visibleWidth(label) - 2);
  return fmt::format("{} {}{}", label, input, styled(Color::boldBlue, "█"));
}

std::vector<std::string> runningWalkRows(int spinnerFrame, std::string_view text) {
  const std::string_view picture = pictures[static_cast<std::size_t>(spinnerFrame) % pictures.size()];
  return {"", fmt::format("  {}  {}", styled(Color::boldBlue, picture), text), ""};
}

std::string overlayHint(std::string_view text) { return styled(Color::dim, text); }

}  // namespace halyard
