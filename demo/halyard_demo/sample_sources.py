"""The text of the sample app's files, but for its project and schemes."""

import json

from halyard_demo.sample_ids import identifier

GITIGNORE = """.DS_Store
xcuserdata/
build/
DerivedData/
*.xcresult
"""

README = """# Harbor

Which boat lies where, and for how long.
"""

WORKSPACE_DATA = """<?xml version="1.0" encoding="UTF-8"?>
<Workspace
   version = "1.0">
   <FileRef
      location = "self:">
   </FileRef>
</Workspace>
"""

APP = """import SwiftUI

@main
struct HarborApp: App {
    var body: some Scene {
        WindowGroup {
            ContentView()
        }
    }
}
"""

FIRST_VIEW = """import SwiftUI

struct ContentView: View {
    var body: some View {
        Text("Welcome to the harbor")
            .padding()
    }
}

#Preview {
    ContentView()
}
"""

LIST_VIEW = """import SwiftUI

struct ContentView: View {
    @State private var berths = Berth.samples

    var body: some View {
        NavigationStack {
            List(berths) { berth in
                LabeledContent(berth.boat, value: berth.title)
            }
            .navigationTitle("Berths")
        }
    }
}

#Preview {
    ContentView()
}
"""

BERTH = """import Foundation

/// A place at the pier and the boat that lies there.
struct Berth: Identifiable, Equatable {
    let id: Int
    var boat: String
    var nights: Int

    var title: String { "Berth \\(id)" }

    /// What the boat owes, in cents. The seventh night is free.
    func fee(perNight: Int) -> Int {
        (nights - nights / 7) * perNight
    }
}

extension Berth {
    static let samples = [
        Berth(id: 1, boat: "Anemone", nights: 3),
        Berth(id: 2, boat: "Kittiwake", nights: 8),
        Berth(id: 3, boat: "Windward", nights: 1),
    ]
}
"""

TIDE = """import Foundation

struct Tide {
    let high: Date

    /// Half a tidal day of twelve hours and twenty-five minutes lies between two high waters.
    var nextHigh: Date { high.addingTimeInterval(12 * 3600 + 25 * 60) }
}
"""

UNIT_TESTS = """import XCTest
@testable import Harbor

final class BerthTests: XCTestCase {
    func testFeeCountsEachNight() {
        XCTAssertEqual(Berth(id: 1, boat: "Anemone", nights: 3).fee(perNight: 1200), 3600)
    }

    func testSeventhNightIsFree() {
        XCTAssertEqual(Berth(id: 2, boat: "Kittiwake", nights: 8).fee(perNight: 1000), 7000)
    }

    func testTitleNamesTheBerth() {
        XCTAssertEqual(Berth.samples[2].title, "Berth 3")
    }
}
"""

FEE_TESTS = """import Testing
@testable import Harbor

@Suite("Fees")
struct FeeTests {
    @Test func noNightCostsNothing() {
        #expect(Berth(id: 3, boat: "Windward", nights: 0).fee(perNight: 1200) == 0)
    }

    @Test("A week costs six nights")
    func weekCostsSixNights() {
        #expect(Berth(id: 2, boat: "Kittiwake", nights: 7).fee(perNight: 100) == 600)
    }

    @Test(arguments: [1, 6, 7, 14])
    func neverMoreThanAllNights(nights: Int) {
        #expect(Berth(id: 1, boat: "Anemone", nights: nights).fee(perNight: 1) <= nights)
    }
}
"""

UI_TESTS = """import XCTest

final class HarborUITests: XCTestCase {
    @MainActor
    func testBerthsAreListed() {
        let app = XCUIApplication()
        app.launch()
        XCTAssertTrue(app.staticTexts["Kittiwake"].waitForExistence(timeout: 5))
    }
}
"""

INFO_PLIST = """<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
\t<key>CFBundleDevelopmentRegion</key>
\t<string>$(DEVELOPMENT_LANGUAGE)</string>
\t<key>CFBundleDisplayName</key>
\t<string>Harbor</string>
\t<key>CFBundleExecutable</key>
\t<string>$(EXECUTABLE_NAME)</string>
\t<key>CFBundleIdentifier</key>
\t<string>$(PRODUCT_BUNDLE_IDENTIFIER)</string>
\t<key>CFBundleName</key>
\t<string>$(PRODUCT_NAME)</string>
\t<key>CFBundlePackageType</key>
\t<string>$(PRODUCT_BUNDLE_PACKAGE_TYPE)</string>
\t<key>CFBundleShortVersionString</key>
\t<string>$(MARKETING_VERSION)</string>
\t<key>CFBundleVersion</key>
\t<string>$(CURRENT_PROJECT_VERSION)</string>
\t<key>LSRequiresIPhoneOS</key>
\t<true/>
\t<key>UILaunchScreen</key>
\t<dict/>
</dict>
</plist>
"""

ENTITLEMENTS = """<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
\t<key>com.apple.security.application-groups</key>
\t<array>
\t\t<string>group.com.example.harbor</string>
\t</array>
</dict>
</plist>
"""

PRIVACY = """<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
\t<key>NSPrivacyTracking</key>
\t<false/>
\t<key>NSPrivacyTrackingDomains</key>
\t<array/>
\t<key>NSPrivacyCollectedDataTypes</key>
\t<array/>
\t<key>NSPrivacyAccessedAPITypes</key>
\t<array/>
</dict>
</plist>
"""


def document(value):
    """JSON as Xcode writes it."""
    return json.dumps(value, indent=2, separators=(",", " : "), ensure_ascii=False) + "\n"


ASSETS = document({"info": {"author": "xcode", "version": 1}})

ACCENT_COLOR = document({"colors": [{"idiom": "universal"}], "info": {"author": "xcode", "version": 1}})

STRINGS = document({
    "sourceLanguage": "en",
    "strings": {
        "Berths": {"localizations": {"de": {"stringUnit": {"state": "translated", "value": "Liegeplätze"}}}},
        "Welcome to the harbor": {},
    },
    "version": "1.0",
})

RESOLVED = document({
    "originHash": "5b0d6a2f9e1c4c7783d1a0f2b4e69d38c7a1550e2f6b8d93a4c0e7f1256b9d40",
    "pins": [{
        "identity": "tide-tables",
        "kind": "remoteSourceControl",
        "location": "https://example.invalid/tide-tables.git",
        "state": {"revision": "4f1c0a7d2b9e63580c1d7e2f3a4b5c6d7e8f9a0b", "version": "1.4.0"},
    }],
    "version": 3,
})


def test_plan(*targets):
    def target(name):
        return {"target": {"containerPath": "container:Harbor.xcodeproj", "identifier": identifier("target " + name),
                           "name": name}}

    return document({
        "configurations": [{"id": "6D0C5E3A-8B5F-4C21-9D6E-0F3A7B1C2D48", "name": "Configuration 1", "options": {}}],
        "defaultOptions": {"codeCoverage": {"targets": [target("Harbor")["target"]]}},
        "testTargets": [target(name) for name in targets],
        "version": 1,
    })
