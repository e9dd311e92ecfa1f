// What a long list of simulators costs: 5,000 devices, 2 MB of JSON, read, sorted and drawn. The target: 40 ms of
// processor time.
#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "halyard/build/simulator_list.hpp"
#include "halyard/build/simulator_selection.hpp"

namespace {

constexpr int deviceCount = 5000;
constexpr int perRuntime = 250;
constexpr int rounds = 31;
constexpr double target = 40e-3;

double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

std::string device(int number) {
  const bool isPhone = number % 3 != 0;
  const std::string udid = fmt::format("{:08X}-1C2D-4E3F-8A5B-{:012X}", number * 2654435761U, number);
  const std::string home = R"(\/Users\/demo\/Library\/Developer\/CoreSimulator\/Devices\/)" + udid;
  return fmt::format(
      R"({{"lastBootedAt":"2026-01-01T10:00:00Z","dataPath":"{}\/data","dataPathSize":18337792,"logPath":"{}\/log",)"
      R"("udid":"{}","isAvailable":{},"deviceTypeIdentifier":"com.apple.CoreSimulator.SimDeviceType.{}-{}",)"
      R"("state":"{}","name":"{} {} Pro"}})",
      home, home, udid, number % 7 != 0, isPhone ? "iPhone" : "iPad", number % 40,
      number % 50 == 0 ? "Booted" : "Shutdown", isPhone ? "iPhone" : "iPad", number % 40);
}

std::string document() {
  std::string text = R"({"devices":{)";
  for (int i = 0; i < deviceCount; ++i) {
    if (i % perRuntime == 0) {
      text += fmt::format("{}\"com.apple.CoreSimulator.SimRuntime.iOS-{}-{}\":[", i == 0 ? "" : "],",
                          9 + i / perRuntime / 2, i / perRuntime % 2);
    } else {
      text += ',';
    }
    text += device(i);
  }
  return text + "]}}";
}

}  // namespace

int main() {
  halyard::loadStringCatalog("");
  const std::string json = document();
  std::vector<double> reading, whole;
  std::size_t drawn = 0;
  for (int round = 0; round < rounds; ++round) {
    const double begun = processorSeconds();
    halyard::SimulatorListing listing;
    listing.showsAll = true;
    auto simulators = halyard::readSimulatorJson(json);
    const double read = processorSeconds();
    listing.simulators = halyard::arrangedSimulators(std::move(simulators), true, "type");
    drawn = halyard::drawSimulatorListing(listing).size();
    whole.push_back(processorSeconds() - begun);
    reading.push_back(read - begun);
    if (listing.simulators.size() != deviceCount) std::abort();
  }
  std::ranges::sort(reading);
  std::ranges::sort(whole);
  fmt::print("{} simulators, {} bytes of JSON, {} bytes drawn\n", deviceCount, json.size(), drawn);
  fmt::print("read       min {:.2f}  median {:.2f}  max {:.2f} ms\n", reading.front() * 1e3, reading[rounds / 2] * 1e3,
             reading.back() * 1e3);
  fmt::print("and shown  min {:.2f}  median {:.2f}  max {:.2f} ms  (target {:.0f}: {})\n", whole.front() * 1e3,
             whole[rounds / 2] * 1e3, whole.back() * 1e3, target * 1e3, whole[rounds / 2] <= target ? "met" : "MISSED");
  return whole[rounds / 2] <= target ? 0 : 1;
}
