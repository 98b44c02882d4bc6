#!/usr/bin/env python3
"""Holds the tree and its picture to the arrows that the CMake lists give: which target may include which folders.

    include_arrows.py ROOT ARROWS [--draw]      --draw writes docs/architecture.svg anew, with graphviz

ARROWS has a target a line: its name, folder, files and links. A compiler finds no folder that was not linked, but it
finds what comes with a link, and all of the system's headers.
"""

import pathlib
import re
import subprocess
import sys

# Headers of the system -> the one folder that may include them.
OUTSIDE = {r"libusb": "src/usb/libusb", r"linux/videodev2|sys/ioctl": "src/usb/v4l2", r"openssl|nlohmann": "src/scenes"}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
ARROW = re.compile(r"<title>(\w+)&#45;&gt;(\w+)</title>\n<path[^>]*?(stroke-dasharray[^>]*)?/>")
WRONG = {  # and therefore found, before the tree is believed
    "src/ptz/a.cpp": '#include "usb/usb.h"\n',
    "src/scenes/a.cpp": "  #  include <libusb-1.0/libusb.h>\n",
    "src/ui/content_view.cpp": '#include "platform/qt/qt_alerts.h"\n',
    "src/app/a.cpp": '#include "usb/system_registry.h"\n',
    "src/new/a.cpp": "",
}


class Target:
    def __init__(self, line, folders):
        _, self.folder, files, links = line.split("|")
        self.files = {pathlib.Path(file).name for file in files.split(";")}
        self.sees = {folders[name] for name in links.split(";") if name in folders}
        self.chooses = "main.cpp" in self.files


def node_of(folder):
    return "edition" if folder == "simulator/edition" else folder.removeprefix("src/").split("/")[0]


def included_folders(text):
    names = [name for bracket, name in INCLUDE.findall(text) if bracket == '"']
    return {(name if name.startswith("simulator/") else "src/" + name).rsplit("/", 1)[0] for name in names}


def faults_of(path, text, targets):
    folder, file = path.rsplit("/", 1)
    here = [target for target in targets if target.folder == folder]
    # A file that no list names, a header say, is the libraries'.
    owners = [target for target in here if file in target.files] or [target for target in here if not target.chooses]
    seen = {folder}.union(*(target.sees for target in owners))
    faults = [f"{path}: includes of {to}, which it does not link" for to in included_folders(text) - seen]
    for bracket, name in INCLUDE.findall(text):
        owner = next((owner for pattern, owner in OUTSIDE.items() if re.match(pattern, name)), folder)
        faults += [f"{path}: <{name}> belongs to {owner}"] if bracket == "<" and owner != folder else []
    return faults if owners else [f"{path}: of no target"]


def arrows_of(targets):
    """(start, end, dashed): only a main.cpp, which chooses what its program is made of, has a dashed one."""
    pairs = {}
    for target in targets:
        for pair in {(node_of(target.folder), node_of(to)) for to in target.sees}:
            pairs[pair] = pairs.get(pair, True) and target.chooses
    return {(start, end, dashed) for (start, end), dashed in pairs.items() if start != end}


def faults_of_tree(root, targets, picture):
    faults, used = [], set()
    configured = {root / target.folder for target in targets}
    for file in (file for top in ("src", "simulator") for file in sorted((root / top).rglob("*.*"))):
        left_out = file.parent not in configured and (file.parent / "CMakeLists.txt").exists()  # another system's
        if file.suffix in (".h", ".cpp") and not left_out:
            path, text = file.relative_to(root).as_posix(), file.read_text(encoding="utf-8")
            faults += faults_of(path, text, targets)
            used |= {(node_of(file.parent.relative_to(root).as_posix()), node_of(to)) for to in included_folders(text)}
    arrows = arrows_of(targets)
    drawn = {(start, end, bool(dashed)) for start, end, dashed in ARROW.findall(picture.read_text(encoding="utf-8"))}
    faults += [f"{picture}: {start} -> {end} is missing or wrong" for start, end, _ in drawn ^ arrows]
    return faults + [f"{start} links {end} for nothing" for start, end, _ in arrows if (start, end) not in used]


def main():
    root = pathlib.Path(sys.argv[1])
    lines = pathlib.Path(sys.argv[2]).read_text().splitlines()
    folders = dict(line.split("|")[:2] for line in lines)
    targets = [Target(line, folders) for line in lines]
    picture = root / "docs/architecture.svg"
    if "--draw" in sys.argv:
        edges = [f"{a} -> {b} [style={'dashed' if dash else 'solid'}]" for a, b, dash in sorted(arrows_of(targets))]
        graph = (root / "docs/architecture.dot").read_text(encoding="utf-8").replace("// ARROWS", "\n".join(edges))
        picture.write_bytes(subprocess.check_output(["dot", "-Tsvg"], input=graph.encode()))
    faults = [f"not found: {path}" for path, text in WRONG.items() if not faults_of(path, text, targets)]
    faults += faults_of_tree(root, targets, picture)
    return "\n".join(faults)


sys.exit(main() or 0)
