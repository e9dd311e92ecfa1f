// The list that a simulator is picked from, apart from the asking.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/app_context.hpp"
#include "halyard/build/simulator_list.hpp"

namespace halyard {

/// What the list shows. Rows are numbered through: the Mac where it is offered, the simulators that can run, the
/// others.
struct SimulatorListing {
  std::optional<SelectedDevice> mac;  ///< the first row of a universal scheme
  std::vector<SimInfo> simulators;    ///< in the order of the rows
  std::string currentUdid;            ///< of the marked row
  bool showsAll = false;
  std::string sort = "name";
  bool isUniversal = false;
  bool selects = true;  ///< with the orders that change the selection

  [[nodiscard]] std::size_t rowCount() const { return simulators.size() + (mac ? 1 : 0); }
};

/// Filters and sorts what the tool listed; those that can't run come last.
std::vector<SimInfo> arrangedSimulators(std::vector<SimInfo> simulators, bool showsAll, std::string_view sort);

/// The whole list with its head and its orders, as it is printed.
std::string drawSimulatorListing(const SimulatorListing& listing);

/// For tests: only available simulators are shown, as at the start.
void resetSimulatorFilter();

}  // namespace halyard
