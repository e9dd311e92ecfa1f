#include "halyard/platform/user_defaults_source.hpp"

namespace halyard {

std::optional<std::string> systemGlobalUserDefault(std::string_view) { return std::nullopt; }

}  // namespace halyard
