"""swiftlint: the sample app's sources give no reason for a warning."""

from halyard_demo import dispatcher


def run(arguments, state):
    if arguments[:1] != ["lint"]:
        return dispatcher.not_yet("swiftlint", arguments)
    return 0
