// Feeds any bytes, line by line, to the live view of a build, and holds what it collects against the lines.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "core/text.hpp"
#include "halyard/build/build_result.hpp"
#include "halyard/build/xcodebuild_formatter.hpp"
#include "halyard/terminal/output.hpp"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void requireMarker(const std::vector<std::string>& lines, std::string_view marker) {
  for (const std::string& line : lines) {
    require(line.find(marker) != std::string::npos && !line.starts_with("//"));
    require(halyard::trimmedBlanks(line) == line);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Into a frame that is never shown: the fuzzer's own lines stay readable.
  halyard::beginFrame();
  const std::string log = halyard::decodedText({reinterpret_cast<const char*>(data), size});
  halyard::XcodeBuildFormatter formatter;
  std::size_t lines = 0;
  for (const std::string_view line : halyard::splitLines(log)) {
    formatter.processLine(line);
    ++lines;
  }
  formatter.finish();
  require(formatter.errorLines().size() + formatter.warningLines().size() <= lines);
  requireMarker(formatter.errorLines(), ": error:");
  requireMarker(formatter.warningLines(), ": warning:");
  require(formatter.targetTimings().empty() == formatter.currentTarget().empty());
  require(!halyard::buildSucceeded(log, 65));
  return 0;
}
