#include "halyard/device/device_screen.hpp"

#include <optional>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/device/device_names.hpp"
#include "halyard/device/device_selection.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

std::optional<PhysicalDeviceInfo> readyDevice() {
  if (!ensurePhysicalDevice()) return std::nullopt;
  if (!ensureDeviceReachable()) {
    leaveDeviceAction();
    return std::nullopt;
  }
  return selectedPhysicalDevice();
}

}  // namespace

void runDeviceAction(std::string_view titleKey, std::string_view descriptionKey,
                     const std::function<void(const PhysicalDeviceInfo&)>& work) {
  printActionHeader(localized(titleKey), localized(descriptionKey));
  printLine();
  if (const auto device = readyDevice()) work(*device);
  waitForBack();
}

void leaveDeviceAction() { setSuppressBackPrompt(true); }

void printDeviceFailure(std::string_view titleKey, const DeviceCommandResult& result,
                        std::string_view fallbackHintKey) {
  if (operationAborted()) return;
  const std::string detail = result.lastLines();
  printErrorDetail(localized(titleKey), detail.empty() ? std::nullopt : std::optional<std::string_view>(detail),
                   std::nullopt, result.hint(localized(fallbackHintKey)));
}

std::string shownName(const PhysicalDeviceInfo& device) { return displaySafe(deviceDisplayName(device)); }

}  // namespace halyard
