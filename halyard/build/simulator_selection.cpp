#include "halyard/build/simulator_selection.hpp"

#include <algorithm>
#include <array>
#include <functional>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/scheme_platforms.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/build/selection_mac.hpp"
#include "halyard/build/selection_prompt.hpp"
#include "halyard/exec/with_spinner.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr int nameWidth = 34;
constexpr int systemWidth = 12;

struct SimulatorSort {
  std::string_view value;
  std::string_view labelKey;
};

constexpr auto simulatorSorts = std::to_array<SimulatorSort>({
    {"name", "sim_sort_by_name"},
    {"os", "sim_sort_by_os"},
    {"type", "sim_sort_by_type"},
});

const SimulatorSort& sortNamed(std::string_view value) {
  const auto* found = std::ranges::find(simulatorSorts, value, &SimulatorSort::value);
  return found == simulatorSorts.end() ? simulatorSorts.front() : *found;
}

/// Outlives the screen: whoever wanted to see all wants to see them next time too.
bool& showsAllSimulators() {
  static bool showsAll = false;
  return showsAll;
}

struct StateLook {
  std::string_view color;
  std::string_view symbol;
  std::string_view labelKey;
};

// By state.
constexpr std::array<StateLook, 3> stateLooks = {{
    {Color::boldGreen, "● ", "sim_state_booted"},
    {Color::dim, "  ○ ", "sim_state_shutdown"},
    {Color::dim, "  ✗ ", "sim_runtime_missing"},
}};
static_assert(static_cast<std::size_t>(SimInfo::State::unavailable) + 1 == stateLooks.size());

void appendHead(std::string& text, const SimulatorListing& listing) {
  text += fmt::format("\n  {}{}{}\n", Color::bold, localized("available_devices"), Color::reset);
  text += fmt::format("  {}{}: {}  │  {}: {}{}\n", Color::dim, localized("sim_filter_label"),
                      localized(listing.showsAll ? "sim_filter_all" : "sim_filter_active"), localized("sim_sort_label"),
                      localized(sortNamed(listing.sort).labelKey), Color::reset);
  text +=
      fmt::format("  {}{}{}\n", Color::dim,
                  localized(listing.isUniversal ? "sim_platform_universal" : "sim_platform_ios_ipados"), Color::reset);
  text += fmt::format("{}{}{}\n", Color::blue, repeated("─", Layout::ruleWidth), Color::reset);
}

void appendRow(std::string& text, std::size_t index, const SimInfo& simulator, bool isCurrent) {
  const StateLook& look = stateLooks[static_cast<std::size_t>(simulator.state)];
  text += listRow(index,
                  fmt::format("{} {} {}{}{}{}", padVisible(displaySafe(simulator.name), nameWidth),
                              padVisible(displaySafe(simulator.osLabel), systemWidth), look.color, look.symbol,
                              localized(look.labelKey), Color::reset),
                  isCurrent);
  text += '\n';
}

void appendRows(std::string& text, const SimulatorListing& listing) {
  std::size_t index = 0;
  if (listing.mac) {
    const std::string label =
        fmt::format("{} {} — native", padVisible(listing.mac->name, nameWidth), displaySafe(listing.mac->osLabel));
    text += listRow(index++, label, listing.currentUdid == listing.mac->udid) + "\n";
  }
  bool inUnavailable = false;
  for (const SimInfo& simulator : listing.simulators) {
    if (!inUnavailable && simulator.state == SimInfo::State::unavailable) {
      inUnavailable = true;
      text += fmt::format("\n  {}── {} ──{}\n", Color::dim, localized("sim_unavailable_section"), Color::reset);
    }
    appendRow(text, index++, simulator, simulator.udid == listing.currentUdid);
  }
  if (index == 0) text += fmt::format("  {}{}{}\n", Color::dim, localized("no_devices_found"), Color::reset);
}

void appendOrders(std::string& text, const SimulatorListing& listing) {
  text += "\n  ";
  if (listing.selects) text += listOrder('-', localized("sim_action_clear")) + "  ";
  text += listOrder('+', localized(listing.showsAll ? "sim_filter_active" : "sim_filter_all")) + "  ";
  text += listOrder('s', localized("sim_sort_title")) + "  ";
  if (listing.selects) text += listOrder('0', localized("device_kind_physical")) + "  ";
  text += listOrder('x', localized("menu_back")) + "\n";
}

