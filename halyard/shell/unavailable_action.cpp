#include "halyard/shell/unavailable_action.hpp"

#include "core/string_catalog.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

void showUnavailable(const std::string& title) {
  printActionHeader(stripAnsi(title), {});
  printLine();
  printInfo(localized("not_available_yet"));
  waitForBack();
}

}  // namespace halyard
