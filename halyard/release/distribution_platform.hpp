#pragma once

namespace halyard {

enum class AppStoreDistributionPlatform { iOSFamily, macOS, unknown };

/// The platform that a release of the current selection would be for.
AppStoreDistributionPlatform distributionPlatform();

}  // namespace halyard
