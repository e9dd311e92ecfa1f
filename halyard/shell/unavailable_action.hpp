#pragma once

#include <string>

namespace halyard {

/// The action of a row that isn't available yet: says so under the row's title and waits.
void showUnavailable(const std::string& title);

}  // namespace halyard
