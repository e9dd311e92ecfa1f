"""The sample app's shared schemes."""

from halyard_demo.sample_ids import identifier

PRODUCTS = {"Harbor": "Harbor.app", "HarborTests": "HarborTests.xctest", "HarborUITests": "HarborUITests.xctest"}


def reference(target, indent):
    lines = ["<BuildableReference",
             '   BuildableIdentifier = "primary"',
             '   BlueprintIdentifier = "%s"' % identifier("target " + target),
             '   BuildableName = "%s"' % PRODUCTS[target],
             '   BlueprintName = "%s"' % target,
             '   ReferencedContainer = "container:Harbor.xcodeproj">',
             "</BuildableReference>"]
    return "\n".join(" " * indent + line for line in lines) + "\n"


def build_entry(target):
    return ('         <BuildActionEntry\n            buildForTesting = "YES"\n            buildForRunning = "YES"\n'
            '            buildForProfiling = "YES"\n            buildForArchiving = "YES"\n'
            '            buildForAnalyzing = "YES">\n' + reference(target, 12) + "         </BuildActionEntry>\n")


def test_plans(names):
    """The first is the default one."""
    if not names:
        return ""
    rows = ['         <TestPlanReference\n            reference = "container:%s.xctestplan"%s>\n         </TestPlanReference>\n'
            % (name, "" if number else '\n            default = "YES"') for number, name in enumerate(names)]
    return "      <TestPlans>\n" + "".join(rows) + "      </TestPlans>\n"


def testables(targets):
    if not targets:
        return ""
    rows = ['         <TestableReference\n            skipped = "NO">\n' + reference(target, 12)
            + "         </TestableReference>\n" for target in targets]
    return "      <Testables>\n" + "".join(rows) + "      </Testables>\n"


def runnable():
    return ('      <BuildableProductRunnable\n         runnableDebuggingMode = "0">\n' + reference("Harbor", 9)
            + "      </BuildableProductRunnable>\n")


def scheme_file(target, plans=(), tests=()):
    is_app = target == "Harbor"
    return ("""<?xml version="1.0" encoding="UTF-8"?>
<Scheme
   LastUpgradeVersion = "1620"
   version = "1.7">
   <BuildAction
      parallelizeBuildables = "YES"
      buildImplicitDependencies = "YES">
      <BuildActionEntries>
""" + build_entry(target) + """      </BuildActionEntries>
   </BuildAction>
   <TestAction
      buildConfiguration = "Debug"
      selectedDebuggerIdentifier = "Xcode.DebuggerFoundation.Debugger.LLDB"
      selectedLauncherIdentifier = "Xcode.DebuggerFoundation.Launcher.LLDB"
      shouldUseLaunchSchemeArgsEnv = "YES">
""" + test_plans(plans) + testables(tests) + """   </TestAction>
   <LaunchAction
      buildConfiguration = "Debug"
      selectedDebuggerIdentifier = "Xcode.DebuggerFoundation.Debugger.LLDB"
      selectedLauncherIdentifier = "Xcode.DebuggerFoundation.Launcher.LLDB"
      launchStyle = "0"
      useCustomWorkingDirectory = "NO"
      ignoresPersistentStateOnLaunch = "NO"
      debugDocumentVersioning = "YES"
      debugServiceExtension = "internal"
      allowLocationSimulation = "YES">
""" + (runnable() if is_app else "") + """   </LaunchAction>
   <ProfileAction
      buildConfiguration = "Release"
      shouldUseLaunchSchemeArgsEnv = "YES"
      savedToolIdentifier = ""
      useCustomWorkingDirectory = "NO"
      debugDocumentVersioning = "YES">
""" + (runnable() if is_app else "") + """   </ProfileAction>
   <AnalyzeAction
      buildConfiguration = "Debug">
   </AnalyzeAction>
   <ArchiveAction
      buildConfiguration = "Release"
      revealArchiveInOrganizer = "YES">
   </ArchiveAction>
</Scheme>
""")
