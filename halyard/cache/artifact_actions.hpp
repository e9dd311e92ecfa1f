// What package managers leave in the project's own folder.
#pragma once

namespace halyard {

/// Pods/ and Podfile.lock.
void deletePodsArtifacts();
/// Carthage/Build and Carthage/Checkouts; the folder Carthage itself stays.
void deleteCarthageArtifacts();

}  // namespace halyard
