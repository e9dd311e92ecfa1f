"""sw_vers: the system's version."""

from halyard_demo import dispatcher

PRODUCT = ("macOS", "15.2", "24C101")
LINES = (("ProductName", "productName"), ("ProductVersion", "productVersion"), ("BuildVersion", "buildVersion"))


def run(arguments, state):
    values = state.settings.get("system", PRODUCT)
    if not arguments:
        for (title, _), value in zip(LINES, values):
            print("%s:\t\t%s" % (title, value))
        return 0
    for (_, option), value in zip(LINES, values):
        if arguments[0].lstrip("-").lower() == option.lower():
            print(value)
            return 0
    return dispatcher.not_yet("sw_vers", arguments)
