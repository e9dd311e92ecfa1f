"""The sample app's project.pbxproj, in the old property-list form with the comments that Xcode puts in."""

import re

from halyard_demo.sample_ids import identifier

PLAIN = re.compile(r"^[A-Za-z0-9_./]+$")
ONE_LINE = ("PBXBuildFile", "PBXFileReference")

APP_SOURCES = ("HarborApp.swift", "ContentView.swift", "Berth.swift")
APP_RESOURCES = ("Assets.xcassets", "Localizable.xcstrings", "PrivacyInfo.xcprivacy")
APP_OTHERS = ("Info.plist", "Harbor.entitlements")
TEST_TARGETS = {
    # name: product type, sources
    "HarborTests": ("com.apple.product-type.bundle.unit-test", ("BerthTests.swift", "FeeTests.swift")),
    "HarborUITests": ("com.apple.product-type.bundle.ui-testing", ("HarborUITests.swift",)),
}
FILE_TYPES = {".swift": "sourcecode.swift", ".xcassets": "folder.assetcatalog", ".plist": "text.plist.xml",
              ".xcstrings": "text.json.xcstrings", ".xcprivacy": "text.xml", ".entitlements": "text.plist.entitlements",
              ".xctestplan": "text"}
PACKAGE = "TideTables"

COMMON_SETTINGS = {"ALWAYS_SEARCH_USER_PATHS": "NO", "CLANG_ENABLE_MODULES": "YES", "CLANG_ENABLE_OBJC_ARC": "YES",
                   "COPY_PHASE_STRIP": "NO", "ENABLE_USER_SCRIPT_SANDBOXING": "YES", "GCC_C_LANGUAGE_STANDARD": "gnu17",
                   "IPHONEOS_DEPLOYMENT_TARGET": "17.0", "LOCALIZATION_PREFERS_STRING_CATALOGS": "YES",
                   "SDKROOT": "iphoneos", "SWIFT_VERSION": "5.0"}
CONFIGURATION_SETTINGS = {
    "Debug": {"DEBUG_INFORMATION_FORMAT": "dwarf", "ENABLE_TESTABILITY": "YES", "GCC_OPTIMIZATION_LEVEL": "0",
              "ONLY_ACTIVE_ARCH": "YES", "SWIFT_ACTIVE_COMPILATION_CONDITIONS": "DEBUG $(inherited)",
              "SWIFT_OPTIMIZATION_LEVEL": "-Onone"},
    "Release": {"DEBUG_INFORMATION_FORMAT": "dwarf-with-dsym", "ENABLE_NS_ASSERTIONS": "NO",
                "SWIFT_COMPILATION_MODE": "wholemodule", "VALIDATE_PRODUCT": "YES"},
}


class Reference:
    """Another object, with the comment that stands behind its identifier."""

    def __init__(self, words, comment):
        self.text = identifier(words) + (" /* %s */" % comment if comment else "")


class Objects:
    def __init__(self):
        self.sections = {}

    def add(self, isa, words, comment, fields):
        reference = Reference(words, comment)
        self.sections.setdefault(isa, []).append((reference, dict(isa=isa, **fields)))
        return reference

    def text(self):
        parts = []
        for isa in sorted(self.sections):
            parts.append("\n/* Begin %s section */\n" % isa)
            for reference, fields in sorted(self.sections[isa], key=lambda entry: entry[0].text):
                parts.append("\t\t%s = %s;\n" % (reference.text, spelled(fields, 2, isa in ONE_LINE)))
            parts.append("/* End %s section */\n" % isa)
        return "".join(parts)


def spelled(value, depth, one_line=False):
    if isinstance(value, Reference):
        return value.text
    if isinstance(value, dict):
        return "{" + spelled_rows(["%s = %s;" % (spelled(key, 0), spelled(item, depth + 1, one_line))
                                   for key, item in value.items()], depth, one_line) + "}"
    if isinstance(value, (list, tuple)):
        return "(" + spelled_rows([spelled(item, depth + 1, one_line) + "," for item in value], depth, one_line) + ")"
    text = str(value)
    return text if PLAIN.match(text) else '"%s"' % text.replace("\\", "\\\\").replace('"', '\\"')


