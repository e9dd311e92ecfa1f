"""xcrun simctl list [-j] [devices|devicetypes|runtimes|pairs] [available|booted|<text>]"""

import json
import sys

from halyard_demo.initial import DEVICE_TYPE_PREFIX, DEVICE_TYPES, RUNTIME_PREFIX

PROFILES = "/Library/Developer/CoreSimulator/Profiles"
NO_PROFILE = 'runtime profile not found using "System" match policy'
SECTIONS = ("devicetypes", "runtimes", "devices", "pairs")


def run(arguments, state):
    options = [word for word in arguments if word.startswith("-")]
    words = [word for word in arguments if not word.startswith("-")]
    sections = SECTIONS
    if words and words[0] in SECTIONS:
        sections = (words.pop(0),)
    data = state.read()
    makers = {
        "devicetypes": lambda: device_types(words),
        "runtimes": lambda: runtimes(data, words),
        "devices": lambda: devices(data, words),
        "pairs": dict,
    }
    document = {section: makers[section]() for section in sections}
    if "-j" in options or "--json" in options:
        # The real tool escapes slashes.
        sys.stdout.write(json.dumps(document, indent=2, separators=(",", " : ")).replace("/", "\\/") + "\n")
    else:
        printers = {"devicetypes": print_device_types, "runtimes": print_runtimes,
                    "devices": lambda value: print_devices(value, data), "pairs": lambda value: print("== Device Pairs ==")}
        for section in sections:
            printers[section](document[section])
    return 0


def runtime_identifier(runtime):
    return RUNTIME_PREFIX + runtime["platform"] + "-" + runtime["version"].replace(".", "-")


def matches(words, name, udid="", is_available=True, is_booted=False):
    for word in words:
        fits = {"available": is_available, "booted": is_booted, "unavailable": not is_available}
        if not fits.get(word, word.lower() in name.lower() or word == udid):
            return False
    return True


def device_types(words, families=None):
    return [{"productFamily": family,
             "bundlePath": PROFILES + "/DeviceTypes/" + name + ".simdevicetype",
             "name": name,
             "identifier": DEVICE_TYPE_PREFIX + identifier}
            for name, identifier, family in DEVICE_TYPES
            if matches(words, name) and (families is None or family in families)]


def runtimes(data, words):
    result = []
    for runtime in data["runtimes"]:
        name = runtime["platform"] + " " + runtime["version"]
        if not matches(words, name, is_available=runtime["available"]):
            continue
        entry = {"bundlePath": PROFILES + "/Runtimes/" + name + ".simruntime",
                 "buildversion": runtime["build"],
                 "platform": runtime["platform"],
                 "runtimeRoot": PROFILES + "/Runtimes/" + name + ".simruntime/Contents/Resources/RuntimeRoot",
                 "identifier": runtime_identifier(runtime),
                 "version": runtime["version"],
                 "isInternal": False,
                 "isAvailable": runtime["available"],
                 "name": name,
                 "supportedDeviceTypes": device_types([], runtime["families"])}
        if not runtime["available"]:
            entry["availabilityError"] = NO_PROFILE
        result.append(entry)
    return result


def devices(data, words):
    available = {runtime_identifier(runtime): runtime["available"] for runtime in data["runtimes"]}
    result = {identifier: [] for identifier, is_available in available.items() if is_available}
    for device in data["simulators"]:
        is_available = available.get(device["runtime"], False)
        if not matches(words, device["name"], device["udid"], is_available, device["state"] == "Booted"):
            continue
        home = "/Users/demo/Library/Developer/CoreSimulator/Devices/" + device["udid"]
        entry = {"dataPath": home + "/data", "dataPathSize": 18337792,
                 "logPath": "/Users/demo/Library/Logs/CoreSimulator/" + device["udid"],
                 "udid": device["udid"], "isAvailable": is_available,
                 "deviceTypeIdentifier": device["deviceType"], "state": device["state"], "name": device["name"]}
        if not is_available:
            entry["availabilityError"] = NO_PROFILE
        result.setdefault(device["runtime"], []).append(entry)
    return result


def print_device_types(entries):
    print("== Device Types ==")
    for entry in entries:
        print("%s (%s)" % (entry["name"], entry["identifier"]))


def print_runtimes(entries):
    print("== Runtimes ==")
    for entry in entries:
        end = "" if entry["isAvailable"] else " (unavailable, " + NO_PROFILE + ")"
        print("%s (%s - %s) - %s%s" % (entry["name"], entry["version"], entry["buildversion"], entry["identifier"], end))


def print_devices(entries, data):
    names = {runtime_identifier(runtime): runtime["platform"] + " " + runtime["version"]
             for runtime in data["runtimes"] if runtime["available"]}
    print("== Devices ==")
    # Runtimes that are gone stand at the end, under their identifier.
    for identifier in sorted(entries, key=lambda key: key not in names):
        print("-- %s --" % names.get(identifier, "Unavailable: " + identifier))
        for entry in entries[identifier]:
            end = " " if entry["isAvailable"] else " (unavailable, " + NO_PROFILE + ")"
            print("    %s (%s) (%s)%s" % (entry["name"], entry["udid"], entry["state"], end))
