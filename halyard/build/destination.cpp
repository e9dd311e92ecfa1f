#include "halyard/build/destination.hpp"

#include "halyard/build/active_target.hpp"
#include "halyard/build/scheme_platforms.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace {

std::string destinationFor(std::string_view platform, std::string_view udid) {
  return "-destination " + shellQuote("platform=" + std::string(platform) + ",id=" + std::string(udid));
}

}  // namespace

std::string destinationArgument(std::optional<std::string_view> udid, SchemePlatforms platforms) {
  if (isMacOnly(platforms)) return std::string(macDestination);
  const auto target = activeTarget();
  if (target && target->kind == ActiveTarget::Kind::physical) return destinationFor("iOS", udid.value_or(target->udid));
  const std::string_view chosen = target ? std::string_view(target->udid) : "local";
  const std::string_view wanted = udid.value_or(chosen);
  if (wanted == "local" && platforms.macCatalyst) return std::string(macDestination);
  // Without a Mac in the scheme "local" goes out as it is, and xcodebuild says what is wrong with it.
  return destinationFor("iOS Simulator", wanted);
}

std::string destinationArgument(std::optional<std::string_view> udid) {
  return destinationArgument(udid, schemePlatforms());
}

std::string genericDestination() {
  return std::string(isMacOnly(schemePlatforms()) ? genericMacDestination : genericSimulatorDestination);
}

std::string provisioningArgument() {
  const auto target = activeTarget();
  const bool isPhysical = target && target->kind == ActiveTarget::Kind::physical;
  return isPhysical ? "-allowProvisioningUpdates" : "";
}

}  // namespace halyard
