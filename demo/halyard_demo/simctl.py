"""xcrun simctl: the simulators that the state holds."""

import importlib

from halyard_demo import dispatcher

# Command, module, function.
COMMANDS = {
    "boot": ("simctl_devices", "boot"),
    "bootstatus": ("simctl_devices", "bootstatus"),
    "create": ("simctl_devices", "create"),
    "delete": ("simctl_devices", "delete"),
    "erase": ("simctl_devices", "erase"),
    "get_app_container": ("simctl_apps", "get_app_container"),
    "install": ("simctl_apps", "install"),
    "launch": ("simctl_apps", "launch"),
    "list": ("simctl_list", "run"),
    "runtime": ("simctl_devices", "runtime"),
    "shutdown": ("simctl_devices", "shutdown"),
    "terminate": ("simctl_apps", "terminate"),
    "uninstall": ("simctl_apps", "uninstall"),
}


def run(arguments, state):
    command = COMMANDS.get(arguments[0] if arguments else "")
    if command is None:
        return dispatcher.not_yet("simctl", arguments)
    module, function = command
    if state.settings.get("oldSimulatorGone"):
        forget_old_simulators(state)
    return getattr(importlib.import_module("halyard_demo." + module), function)(arguments[1:], state)


def forget_old_simulators(state):
    """Of the phones and pads, only those with the newest runtime stay: a selection from before is gone."""
    with state.change() as data:
        systems = [runtime for runtime in data["runtimes"] if runtime["platform"] == "iOS" and runtime["available"]]
        if systems:
            newest = max(systems, key=lambda runtime: [int(part) for part in runtime["version"].split(".")])
            kept = "iOS-" + newest["version"].replace(".", "-")
            data["simulators"] = [device for device in data["simulators"]
                                  if "SimRuntime.iOS-" not in device["runtime"] or device["runtime"].endswith(kept)]
