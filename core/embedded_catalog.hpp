#pragma once

#include <string_view>

namespace halyard {

/// Base64 text of halyard/resources/Localizable.xcstrings as it was when the program was built.
std::string_view embeddedCatalog();

}  // namespace halyard
