#include "halyard/build/active_target.hpp"

#include "core/app_context.hpp"

namespace halyard {

std::optional<ActiveTarget> activeTarget() {
  if (const auto& device = selectedPhysicalDevice(); device && lastSelectedDeviceKind() == "physical") {
    return ActiveTarget{device->udid, device->name, osLabel(*device), ActiveTarget::Kind::physical};
  }
  if (const auto& device = selectedDevice()) {
    const auto kind = device->udid == "local" ? ActiveTarget::Kind::mac : ActiveTarget::Kind::simulator;
    return ActiveTarget{device->udid, device->name, device->osLabel, kind};
  }
  return std::nullopt;
}

}  // namespace halyard
