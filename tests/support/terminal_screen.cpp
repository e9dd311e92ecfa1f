#include "tests/support/terminal_screen.hpp"

#include <algorithm>
#include <ostream>
#include <utility>

#include <vterm.h>

#include "tests/support/dim_filter.hpp"

namespace halyard {

namespace {

void appendUtf8(std::string& text, std::uint32_t scalar) {
  const auto byte = [](std::uint32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); };
  if (scalar < 0x80) {
    text += byte(scalar);
  } else if (scalar < 0x800) {
    text += {byte(0xC0 | scalar >> 6), byte(0x80 | (scalar & 0x3F))};
  } else if (scalar < 0x10000) {
    text += {byte(0xE0 | scalar >> 12), byte(0x80 | (scalar >> 6 & 0x3F)), byte(0x80 | (scalar & 0x3F))};
  } else {
    text += {byte(0xF0 | scalar >> 18), byte(0x80 | (scalar >> 12 & 0x3F)), byte(0x80 | (scalar >> 6 & 0x3F)),
             byte(0x80 | (scalar & 0x3F))};
  }
}

/// Bytes at the end that begin a character whose rest is still to come: the library loses a character that is split.
std::size_t unfinishedTail(std::string_view text) {
  for (std::size_t back = 1; back <= std::min<std::size_t>(3, text.size()); ++back) {
    const auto lead = static_cast<unsigned char>(text[text.size() - back]);
    if ((lead & 0xC0) == 0x80) continue;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    return length > back ? back : 0;
  }
  return 0;
}

CellColor cellColor(const VTermColor& color, bool standard) {
  if (standard) return {};
  if (VTERM_COLOR_IS_INDEXED(&color)) return CellColor::indexed(color.indexed.idx);
  return CellColor::rgb(color.rgb.red, color.rgb.green, color.rgb.blue);
}

}  // namespace

struct TerminalScreen::Emulator {
  VTerm* terminal = nullptr;
  VTermScreen* screen = nullptr;
  DimFilter dimFilter;
  std::string unfinished;
  std::string answers;
  std::string title;
  bool cursorVisible = true;
  bool alternateScreen = false;
  int bellCount = 0;

  static int setProperty(VTermProp property, VTermValue* value, void* user) {
    auto& self = *static_cast<Emulator*>(user);
    if (property == VTERM_PROP_CURSORVISIBLE) self.cursorVisible = value->boolean != 0;
    if (property == VTERM_PROP_ALTSCREEN) self.alternateScreen = value->boolean != 0;
    if (property == VTERM_PROP_TITLE) self.title = value->string;
    return 1;
  }

  static int ringBell(void* user) {
    ++static_cast<Emulator*>(user)->bellCount;
    return 1;
  }

  static void answer(const char* bytes, std::size_t length, void* user) {
    static_cast<Emulator*>(user)->answers.append(bytes, length);
  }

  [[nodiscard]] VTermScreenCell cellAt(int row, int column) const {
    VTermScreenCell cell{};
    vterm_screen_get_cell(screen, VTermPos{row, column}, &cell);
    return cell;
  }

  static std::string textOf(const VTermScreenCell& cell) {
    std::string text;
    for (int index = 0; index < VTERM_MAX_CHARS_PER_CELL && cell.chars[index] != 0; ++index) {
      if (cell.chars[index] <= 0x10FFFF) appendUtf8(text, cell.chars[index]);
    }
    return text;
  }
};

TerminalScreen::TerminalScreen(int rowCount, int columnCount) : emulator_(std::make_unique<Emulator>()) {
  static const VTermScreenCallbacks callbacks = [] {
    VTermScreenCallbacks table{};
    table.settermprop = Emulator::setProperty;
    table.bell = Emulator::ringBell;
    return table;
  }();
  emulator_->terminal = vterm_new(rowCount, columnCount);
  vterm_set_utf8(emulator_->terminal, 1);
  vterm_output_set_callback(emulator_->terminal, Emulator::answer, emulator_.get());
  emulator_->screen = vterm_obtain_screen(emulator_->terminal);
  vterm_screen_enable_altscreen(emulator_->screen, 1);
  vterm_screen_set_callbacks(emulator_->screen, &callbacks, emulator_.get());
  vterm_screen_reset(emulator_->screen, 1);  // the first write crashes without it
}

TerminalScreen::~TerminalScreen() { vterm_free(emulator_->terminal); }

void TerminalScreen::feed(std::string_view output) {
  std::string filtered = std::exchange(emulator_->unfinished, {}) + emulator_->dimFilter.filtered(output);
  const std::size_t whole = filtered.size() - unfinishedTail(filtered);
  emulator_->unfinished = filtered.substr(whole);
  vterm_input_write(emulator_->terminal, filtered.data(), whole);
}

std::string TerminalScreen::takeAnswers() { return std::exchange(emulator_->answers, {}); }

