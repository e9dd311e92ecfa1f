"""PlistBuddy: `-c 'Print KEY' FILE`, a key of one name or of several with colons between them."""

import plistlib
import sys
from xml.parsers.expat import ExpatError

from halyard_demo import dispatcher


def run(arguments, state):
    if len(arguments) != 3 or arguments[0] != "-c" or not arguments[1].startswith("Print"):
        return dispatcher.not_yet("PlistBuddy", arguments)
    key, path = arguments[1][len("Print"):].strip(), arguments[2]
    try:
        with open(path, "rb") as file:
            value = plistlib.load(file)
    except (OSError, plistlib.InvalidFileException, ExpatError, ValueError):
        print("Error Reading File: %s" % path, file=sys.stderr)
        return 1
    for name in [part for part in key.split(":") if part]:
        try:
            value = value[int(name) if isinstance(value, list) else name]
        except (KeyError, IndexError, TypeError, ValueError):
            print('Print: Entry, "%s", Does Not Exist' % (":" + key.lstrip(":")), file=sys.stderr)
            return 1
    print("\n".join(shown(value, 0)))
    return 0


def shown(value, depth):
    """Lines, as PlistBuddy draws a dictionary or an array."""
    if not isinstance(value, (dict, list)):
        return [str(value).lower() if isinstance(value, bool) else str(value)]
    inner = "    " * (depth + 1)
    lines = ["Dict {" if isinstance(value, dict) else "Array {"]
    for name, entry in value.items() if isinstance(value, dict) else enumerate(value):
        text = shown(entry, depth + 1)
        lines.append(inner + ("%s = " % name if isinstance(value, dict) else "") + text[0])
        lines += text[1:]
    return lines + ["    " * depth + "}"]
