// Every folder that Xcode and its tools fill, with its size.
#pragma once

namespace halyard {

/// Menu action: looks into a place, deletes one, or all.
void showAllCaches();

}  // namespace halyard