void chooseSort() {
  printLine();
  printSection(localized("sim_sort_title"));
  for (std::size_t i = 0; i < simulatorSorts.size(); ++i) {
    const SimulatorSort& sort = simulatorSorts.at(i);
    printLine(listRow(i, localized(sort.labelKey), sortNamed(selectedSimSort()).value == sort.value));
  }
  printLine("  " + listOrder('x', localized("menu_back")));
  const ListAnswer answer = askList({.labelKey = "choice", .rowCount = simulatorSorts.size()});
  if (answer.kind != ListAnswer::Kind::row) return;
  setSelectedSimSort(std::string(simulatorSorts.at(answer.row).value));
  keepPreferences();
}

void useDevice(const SelectedDevice& device) {
  setSelectedDevice(device);
  setLastSelectedDeviceKind("simulator");
  keepPreferences();
  printSuccess(
      fmt::format("{} {} ({})", localized("device_set"), displaySafe(device.name), displaySafe(device.osLabel)));
  waitForBack();
}

void clearDevice() {
  setSelectedDevice({});
  keepPreferences();
  printSuccess(localized("device_cleared"));
  waitForBack();
}

void printScreenHeader() {
  printActionHeader(localized("select_device"), localized("select_simulator_device_description"));
}

void load(SimulatorListing& listing) {
  listing.showsAll = showsAllSimulators();
  listing.sort = selectedSimSort();
  listing.simulators = arrangedSimulators(withSpinner(std::string(localized("sim_status_loading")), listSimulators),
                                          listing.showsAll, listing.sort);
}

/// Lists and asks until a row, or an order that ends the screen, is chosen. Filter and sort go round here.
ListAnswer chooseFrom(SimulatorListing& listing) {
  bool wasInvalid = false;
  for (;;) {
    load(listing);
    print(drawSimulatorListing(listing));
    if (wasInvalid) printInvalidSelection();
    const ListAnswer answer = askList(
        {.labelKey = "select_device", .rowCount = listing.rowCount(), .orders = listing.selects ? "-+s0" : "+s"});
    wasInvalid = answer.kind == ListAnswer::Kind::invalid;
    if (answer.kind == ListAnswer::Kind::order && answer.order == '+') {
      showsAllSimulators() = !showsAllSimulators();
    } else if (answer.kind == ListAnswer::Kind::order && answer.order == 's') {
      chooseSort();
    } else if (!wasInvalid) {
      return answer;
    }
    printScreenHeader();
  }
}

SelectedDevice deviceOfRow(const SimulatorListing& listing, std::size_t row) {
  if (listing.mac && row == 0) return *listing.mac;
  const SimInfo& simulator = listing.simulators[row - (listing.mac ? 1 : 0)];
  return {simulator.name, simulator.udid, simulator.osLabel};
}

}  // namespace

void resetSimulatorFilter() { showsAllSimulators() = false; }

std::vector<SimInfo> arrangedSimulators(std::vector<SimInfo> simulators, bool showsAll, std::string_view sort) {
  const auto canRun = [](const SimInfo& simulator) { return simulator.state != SimInfo::State::unavailable; };
  if (!showsAll) std::erase_if(simulators, std::not_fn(canRun));
  sortSimulators(simulators, sort);
  std::ranges::stable_partition(simulators, canRun);
  return simulators;
}

std::string drawSimulatorListing(const SimulatorListing& listing) {
  std::string text;
  text.reserve(1024 + listing.rowCount() * 160);
  appendHead(text, listing);
  appendRows(text, listing);
  appendOrders(text, listing);
  return text;
}

void selectSimulator() {
  printScreenHeader();
  const SchemePlatforms platforms = knownSchemePlatforms();
  if (isMacOnly(platforms)) {
    printInfo(localized("is_a_macos_app"));
    return useDevice(thisMac());
  }
  SimulatorListing listing;
  listing.isUniversal = isUniversal(platforms);
  if (listing.isUniversal) listing.mac = thisMac();
  if (const auto& device = selectedDevice()) listing.currentUdid = device->udid;
  const ListAnswer answer = chooseFrom(listing);
  if (answer.kind == ListAnswer::Kind::row) return useDevice(deviceOfRow(listing, answer.row));
  if (answer.kind != ListAnswer::Kind::order) return;
  answer.order == '0' ? selectPhysicalDevice() : clearDevice();
}

std::optional<SimInfo> pickSimulator(std::string_view currentUdid) {
  printScreenHeader();
  SimulatorListing listing;
  listing.currentUdid = currentUdid;
  listing.selects = false;
  const ListAnswer answer = chooseFrom(listing);
  if (answer.kind != ListAnswer::Kind::row) return std::nullopt;
  return listing.simulators[answer.row];
}

}  // namespace halyard
