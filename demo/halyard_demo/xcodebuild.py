"""xcodebuild: its version, what a project holds, and builds (see xcodebuild_actions)."""

import json
import sys

from halyard_demo import dispatcher, project_model

VERSION = ("16.2", "16C5032a")


def run(arguments, state):
    if "-version" in arguments:
        version, build = state.settings.get("xcode", VERSION)
        print("Xcode %s\nBuild version %s" % (version, build))
        return 0
    if "-list" in arguments:
        return list_project(arguments)
    from halyard_demo import xcodebuild_info

    if xcodebuild_info.serves(arguments):
        return xcodebuild_info.run(arguments, state)
    from halyard_demo import xcodebuild_actions  # dear to load

    if xcodebuild_actions.serves(arguments):
        return xcodebuild_actions.run(arguments, state)
    return dispatcher.not_yet("xcodebuild", arguments)


def value_of(arguments, option):
    return arguments[arguments.index(option) + 1] if option in arguments[:-1] else None


def list_project(arguments):
    try:
        project = project_model.find(value_of(arguments, "-workspace"), value_of(arguments, "-project"))
    except project_model.NotFound as problem:
        print("xcodebuild: error: %s" % problem, file=sys.stderr)
        return 66
    if "-json" in arguments:
        print(json.dumps(described(project), indent=2, separators=(",", " : "), sort_keys=True))
    else:
        print_invocation(arguments)
        print_description(project)
    return 0


def described(project):
    if project.is_workspace:
        return {"workspace": {"name": project.name, "schemes": project.schemes}}
    return {"project": {"configurations": project.configurations, "name": project.name, "schemes": project.schemes,
                        "targets": project.targets}}


def print_invocation(arguments):
    print("Command line invocation:")
    print("    /Applications/Xcode.app/Contents/Developer/usr/bin/xcodebuild " + " ".join(arguments) + "\n")


def print_description(project):
    print('Information about %s "%s":' % ("workspace" if project.is_workspace else "project", project.name))
    if not project.is_workspace:
        print_names("Targets", project.targets)
        print()
        print_names("Build Configurations", project.configurations)
        print('\n    If no build configuration is specified and -scheme is not passed then "Release" is used.\n')
    print_names("Schemes", project.schemes)
    print()


def print_names(title, names):
    print("    %s:" % title)
    for name in names:
        print("        " + name)
