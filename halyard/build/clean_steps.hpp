// What the flows delete before they build, step by step.
#pragma once

#include <string>
#include <vector>

#include "halyard/packages/detection.hpp"

namespace halyard {

struct CleanStep {
  std::string name;     ///< in the timeline
  std::string info;     ///< what is deleted, in the current language
  std::string command;  ///< its output and status don't matter

  bool operator==(const CleanStep&) const = default;
};

/// The project's own build folder.
CleanStep projectBuildFolderStep();
/// Everything of Xcode's below DerivedData, of all projects.
CleanStep derivedDataStep();
CleanStep moduleCacheStep();
/// Caches that all projects share: of modules, of the simulators, of Xcode.
std::vector<CleanStep> sharedCacheSteps();
/// All of these but the whole of DerivedData, and the caches of the package managers in use.
std::vector<CleanStep> fullCleanSteps(const DetectedPackageManagers& managers);

/// Says each and runs it, as a step of the open phase. False: an abort ended the row, or without a usable home folder
/// there was an error and nothing ran.
bool performCleanSteps(const std::vector<CleanStep>& steps);

}  // namespace halyard
