"""xcodebuild -showBuildSettings, -showTestPlans and -showdestinations."""

import glob
import json
import os
import re
import sys
import xml.etree.ElementTree as ElementTree

from halyard_demo import project_model
from halyard_demo.simctl_list import runtime_identifier

OPTIONS = ("-showBuildSettings", "-showTestPlans", "-showdestinations")
SDKS = {"iphoneos": "iPhoneOS", "iphonesimulator": "iPhoneSimulator", "macosx": "MacOSX"}


def serves(arguments):
    return any(option in arguments for option in OPTIONS)


def run(arguments, state):
    try:
        project = project_model.find(value_of(arguments, "-workspace"), value_of(arguments, "-project"))
        scheme = value_of(arguments, "-scheme")
        if scheme is None and "-showBuildSettings" not in arguments:
            raise project_model.NotFound("You must specify a scheme with -scheme.")
        if scheme is not None and scheme not in project.schemes:
            kind = "workspace" if project.is_workspace else "project"
            raise project_model.NotFound('The %s named "%s" does not contain a scheme named "%s". The "-list" option can '
                                         "be used to find the names of the schemes in the %s."
                                         % (kind, project.name, scheme, kind))
    except project_model.NotFound as problem:
        print("xcodebuild: error: %s" % problem, file=sys.stderr)
        return 66 if "does not" in str(problem) and "scheme" not in str(problem) else 65
    if "-showTestPlans" in arguments:
        return show_test_plans(project, scheme)
    if "-showdestinations" in arguments:
        return show_destinations(scheme, state)
    return show_build_settings(arguments, project, scheme, state)


def value_of(arguments, option):
    return arguments[arguments.index(option) + 1] if option in arguments[:-1] else None


def scheme_document(project, scheme):
    """The scheme's XML, of the project or of one beside the workspace; None without a file."""
    folder = os.path.dirname(project.path) or "."
    pattern = os.path.join(glob.escape(folder), "**", "xcschemes", glob.escape(scheme) + ".xcscheme")
    for path in sorted(glob.glob(pattern, recursive=True)):
        return ElementTree.parse(path)
    return None


def target_of(project, scheme):
    document = scheme_document(project, scheme) if scheme else None
    reference = document.find(".//BuildActionEntry/BuildableReference") if document is not None else None
    if reference is not None:
        return reference.get("BlueprintName")
    return (project.targets or [project.name])[0]


def project_text(project):
    folder = os.path.dirname(project.path) or "."
    paths = [os.path.join(project.path, "project.pbxproj")]
    paths += sorted(glob.glob(os.path.join(glob.escape(folder), "*.xcodeproj", "project.pbxproj")))
    for path in paths:
        try:
            with open(path, encoding="utf-8") as file:
                return file.read()
        except OSError:
            continue
    return ""


def own_settings(text, target, configuration):
    """The settings that the project's file gives the target in a configuration."""
    escaped = re.escape(target)
    listed = re.search(r'/\* Build configuration list for PBXNativeTarget "%s" \*/ = \{.*?buildConfigurations = \((.*?)\);'
                       % escaped, text, re.DOTALL)
    settings = {}
    for identifier, name in re.findall(r"(\w{24}) /\* (.+?) \*/", listed.group(1) if listed else ""):
        if name != configuration:
            continue
        body = re.search(r"\t\t%s /\* .+? \*/ = \{.*?buildSettings = \{(.*?)\n\t\t\t\};" % identifier, text, re.DOTALL)
        settings.update(re.findall(r'^\t\t\t\t"?(\w+)"? = "?([^";]*)"?;', body.group(1) if body else "", re.MULTILINE))
    return settings


def sdk_of(arguments, platforms):
    destination = value_of(arguments, "-destination") or ""
    if "macOS" in destination or platforms == ["macosx"]:
        return "macosx"
    return "iphonesimulator" if "Simulator" in destination else "iphoneos"


