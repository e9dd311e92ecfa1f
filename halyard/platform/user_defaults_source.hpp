// Where user_defaults.cpp gets the real values from; one source per system.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace halyard {

std::optional<std::string> systemGlobalUserDefault(std::string_view key);

}  // namespace halyard
