"""xccov: the coverage report of a result bundle."""

import json
import sys

from halyard_demo import dispatcher, test_bundle


def run(arguments, state):
    words = [word for word in arguments if not word.startswith("--")]
    if words[:1] != ["view"] or len(words) != 2 or not {"--report", "--json"} <= set(arguments):
        return dispatcher.not_yet("xccov", arguments)
    content = test_bundle.read(words[1])
    if content is None:
        print("Error: Unrecognized file format for %s" % words[1], file=sys.stderr)
        return 1
    print(json.dumps(content["coverage"], separators=(",", ":"), ensure_ascii=False))
    return 0
