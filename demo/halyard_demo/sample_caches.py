"""What Xcode and its tools have left in the demo's home: folders of believable size that take no room on the disk."""

import os

from halyard_demo.initial import SIMULATORS

MEGABYTE = 1 << 20

# Path below ~/Library, size in megabytes. The files are all hole.
FILES = (
    ("Developer/Xcode/DerivedData/Atlas-bqkzvnfgdprjtcwmhxysbqkzvnfg/Index.noindex/DataStore/v5/records", 860),
    ("Developer/Xcode/DerivedData/Atlas-bqkzvnfgdprjtcwmhxysbqkzvnfg/Build/Intermediates.noindex/Atlas.o", 1290),
    ("Developer/Xcode/DerivedData/Harbor-fmwtcjrpdgfnvzkqbsyxhmwcjrtd/Index.noindex/DataStore/v5/records", 410),
    ("Developer/Xcode/DerivedData/Harbor-fmwtcjrpdgfnvzkqbsyxhmwcjrtd/Build/Intermediates.noindex/Harbor.o", 655),
    ("Developer/Xcode/DerivedData/Lighthouse-ckqvbznhdftgwprjmxsyckqvbznh/Logs/Build/LogStoreManifest.plist", 37),
    ("Developer/Xcode/DerivedData/ModuleCache.noindex/28JNTR7ZQW9FA/SwiftUI-2K9.pcm", 612),
    ("Developer/Xcode/ModuleCache/1XQ0ZKJ4D7M2C/UIKit-3VX.pcm", 238),
    ("Developer/Xcode/Previews/Simulator Devices/device_set.plist", 96),
    ("Caches/com.apple.dt.Xcode/Downloads/index.dmg", 172),
    ("Caches/org.swift.swiftpm/repositories/TideTables-5d1c8a2f/objects/pack/pack-1.pack", 341),
    ("Caches/org.swift.swiftpm/manifests/manifest.db", 4),
    ("org.swift.swiftpm/security/fingerprints.json", 1),
    ("Developer/Xcode/SourcePackages/checkouts/TideTables/archive.tar", 128),
    ("Developer/CoreSimulator/Caches/dyld/22C150/dyld_sim_shared_cache", 2240),
    ("Logs/CoreSimulator/CoreSimulator.log", 6),
    ("Developer/Xcode/Archives/2024-11-20/Harbor 20.11.24, 10.15.xcarchive/dSYMs/Harbor.dSYM", 84),
    ("Developer/Xcode/iOS DeviceSupport/iPhone16,1 18.2 (22C152)/Symbols/dyld_shared_cache_arm64e", 4710),
    ("Developer/Xcode/iOS DeviceSupport/iPad14,8 17.7 (21H16)/Symbols/dyld_shared_cache_arm64e", 4380),
    ("Developer/Xcode/Logs/IDEActivity.log", 22),
    ("Logs/DiagnosticReports/harbor_2024-11-28-091202.diag", 3),
    ("Caches/CocoaPods/Pods/Release/Anchor/2.1.0.zip", 210),
    ("Caches/org.carthage.CarthageKit/dependencies/Buoy/pack", 88),
)


def fill(home):
    library = os.path.join(home, "Library")
    for path, megabytes in FILES:
        make_hole(os.path.join(library, path), megabytes)
    for number, simulator in enumerate(SIMULATORS):
        make_hole(os.path.join(library, "Developer/CoreSimulator/Devices", simulator[3], "data/Library/Caches/system"),
                  380 + 145 * number)


def make_hole(path, megabytes):
    if os.path.exists(path):
        return
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.truncate(megabytes * MEGABYTE)
