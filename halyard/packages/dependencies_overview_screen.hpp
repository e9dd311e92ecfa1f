// The page of all three managers with their commands.
#pragma once

#include <optional>
#include <string>

#include "halyard/packages/detection.hpp"

namespace halyard {

/// Sizes of the caches that rows delete; empty while they are computed.
struct PackageCacheSizes {
  std::optional<std::string> spm = {};
  std::optional<std::string> cocoaPods = {};
};

/// Menu action: shows the page until the user leaves it.
void showDependenciesOverview();

/// The page's text below its header.
std::string dependenciesOverview(const DetectedPackageManagers& managers, const PackageCacheSizes& sizes);

}  // namespace halyard
