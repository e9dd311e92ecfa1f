"""xcrun simctl: the simulators that the state holds."""

from halyard_demo import dispatcher, simctl_life, simctl_list

COMMANDS = {"list": simctl_list.run, **simctl_life.COMMANDS}


def run(arguments, state):
    command = COMMANDS.get(arguments[0] if arguments else "")
    if command is None:
        return dispatcher.not_yet("simctl", arguments)
    return command(arguments[1:], state)
