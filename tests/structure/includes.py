"""Reads every #include of the tree and fails on one that runs up, or against the order within a room; and every link
between the documents and into the tree, and fails on one that leads nowhere."""

import pathlib
import re
import sys

# Rooms and what each may include, itself aside.
BELOW = {
    "common": [],
    "geo": ["common"],
    "format": ["common", "geo"],
    "pi": ["common"],
    "model": ["common", "geo", "format", "pi"],
    "tools": ["common", "geo", "format", "pi", "model"],
    "gui": ["common", "geo", "format", "pi", "model", "tools"],
    "plugin": ["common", "geo", "format", "pi", "model", "tools", "gui"],
    "cli": ["common", "geo", "format", "pi", "model"],
    "kit": ["common", "pi"],
    "gdal": ["common", "geo", "format"],
    "globe": ["common", "geo", "format"],
    "sandbox": ["common", "geo", "format", "pi", "globe"],
}
# Of pi/ a host sees the contract alone: the contract header and what it includes. A plug-in of the kit's also defines what
# all plug-ins do.
CONTRACT = "pi/HostContract.h"
PLUGIN = "pi/PluginVersions.h"
LINK = re.compile(r"\]\(((?!https?:|mailto:|#)[^)#]+)")
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def includes(path):
    return INCLUDE.findall(path.read_text(encoding="utf-8"))


def reachable(root, header, seen=None):
    seen = set() if seen is None else seen
    if header in seen or not (root / header).exists():
        return seen
    seen.add(header)
    for name in includes(root / header):
        reachable(root, name, seen)
    return seen


def circles(graph):
    """Headers that include each other in a loop, one path each."""
    found, done = [], set()

    def visit(node, trail):
        if node in trail:
            found.append(trail[trail.index(node):] + [node])
        elif node not in done:
            for following in graph.get(node, []):
                visit(following, trail + [node])
            done.add(node)

    for start in sorted(graph):
        visit(start, [])
    return found


def main(root):
    faults = []
    contract = reachable(root, CONTRACT)
    graph = {}
    for room, below in BELOW.items():
        for path in sorted((root / room).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            name = path.relative_to(root).as_posix()
            wanted = includes(path)
            if path.suffix == ".h":
                graph[name] = wanted
            for header in wanted:
                target = header.split("/")[0]
                if target not in BELOW or target == room:
                    continue
                if target not in below:
                    faults.append(f"{name} includes {header}: {room}/ must not know {target}/")
                elif room in ("sandbox", "kit") and target == "pi" and header not in (PLUGIN, *contract):
                    faults.append(f"{name} includes {header}: a host sees only {CONTRACT} and its headers")
    faults += ["headers include each other: " + " -> ".join(circle) for circle in circles(graph)]
    # The manual's pages link to what is made when it is built.
    for page in [*root.glob("*.md"), *root.glob("docs/*.md"), *root.glob("docs/decisions/*.md")]:
        faults += [f"{page.relative_to(root)} links to {target}: there is no such file"
                   for target in LINK.findall(page.read_text(encoding="utf-8")) if not (page.parent / target).exists()]
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
