"""The log of a build in the form of xcodebuild: steps with their commands beneath them, target by target."""

TOOLCHAIN = "/Applications/Xcode.app/Contents/Developer/Toolchains/XcodeDefault.xctoolchain/usr/bin/"
PLATFORMS = "/Applications/Xcode.app/Contents/Developer/Platforms/"
PACKAGE_SOURCES = ("Almanac", "Amplitude", "Calendar", "Constituent", "Datum", "Ebb", "Flood", "Gauge", "Harmonic",
                   "Interpolation", "Moon", "Neap", "Phase", "Prediction", "Range", "Spring", "Station", "Sun", "Table",
                   "Zone")


class Target:
    """`sources` are absolute paths; `product` is what it links."""

    def __init__(self, name, project, folder, sources, product):
        self.name, self.project, self.folder, self.sources, self.product = name, project, folder, sources, product

    @property
    def place(self):
        return "(in target '%s' from project '%s')" % (self.name, self.project)


def escaped(text):
    return text.replace(" ", "\\ ")


class Layout:
    """Where a build puts its files. `sdk`: iphonesimulator, iphoneos or macosx."""

    def __init__(self, derived_data, configuration, sdk):
        self.derived_data, self.configuration, self.sdk = derived_data, configuration, sdk
        suffix = "" if sdk == "macosx" else "-" + sdk
        self.products = derived_data + "/Build/Products/" + configuration + suffix
        self.intermediates = derived_data + "/Build/Intermediates.noindex"

    def objects(self, target):
        return "%s/%s.build/%s/%s.build/Objects-normal/arm64" % (
            self.intermediates, target.project, self.products.rpartition("/")[2], target.name)


def graph(targets):
    yield ["ComputePackagePrebuildTargetDependencyGraph"]
    yield ["Prepare packages"]
    yield ["CreateBuildRequest"]
    yield ["SendProjectDescription"]
    yield ["CreateBuildOperation"]
    lines = ["ComputeTargetDependencyGraph", "note: Building targets in dependency order",
             "note: Target dependency graph (%d target%s)" % (len(targets), "" if len(targets) == 1 else "s")]
    for number, target in enumerate(reversed(targets)):
        first = "    Target '%s' in project '%s'" % (target.name, target.project)
        others = targets[: len(targets) - number - 1]
        lines.append(first if others else first + " (no dependencies)")
        lines += ["        ➜ Explicit dependency on target '%s' in project '%s'" % (other.name, other.project)
                  for other in others]
    yield lines
    yield ["GatherProvisioningInputs"]
    yield ["CreateBuildDescription"]


def tools(layout):
    sdk = PLATFORMS + {"iphonesimulator": "iPhoneSimulator", "iphoneos": "iPhoneOS", "macosx": "MacOSX"}[layout.sdk]
    yield ["ExecuteExternalTool %sclang -v -E -dM -isysroot %s.platform/Developer/SDKs -x c -c /dev/null"
           % (TOOLCHAIN, sdk)]
    yield ["ExecuteExternalTool %sswiftc --version" % TOOLCHAIN]
    yield ["Build description signature: 0f3cfa6d2d6f41c1a4a1d6b5a2f0e8c7",
           "Build description path: %s/XCBuildData/0f3cfa6d2d6f41c1a4a1d6b5a2f0e8c7.xcbuilddata" % layout.intermediates]


def step(title, folder, *commands):
    return [title, "    cd " + escaped(folder)] + ["    " + command for command in commands]


def compile_steps(target, layout):
    objects = layout.objects(target)
    driver = "builtin-SwiftDriver -- %sswiftc -module-name %s -Onone -target arm64-apple-ios17.0" % (
        TOOLCHAIN, target.name)
    yield step("SwiftDriver %s normal arm64 com.apple.xcode.tools.swift.compiler %s" % (target.name, target.place),
               target.folder, driver)
    for source in target.sources:
        name = source.rpartition("/")[2]
        yield ["SwiftCompile normal arm64 Compiling\\ %s %s %s" % (escaped(name), escaped(source), target.place)]
        yield step("SwiftCompile normal arm64 %s %s" % (escaped(source), target.place), target.folder,
                   "builtin-swiftTaskExecution -- %sswift-frontend -frontend -c -primary-file %s -o %s/%s.o"
                   % (TOOLCHAIN, escaped(source), escaped(objects), escaped(name.rpartition(".")[0])))
    yield ["SwiftEmitModule normal arm64 Emitting\\ module\\ for\\ %s %s" % (target.name, target.place)]
    yield step("EmitSwiftModule normal arm64 %s" % target.place, target.folder,
               "builtin-swiftTaskExecution -- %sswift-frontend -frontend -emit-module" % TOOLCHAIN)
    yield step("SwiftDriver\\ Compilation\\ Requirements %s normal arm64 com.apple.xcode.tools.swift.compiler %s"
               % (target.name, target.place), target.folder, "builtin-Swift-Compilation-Requirements -- %sswiftc" % TOOLCHAIN)


def link_steps(target, layout):
    yield step("Ld %s normal %s" % (escaped(target.product), target.place), target.folder,
               "%sclang -Xlinker -reproducible -target arm64-apple-ios17.0 -o %s" % (TOOLCHAIN, escaped(target.product)))
    yield step("GenerateDSYMFile %s.dSYM %s %s" % (escaped(target.product), escaped(target.product), target.place),
               target.folder, "%sdsymutil %s" % (TOOLCHAIN, escaped(target.product)))


def resource_steps(target, app, layout):
    info = app + ("/Contents/Info.plist" if layout.sdk == "macosx" else "/Info.plist")
    yield step("CompileAssetCatalog %s %s/%s/Assets.xcassets %s"
               % (escaped(app), escaped(target.folder), target.name, target.place), target.folder,
               "/Applications/Xcode.app/Contents/Developer/usr/bin/actool --compile " + escaped(app))
    for language in ("en", "de"):
        yield step("CopyStringsFile %s/%s.lproj/Localizable.strings %s/%s.lproj/Localizable.strings %s"
                   % (escaped(app), language, escaped(layout.intermediates), language, target.place), target.folder,
                   "builtin-copyStrings --validate --outputencoding binary -- Localizable.strings")
    yield step("ProcessInfoPlistFile %s %s/%s/Info.plist %s"
               % (escaped(info), escaped(target.folder), target.name, target.place), target.folder,
               "builtin-infoPlistUtility %s/Info.plist -producttype com.apple.product-type.application" % target.name)


def last_steps(target, app):
    yield step("CodeSign %s %s" % (escaped(app), target.place), target.folder, "",
               'Signing Identity:     "Sign to Run Locally"', "",
               "/usr/bin/codesign --force --sign - --timestamp\\=none --generate-entitlement-der " + escaped(app))
    yield step("RegisterExecutionPolicyException %s %s" % (escaped(app), target.place), target.folder,
               "builtin-RegisterExecutionPolicyException " + escaped(app))
    yield step("Validate %s %s" % (escaped(app), target.place), target.folder,
               "builtin-validationUtility %s -shallow-bundle" % escaped(app))
    yield step("Touch %s %s" % (escaped(app), target.place), target.folder, "/usr/bin/touch -c " + escaped(app))
