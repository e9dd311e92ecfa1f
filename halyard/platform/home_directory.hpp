#pragma once

#include <string>

namespace halyard {

/// $HOME; without it, what the user database says; "/" where that says nothing.
std::string homeDirectory();

}  // namespace halyard
