"""zip -r ARCHIVE PATH…: a real archive."""

import os
import sys
import zipfile

from halyard_demo import dispatcher


def run(arguments, state):
    quiet = [word for word in arguments if word in ("-rq", "-qr", "-q")]
    words = [word for word in arguments if word not in ("-r", "-rq", "-qr", "-q")]
    if len(words) < 2 or any(word.startswith("-") for word in words):
        return dispatcher.not_yet("zip", arguments)
    archive = words[0] if os.path.splitext(words[0])[1] else words[0] + ".zip"
    paths = [path for path in words[1:] if os.path.exists(path)]
    if not paths:
        print("zip error: Nothing to do! (%s)" % archive, file=sys.stderr)
        return 12
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as target:
        for path in [found for root in paths for found in files_below(root)]:
            name = path.lstrip("/")
            target.write(path, name)
            if not quiet:
                print("  adding: %s" % (name + ("/" if os.path.isdir(path) else "")))
    return 0


def files_below(root):
    yield root
    for folder, names, files in os.walk(root) if os.path.isdir(root) else ():
        for name in sorted(names + files):
            yield os.path.join(folder, name)
