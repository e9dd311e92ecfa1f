"""pbcopy: the text goes to the file "pasteboard" beside the state."""

import sys


def run(arguments, state):
    with open(state.path("pasteboard"), "wb") as file:
        file.write(sys.stdin.buffer.read())
    return 0
