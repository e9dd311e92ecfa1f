#include "halyard/terminal/terminal_size.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

namespace halyard {

namespace {

winsize windowSize() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) size = {};
  return size;
}

}  // namespace

int terminalRows() {
  const int rows = windowSize().ws_row;
  return rows == 0 ? 40 : rows;
}

int terminalColumns() {
  const int columns = windowSize().ws_col;
  return columns == 0 ? 80 : columns;
}

}  // namespace halyard
