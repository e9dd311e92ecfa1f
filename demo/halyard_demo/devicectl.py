"""xcrun devicectl: the devices that the state holds."""

import json
import os
import sys

from halyard_demo import dispatcher

TABLE = ("Name", "Hostname", "Identifier", "State", "Model")


def run(arguments, state):
    if arguments[:2] == ["list", "devices"]:
        return list_devices(arguments, state)
    return dispatcher.not_yet("devicectl", arguments)


def list_devices(arguments, state):
    devices = state.read()["devices"]
    target = json_target(arguments)
    if target != "-":
        print_table(devices)
    if target is not None:
        write_json(target, {"info": info(arguments), "result": {"devices": [described(device) for device in devices]}})
    return 0


def json_target(arguments):
    for option in ("--json-output", "-j"):
        if option in arguments[:-1]:
            return arguments[arguments.index(option) + 1]
    return None


def write_json(target, document):
    text = json.dumps(document, indent=2, separators=(",", " : "), sort_keys=True) + "\n"
    if target == "-":
        sys.stdout.write(text)
    else:
        with open(target, "w", encoding="utf-8") as file:
            file.write(text)


def info(arguments):
    return {"arguments": ["devicectl"] + arguments, "commandType": "devicectl.list.devices",
            "environment": {"TERM": os.environ.get("TERM", "dumb")}, "jsonVersion": 2, "outcome": "success",
            "version": "397.28"}


def described(device):
    return {
        "capabilities": [{"featureIdentifier": "com.apple.coredevice.feature.installapp", "name": "Install Application"}],
        "connectionProperties": {
            "authenticationType": "manualPairing", "isMobileDeviceOnly": False, "pairingState": "paired",
            "potentialHostnames": [device["udid"] + ".coredevice.local"],
            "transportType": device["transport"], "tunnelState": device["tunnel"]},
        "deviceProperties": {
            "bootState": "booted", "ddiServicesAvailable": device["tunnel"] == "connected",
            "developerModeStatus": "enabled", "name": device["name"], "osBuildUpdate": device["osBuild"],
            "osVersionNumber": device["osVersion"]},
        "hardwareProperties": {
            "cpuType": {"name": "arm64e", "subType": 2, "type": 16777228}, "deviceType": device["deviceType"],
            "marketingName": device["marketingName"], "platform": device["platform"],
            "productType": device["productType"], "reality": "physical", "udid": device["udid"]},
        "identifier": device["identifier"], "tags": [], "visibilityClass": "default",
    }


def print_table(devices):
    if not devices:
        print("No devices found.")
        return
    rows = [TABLE]
    for device in devices:
        state = "connected" if device["tunnel"] == "connected" else "available (paired)"
        rows.append((device["name"], device["name"].replace(" ", "-") + ".coredevice.local", device["identifier"], state,
                     "%s (%s)" % (device["marketingName"], device["productType"])))
    widths = [max(len(row[column]) for row in rows) for column in range(len(TABLE))]
    rows.insert(1, tuple("-" * width for width in widths))
    print("Devices:")
    for row in rows:
        print("   ".join(word.ljust(width) for word, width in zip(row, widths)).rstrip())
