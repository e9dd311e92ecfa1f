// Any bytes as what the tools list: no crash, and what is taken holds to its shape. The first byte picks the reader.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "halyard/build/scheme_list.hpp"
#include "halyard/build/scheme_platforms.hpp"
#include "halyard/build/simulator_list.hpp"
#include "halyard/build/simulator_selection.hpp"
#include "halyard/build/test_plan_list.hpp"
#include "halyard/simulator/simulator_runtimes.hpp"

namespace {

using namespace halyard;

void require(bool holds) {
  if (!holds) std::abort();
}

void checkSimulators(const std::vector<SimInfo>& simulators) {
  for (const SimInfo& simulator : simulators) require(!simulator.udid.empty());
  for (const std::string_view order : {"name", "os", "type"}) {
    require(arrangedSimulators(simulators, true, order).size() == simulators.size());
  }
  SimulatorListing listing;
  listing.simulators = simulators;
  require(std::ranges::count(drawSimulatorListing(listing), '\n') >= static_cast<std::ptrdiff_t>(simulators.size()));
}

void checkTestPlans(std::string_view text) {
  const auto known = readTestPlanLines(text);
  for (const TestPlan& plan : readTestPlanFiles(text, known)) {
    require(!plan.name.empty());
    require(std::ranges::find(known, plan.name, &TestPlan::name) == known.end());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  switch (data[0] % 6) {
    case 0: checkSimulators(readSimulatorJson(text)); break;
    case 1: checkSimulators(readSimulatorText(text)); break;
    case 2: static_cast<void>(readRuntimes(text)); break;
    case 3:
      static_cast<void>(readSchemeJson(text));
      static_cast<void>(readSchemeText(text));
      break;
    case 4: {
      const SchemePlatforms platforms = readSupportedPlatforms(text);
      require(platforms.iOS || platforms.macCatalyst);
      static_cast<void>(readsAsCatalyst(text));
      break;
    }
    default: checkTestPlans(text);
  }
  return 0;
}
