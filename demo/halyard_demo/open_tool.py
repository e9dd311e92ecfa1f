"""open: opens nothing; the journal tells what it was asked for. A file that isn't there is an error, as it really is."""

import os
import re
import sys

WITH_VALUE = ("-a", "-b", "--env", "--stdin", "--stdout", "--stderr", "-u")
URL = re.compile(r"^[A-Za-z][A-Za-z0-9+.-]*:")


def run(arguments, state):
    words = list(arguments)
    while words:
        word = words.pop(0)
        if word == "--args":
            break
        if word in WITH_VALUE:
            words[:1] = []
        elif not word.startswith("-") and not URL.match(word) and not is_there(word):
            print("The file %s does not exist." % os.path.abspath(word), file=sys.stderr)
            return 1
    return 0


def is_there(path):
    return os.path.exists(path) or path.startswith(("/Applications/", "/System/"))
