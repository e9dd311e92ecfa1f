"""Harbor, the sample app: its files, in the order in which its history brought them."""

from halyard_demo import sample_sources as sources
from halyard_demo.sample_pbxproj import project_file
from halyard_demo.sample_schemes import scheme_file

NAME = "Harbor"
AUTHOR = "Demo <demo@example.invalid>"
FIRST_DATE = 1730454000  # 2024-11-01, and a day for each commit
ZONE = "+0100"

PROJECT = "Harbor.xcodeproj/project.pbxproj"
SCHEMES = "Harbor.xcodeproj/xcshareddata/xcschemes/"
RESOLVED = "Harbor.xcodeproj/project.xcworkspace/xcshareddata/swiftpm/Package.resolved"


class Commit:
    """`files` are written anew by it. `parent` is the number of another commit, where it isn't the one before."""

    def __init__(self, branch, message, files, parent=None):
        self.branch = branch
        self.message = message
        self.files = files
        self.parent = parent


def history():
    return [
        Commit("main", "Start Harbor", {
            ".gitignore": sources.GITIGNORE,
            "README.md": sources.README,
            PROJECT: project_file(tests=False, package=False),
            "Harbor.xcodeproj/project.xcworkspace/contents.xcworkspacedata": sources.WORKSPACE_DATA,
            SCHEMES + "Harbor.xcscheme": scheme_file("Harbor"),
            "Harbor/HarborApp.swift": sources.APP,
            "Harbor/ContentView.swift": sources.FIRST_VIEW,
            "Harbor/Info.plist": sources.INFO_PLIST,
            "Harbor/Harbor.entitlements": sources.ENTITLEMENTS,
            "Harbor/PrivacyInfo.xcprivacy": sources.PRIVACY,
            "Harbor/Assets.xcassets/Contents.json": sources.ASSETS,
            "Harbor/Assets.xcassets/AccentColor.colorset/Contents.json": sources.ACCENT_COLOR,
        }),
        Commit("main", "List the berths", {
            "Harbor/Berth.swift": sources.BERTH,
            "Harbor/ContentView.swift": sources.LIST_VIEW,
        }),
        Commit("main", "Test the berths, alone and on the screen", {
            PROJECT: project_file(tests=True, package=False),
            SCHEMES + "Harbor.xcscheme": scheme_file("Harbor", ("Harbor", "Quick"), ("HarborTests", "HarborUITests")),
            SCHEMES + "HarborTests.xcscheme": scheme_file("HarborTests", ("Harbor",), ("HarborTests",)),
            "HarborTests/BerthTests.swift": sources.UNIT_TESTS,
            "HarborTests/FeeTests.swift": sources.FEE_TESTS,
            "HarborUITests/HarborUITests.swift": sources.UI_TESTS,
            "Harbor.xctestplan": sources.test_plan("HarborTests", "HarborUITests"),
            "Quick.xctestplan": sources.test_plan("HarborTests"),
        }),
        Commit("main", "Translate the texts into German", {
            "Harbor/Localizable.xcstrings": sources.STRINGS,
        }),
        Commit("feature/tides", "Show when the tide turns", {
            "Harbor/Tide.swift": sources.TIDE,
        }),
        Commit("main", "Take the tide tables from a package", {
            PROJECT: project_file(tests=True, package=True),
            RESOLVED: sources.RESOLVED,
        }, parent=4),
    ]


def fast_import_stream():
    """The whole history for `git fast-import`: one process, and the same hashes each time."""
    parts = []
    for number, commit in enumerate(history(), 1):
        date = "%d %s" % (FIRST_DATE + (number - 1) * 86400, ZONE)
        parts.append("commit refs/heads/%s\nmark :%d\nauthor %s %s\ncommitter %s %s\n"
                     % (commit.branch, number, AUTHOR, date, AUTHOR, date))
        parts.append(data(commit.message + "\n"))
        if number > 1:
            parts.append("from :%d\n" % (commit.parent or number - 1))
        for path, content in commit.files.items():
            parts.append("M 100644 inline %s\n%s" % (path, data(content)))
    return "".join(parts).encode()


def data(text):
    return "data %d\n%s\n" % (len(text.encode()), text)
