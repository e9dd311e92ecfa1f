#include "halyard/terminal/cursor.hpp"

namespace halyard {

std::string cursorTo(int row, int column) {
  return std::string{Cursor::escape, '['} + std::to_string(row) + ";" + std::to_string(column) + "H";
}

}  // namespace halyard
