#!/usr/bin/env python3
"""camera_ids.py ROOT: refuses a camera model's USB ids outside its row, and pages that quote ids of no row."""

import pathlib
import re
import sys

ROWS = "src/model/camera_models.cmake"


def faults_of(path, text, known):
    if path.endswith(".md"):
        quoted = set(re.findall(r"\b[0-9a-f]{4}:[0-9a-f]{4}\b", text))
        return [f"{path}: {ids} is no known camera" for ids in quoted - {":".join(ids) for ids in known}]
    numbers = "|".join({number for ids in known for number in ids})
    return [f"{path}: {ROWS} has {id}" for id in re.findall(rf"""(?i)(?:\b0x|["':])(?:{numbers})\b""", text)]


def main():
    root = pathlib.Path(sys.argv[1])
    known = re.findall(r"VENDOR (\w{4}) PRODUCT (\w{4})", (root / ROWS).read_text(encoding="utf-8"))
    wrong = {"a.cpp": "f(0x12AB)", "b.in": 'ATTR{idVendor}=="12ab"', "c.sh": "9999:34cd", "d.md": "12ab:34ce"}
    faults = [f"not found: {text}" for path, text in wrong.items() if not faults_of(path, text, [("12ab", "34cd")])]
    for top in ("src", "simulator", "tests", "bench", "packaging", "scripts", "docs"):
        for file in sorted(file for file in (root / top).rglob("*") if file.is_file() and file.suffix != ".svg"):
            path = file.relative_to(root).as_posix()
            faults += faults_of(path, file.read_text(encoding="utf-8", errors="replace"), known)
    print("\n".join(faults))
    return 1 if faults or not known else 0


if __name__ == "__main__":
    sys.exit(main())
