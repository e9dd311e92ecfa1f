#include "halyard/exec/usable_home.hpp"

#include <cstdlib>
#include <string>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/platform/home_directory.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

bool requireUsableHome() {
  if (homeIsUsable()) return true;
  const char* home = std::getenv("HOME");
  printErrorDetail(localized("home_not_usable"), "HOME=" + displaySafe(home == nullptr ? "" : home),
                   localized("home_not_usable_reason"), localized("home_not_usable_hint"));
  return false;
}

}  // namespace halyard
