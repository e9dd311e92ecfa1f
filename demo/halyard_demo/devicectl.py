"""xcrun devicectl: the devices that the state holds, the apps on them and what runs there.

A device whose tunnel is connected serves everything; one that is merely paired is listed and serves nothing. The setting
`deviceLocked` refuses what needs an unlocked device."""

import json
import os
import sys

from halyard_demo import device_apps, devicectl_output, dispatcher

FIRST_PROCESS = 1042


def run(arguments, state):
    words, options = parsed(arguments)
    for command, work in COMMANDS:
        if tuple(words[: len(command)]) == command:
            return Call(arguments, words[len(command):], options, state, ".".join(command)).perform(work)
    return dispatcher.not_yet("devicectl", arguments)


WITH_VALUE = {"--json-output": "json", "-j": "json", "--device": "device", "-d": "device", "--timeout": "timeout",
              "-t": "timeout", "--url": "url", "--payload-url": "url", "--pid": "pid", "--bundle-id": "bundle"}


def parsed(arguments):
    """Words and options, which may stand in any order."""
    words, options, rest = [], {}, list(arguments)
    while rest:
        word = rest.pop(0)
        if word in WITH_VALUE and rest:
            options[WITH_VALUE[word]] = rest.pop(0)
        elif not word.startswith("--"):
            words.append(word)
    return words, options


class Refusal(Exception):
    """What the tool fails with: its own error first, then the causes beneath it."""

    def __init__(self, *causes):
        super().__init__(causes)
        self.causes = causes


class Call:
    """One call of a command: its words, and where its answer goes."""

    def __init__(self, arguments, words, options, state, command):
        self.arguments, self.words, self.options, self.state = arguments, words, options, state
        self.command = command

    def perform(self, work):
        target = self.options.get("json")
        try:
            text, result = work(self)
        except Refusal as refusal:
            devicectl_output.print_errors(refusal.causes)
            if target is not None:
                devicectl_output.write_json(target, self.info("failed"), error=refusal.causes)
            return 1
        if target != "-":
            sys.stdout.write(text)
        if target is not None:
            devicectl_output.write_json(target, self.info("success"), result=result)
        return 0

    def info(self, outcome):
        return {"arguments": ["devicectl"] + self.arguments, "commandType": "devicectl." + self.command,
                "environment": {"TERM": os.environ.get("TERM", "dumb")}, "jsonVersion": 2, "outcome": outcome,
                "version": "397.28"}

    def word(self, name):
        if not self.words:
            raise Refusal(("Missing expected argument '<%s>'" % name, None, None))
        return self.words[0]

    def device(self, data):
        """The device that --device names, by any of its names. It must be reachable."""
        name = self.options.get("device", "")
        found = [device for device in data["devices"] if name in (device["udid"], device["identifier"], device["name"])]
        if not found:
            raise Refusal(("The specified device was not found. (Could not find device '%s')" % name,
                           "com.apple.dt.CoreDeviceError", 1000))
        if found[0]["tunnel"] != "connected":
            raise Refusal(("A connection to this device could not be established.",
                           "com.apple.dt.CoreDeviceError", 4),
                          ("No device is currently connected for the identifier %s." % found[0]["identifier"],
                           "com.apple.dt.RemotePairingError", 4))
        return found[0]

    def refuse_when_locked(self, bundle):
        if self.state.settings.get("deviceLocked"):
            raise Refusal(("The application failed to launch.", "com.apple.dt.CoreDeviceError", 10002),
                          ('The request was denied by service delegate (SBMainWorkspace) for reason: Locked ("Unable to '
                           'launch %s because the device was not, or could not be, unlocked").' % bundle,
                           "FBSOpenApplicationErrorDomain", 7))


def list_devices(call):
    devices = call.state.read()["devices"]
    return devicectl_output.device_table(devices), {
        "devices": [devicectl_output.described(device) for device in devices]}


def install(call):
    path = call.word("path")
    with call.state.change() as data:
        device = call.device(data)
        try:
            app = device_apps.read_bundle(path)
        except device_apps.NotInstallable as problem:
            raise Refusal(("Failed to install the app on the device.", "com.apple.dt.CoreDeviceError", 3002),
                          (str(problem), "MIInstallerErrorDomain", 13)) from problem
        others = [other for other in device_apps.of(device) if other["bundleIdentifier"] != app["bundleIdentifier"]]
        device["apps"] = others + [app]
    url = device_apps.url(app)
    text = ("%sAcquired tunnel connection to device.\n%sEnabling developer disk image services.\n"
            "%sAcquired usage assertion.\nApp installed:\n• bundleID: %s\n• installationURL: %s\n"
            "• launchServicesIdentifier: unknown\n• databaseUUID: %s\n• databaseSequenceNumber: %d\n• options: \n"
            % (*[devicectl_output.stamp()] * 3, app["bundleIdentifier"], url, device["identifier"], 1000 + len(others)))
    return text, {"deviceIdentifier": device["identifier"], "installedApplications": [
        {"bundleID": app["bundleIdentifier"], "databaseSequenceNumber": 1000 + len(others),
         "databaseUUID": device["identifier"], "installationURL": url, "launchServicesIdentifier": "unknown",
         "options": {}}]}


