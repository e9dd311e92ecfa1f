#include "halyard/platform/hidden_items.hpp"

namespace halyard {

bool isMarkedHidden(int /*folder*/, const char* /*name*/) { return false; }

}  // namespace halyard
