"""xcrun simctl: the life of a simulator, from its creation over its boot to its end."""

import shutil
import sys
import time
import uuid

from halyard_demo.initial import DEVICE_TYPE_PREFIX, DEVICE_TYPES
from halyard_demo.simctl_list import runtime_identifier
from halyard_demo.simctl_paths import device_folder

SIM_ERROR = 149
BOOT_STEPS = ("Waiting on BackBoard", "Waiting on Data Migration", "Waiting on SpringBoard", "Waiting on System App")


def fail(domain, code, text, status):
    print("An error was encountered processing the command (domain=%s, code=%d):\n%s" % (domain, code, text),
          file=sys.stderr)
    return status


def invalid_device(udid):
    print("Invalid device: %s" % udid, file=sys.stderr)
    return 164


def wrong_state(what, device):
    return fail("com.apple.CoreSimulator.SimError", 405,
                "Unable to %s device in current state: %s" % (what, device["state"]), SIM_ERROR)


def found(data, word):
    """The device that an identifier, a name or "booted" means."""
    for device in data["simulators"]:
        if word in (device["udid"], device["name"]) or (word == "booted" and device["state"] == "Booted"):
            return device
    return None


def available(data, device):
    return any(runtime_identifier(runtime) == device["runtime"] and runtime["available"]
               for runtime in data["runtimes"])


def boot(arguments, state):
    with state.change() as data:
        device = found(data, arguments[0] if arguments else "")
        if device is None:
            return invalid_device(arguments[0] if arguments else "")
        if not available(data, device):
            return fail("com.apple.CoreSimulator.SimError", 401,
                        "Unable to boot device because it cannot be located on disk.", SIM_ERROR)
        if device["state"] != "Shutdown":
            return wrong_state("boot", device)
        device["state"] = "Booted"
    return 0


def bootstatus(arguments, state):
    words = [word for word in arguments if not word.startswith("-")]
    with state.change() as data:
        device = found(data, words[0] if words else "")
        if device is None:
            return invalid_device(words[0] if words else "")
        was_booted = device["state"] == "Booted"
        if not was_booted and "-b" not in arguments:
            return wrong_state("monitor", device)
        device["state"] = "Booted"
        name, udid = device["name"], device["udid"]
    print("Monitoring boot status for %s (%s)." % (name, udid))
    if was_booted:
        print("Device already booted, nothing to do.")
    else:
        print_boot(state.settings.get("bootSeconds", 0.4))
    return 0


def print_boot(seconds):
    for number, step in enumerate(BOOT_STEPS, 1):
        print("Status=%d, isTerminal=NO, Elapsed=00:%02d." % (number, number - 1))
        print("\t" + step, flush=True)
        time.sleep(seconds / len(BOOT_STEPS))
    print("Status=4294967295, isTerminal=YES, Elapsed=00:%02d." % len(BOOT_STEPS))
    print("\tFinished")


def shutdown(arguments, state):
    with state.change() as data:
        if arguments[:1] == ["all"]:
            for device in data["simulators"]:
                device["state"] = "Shutdown"
            return 0
        device = found(data, arguments[0] if arguments else "")
        if device is None:
            return invalid_device(arguments[0] if arguments else "")
        if device["state"] == "Shutdown":
            return wrong_state("shutdown", device)
        device["state"] = "Shutdown"
    return 0


def forget(state, data, devices):
    for device in devices:
        shutil.rmtree(device_folder(state, device), ignore_errors=True)
        data.get("simulatorApps", {}).pop(device["udid"], None)


def erase(arguments, state):
    with state.change() as data:
        everything = arguments[:1] == ["all"]
        devices = data["simulators"] if everything else [found(data, arguments[0] if arguments else "")]
        if None in devices:
            return invalid_device(arguments[0] if arguments else "")
        for device in devices:
            if device["state"] != "Shutdown":
                return wrong_state("erase", device)
        forget(state, data, devices)
    return 0


def delete(arguments, state):
    with state.change() as data:
        word = arguments[0] if arguments else ""
        if word == "all":
            gone = list(data["simulators"])
        elif word == "unavailable":
            gone = [device for device in data["simulators"] if not available(data, device)]
        else:
            gone = [found(data, word)]
            if gone == [None]:
                return invalid_device(word)
        forget(state, data, gone)
        data["simulators"] = [device for device in data["simulators"] if device not in gone]
    return 0


def create(arguments, state):
    if len(arguments) < 2:
        print("Usage: simctl create <name> <device type id> [<runtime id>]", file=sys.stderr)
        return 22
    name, wanted = arguments[0], arguments[1]
    types = {DEVICE_TYPE_PREFIX + identifier: (title, family) for title, identifier, family in DEVICE_TYPES}
    if wanted not in types:
        print("Invalid device type: %s" % wanted, file=sys.stderr)
        return 161
    with state.change() as data:
        runtimes = [runtime for runtime in data["runtimes"] if runtime["available"]]
        runtime = [entry for entry in runtimes if runtime_identifier(entry) in arguments[2:3]] or (
            [entry for entry in reversed(runtimes) if types[wanted][1] in entry["families"]] if not arguments[2:] else [])
        if not runtime:
            print("Invalid runtime: %s" % " ".join(arguments[2:3]), file=sys.stderr)
            return 161
        if types[wanted][1] not in runtime[0]["families"]:
            return fail("com.apple.CoreSimulator.SimError", 403, "Incompatible device", 147)
        udid = str(uuid.uuid4()).upper()
        data["simulators"].append({"name": name, "udid": udid, "deviceType": wanted,
                                   "runtime": runtime_identifier(runtime[0]), "state": "Shutdown"})
    print(udid)
    return 0


def runtime(arguments, state):
    if arguments[:2] != ["delete", "all"]:
        from halyard_demo import dispatcher

        return dispatcher.not_yet("simctl", ["runtime"] + arguments)
    with state.change() as data:
        for entry in data["runtimes"]:
            entry["available"] = False
    return 0
