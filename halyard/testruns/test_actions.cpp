#include "halyard/testruns/test_actions.hpp"

namespace halyard {

void runUnitTests() {}
void runUiTests() {}
void runAllTests() {}
void testWithoutBuilding() {}
void buildForTesting() {}
void runAllTestPlans() {}

}  // namespace halyard
