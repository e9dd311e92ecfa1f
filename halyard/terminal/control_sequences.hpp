// Where escape sequences begin and end in text that is to be measured, stripped or cut.
#pragma once

#include <cstddef>
#include <string_view>

namespace halyard {

/// Length of the sequence at the start of the text: ESC, "[", digits and semicolons, a letter. 0 where there is none.
std::size_t controlSequenceLength(std::string_view text);
/// The same for colour sequences, whose letter is "m".
std::size_t colorSequenceLength(std::string_view text);

/// Columns that a scalar takes on a terminal: 0, 1 or 2.
int scalarCells(char32_t scalar);

/// One scalar of UTF-8 text. A byte that doesn't decode is one of one byte, shown in one column.
struct ScalarPiece {
  std::size_t length = 1;
  int cells = 1;
};
ScalarPiece scalarAt(std::string_view text);

/// As much of a text without sequences as this many columns of a terminal hold, wide characters counted as two.
std::string_view cellPrefix(std::string_view text, int columns);
/// Columns that a text without sequences takes on a terminal.
int cellWidth(std::string_view text);

}  // namespace halyard
