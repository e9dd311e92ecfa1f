// Any output moves the rows of a tool forward only, and every frame of them is fit for a terminal. The first byte
// chooses the tool.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "core/text.hpp"
#include "halyard/packages/package_live.hpp"
#include "halyard/terminal/screen.hpp"

namespace {

using namespace halyard;

int rank(SPMResolveStatus status) { return static_cast<int>(status); }

void checkFrame(const PackageTable& table) {
  std::string frame = stripAnsi(packageFrame(table, 12, 40));
  replaceAll(frame, "\n", "");
  if (displaySafe(frame) != frame) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  PackageTable table{.tool = static_cast<PackageTool>(data[0] % 3)};
  table.rows = {{"lantern", "https://example.com/Lantern.git"}, {"Rope/Core", ""}, {"Beacon", ""}};
  table.rows.push_back({std::string(text.substr(0, 40)), ""});
  for (const std::string_view line : splitLines(text)) {
    const std::vector<PackageRow> before = table.rows;
    table.takeLine(line);
    for (std::size_t i = 0; i < before.size(); ++i) {
      if (rank(table.rows[i].status) < rank(before[i].status)) std::abort();
    }
  }
  checkFrame(table);
  if (packageErrorLines(table.tool, text).size() > 12) std::abort();
  table.finish((data[0] & 4U) != 0);
  if (table.count(SPMResolveStatus::loading) != 0) std::abort();
  return 0;
}
