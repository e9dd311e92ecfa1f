"""xcresulttool: the tests of a result bundle."""

import json
import sys

from halyard_demo import dispatcher, test_bundle

TESTS = ["get", "test-results", "tests"]


def run(arguments, state):
    if arguments[:3] != TESTS or "--path" not in arguments[3:-1]:
        return dispatcher.not_yet("xcresulttool", arguments)
    path = arguments[arguments.index("--path") + 1]
    content = test_bundle.read(path)
    if content is None:
        print("Error: Result bundle not found at path: %s" % path, file=sys.stderr)
        return 1
    print(json.dumps(content["tests"], indent=2, separators=(",", " : "), sort_keys=True, ensure_ascii=False))
    return 0
