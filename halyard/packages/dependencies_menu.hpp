// The menu of the dependencies: the overview of the three managers, and all of them at once.
#pragma once

namespace halyard {

/// Menu action: the sub-menu.
void showDependenciesMenu();
/// Menu action: finds the managers, asks, and resolves with each.
void resolveAllDependencies();
/// The same without the question and the wait at the end, for flows that have asked already.
bool resolveDetectedDependencies();

}  // namespace halyard
