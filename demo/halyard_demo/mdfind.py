"""mdfind: what the settings say under "spotlight" (query: list of paths), and the demo's Xcode by its identifier."""

import sys


def run(arguments, state):
    if not arguments:
        print("mdfind: no query specified.", file=sys.stderr)
        return 1
    query = arguments[-1]
    found = state.settings.get("spotlight", {}).get(query)
    if found is None and "com.apple.dt.Xcode" in query:
        found = ["/Applications/Xcode.app"]
    for path in found or ():
        print(path)
    return 0
