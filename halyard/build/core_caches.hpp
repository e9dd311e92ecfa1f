// What makes Xcode's builds fail most often: the project's own build folder and the caches that all projects share.
#pragma once

#include <vector>

#include "halyard/cache/cache_steps.hpp"
#include "halyard/packages/detection.hpp"

namespace halyard {

/// The project's build folder, then the caches of modules, of the simulators and of Xcode.
std::vector<CacheStep> coreCacheSteps();
/// The downloads of these managers, shared by all projects.
std::vector<CacheStep> managerCacheSteps(const DetectedPackageManagers& managers);

/// Performs coreCacheSteps(), without asking: a line for each.
void deleteCoreCaches();

}  // namespace halyard
