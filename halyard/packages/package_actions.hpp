// One menu action per command of a package manager. Each ends by waiting for a key.
#pragma once

namespace halyard {

void showPackageGraph();
void showPackageResolved();
void resolveSPMPackages();
void updateSPMPackages();
void cleanSPMCache();

void showPods();
void showPodfileLock();
void installPods();
void updatePods();
void cleanPodCache();

void showFrameworks();
void showCartfileResolved();
void bootstrapFrameworks();
void updateFrameworks();
void showOutdatedFrameworks();
void buildFrameworks();
void cleanFrameworkBuilds();

}  // namespace halyard
