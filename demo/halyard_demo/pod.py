"""pod: install, update, the cache and the version, from a Podfile and its lock file."""

import glob
import hashlib
import os
import re
import shutil

from halyard_demo import dispatcher
from halyard_demo.package_network import Network, counted, next_version, read, write

VERSION = "1.16.2"
POD = re.compile(r"""^\s*pod\s+['"]([^'"]+)['"](?:\s*,\s*['"]([^'"]*)['"])?""", re.M)
LOCKED = re.compile(r'^  - "?([^" (]+) \(([^)]+)\)', re.M)


def run(arguments, state):
    words = tuple(word for word in arguments if word != "--no-ansi")
    if words in (("--version",), ("install",), ("update",), ("cache", "clean", "--all")):
        return COMMANDS[words](state)
    return dispatcher.not_yet("pod", arguments)


def show_version(state):
    print(VERSION)
    return 0


def clean_cache(state):
    shutil.rmtree(os.path.join(state.home, "Library", "Caches", "CocoaPods"), ignore_errors=True)
    return 0


def wanted(podfile):
    """Version by name; without a number in its requirement a pod is at 1.0.0."""
    pods = {}
    for name, requirement in POD.findall(podfile):
        numbers = re.search(r"\d+(\.\d+)*", requirement)
        version = numbers.group() if numbers else "1.0.0"
        pods[name] = version + ".0" * (2 - version.count("."))
    return pods


def install(state):
    podfile = read("Podfile")
    if podfile is None:
        print("[!] No `Podfile' found in the project directory.")
        return 1
    known = dict(LOCKED.findall(read("Podfile.lock") or ""))
    pods = {name: known.get(name, version) for name, version in wanted(podfile).items()}
    return integrate(pods, known, podfile, Network(state))


def update(state):
    podfile = read("Podfile")
    if podfile is None:
        print("[!] No `Podfile' found in the project directory.")
        return 1
    network = Network(state)
    network.say("Update all pods", paced=False)
    network.say("Updating local specs repositories")
    known = dict(LOCKED.findall(read("Podfile.lock") or ""))
    pods = {name: next_version(known[name]) if name in known else version for name, version in wanted(podfile).items()}
    return integrate(pods, known, podfile, network)


def integrate(pods, known, podfile, network):
    network.say("Analyzing dependencies")
    if network.is_down:
        network.say("[!] CDN: trunk URL couldn't be downloaded: https://cdn.cocoapods.org/all_pods_versions_2_0_9.txt "
                    "Response: Couldn't resolve host name")
        return 1
    network.say("Downloading dependencies")
    for name, version in sorted(pods.items()):
        is_there = os.path.isdir(os.path.join("Pods", name))
        if is_there and known.get(name) == version:
            network.say("Using %s (%s)" % (name, version))
        elif is_there and name in known:
            network.say("Installing %s %s (was %s)" % (name, version, known[name]))
        else:
            network.say("Installing %s (%s)" % (name, version))
        os.makedirs(os.path.join("Pods", name), exist_ok=True)
    network.say("Generating Pods project")
    network.say("Integrating client project")
    offer_workspace(network)
    write_lock(pods, podfile)
    print("Pod installation complete! There %s %s from the Podfile and %s installed." % (
        "is" if len(pods) == 1 else "are", counted(len(pods), "dependency", "dependencies"),
        counted(len(pods), "total pod", "total pods")))
    return 0


def offer_workspace(network):
    project = next(iter(sorted(glob.glob("*.xcodeproj"))), None)
    if project and not os.path.isfile(os.path.join("Pods", "Manifest.lock")):
        network.say("\n[!] Please close any current Xcode sessions and use `%s.xcworkspace` for this project from now on."
                    % project[:-len(".xcodeproj")], paced=False)


def write_lock(pods, podfile):
    names = sorted(pods)
    text = "PODS:\n" + "".join("  - %s (%s)\n" % (name, pods[name]) for name in names)
    text += "\nDEPENDENCIES:\n" + "".join("  - %s\n" % name for name in names)
    text += "\nSPEC REPOS:\n  trunk:\n" + "".join("    - %s\n" % name for name in names)
    text += "\nSPEC CHECKSUMS:\n"
    text += "".join("  %s: %s\n" % (name, hashlib.sha1((name + pods[name]).encode()).hexdigest()) for name in names)
    text += "\nPODFILE CHECKSUM: %s\n\nCOCOAPODS: %s\n" % (hashlib.sha1(podfile.encode()).hexdigest(), VERSION)
    write("Podfile.lock", text)
    write(os.path.join("Pods", "Manifest.lock"), text)


COMMANDS = {("--version",): show_version, ("install",): install, ("update",): update,
            ("cache", "clean", "--all"): clean_cache}
