#pragma once

#include <string_view>

namespace halyard {

/// The version that CMakeLists.txt names.
std::string_view programVersion();

}  // namespace halyard