void TerminalScreen::resize(int rowCount, int columnCount) {
  vterm_set_size(emulator_->terminal, rowCount, columnCount);
}

int TerminalScreen::rowCount() const {
  int rowCount = 0;
  int columnCount = 0;
  vterm_get_size(emulator_->terminal, &rowCount, &columnCount);
  return rowCount;
}

int TerminalScreen::columnCount() const {
  int rowCount = 0;
  int columnCount = 0;
  vterm_get_size(emulator_->terminal, &rowCount, &columnCount);
  return columnCount;
}

std::string TerminalScreen::row(int number) const {
  std::string text;
  for (int column = 0, count = columnCount(); column < count;) {
    const VTermScreenCell cell = emulator_->cellAt(number, column);
    const std::string characters = Emulator::textOf(cell);
    text += characters.empty() ? " " : characters;
    column += std::max<int>(cell.width, 1);
  }
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::vector<std::string> TerminalScreen::rows() const {
  std::vector<std::string> result;
  for (int number = 0, count = rowCount(); number < count; ++number) result.push_back(row(number));
  return result;
}

std::string TerminalScreen::text() const {
  std::string result;
  std::string emptyRows;
  for (const std::string& line : rows()) {
    if (line.empty()) {
      emptyRows += '\n';
    } else {
      result += std::exchange(emptyRows, {}) + line + '\n';
    }
  }
  return result;
}

bool TerminalScreen::contains(std::string_view text) const { return find(text).row >= 0; }

CellPosition TerminalScreen::find(std::string_view text) const {
  for (int number = 0, count = rowCount(); number < count; ++number) {
    const std::size_t offset = row(number).find(text);
    if (offset == std::string::npos) continue;
    std::size_t passed = 0;
    int column = 0;
    while (passed < offset) {
      const VTermScreenCell cell = emulator_->cellAt(number, column);
      passed += std::max<std::size_t>(Emulator::textOf(cell).size(), 1);
      column += std::max<int>(cell.width, 1);
    }
    return {number, column};
  }
  return {-1, -1};
}

ScreenCell TerminalScreen::cell(int row, int column) const {
  const VTermScreenCell cell = emulator_->cellAt(row, column);
  ScreenCell result;
  result.text = Emulator::textOf(cell);
  result.width = std::max<int>(cell.width, 1);
  result.foreground = cellColor(cell.fg, VTERM_COLOR_IS_DEFAULT_FG(&cell.fg));
  result.background = cellColor(cell.bg, VTERM_COLOR_IS_DEFAULT_BG(&cell.bg));
  result.bold = cell.attrs.bold != 0;
  result.dim = cell.attrs.font == DimFilter::dimFont;
  result.italic = cell.attrs.italic != 0;
  result.underline = cell.attrs.underline != VTERM_UNDERLINE_OFF;
  result.reverse = cell.attrs.reverse != 0;
  result.strike = cell.attrs.strike != 0;
  return result;
}

ScreenCell TerminalScreen::cellOf(std::string_view text) const {
  const CellPosition position = find(text);
  return position.row < 0 ? ScreenCell{} : cell(position.row, position.column);
}

bool TerminalScreen::cursorVisible() const { return emulator_->cursorVisible; }

CellPosition TerminalScreen::cursor() const {
  VTermPos position{};
  vterm_state_get_cursorpos(vterm_obtain_state(emulator_->terminal), &position);
  return {position.row, position.col};
}

bool TerminalScreen::alternateScreen() const { return emulator_->alternateScreen; }
const std::string& TerminalScreen::title() const { return emulator_->title; }
int TerminalScreen::bellCount() const { return emulator_->bellCount; }

std::ostream& operator<<(std::ostream& stream, const CellColor& color) {
  switch (color.kind) {
    case CellColor::Kind::standard: return stream << "standard";
    case CellColor::Kind::indexed: return stream << "color " << color.index;
    case CellColor::Kind::rgb: break;
  }
  return stream << "rgb " << int{color.red} << ' ' << int{color.green} << ' ' << int{color.blue};
}

std::ostream& operator<<(std::ostream& stream, const ScreenCell& cell) {
  stream << '"' << cell.text << "\" " << cell.foreground << " on " << cell.background;
  const std::pair<bool, const char*> attributes[] = {
      {cell.bold, "bold"},       {cell.dim, "dim"},       {cell.italic, "italic"},  {cell.underline, "underline"},
      {cell.reverse, "reverse"}, {cell.strike, "strike"}, {cell.width == 2, "wide"}};
  for (const auto& [isSet, name] : attributes) {
    if (isSet) stream << ' ' << name;
  }
  return stream;
}

std::ostream& operator<<(std::ostream& stream, const CellPosition& position) {
  return stream << "row " << position.row << ", column " << position.column;
}

}  // namespace halyard
