// Any bytes as a scheme file: its test targets are read without harm, each once, and parted by their names.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "halyard/testruns/test_targets.hpp"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> targets = halyard::readTestTargets({reinterpret_cast<const char*>(data), size});
  require(std::set<std::string>(targets.begin(), targets.end()).size() == targets.size());
  const halyard::TestTargetKinds kinds = halyard::partedTestTargets(targets);
  require(kinds.unit.size() + kinds.ui.size() <= targets.size());
  for (const std::string& target : targets) require(!target.empty());
  return 0;
}
