"""The app that a build of the demo leaves on disk: a folder with an Info.plist and something to run."""

import os
import plistlib
import re
import shutil

EXECUTABLE = b"#!/bin/sh\necho \"The demo's app does nothing.\"\n"


def settings_of(project_file):
    """The build settings of the first target in a project's text that names one of its own, by name."""
    try:
        with open(project_file, encoding="utf-8") as file:
            text = file.read()
    except OSError:
        return {}
    settings = {}
    for name, value in re.findall(r'^\t\t\t\t([A-Z][A-Z0-9_]+) = "?([^";]*)"?;', text, re.MULTILINE):
        if "$(" not in value:
            settings.setdefault(name, value)
    identifiers = re.findall(r'PRODUCT_BUNDLE_IDENTIFIER = "?([^";]+)"?;', text)
    if identifiers:
        settings["PRODUCT_BUNDLE_IDENTIFIER"] = min(identifiers, key=len)
    return settings


def information(name, settings, sdk, with_identifier):
    content = {"CFBundleName": name, "CFBundleExecutable": name, "CFBundlePackageType": "APPL",
               "CFBundleShortVersionString": settings.get("MARKETING_VERSION", "1.0"),
               "CFBundleVersion": settings.get("CURRENT_PROJECT_VERSION", "1"), "DTPlatformName": sdk}
    if with_identifier:
        content["CFBundleIdentifier"] = settings.get("PRODUCT_BUNDLE_IDENTIFIER", "com.example." + name.lower())
    return content


def make(app, content):
    shutil.rmtree(app, ignore_errors=True)
    inside = os.path.join(app, "Contents") if content["DTPlatformName"] == "macosx" else app
    program = os.path.join(inside, "MacOS") if content["DTPlatformName"] == "macosx" else inside
    os.makedirs(program)
    with open(os.path.join(inside, "Info.plist"), "wb") as file:
        plistlib.dump(content, file, fmt=plistlib.FMT_BINARY)
    path = os.path.join(program, content["CFBundleExecutable"])
    with open(path, "wb") as file:
        file.write(EXECUTABLE)
    os.chmod(path, 0o755)
    return path
