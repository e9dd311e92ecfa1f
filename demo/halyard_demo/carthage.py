"""carthage: bootstrap, update, outdated, build and the version, from a Cartfile and Cartfile.resolved."""

import os
import re

from halyard_demo import dispatcher
from halyard_demo.package_network import Network, complain, next_version, read, write

VERSION = "0.40.0"
WANTED = re.compile(r'^\s*(github|git|binary)\s+"([^"]+)"(?:\s*(?:~>|>=|==)?\s*"?v?([0-9][^"\s]*)"?)?', re.M)
RESOLVED = re.compile(r'^(github|git|binary) "([^"]+)" "([^"]+)"', re.M)


def run(arguments, state):
    command = COMMANDS.get(arguments[0] if arguments else None)
    if command is None or any(word != "--use-xcframeworks" for word in arguments[1:]):
        return dispatcher.not_yet("carthage", arguments)
    return command(Network(state))


def show_version(network):
    print(VERSION)
    return 0


def name_of(source):
    name = source.rstrip("/").rpartition("/")[2]
    return re.sub(r"\.(git|json)$", "", name)


def wanted():
    """Rows of type, source and version; None without a Cartfile."""
    text = read("Cartfile")
    if text is None:
        return None
    return [(kind, source, version + ".0" * (2 - version.count("."))) for kind, source, version in
            ((kind, source, version or "1.0.0") for kind, source, version in WANTED.findall(text))]


def resolved():
    text = read("Cartfile.resolved")
    return None if text is None else RESOLVED.findall(text)


def no_cartfile():
    return complain("Failed to read file or folder at file://%s/Cartfile" % os.getcwd())


def bootstrap(network):
    rows = resolved()
    if rows is None:
        rows = wanted()
        if rows is None:
            return no_cartfile()
        network.say("*** No Cartfile.resolved found, updating dependencies", paced=False)
        return fetch(rows, network, keep=True)
    return check_out(rows, network)


def update(network):
    rows, before = wanted(), {source: version for _, source, version in resolved() or ()}
    if rows is None:
        return no_cartfile()
    rows = [(kind, source, next_version(before[source]) if source in before else version)
            for kind, source, version in rows]
    return fetch(rows, network, keep=True)


def fetch(rows, network, keep=False):
    for _, source, _ in rows:
        network.say("*** Fetching %s" % name_of(source))
        if network.is_down:
            return unreachable(source)
    if keep:
        write("Cartfile.resolved", "".join('%s "%s" "%s"\n' % row for row in rows))
    return check_out(rows, network)


def unreachable(source):
    url = source if "://" in source else "https://github.com/%s.git" % source
    return complain("A shell task (/usr/bin/env git clone --bare --quiet %s %s) failed with exit code 128:" % (
        url, os.path.expanduser("~/Library/Caches/org.carthage.CarthageKit/dependencies/") + name_of(source)),
        "fatal: unable to access '%s/': Could not resolve host: %s" % (url, url.split("/")[2]))


def check_out(rows, network):
    if network.is_down and rows:
        network.say("*** Fetching %s" % name_of(rows[0][1]))
        return unreachable(rows[0][1])
    for _, source, version in rows:
        network.say('*** Checking out %s at "%s"' % (name_of(source), version))
        os.makedirs(os.path.join("Carthage", "Checkouts", name_of(source)), exist_ok=True)
    return build_all(rows, network)


def build_all(rows, network):
    if rows:
        network.say("*** xcodebuild output can be found in /tmp/carthage-xcodebuild.Hx4bQz.log", paced=False)
    for _, source, _ in rows:
        name = name_of(source)
        network.say('*** Building scheme "%s" in %s.xcodeproj' % (name, name))
        os.makedirs(os.path.join("Carthage", "Build", name + ".xcframework"), exist_ok=True)
    return 0


def outdated(network):
    rows = resolved()
    if rows is None:
        return complain("No Cartfile.resolved found.")
    for _, source, _ in rows:
        network.say("*** Fetching %s" % name_of(source))
        if network.is_down:
            return unreachable(source)
    if not rows:
        print("All dependencies are up to date.")
        return 0
    print("The following dependencies are outdated:")
    for _, source, version in rows:
        newer = next_version(version)
        print('%s "%s" -> "%s" (Latest: "%s")' % (name_of(source), version, newer, newer))
    return 0


def build(network):
    rows = resolved()
    return complain("No Cartfile.resolved found.") if rows is None else build_all(rows, network)


COMMANDS = {"version": show_version, "bootstrap": bootstrap, "update": update, "outdated": outdated, "build": build}
