// Runs a manager's tool with its rows on the screen.
#pragma once

#include <functional>
#include <string>

#include "halyard/packages/package_live.hpp"

namespace halyard {

struct PackageRun {
  PackageTool tool = PackageTool::spm;
  std::string title;  ///< of the action; stands in the result
  std::string command;
  double timeout = 0;  ///< seconds; 0: none
  std::string successText;
  std::string failureText;
  std::function<PackageTable()> seed = {};  ///< the rows to begin with, read anew for each attempt; empty: none
};

/// Runs with the table in place, then prints the result. After a failure the error lines and the choice to try again;
/// true once it has succeeded, false where the user leaves or aborts it.
bool runPackagesLive(const PackageRun& run);

}  // namespace halyard
