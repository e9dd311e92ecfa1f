#pragma once

#include <functional>
#include <string>
#include <vector>

namespace halyard {

/// One row of the applications group.
struct ApplicationsMenuEntry {
  std::string label;
  std::function<void()> action;
  bool isSeparator = false;
};

/// A row for each application of the fixed table that this machine has.
std::vector<ApplicationsMenuEntry> applicationsMenuEntries();

}  // namespace halyard