def spelled_rows(rows, depth, one_line):
    if one_line:
        return "".join(row + " " for row in rows)
    return "\n" + "".join("\t" * (depth + 1) + row + "\n" for row in rows) + "\t" * depth


def file_reference(objects, path, name):
    kind = FILE_TYPES[name[name.rindex("."):]]
    return objects.add("PBXFileReference", "file " + path + name, name,
                       {"lastKnownFileType": kind, "path": name, "sourceTree": "<group>"})


def group(objects, name, children, path=True):
    fields = {"children": children}
    if name:
        fields["path" if path else "name"] = name
    fields["sourceTree"] = "<group>"
    return objects.add("PBXGroup", "group " + name, name, fields)


def build_files(objects, target, phase, files):
    result = []
    for name, reference in files:
        comment = "%s in %s" % (name, phase)
        result.append(objects.add("PBXBuildFile", "build " + target + name, comment, {"fileRef": reference}))
    return result


def phase(objects, target, kind, files):
    return objects.add("PBX%sBuildPhase" % kind, "phase " + kind + target, kind,
                       {"buildActionMask": "2147483647", "files": files, "runOnlyForDeploymentPostprocessing": "0"})


def configurations(objects, owner, kind, settings_of):
    entries = [objects.add("XCBuildConfiguration", "configuration " + owner + kind + name, name,
                           {"buildSettings": dict(sorted(settings_of(name).items())), "name": name})
               for name in ("Debug", "Release")]
    comment = 'Build configuration list for %s "%s"' % (kind, owner)
    return objects.add("XCConfigurationList", "configurations " + owner + kind, comment,
                       {"buildConfigurations": entries, "defaultConfigurationIsVisible": "0",
                        "defaultConfigurationName": "Release"})


def target(objects, name, product_type, sources, resources, extra_frameworks=(), dependencies=(), packages=()):
    suffix = ".app" if name == "Harbor" else ".xctest"
    kind = "wrapper.application" if suffix == ".app" else "wrapper.cfbundle"
    product = objects.add("PBXFileReference", "product " + name, name + suffix,
                          {"explicitFileType": kind, "includeInIndex": "0", "path": name + suffix,
                           "sourceTree": "BUILT_PRODUCTS_DIR"})
    phases = [phase(objects, name, "Sources", build_files(objects, name, "Sources", sources)),
              phase(objects, name, "Frameworks", list(extra_frameworks)),
              phase(objects, name, "Resources", build_files(objects, name, "Resources", resources))]
    fields = {"buildConfigurationList": configurations(objects, name, "PBXNativeTarget", lambda _: settings_of(name)),
              "buildPhases": phases, "buildRules": [], "dependencies": list(dependencies), "name": name}
    if packages:
        fields["packageProductDependencies"] = list(packages)
    fields.update({"productName": name, "productReference": product, "productType": product_type})
    return objects.add("PBXNativeTarget", "target " + name, name, fields), product


def settings_of(name):
    settings = {"CODE_SIGN_STYLE": "Automatic", "CURRENT_PROJECT_VERSION": "7", "MARKETING_VERSION": "1.2.0",
                "PRODUCT_NAME": "$(TARGET_NAME)", "SWIFT_EMIT_LOC_STRINGS": "NO", "TARGETED_DEVICE_FAMILY": "1,2",
                "PRODUCT_BUNDLE_IDENTIFIER": "com.example.harbor"}
    if name == "Harbor":
        settings.update({"ASSETCATALOG_COMPILER_GLOBAL_ACCENT_COLOR_NAME": "AccentColor",
                         "CODE_SIGN_ENTITLEMENTS": "Harbor/Harbor.entitlements", "DEVELOPMENT_TEAM": "DEMO000000",
                         "INFOPLIST_FILE": "Harbor/Info.plist", "SWIFT_EMIT_LOC_STRINGS": "YES"})
        return settings
    settings.update({"GENERATE_INFOPLIST_FILE": "YES",
                     "PRODUCT_BUNDLE_IDENTIFIER": "com.example.harbor." + name[len("Harbor"):].lower()})
    if name == "HarborTests":
        settings.update({"BUNDLE_LOADER": "$(TEST_HOST)",
                         "TEST_HOST": "$(BUILT_PRODUCTS_DIR)/Harbor.app/$(BUNDLE_EXECUTABLE_FOLDER_PATH)/Harbor"})
    else:
        settings["TEST_TARGET_NAME"] = "Harbor"
    return settings


