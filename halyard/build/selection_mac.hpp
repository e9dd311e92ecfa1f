// This Mac as a device to build for.
#pragma once

#include "core/app_context.hpp"

namespace halyard {

/// "My Mac" with the system's version, which is asked for.
SelectedDevice thisMac();

}  // namespace halyard
