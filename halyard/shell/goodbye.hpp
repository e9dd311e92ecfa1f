#pragma once

#include <string>

namespace halyard {

/// The farewell screen.
std::string goodbyeFrame();

/// Gives the terminal back, shows the farewell screen and ends the process with status 0.
[[noreturn]] void quitWithGoodbye();

}  // namespace halyard