def build_settings(arguments, project, scheme, state):
    target = target_of(project, scheme)
    configuration = value_of(arguments, "-configuration") or "Debug"
    own = own_settings(project_text(project), target, configuration)
    platforms = state.settings.get("platforms") or own.get("SUPPORTED_PLATFORMS", "iphoneos iphonesimulator")
    sdk = sdk_of(arguments, platforms.split())
    suffix = configuration if sdk == "macosx" else configuration + "-" + sdk
    derived = value_of(arguments, "-derivedDataPath") or os.path.join(
        state.home, "Library/Developer/Xcode/DerivedData", project.name + "-demo")
    products = os.path.join(derived, "Build/Products", suffix)
    settings = {
        "ACTION": "build", "CONFIGURATION": configuration, "BUILT_PRODUCTS_DIR": products, "TARGET_BUILD_DIR": products,
        "BUILD_DIR": os.path.join(derived, "Build/Products"), "OBJROOT": os.path.join(derived, "Build/Intermediates.noindex"),
        "PROJECT": project.name, "PROJECT_NAME": project.name, "TARGET_NAME": target, "TARGETNAME": target,
        "PRODUCT_NAME": target, "FULL_PRODUCT_NAME": target + ".app", "WRAPPER_NAME": target + ".app",
        "PLATFORM_NAME": sdk, "SDK_NAME": sdk + "18.2", "SDKROOT": SDKS[sdk], "SRCROOT": os.path.abspath(
            os.path.dirname(project.path) or "."),
        "SUPPORTED_PLATFORMS": platforms, "SUPPORTS_MACCATALYST": state.settings.get("catalyst", "NO"),
        "ARCHS": "arm64", "ONLY_ACTIVE_ARCH": "YES", "SWIFT_VERSION": "5.0", "ENABLE_TESTABILITY": "YES",
    }
    references = {"$(TARGET_NAME)": target, "$(BUILT_PRODUCTS_DIR)": products}
    for name, value in own.items():
        for reference, meaning in references.items():
            value = value.replace(reference, meaning)
        settings.setdefault(name, value)
    return target, settings


def show_build_settings(arguments, project, scheme, state):
    target, settings = build_settings(arguments, project, scheme, state)
    if "-json" in arguments:
        document = [{"action": "build", "target": target, "buildSettings": settings}]
        print(json.dumps(document, indent=2, separators=(",", " : "), sort_keys=True))
        return 0
    print("Command line invocation:")
    print("    /Applications/Xcode.app/Contents/Developer/usr/bin/xcodebuild " + " ".join(arguments) + "\n")
    print("Build settings for action build and target %s:" % target)
    for name in sorted(settings):
        print("    %s = %s" % (name, settings[name]))
    print()
    return 0


def show_test_plans(project, scheme):
    document = scheme_document(project, scheme)
    references = document.findall("./TestAction/TestPlans/TestPlanReference") if document is not None else []
    if not references:
        print('Scheme "%s" does not have any associated test plans.' % scheme)
        return 0
    print('Test plans associated with the scheme "%s":' % scheme)
    for reference in references:
        name = os.path.basename(reference.get("reference", "").split(":", 1)[-1])
        print("        " + (name[: -len(".xctestplan")] if name.endswith(".xctestplan") else name))
    return 0


def show_destinations(scheme, state):
    data = state.read()
    versions = {runtime_identifier(runtime): runtime["version"] for runtime in data["runtimes"]
                if runtime["available"] and runtime["platform"] == "iOS"}
    print('\n\n\tAvailable destinations for the "%s" scheme:' % scheme)
    for device in data["devices"]:
        print("\t\t{ platform:iOS, arch:arm64, id:%s, name:%s }" % (device["udid"], device["name"]))
    print("\t\t{ platform:iOS, id:dvtdevice-DVTiPhonePlaceholder-iphoneos:placeholder, name:Any iOS Device }")
    print("\t\t{ platform:iOS Simulator, id:dvtdevice-DVTiOSDeviceSimulatorPlaceholder-iphonesimulator:placeholder, "
          "name:Any iOS Simulator Device }")
    for device in data["simulators"]:
        if device["runtime"] in versions:
            print("\t\t{ platform:iOS Simulator, id:%s, OS:%s, name:%s }"
                  % (device["udid"], versions[device["runtime"]], device["name"]))
    print()
    return 0
