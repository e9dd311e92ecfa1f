// The menu actions that build and run the tests of the selected scheme.
#pragma once

namespace halyard {

// Each shows its header, asks, works through the phases of a timeline, and goes on with postTestMenu().

void runUnitTests();
/// On a Mac, which the tests then take over, warns and asks first.
void runUiTests();
void runAllTests();
/// What was built last for testing.
void testWithoutBuilding();

/// Builds only; ends with the summary of the build.
void buildForTesting();
/// Builds once, runs each plan of the test scheme, and ends with a summary of all.
void runAllTestPlans();

}  // namespace halyard
