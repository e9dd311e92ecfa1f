// Measures, cuts and fits any bytes, and holds the results against one another.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/text.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void checkMeasures(std::string_view text, int width) {
  const int visible = halyard::visibleWidth(text);
  require(visible >= 0 && visible <= static_cast<int>(text.size()));
  const std::string padded = halyard::padVisible(text, width);
  require(padded.starts_with(text) && padded.size() - text.size() <= static_cast<std::size_t>(width));
  require(halyard::stripAnsi(text).size() <= text.size());
}

void checkClipping(const std::string& plain, int width) {
  const std::string clipped = halyard::clippedVisible(plain, width);
  require(halyard::visibleWidth(clipped) <= std::max(width, 0) || clipped.find('\x1b') != std::string::npos);
  require(halyard::clippedVisible(plain, static_cast<int>(plain.size())) == plain);
}

void checkFitting(std::string_view frame, int rows, int columns) {
  const std::string fitted = halyard::fittedFrame(frame, rows, columns);
  require(halyard::fittedFrame(fitted, rows, columns) == fitted);
  std::size_t lineFeeds = 0;
  for (const char byte : fitted) lineFeeds += byte == '\n' ? 1U : 0U;
  require(fitted.find('H') != std::string::npos || fitted.find('f') != std::string::npos ||
          lineFeeds < static_cast<std::size_t>(rows));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const int rows = data[0] % 30 + 1;
  const int columns = data[1] % 100 + 1;
  const std::string text(reinterpret_cast<const char*>(data) + 2, size - 2);
  checkMeasures(text, columns);
  checkClipping(halyard::stripAnsi(text), columns);
  checkFitting(text, rows, columns);
  return 0;
}
