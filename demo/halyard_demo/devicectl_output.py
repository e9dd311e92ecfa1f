"""How devicectl writes: tables for people, JSON in a file or on standard output, errors on standard error."""

import json
import sys
import time


def stamp():
    return time.strftime("%H:%M:%S  ")


def write_json(target, info, result=None, error=None):
    document = {"info": info}
    if error is not None:
        document["error"] = error_record(error)
    else:
        document["result"] = result
    text = json.dumps(document, indent=2, separators=(",", " : "), sort_keys=True) + "\n"
    if target == "-":
        sys.stdout.write(text)
    else:
        with open(target, "w", encoding="utf-8") as file:
            file.write(text)


def error_record(causes):
    message, domain, code = causes[0]
    details = {"NSLocalizedDescription": {"string": message}}
    if len(causes) > 1:
        details["NSUnderlyingError"] = {"error": error_record(causes[1:])}
    return {"code": code or 1, "domain": domain or "com.apple.dt.CoreDeviceError", "userInfo": details}


def print_errors(causes):
    """Each cause stands under the error that it led to, set in by four blanks more."""
    for depth, (message, domain, code) in enumerate(causes):
        margin = "    " * depth
        if depth:
            print("-" * 80, file=sys.stderr)
        origin = " (%s error %d (0x%02X))" % (domain, code, code) if domain else ""
        print("%sERROR: %s%s" % (margin, message, origin), file=sys.stderr)


def table(title, heads, rows, empty):
    if not rows:
        return empty + "\n"
    rows = [heads] + [tuple(row) for row in rows]
    widths = [max(len(row[column]) for row in rows) for column in range(len(heads))]
    rows.insert(1, tuple("-" * width for width in widths))
    lines = ["   ".join(word.ljust(width) for word, width in zip(row, widths)).rstrip() for row in rows]
    return "\n".join([title] + lines) + "\n"


def device_table(devices):
    return table("Devices:", ("Name", "Hostname", "Identifier", "State", "Model"), [
        (device["name"], device["name"].replace(" ", "-") + ".coredevice.local", device["identifier"],
         "connected" if device["tunnel"] == "connected" else "available (paired)",
         "%s (%s)" % (device["marketingName"], device["productType"])) for device in devices], "No devices found.")


def app_table(apps):
    return table("Apps installed:", ("Name", "Bundle Identifier", "Version", "Bundle Version"), [
        (app["name"], app["bundleIdentifier"], app["version"], app["bundleVersion"]) for app in apps],
        "No apps found on the device.")


def process_table(processes):
    return table("Running processes:", ("PID", "Path"), [
        (str(process["processIdentifier"]), process.get("executable", "").replace("file://", "", 1))
        for process in processes], "No processes found.")


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
