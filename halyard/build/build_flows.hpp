// From the selected scheme, configuration and target to a running app: the menu actions round building. Each shows its
// header, asks, works through the phases of a timeline, tells what went wrong, and waits for a key.
#pragma once

namespace halyard {

/// Menu actions; the same for every kind of target. They read the selection and leave `selectedBundleID` set to what
/// was launched last.
void buildAndRunApp();
void buildApp();
/// Deletes the project's build folder, then builds and launches.
void quickResetBuildAndLaunch();
/// Deletes Xcode's caches and those of the package managers in use, resolves, synchronizes, builds and launches.
void fullResetBuildAndLaunch();

/// Launches what was built last, without building.
void launchLastBuiltApp();
/// The same on the selected simulator, whatever kind of target is active; with none selected the user picks one.
void launchLastBuiltAppOnSimulator();

/// Asks step by step what to delete, and whether to resolve the dependencies anew.
void guidedClean();
/// `xcodebuild clean` for the selected scheme.
void cleanBuild();
void showBuildSettings();
void runPreBuildChecks();

/// The two prompts that the letters of the menu open.
void selectBuildConfiguration();
void askForBundleIdentifier();

}  // namespace halyard