def dependency_on_app(objects, name):
    proxy = objects.add("PBXContainerItemProxy", "proxy " + name, "PBXContainerItemProxy",
                        {"containerPortal": Reference("project", "Project object"), "proxyType": "1",
                         "remoteGlobalIDString": identifier("target Harbor"), "remoteInfo": "Harbor"})
    return objects.add("PBXTargetDependency", "dependency " + name, "PBXTargetDependency",
                       {"target": Reference("target Harbor", "Harbor"), "targetProxy": proxy})


def package_objects(objects):
    """The package's reference, its product, and the build file that links the product."""
    comment = 'XCRemoteSwiftPackageReference "tide-tables"'
    package = objects.add("XCRemoteSwiftPackageReference", "package", comment,
                          {"repositoryURL": "https://example.invalid/tide-tables.git",
                           "requirement": {"kind": "upToNextMajorVersion", "minimumVersion": "1.0.0"}})
    product = objects.add("XCSwiftPackageProductDependency", "package product", PACKAGE,
                          {"package": package, "productName": PACKAGE})
    linked = objects.add("PBXBuildFile", "build package", PACKAGE + " in Frameworks", {"productRef": product})
    return package, product, linked


def app_target(objects, packages):
    files = {name: file_reference(objects, "Harbor/", name) for name in APP_SOURCES + APP_RESOURCES + APP_OTHERS}
    made, product = target(objects, "Harbor", "com.apple.product-type.application",
                           [(name, files[name]) for name in APP_SOURCES],
                           [(name, files[name]) for name in APP_RESOURCES],
                           extra_frameworks=[entry[2] for entry in packages], packages=[entry[1] for entry in packages])
    return made, product, group(objects, "Harbor", list(files.values()))


def test_target(objects, name):
    product_type, names = TEST_TARGETS[name]
    files = [(source, file_reference(objects, name + "/", source)) for source in names]
    made, product = target(objects, name, product_type, files, [], dependencies=[dependency_on_app(objects, name)])
    return made, product, group(objects, name, [reference for _, reference in files])


def project_file(tests, package):
    objects = Objects()
    packages = [package_objects(objects)] if package else []
    parts = [app_target(objects, packages)]
    if tests:
        parts += [test_target(objects, name) for name in TEST_TARGETS]
    targets, products, groups = (list(column) for column in zip(*parts))
    plans = [file_reference(objects, "", name + ".xctestplan") for name in ("Harbor", "Quick")] if tests else []
    products_group = group(objects, "Products", products, path=False)
    main_group = group(objects, "", plans + groups + [products_group])
    attributes = {"BuildIndependentTargetsInParallel": "1", "LastSwiftUpdateCheck": "1620", "LastUpgradeCheck": "1620"}
    settings = configurations(objects, "Harbor", "PBXProject",
                              lambda name: dict(COMMON_SETTINGS, **CONFIGURATION_SETTINGS[name]))
    fields = {"attributes": attributes, "buildConfigurationList": settings, "compatibilityVersion": "Xcode 14.0",
              "developmentRegion": "en", "hasScannedForEncodings": "0", "knownRegions": ["en", "Base", "de"],
              "mainGroup": main_group}
    if packages:
        fields["packageReferences"] = [entry[0] for entry in packages]
    fields.update({"productRefGroup": products_group, "projectDirPath": "", "projectRoot": "", "targets": targets})
    objects.add("PBXProject", "project", "Project object", fields)
    return ("// !$*UTF8*$!\n{\n\tarchiveVersion = 1;\n\tclasses = {\n\t};\n\tobjectVersion = 56;\n\tobjects = {\n"
            + objects.text() + "\t};\n\trootObject = %s;\n}\n" % Reference("project", "Project object").text)
