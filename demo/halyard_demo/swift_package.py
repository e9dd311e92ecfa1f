"""swift package: resolve, update and show-dependencies, from Package.swift and Package.resolved."""

import hashlib
import json
import os
import re

from halyard_demo import dispatcher
from halyard_demo.package_network import Network, complain, next_version, read, write

DEPENDENCY = re.compile(r'\.package\(\s*(?:name:\s*"[^"]*",\s*)?url:\s*"([^"]+)"(?:,\s*(?:from|exact):\s*"([^"]+)"|'
                        r',\s*branch:\s*"([^"]+)")?')


def run(arguments, state):
    command = COMMANDS.get(arguments[0] if arguments else None)
    if command is None:
        return dispatcher.not_yet("swift", ["package"] + arguments)
    folder = package_folder()
    if folder is None:
        return complain("error: Could not find Package.swift in this directory or any of its parent directories.")
    return command(folder, Network(state))


def package_folder():
    folder = os.getcwd()
    while not os.path.isfile(os.path.join(folder, "Package.swift")):
        above = os.path.dirname(folder)
        if above == folder:
            return None
        folder = above
    return folder


def identity(url):
    name = url.rstrip("/").rpartition("/")[2]
    return (name[:-4] if name.endswith(".git") else name).lower()


def wanted(folder):
    """The pins that the manifest asks for, by their identities."""
    pins = {}
    for url, version, branch in DEPENDENCY.findall(read(os.path.join(folder, "Package.swift"))):
        state = {"revision": hashlib.sha1(url.encode()).hexdigest()}
        state.update({"branch": branch} if branch else {"version": version or "1.0.0"})
        pins[identity(url)] = {"identity": identity(url), "kind": "remoteSourceControl", "location": url, "state": state}
    return pins


def pinned(folder):
    try:
        return {pin["identity"]: pin for pin in json.loads(read(resolved(folder)) or "{}").get("pins", ())}
    except (ValueError, KeyError, TypeError):
        return {}


def resolved(folder):
    return os.path.join(folder, "Package.resolved")


def keep(folder, pins):
    document = {"originHash": hashlib.sha256(read(os.path.join(folder, "Package.swift")).encode()).hexdigest(),
                "pins": [pins[key] for key in sorted(pins)], "version": 3}
    write(resolved(folder), json.dumps(document, indent=2, separators=(",", " : ")) + "\n")


def shown_version(pin):
    return pin["state"].get("version") or pin["state"].get("branch")


def unreachable(url):
    host = re.sub(r"^[a-z+]*://|^[^@/]*@", "", url).split("/")[0].split(":")[0]
    return complain("error: Failed to clone repository %s:" % url, "    Cloning into bare repository "
                    "'%s/.build/repositories/%s'..." % (os.getcwd(), identity(url)),
                    "    fatal: unable to access '%s/': Could not resolve host: %s" % (url, host))


def resolve(folder, network):
    pins, known = wanted(folder), pinned(folder)
    pins = {key: known.get(key, pin) for key, pin in pins.items()}
    urls = [pin["location"] for pin in pins.values()]
    for url in urls:
        network.say("Fetching %s from cache" % url)
    if network.is_down and urls:
        return unreachable(urls[0])
    for url in urls:
        network.say("Fetched %s from cache (%.2fs)" % (url, network.pace))
    for pin in pins.values():
        network.say("Computing version for %s" % pin["location"], paced=False)
        network.say("Computed %s at %s (%.2fs)" % (pin["location"], shown_version(pin), network.pace))
    check_out(pins, network)
    keep(folder, pins)
    return 0


def check_out(pins, network):
    for pin in pins.values():
        network.say("Creating working copy for %s" % pin["location"], paced=False)
        network.say("Working copy of %s resolved at %s" % (pin["location"], shown_version(pin)))


def update(folder, network):
    pins, known = wanted(folder), pinned(folder)
    for pin in pins.values():
        network.say("Updating %s" % pin["location"])
        if network.is_down:
            return unreachable(pin["location"])
        network.say("Updated %s (%.2fs)" % (pin["location"], network.pace))
    changed = []
    for key, pin in pins.items():
        before = known.get(key, pin)
        if "version" in before["state"]:
            pin["state"] = dict(before["state"], version=next_version(before["state"]["version"]))
            changed.append(pin)
    check_out({pin["identity"]: pin for pin in changed}, network)
    keep(folder, pins)
    if not changed:
        print("Everything is already up-to-date")
    return 0


def show_dependencies(folder, network):
    pins = dict(wanted(folder), **{key: pin for key, pin in pinned(folder).items()})
    if not pins:
        print("No external dependencies found")
        return 0
    print(".")
    ordered = list(pins.values())
    for pin in ordered:
        branch = "└── " if pin is ordered[-1] else "├── "
        print(branch + "%s<%s@%s>" % (pin["identity"], pin["location"], shown_version(pin)))
    return 0


COMMANDS = {"resolve": resolve, "update": update, "show-dependencies": show_dependencies}
