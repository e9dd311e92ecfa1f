#include "halyard/release/distribution_platform.hpp"

#include "core/app_context.hpp"
#include "halyard/build/active_target.hpp"

namespace halyard {

namespace {

AppStoreDistributionPlatform platformOfScheme() {
  const auto& platforms = cachedPlatforms();
  const bool isKnown = platforms && !selectedScheme().empty() && cachedPlatformsScheme() == selectedScheme();
  if (!isKnown || platforms->iOS == platforms->macCatalyst) return AppStoreDistributionPlatform::unknown;
  return platforms->iOS ? AppStoreDistributionPlatform::iOSFamily : AppStoreDistributionPlatform::macOS;
}

}  // namespace

AppStoreDistributionPlatform distributionPlatform() {
  const auto target = activeTarget();
  if (target && target->kind == ActiveTarget::Kind::physical) return AppStoreDistributionPlatform::iOSFamily;
  const AppStoreDistributionPlatform platform = platformOfScheme();
  // The Mac as target decides only what the scheme leaves open.
  const bool isMac = target && target->kind == ActiveTarget::Kind::mac;
  return isMac && platform == AppStoreDistributionPlatform::unknown ? AppStoreDistributionPlatform::macOS : platform;
}

}  // namespace halyard
