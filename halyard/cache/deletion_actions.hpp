// Menu actions that delete one place, or all of Xcode's at once, after asking.
#pragma once

namespace halyard {

/// One place each, with its size in the question.
enum class SingleDeletion {
  projectBuildFolder,
  derivedData,
  simulators,
  moduleCache,
  simulatorCache,
  swiftPMCache,
  xcodeCaches,
  cocoaPodsCache,
  carthageCache,
};
void runSingleDeletion(SingleDeletion which);

void deleteProjectBuildFolder();
void deleteDerivedData();

/// The project's build folder and Xcode's caches.
void deleteCachesWithoutPackageManagers();
/// The same and the caches of the package managers that the project uses.
void deleteAllCachesInclPackageManagers();

}  // namespace halyard
