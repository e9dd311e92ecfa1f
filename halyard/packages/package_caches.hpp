// The downloads that the managers keep for all projects.
#pragma once

#include <string>
#include <string_view>

#include "halyard/packages/detection.hpp"

namespace halyard {

/// The question that names the selected caches; empty where none is selected.
std::string packageCacheQuestion(const DetectedPackageManagers& selected);
/// Deletes them and says so. Doesn't ask.
void deletePackageCaches(const DetectedPackageManagers& selected);
/// Asks, then deletes. True after a yes.
bool offerPackageCacheDeletion(const DetectedPackageManagers& selected);

/// The size of a folder as people read it, "1.2G"; "—" where it isn't there. The path may begin with a tilde.
std::string packageCacheSize(std::string_view path);

}  // namespace halyard
