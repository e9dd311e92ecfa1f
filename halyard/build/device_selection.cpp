#include "halyard/device/device_selection.hpp"

#include <array>

#include "core/string_catalog.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/build/selection_prompt.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct DeviceKind {
  std::string_view value;
  std::string_view labelKey;
};

constexpr auto deviceKinds = std::to_array<DeviceKind>({
    {"simulator", "device_kind_simulator"},
    {"physical", "device_kind_physical"},
});

}  // namespace

std::optional<std::string> chooseDeviceKind() {
  printLine();
  printSection(localized("choose_device_kind"));
  for (std::size_t i = 0; i < deviceKinds.size(); ++i) {
    printLine(listRow(i, localized(deviceKinds.at(i).labelKey), false));
  }
  printLine("  " + listOrder('x', localized("menu_back")));
  const ListAnswer answer = askList({.labelKey = "choice", .rowCount = deviceKinds.size()});
  if (answer.kind == ListAnswer::Kind::invalid) {
    printInvalidSelection();
    waitForBack();
  }
  if (answer.kind != ListAnswer::Kind::row) return std::nullopt;
  return std::string(deviceKinds.at(answer.row).value);
}

void selectDevice() {
  const auto kind = chooseDeviceKind();
  if (!kind) return;
  *kind == "physical" ? selectPhysicalDevice() : selectSimulator();
}

void selectPhysicalDevice() {
  if (pickPhysicalDevice() != DevicePick::left) waitForBack();
}

}  // namespace halyard
