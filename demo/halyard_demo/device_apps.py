"""Apps on the demo's devices: what a bundle on disk says, and where an installed one lies."""

import hashlib
import os
import plistlib
import zipfile

# On every device at the start, so that there is something to launch before anything was built.
PREINSTALLED = (
    {"name": "Demo Notes", "bundleIdentifier": "com.example.demo-notes", "version": "2.3", "bundleVersion": "41",
     "executable": "DemoNotes", "schemes": ["demonotes"]},
)
# Served by the system itself.
WEB = {"name": "Safari", "bundleIdentifier": "com.apple.mobilesafari", "version": "18.2", "bundleVersion": "8620.1",
       "executable": "MobileSafari", "schemes": ["http", "https"]}


class NotInstallable(Exception):
    pass


def of(device):
    return device.get("apps", [dict(app) for app in PREINSTALLED])


def find(device, bundle, refusal):
    for app in of(device):
        if app["bundleIdentifier"] == bundle:
            return app
    raise refusal(("The requested application %s is not installed." % bundle, "com.apple.dt.CoreDeviceError", 10002),
                  ("Could not locate installed application with bundle identifier %s." % bundle,
                   "com.apple.dt.CoreDeviceError", 10003))


def for_url(device, url, refusal):
    scheme = url.split(":", 1)[0].lower()
    for app in of(device) + [WEB]:
        if scheme in app.get("schemes", ()):
            return app
    raise refusal(("The URL %s could not be opened." % url, "com.apple.dt.CoreDeviceError", 10002),
                  ("The operation couldn’t be completed. (OSStatus error -10814.)", "NSOSStatusErrorDomain", -10814))


def read_bundle(path):
    """The record of an .app folder or an .ipa file."""
    if not os.path.exists(path):
        raise NotInstallable("The file couldn’t be opened because it doesn’t exist: %s" % path)
    try:
        info = plistlib.loads(info_of_archive(path) if path.endswith(".ipa") else info_of_folder(path))
    except (OSError, KeyError, zipfile.BadZipFile, plistlib.InvalidFileException, ValueError) as problem:
        raise NotInstallable("Failed to load Info.plist from bundle at path %s" % path) from problem
    if info.get("DTPlatformName", "iphoneos") != "iphoneos":
        raise NotInstallable("This app was built for %s and can't run on a device." % info["DTPlatformName"])
    bundle = info.get("CFBundleIdentifier")
    if not bundle:
        raise NotInstallable("Missing CFBundleIdentifier in the Info.plist of %s" % path)
    name = info.get("CFBundleName") or os.path.splitext(os.path.basename(path))[0]
    schemes = [scheme for kind in info.get("CFBundleURLTypes", []) for scheme in kind.get("CFBundleURLSchemes", [])]
    return {"name": info.get("CFBundleDisplayName") or name, "bundleIdentifier": bundle,
            "version": info.get("CFBundleShortVersionString", "1.0"), "bundleVersion": info.get("CFBundleVersion", "1"),
            "executable": info.get("CFBundleExecutable") or name, "schemes": schemes}


def info_of_folder(path):
    with open(os.path.join(path, "Info.plist"), "rb") as file:
        return file.read()


def info_of_archive(path):
    with zipfile.ZipFile(path) as archive:
        for name in archive.namelist():
            parts = name.split("/")
            if len(parts) == 3 and parts[0] == "Payload" and parts[1].endswith(".app") and parts[2] == "Info.plist":
                return archive.read(name)
    raise KeyError("Info.plist")


def url(app):
    digest = hashlib.md5(app["bundleIdentifier"].encode()).hexdigest().upper()
    container = "-".join((digest[:8], digest[8:12], digest[12:16], digest[16:20], digest[20:]))
    return "file:///private/var/containers/Bundle/Application/%s/%s.app/" % (container, app["executable"])


def executable(app):
    return url(app) + app["executable"]


def described(app):
    return {"appClip": False, "builtByDeveloper": True, "bundleIdentifier": app["bundleIdentifier"],
            "bundleVersion": app["bundleVersion"], "defaultApp": False, "hidden": False, "internalApp": False,
            "name": app["name"], "removable": True, "url": url(app), "version": app["version"]}
