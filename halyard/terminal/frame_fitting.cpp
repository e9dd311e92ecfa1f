#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "halyard/terminal/control_sequences.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/output.hpp"

namespace halyard {

namespace {

struct Place {
  int row = 1;
  int column = 1;
};

/// The next thing in a frame that moves the cursor, or doesn't.
struct Token {
  enum class Kind { text, lineFeed, carriageReturn, move, erase, sequence, control };
  Kind kind = Kind::control;
  std::string_view bytes;
  int cells = 0;  ///< of a text, which is one scalar
  Place target;   ///< of a move
};

int leadingNumber(std::string_view text) {
  int number = 1;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return std::clamp(number, 1, 9999);
}

Place moveTarget(std::string_view sequence) {
  const std::string_view parameters = sequence.substr(2, sequence.size() - 3);
  const std::size_t separator = std::min(parameters.find(';'), parameters.size());
  const std::size_t second = std::min(separator + 1, parameters.size());
  return {leadingNumber(parameters.substr(0, separator)), leadingNumber(parameters.substr(second))};
}

/// Erasing from the cursor on: harmful where the cursor isn't where the frame believes it to be.
bool erasesFromCursor(std::string_view sequence) {
  const char letter = sequence.back();
  if (letter != 'J' && letter != 'K') return false;
  return sequence.size() == 3 || sequence[2] == '0';
}

/// Also of the private sequences, with "?", that switch the cursor.
std::size_t sequenceLength(std::string_view text) {
  if (!text.starts_with(Cursor::privateSequence)) return controlSequenceLength(text);
  const std::size_t last = text.find_first_not_of("0123456789;", Cursor::privateSequence.size());
  return last != std::string_view::npos && (text[last] == 'h' || text[last] == 'l') ? last + 1 : 0;
}

Token nextToken(std::string_view rest) {
  if (rest[0] == '\n') return {Token::Kind::lineFeed, rest.substr(0, 1), 0, {}};
  if (rest[0] == '\r') return {Token::Kind::carriageReturn, rest.substr(0, 1), 0, {}};
  if (const std::size_t length = sequenceLength(rest); length != 0) {
    const std::string_view bytes = rest.substr(0, length);
    if (bytes.back() == 'H' || bytes.back() == 'f') return {Token::Kind::move, bytes, 0, moveTarget(bytes)};
    return {erasesFromCursor(bytes) ? Token::Kind::erase : Token::Kind::sequence, bytes, 0, {}};
  }
  const ScalarPiece piece = scalarAt(rest);
  const bool isControl = piece.length == 1 && static_cast<unsigned char>(rest[0]) < 0x20;
  return {isControl ? Token::Kind::control : Token::Kind::text, rest.substr(0, piece.length), piece.cells, {}};
}

template <typename Take>
void eachToken(std::string_view frame, Take take) {
  while (!frame.empty()) {
    const Token token = nextToken(frame);
    take(token);
    frame.remove_prefix(token.bytes.size());
  }
}

void advance(Place& place, const Token& token) {
  switch (token.kind) {
    case Token::Kind::text: place.column += token.cells; break;
    case Token::Kind::lineFeed: place = {place.row + 1, 1}; break;
    case Token::Kind::carriageReturn: place.column = 1; break;
    case Token::Kind::move: place = token.target; break;
    case Token::Kind::erase:
    case Token::Kind::sequence:
    case Token::Kind::control: break;
  }
}

struct Measures {
  int rows = 0;         ///< down to the last one with text
  int columns = 0;      ///< of the widest row
  int lastFeedRow = 0;  ///< the lowest row that a line feed leaves
};

Measures measured(std::string_view frame) {
  Measures measures;
  Place place;
  eachToken(frame, [&](const Token& token) {
    if (token.kind == Token::Kind::lineFeed) measures.lastFeedRow = std::max(measures.lastFeedRow, place.row);
    advance(place, token);
    if (token.kind != Token::Kind::text) return;
    measures.rows = std::max(measures.rows, place.row);
    measures.columns = std::max(measures.columns, place.column - 1);
  });
  return measures;
}

/// Writes the frame again for a screen that can't hold it.
class FrameFitter {
 public:
  FrameFitter(int rows, int columns, int droppedRows) : rows_(rows), columns_(columns), dropped_(droppedRows) {}

  void take(const Token& token) {
    switch (token.kind) {
      case Token::Kind::text: takeText(token); break;
      case Token::Kind::lineFeed: takeLineFeed(); break;
      case Token::Kind::move: takeMove(token); break;
      case Token::Kind::erase:
        if (onScreen() && place_.column <= columns_) fitted_ += token.bytes;
        break;
      case Token::Kind::carriageReturn:
        if (onScreen() && !atBottom_) fitted_ += token.bytes;
        break;
      case Token::Kind::sequence: fitted_ += token.bytes; break;
      // Kept, an escape could make a sequence with what follows the text that is cut.
      case Token::Kind::control: break;
    }
    if (!atBottom_ || token.kind == Token::Kind::move) advance(place_, token);
  }

  std::string result() && { return std::move(fitted_); }

 private:
  [[nodiscard]] bool onScreen() const { return place_.row > dropped_ && place_.row - dropped_ <= rows_ && !parked_; }

  void takeText(const Token& token) {
    if (!atBottom_ && onScreen() && place_.column + token.cells - 1 <= columns_) fitted_ += token.bytes;
  }

  void takeLineFeed() {
    const int row = place_.row - dropped_;
    atBottom_ = row >= rows_;
    if (row >= 1 && row < rows_) fitted_ += '\n';
  }

  /// A row above the screen is entered at its top, from where the kept rows follow; one below it is its last row, where
  /// nothing may be written.
  void takeMove(const Token& token) {
    const int row = token.target.row - dropped_;
    const int column = std::min(token.target.column, columns_);
    parked_ = row > rows_;
    atBottom_ = false;
    if (row < 1) {
      fitted_ += Cursor::home;
    } else if (row == token.target.row && row <= rows_ && column == token.target.column) {
      fitted_ += token.bytes;
    } else {
      fitted_ += cursorTo(std::min(row, rows_), column);
    }
  }

  int rows_;
  int columns_;
  int dropped_;
  Place place_;
  bool parked_ = false;    ///< moved below the screen
  bool atBottom_ = false;  ///< held back on the last row by a line feed that would have scrolled
  std::string fitted_;
};

}  // namespace

std::string fittedFrame(std::string_view frame, int rows, int columns) {
  const Measures measures = measured(frame);
  const bool fits = measures.rows <= rows && measures.columns <= columns && measures.lastFeedRow < rows;
  if (fits || rows < 1 || columns < 1) return std::string(frame);
  FrameFitter fitter(rows, columns, std::max(measures.rows - rows, 0));
  eachToken(frame, [&](const Token& token) { fitter.take(token); });
  return std::move(fitter).result();
}

}  // namespace halyard
