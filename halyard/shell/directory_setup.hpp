// The guided sequence for entering a new project.
#pragma once

namespace halyard {

/// The steps that other features bring; null: not there yet, which the set-up says in its place.
struct DirectorySetupSteps {
  void (*resolveDependencies)() = nullptr;
  void (*selectScheme)() = nullptr;
  void (*selectTestScheme)() = nullptr;
  void (*selectDevice)() = nullptr;
};
void installDirectorySetupSteps(const DirectorySetupSteps& steps);

/// Menu action: the project file, the caches to delete, dependencies, schemes and device.
void runDirectorySetup();

}  // namespace halyard
