#include "halyard/build/selection_mac.hpp"

#include "core/app_dependencies.hpp"

namespace halyard {

SelectedDevice thisMac() {
  const std::string version = run("sw_vers -productVersion 2>/dev/null");
  return {"My Mac", "local", version.empty() ? "macOS" : "macOS " + version};
}

}  // namespace halyard
