#include "halyard/shell/inline_actions.hpp"

#include <string>

#include "core/string_catalog.hpp"
#include "halyard/shell/unavailable_action.hpp"

namespace halyard {

void selectSchemeFromMenu() { showUnavailable(std::string(localized("select_scheme"))); }

void selectTestSchemeFromMenu() { showUnavailable(std::string(localized("select_test_target"))); }

void selectDeviceFromMenu() { showUnavailable(std::string(localized("select_device"))); }

void selectConfigurationFromMenu() { showUnavailable(std::string(localized("configuration"))); }

void askBundleIDFromMenu() { showUnavailable("Bundle-ID"); }

}  // namespace halyard
