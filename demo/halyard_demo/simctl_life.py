"""xcrun simctl: boot, bootstatus, shutdown, install, uninstall, launch, terminate."""

import os
import plistlib
import sys
import time

FIRST_PROCESS = 5210
WAITS = ("Waiting on Backboard", "Waiting on SpringBoard", "Waiting on System App")


class Refusal(Exception):
    def __init__(self, status, *lines):
        super().__init__("\n".join(lines))
        self.status = status


def command(work):
    """A command whose first word is a simulator; it changes the state and gives the text to print."""
    def run(arguments, state):
        words = [word for word in arguments if not word.startswith("-")]
        try:
            with state.change() as data:
                text = work(simulator_of(data, words[0] if words else ""), words[1:], data)
        except Refusal as refusal:
            sys.stdout.flush()
            print(refusal, file=sys.stderr)
            return refusal.status
        if text:
            print(text)
        return 0
    return run


def simulator_of(data, name):
    for simulator in data["simulators"]:
        is_booted = simulator["state"] == "Booted"
        if simulator["udid"] == name or (name == "booted" and is_booted):
            return simulator
    raise Refusal(148, "Invalid device: " + name)


def processing_error(domain, code, *lines):
    return "An error was encountered processing the command (domain=%s, code=%d):" % (domain, code), *lines


def change_state(simulator, state, verb):
    if simulator["state"] == state:
        raise Refusal(149, *processing_error("com.apple.CoreSimulator.SimError", 405,
                                             "Unable to %s device in current state: %s" % (verb, state)))
    simulator["state"] = state
    simulator.pop("running", None)


@command
def boot(simulator, words, data):
    change_state(simulator, "Booted", "boot")
    simulator["booting"] = True  # until somebody has waited for it


def shutdown(arguments, state):
    if arguments[:1] != ["all"]:
        return shutdown_one(arguments, state)
    with state.change() as data:
        for simulator in data["simulators"]:
            simulator["state"] = "Shutdown"
            simulator.pop("running", None)
    return 0


@command
def shutdown_one(simulator, words, data):
    change_state(simulator, "Shutdown", "shutdown")


def boot_status(arguments, state):
    """The setting `bootPace` is the time between two lines of its progress."""
    names = [word for word in arguments if not word.startswith("-")]
    found = [each for each in state.read()["simulators"] if each["udid"] in names]
    if not found:
        print("Invalid device: " + " ".join(names), file=sys.stderr)
        return 148
    print("Monitoring boot status for %s (%s)." % (found[0]["name"], found[0]["udid"]), flush=True)
    with state.change() as data:
        simulator = simulator_of(data, found[0]["udid"])
        is_up = simulator["state"] == "Booted" and not simulator.pop("booting", False)
        simulator["state"] = "Booted"
    if is_up:
        print("Device already booted, nothing to do.")
        return 0
    for line in WAITS:
        time.sleep(state.settings.get("bootPace", 0.05))
        print("\t" + line, flush=True)
    print("Finished", flush=True)
    return 0


def needs_boot(simulator):
    if simulator["state"] != "Booted":
        raise Refusal(149, *processing_error("com.apple.CoreSimulator.SimError", 405,
                                             "Unable to lookup in current state: Shutdown"))


@command
def install(simulator, words, data):
    needs_boot(simulator)
    path = os.path.abspath(words[0]) if words else ""
    try:
        with open(os.path.join(path, "Info.plist"), "rb") as file:
            content = plistlib.load(file)
    except (OSError, plistlib.InvalidFileException):
        content = {}
    if not content.get("CFBundleIdentifier"):
        raise Refusal(22, *processing_error("IXErrorDomain", 13, "Simulator device failed to install the application.",
                                            "Missing bundle ID.", "Underlying error (domain=IXErrorDomain, code=13):",
                                            "\tFailed to get bundle ID from " + path, "\tMissing bundle ID."))
    if content.get("DTPlatformName", "iphonesimulator") != "iphonesimulator":
        raise Refusal(22, *processing_error("NSPOSIXErrorDomain", 2, "This app was not built for the simulator."))
    simulator.setdefault("apps", {})[content["CFBundleIdentifier"]] = path


@command
def uninstall(simulator, words, data):
    needs_boot(simulator)
    simulator.get("apps", {}).pop(words[0] if words else "", None)
    simulator.get("running", {}).pop(words[0] if words else "", None)


@command
def launch(simulator, words, data):
    needs_boot(simulator)
    bundle = words[0] if words else ""
    if bundle not in simulator.get("apps", {}):
        raise Refusal(4, *processing_error("FBSOpenApplicationServiceErrorDomain", 4,
                                           "Simulator device failed to launch %s." % bundle,
                                           "Underlying error (domain=FBSOpenApplicationServiceErrorDomain, code=4):",
                                           '\tThe request to open "%s" failed.' % bundle))
    process = data.get("lastProcess", FIRST_PROCESS) + 1
    data["lastProcess"] = process
    simulator.setdefault("running", {})[bundle] = process
    return "%s: %d" % (bundle, process)


@command
def terminate(simulator, words, data):
    needs_boot(simulator)
    if simulator.get("running", {}).pop(words[0] if words else "", None) is None:
        raise Refusal(3, *processing_error("NSPOSIXErrorDomain", 3, "Simulator device failed to terminate the application.",
                                           "found nothing to terminate"))


COMMANDS = {"boot": boot, "bootstatus": boot_status, "shutdown": shutdown, "install": install, "uninstall": uninstall,
            "launch": launch, "terminate": terminate}
