"""Reads of a project on disk what the demo's tools tell of it."""

import os
import re
from collections import namedtuple

Project = namedtuple("Project", "name path is_workspace targets configurations schemes")


class NotFound(Exception):
    """Its text is what xcodebuild prints."""


def find(workspace=None, project=None):
    if workspace:
        return read_workspace(existing(workspace))
    if project:
        return read_project(existing(project))
    names = sorted(os.listdir("."))
    for suffix, read in ((".xcworkspace", read_workspace), (".xcodeproj", read_project)):
        found = [name for name in names if name.endswith(suffix)]
        if found:
            return read(found[0])
    raise NotFound("The directory %s does not contain an Xcode project, workspace or package." % os.getcwd())


def existing(path):
    if not os.path.isdir(path):
        raise NotFound("'%s' does not exist." % path)
    return path.rstrip("/")


def read_project(path):
    try:
        with open(os.path.join(path, "project.pbxproj"), encoding="utf-8") as file:
            text = file.read()
    except OSError:
        raise NotFound("Unable to read project '%s'." % os.path.basename(path)) from None
    targets = re.findall(r"/\* (.+?) \*/", "".join(re.findall(r"^\t\t\ttargets = \((.*?)\);", text, re.DOTALL | re.M)))
    configurations = sorted(set(names_in(text, "XCBuildConfiguration")))
    return Project(base_name(path), path, False, targets, configurations, schemes_of(path) or targets[:1])


def read_workspace(path):
    schemes = set(schemes_of(path))
    try:
        with open(os.path.join(path, "contents.xcworkspacedata"), encoding="utf-8") as file:
            members = re.findall(r'location\s*=\s*"(?:group|container):([^"]+\.xcodeproj)"', file.read())
    except OSError:
        members = []
    for member in members:
        schemes.update(schemes_of(os.path.join(os.path.dirname(path), member)))
    return Project(base_name(path), path, True, [], [], sorted(schemes))


def names_in(text, section):
    body = re.search(r"/\* Begin %s section \*/(.*?)/\* End" % section, text, re.DOTALL)
    return re.findall(r'^\t\t\tname = "?([^";]+)"?;', body.group(1), re.MULTILINE) if body else []


def schemes_of(container):
    folder = os.path.join(container, "xcshareddata", "xcschemes")
    if not os.path.isdir(folder):
        return []
    return sorted(name[: -len(".xcscheme")] for name in os.listdir(folder) if name.endswith(".xcscheme"))


def base_name(path):
    return os.path.splitext(os.path.basename(path))[0]
