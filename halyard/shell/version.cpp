#include "halyard/shell/version.hpp"

namespace halyard {

std::string_view programVersion() { return HALYARD_VERSION; }

}  // namespace halyard
