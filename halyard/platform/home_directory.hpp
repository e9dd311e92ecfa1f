#pragma once

#include <string>

namespace halyard {

/// $HOME; without it, what the user database says; "/" where that says nothing.
std::string homeDirectory();

/// Whether $HOME, which the shell puts in a tilde's place, names a home folder: absolute, and not the root folder in
/// whatever spelling. An empty HOME makes "~/Library" the system's "/Library".
bool homeIsUsable();

}  // namespace halyard
