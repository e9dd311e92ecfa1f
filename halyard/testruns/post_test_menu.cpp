#include "halyard/testruns/post_test_menu.hpp"

namespace halyard {

void postTestMenu(FinishedTestRun /*run*/) {}

}  // namespace halyard
