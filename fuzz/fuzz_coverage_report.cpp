// Any bytes read as a coverage report without a fault; what is read is in bounds, and what is drawn obeys nothing.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "core/text.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/testruns/coverage_data.hpp"
#include "halyard/testruns/coverage_drawing.hpp"
#include "halyard/testruns/coverage_tree.hpp"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

bool isFraction(double value) { return value >= 0 && value <= 1; }

/// Nothing but line feeds is left of control characters when our own colours are gone.
void requireHarmless(const std::string& drawn) {
  const std::string plain = halyard::stripAnsi(drawn);
  for (const std::string_view line : halyard::splitLines(plain)) {
    require(halyard::displaySafe(line) == line);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace halyard;
  const auto targets = readCoverageReport({reinterpret_cast<const char*>(data), size});
  if (!targets) return 0;
  std::vector<std::string> files;
  for (const CoverageTarget& target : *targets) {
    require(!target.name.empty() && isFraction(target.coverage));
    for (const CoverageFile& file : target.files) {
      require(!file.name.empty() && isFraction(file.coverage));
      require(file.coveredLines >= 0 && file.coveredLines <= file.executableLines);
      files.push_back(file.path.empty() ? file.name : file.path);
    }
  }
  require(isFraction(linesOf(*targets).coverage()));
  requireHarmless(drawCoverageTable(*targets, true));
  const CoverageNode tree = coverageTree(files, "/w", *targets);
  require(tree.lines.covered >= 0 && tree.lines.covered <= tree.lines.executable);
  requireHarmless(drawCoverageTree(tree));
  return 0;
}
