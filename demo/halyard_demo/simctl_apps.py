"""xcrun simctl: apps on a simulator. What is installed lies on disk and can be launched."""

import os
import plistlib
import shutil
import sys
import zlib

from halyard_demo.simctl_devices import fail, found, invalid_device
from halyard_demo.simctl_paths import container

FLAGS = ("--terminate-running-process", "--console", "--console-pty", "-w", "--wait-for-debugger")
WITH_VALUE = ("--setenv", "--stdout", "--stderr", "--arch")
GROUP_PREFIX = "group."


def apps_of(data, device):
    """Bundle identifier → {"name": …, "pid": number or None}."""
    return data.setdefault("simulatorApps", {}).setdefault(device["udid"], {})


def booted(data, arguments):
    """The device, or None and the status of what was said."""
    word = arguments[0] if arguments else ""
    device = found(data, word)
    if device is None:
        return None, invalid_device(word)
    if device["state"] != "Booted":
        return None, fail("com.apple.CoreSimulator.SimError", 405,
                          "Unable to lookup in current state: %s" % device["state"], 149)
    return device, 0


def information(app):
    try:
        with open(os.path.join(app, "Info.plist"), "rb") as file:
            content = plistlib.load(file)
        return content if content.get("CFBundleIdentifier") else None
    except (OSError, ValueError, plistlib.InvalidFileException):
        return None


def install(arguments, state):
    with state.change() as data:
        device, status = booted(data, arguments)
        if device is None:
            return status
        app = os.path.abspath(arguments[1]) if len(arguments) > 1 else ""
        content = information(app)
        if content is None:
            return fail("IXUserPresentableErrorDomain", 4,
                        "This app could not be installed at this time.\nMissing bundle ID.", 4)
        bundle = content["CFBundleIdentifier"]
        folder = container(state, device, "Bundle/Application", bundle)
        shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(app, os.path.join(folder, os.path.basename(app)), symlinks=True)
        home = container(state, device, "Data/Application", bundle)
        for name in ("Documents", "Library/Preferences", "tmp"):
            os.makedirs(os.path.join(home, name), exist_ok=True)
        os.makedirs(container(state, device, "Shared/AppGroup", bundle), exist_ok=True)
        apps_of(data, device)[bundle] = {"name": os.path.basename(app), "pid": None}
    return 0


def uninstall(arguments, state):
    with state.change() as data:
        device, status = booted(data, arguments)
        if device is None:
            return status
        bundle = arguments[1] if len(arguments) > 1 else ""
        if apps_of(data, device).pop(bundle, None):
            for kind in ("Bundle/Application", "Data/Application", "Shared/AppGroup"):
                shutil.rmtree(container(state, device, kind, bundle), ignore_errors=True)
    return 0


def without_options(arguments):
    words, rest = [], list(arguments)
    while rest:
        word = rest.pop(0)
        if len(words) < 2 and word in WITH_VALUE:
            rest[:1] = []
        elif len(words) >= 2 or word not in FLAGS:
            words.append(word)
    return words


def launch(arguments, state):
    words = without_options(arguments)
    with state.change() as data:
        device, status = booted(data, words)
        if device is None:
            return status
        bundle = words[1] if len(words) > 1 else ""
        app = apps_of(data, device).get(bundle)
        if app is None:
            return fail("FBSOpenApplicationServiceErrorDomain", 4,
                        "Simulator device failed to launch %s.\nThe request was denied by service delegate "
                        "(SBMainWorkspace) for reason: NotFound (\"Application \"%s\" is unknown to FrontBoard\")."
                        % (bundle, bundle), 4)
        if app["pid"] is None or "--terminate-running-process" in arguments:
            count = data["simulatorLaunches"] = data.get("simulatorLaunches", 0) + 1
            app["pid"] = 20000 + (zlib.crc32(bundle.encode()) + count) % 40000
        print("%s: %d" % (bundle, app["pid"]))
    return 0


def terminate(arguments, state):
    with state.change() as data:
        device, status = booted(data, arguments)
        if device is None:
            return status
        app = apps_of(data, device).get(arguments[1] if len(arguments) > 1 else "")
        if app is None or app["pid"] is None:
            return fail("NSPOSIXErrorDomain", 3,
                        "Simulator device failed to terminate %s.\nfound nothing to terminate"
                        % "".join(arguments[1:2]), 3)
        app["pid"] = None
    return 0


def get_app_container(arguments, state):
    data = state.read()
    device, status = booted(data, arguments)
    if device is None:
        return status
    bundle = arguments[1] if len(arguments) > 1 else ""
    kind = arguments[2] if len(arguments) > 2 else "app"
    app = apps_of(data, device).get(bundle)
    if app is None:
        return fail("NSPOSIXErrorDomain", 2, "No such file or directory", 2)
    group = container(state, device, "Shared/AppGroup", bundle)
    paths = {"app": os.path.join(container(state, device, "Bundle/Application", bundle), app["name"]),
             "data": container(state, device, "Data/Application", bundle),
             "groups": GROUP_PREFIX + bundle + "\t" + group, GROUP_PREFIX + bundle: group}
    if kind not in paths:
        return fail("NSPOSIXErrorDomain", 2, "No such file or directory", 2)
    sys.stdout.write(paths[kind] + "\n")
    return 0