def uninstall(call):
    bundle = call.word("bundle-id")
    with call.state.change() as data:
        device = call.device(data)
        device_apps.find(device, bundle, Refusal)
        device["apps"] = [app for app in device_apps.of(device) if app["bundleIdentifier"] != bundle]
        device["processes"] = [process for process in processes_of(device) if process["bundle"] != bundle]
    return "App uninstalled.\n", {"deviceIdentifier": device["identifier"], "uninstalledApplications": [bundle]}


def launch(call):
    with call.state.change() as data:
        device = call.device(data)
        if "url" in call.options and not call.words:
            app = device_apps.for_url(device, call.options["url"], Refusal)
        else:
            app = device_apps.find(device, call.word("bundle-identifier-or-path"), Refusal)
        bundle = app["bundleIdentifier"]
        call.refuse_when_locked(bundle)
        running = [process for process in processes_of(device) if process["bundle"] == bundle]
        if running:
            process = running[0]
        else:
            process = {"bundle": bundle, "pid": device.get("nextProcess", FIRST_PROCESS)}
            device["nextProcess"] = process["pid"] + 7
            device["processes"] = processes_of(device) + [process]
    text = "%sAcquired tunnel connection to device.\nLaunched application with %s bundle identifier.\n" % (
        devicectl_output.stamp(), bundle)
    return text, {"deviceIdentifier": device["identifier"],
                  "launchOptions": {"activatedWhenStarted": True, "arguments": [], "environmentVariables": {},
                                    "platformSpecificOptions": {}, "startStopped": False,
                                    "terminateExistingInstances": False, "user": {"active": True}},
                  "process": {"auditToken": [process["pid"], 678], "executable": device_apps.executable(app),
                              "processIdentifier": process["pid"]}}


def terminate(call):
    with call.state.change() as data:
        device = call.device(data)
        pid = call.options.get("pid", "")
        found = [process for process in processes_of(device) if str(process["pid"]) == pid]
        if not found:
            raise Refusal(("Failed to terminate the process.", "com.apple.dt.CoreDeviceError", 10004),
                          ("No such process", "NSPOSIXErrorDomain", 3))
        device["processes"] = [process for process in processes_of(device) if process is not found[0]]
    return "Sent signal SIGTERM to process %s.\n" % pid, {
        "deviceIdentifier": device["identifier"], "process": {"processIdentifier": found[0]["pid"]},
        "signal": {"name": "SIGTERM", "value": 15}}


def list_apps(call):
    device = call.device(call.state.read())
    apps = [app for app in device_apps.of(device) if call.options.get("bundle") in (None, app["bundleIdentifier"])]
    return devicectl_output.app_table(apps), {
        "apps": [device_apps.described(app) for app in apps], "defaultAppsIncluded": False,
        "deviceIdentifier": device["identifier"], "hiddenAppsIncluded": False, "internalAppsIncluded": False,
        "removableAppsIncluded": True}


def list_processes(call):
    device = call.device(call.state.read())
    system = [{"executable": "file:///sbin/launchd", "processIdentifier": 1}, {"processIdentifier": 961}]
    apps = {app["bundleIdentifier"]: app for app in device_apps.of(device) + [device_apps.WEB]}
    running = [{"bundleIdentifier": process["bundle"], "executable": device_apps.executable(apps[process["bundle"]]),
                "processIdentifier": process["pid"]} for process in processes_of(device)]
    return devicectl_output.process_table(system + running), {
        "deviceIdentifier": device["identifier"], "runningProcesses": system + running}


def processes_of(device):
    return device.get("processes", [])


COMMANDS = (
    (("list", "devices"), list_devices),
    (("device", "install", "app"), install),
    (("device", "uninstall", "app"), uninstall),
    (("device", "process", "launch"), launch),
    (("device", "process", "terminate"), terminate),
    (("device", "info", "apps"), list_apps),
    (("device", "info", "processes"), list_processes),
)
