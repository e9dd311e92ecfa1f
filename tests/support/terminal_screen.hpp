// What a person would see: the program's output as a terminal shows it, cell by cell.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// A colour as the program asked for it: none, one of the palette (0 to 255), or by its parts.
struct CellColor {
  enum class Kind { standard, indexed, rgb };
  Kind kind = Kind::standard;
  int index = 0;
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  static CellColor indexed(int number) { return {Kind::indexed, number, 0, 0, 0}; }
  static CellColor rgb(std::uint8_t r, std::uint8_t g, std::uint8_t b) { return {Kind::rgb, 0, r, g, b}; }
  bool operator==(const CellColor&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const CellColor& color);

struct ScreenCell {
  std::string text = {};  ///< with its combining characters; empty where nothing was written
  int width = 1;          ///< 2 for a wide character; the cell behind it is passed over
  CellColor foreground = {};
  CellColor background = {};
  bool bold = false;
  bool dim = false;
  bool italic = false;
  bool underline = false;
  bool reverse = false;
  bool strike = false;

  bool operator==(const ScreenCell&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const ScreenCell& cell);

/// Rows and columns count from 0.
struct CellPosition {
  int row = 0;
  int column = 0;
  bool operator==(const CellPosition&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const CellPosition& position);

/// The emulated terminal (libvterm). Not locked: its owner sees to that.
class TerminalScreen {
 public:
  TerminalScreen(int rowCount, int columnCount);
  ~TerminalScreen();
  TerminalScreen(const TerminalScreen&) = delete;
  TerminalScreen& operator=(const TerminalScreen&) = delete;

  /// Takes output; sequences and characters may be split anywhere.
  void feed(std::string_view output);
  /// What the terminal has to say to the program (a cursor report, say) since the last call.
  std::string takeAnswers();
  void resize(int rowCount, int columnCount);

  [[nodiscard]] int rowCount() const;
  [[nodiscard]] int columnCount() const;
  /// A row's text without the blanks at its end.
  [[nodiscard]] std::string row(int number) const;
  [[nodiscard]] std::vector<std::string> rows() const;
  /// All rows up to the last that isn't empty, each with a line feed.
  [[nodiscard]] std::string text() const;
  [[nodiscard]] bool contains(std::string_view text) const;
  /// Where a text begins, in cells; row -1 where it isn't shown. It doesn't span rows.
  [[nodiscard]] CellPosition find(std::string_view text) const;

  [[nodiscard]] ScreenCell cell(int row, int column) const;
  /// The cell in which a text begins; an empty cell where it isn't shown.
  [[nodiscard]] ScreenCell cellOf(std::string_view text) const;

  [[nodiscard]] bool cursorVisible() const;
  [[nodiscard]] CellPosition cursor() const;
  [[nodiscard]] bool alternateScreen() const;
  [[nodiscard]] const std::string& title() const;
  [[nodiscard]] int bellCount() const;

 private:
  struct Emulator;
  std::unique_ptr<Emulator> emulator_;
};

}  // namespace halyard
