"""Who may include whom: floors of rooms, and no cycle between files or folders."""
import os
import re

# Folder, floor. A room includes its own folder and lower floors.
FLOORS = [
    ("core", 0),
    ("halyard/platform", 1),
    ("halyard/terminal", 2),
    ("halyard/exec", 3),
    ("halyard/simulator", 4),
    ("halyard/device", 4),
    ("halyard/packages", 4),
    ("halyard/git", 4),
    ("halyard/cache", 4),
    ("halyard/build", 5),
    ("halyard/shell", 7),
    ("halyard/main.cpp", 8),
    ("halyard", 6),
]
# Screens and menu actions of the floor-4 folders live one floor above the flows they call.
SCREEN = re.compile(r"_(view|view_[a-z_]+|actions?|menu|screen|browser)(_test)?\.[ch]pp$")
# Made by the build (tests/CMakeLists.txt).
GENERATED = {"test_places.hpp"}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def room(path):
    for folder, floor in FLOORS:
        if path == folder or path.startswith(folder + "/"):
            if floor == 4 and SCREEN.search(path):
                return os.path.dirname(path), 6
            return (os.path.dirname(path) if floor != 8 else path), floor
    return None


def includes_of(root, path):
    with open(os.path.join(root, path), encoding="utf-8") as file:
        return INCLUDE.findall(file.read())


def component(path):
    """A header and its source are one thing: x.hpp, x.cpp."""
    return re.sub(r"\.(cpp|hpp)$", "", path)


def find_cycle(graph):
    state, trail = {}, []

    def visit(node):
        state[node] = 1
        trail.append(node)
        for target in sorted(graph.get(node, ())):
            if state.get(target) == 1:
                return trail[trail.index(target):] + [target]
            if target not in state:
                cycle = visit(target)
                if cycle:
                    return cycle
        state[node] = 2
        trail.pop()
        return None

    for node in sorted(graph):
        if node not in state:
            cycle = visit(node)
            if cycle:
                return cycle
    return None


def check(root, paths):
    """Faults as lines of text."""
    faults, known = [], set(paths)
    files, folders = {}, {}
    for path in paths:
        is_test = path.endswith(("_test.cpp", "_testing.hpp")) or path.startswith(("tests/", "bench/", "fuzz/", "tools/"))
        here = room(path)
        for target in includes_of(root, path):
            if target not in known:
                if target not in GENERATED and not os.path.exists(os.path.join(root, target)):
                    faults.append('%s: includes "%s", which isn\'t a path from the root' % (path, target))
                continue
            if is_test:
                continue
            files.setdefault(component(path), set()).add(component(target))
            there = room(target)
            if here is None or there is None:
                faults.append("%s: includes %s, which has no floor" % (path, target))
                continue
            if here != there:
                # A folder of two floors is two rooms.
                folders.setdefault("%s (floor %d)" % here, set()).add("%s (floor %d)" % there)
                if there[1] >= here[1] and not (here[0] == there[0] and there[1] <= here[1]):
                    faults.append("%s (floor %d) includes %s (floor %d)" % (path, here[1], target, there[1]))
    for node, targets in files.items():
        targets.discard(node)
    for graph, what in ((files, "files"), (folders, "folders")):
        cycle = find_cycle(graph)
        if cycle:
            faults.append("include cycle between %s: %s" % (what, " -> ".join(cycle)))
    return faults
