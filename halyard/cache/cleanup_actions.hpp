// Cleanups of rising severity, from what comes back by itself to nearly everything that Xcode has stored. Each asks
// twice before anything goes.
#pragma once

namespace halyard {

void runSafeCleanup();
void runDeepCleanup();
/// Asks for the simulator runtimes at its end.
void runCompleteCleanup();
/// The same, with the packages' checkouts and the caches of CocoaPods and Carthage, whatever the project uses.
void runFullReset();

}  // namespace halyard
