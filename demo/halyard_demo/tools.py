"""The table of tools: one row each. After a change of it run make_entries."""

from collections import namedtuple

# name: the word the tool is called by. module: the file in this package whose run(arguments, state) serves it.
# on_path: has an entry in bin/; the others are reached through xcrun only.
Tool = namedtuple("Tool", "name module on_path")

TOOLS = (
    Tool("carthage", "carthage", True),
    Tool("defaults", "defaults", True),
    Tool("devicectl", "devicectl", False),
    Tool("killall", "killall", True),
    Tool("mdfind", "mdfind", True),
    Tool("open", "open_tool", True),
    Tool("osascript", "osascript", True),
    Tool("pbcopy", "pasteboard", True),
    Tool("PlistBuddy", "plist_buddy", True),
    Tool("pod", "pod", True),
    Tool("simctl", "simctl", False),
    Tool("stat", "bsd_stat", True),
    Tool("sw_vers", "sw_vers", True),
    Tool("swift", "swift", True),
    Tool("swiftlint", "swiftlint", True),
    Tool("xargs", "bsd_xargs", True),
    Tool("xccov", "xccov", False),
    Tool("xcode-select", "xcode_select", True),
    Tool("xcodebuild", "xcodebuild", True),
    Tool("xcresulttool", "xcresulttool", False),
    Tool("xcrun", "xcrun", True),
    Tool("zip", "zip_tool", True),
)

BY_NAME = {tool.name: tool for tool in TOOLS}
