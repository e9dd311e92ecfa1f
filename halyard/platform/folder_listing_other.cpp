#include "halyard/platform/folder_listing.hpp"

namespace halyard {

bool isHiddenItem(int, const char* name) { return name[0] == '.'; }

}  // namespace halyard
