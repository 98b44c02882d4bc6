#!/usr/bin/env python3
"""Prints, by folder of src, how many lines ran, and then those that did not; from what gcovr counted."""
import collections
import json
import os
import sys

TREE = os.path.realpath(os.path.join(os.path.dirname(__file__), ".."))
SRC = os.path.join(TREE, "src", "")


def counts(report):
    """{file: {line: how often}}; a header is counted under each of the folders that see it."""
    found = collections.defaultdict(collections.Counter)
    for entry in json.load(open(report, encoding="utf-8"))["files"]:
        path = os.path.realpath(os.path.join(TREE, entry["file"]))
        if path.startswith(SRC):
            for line in entry["lines"]:
                if not line.get("gcovr/noncode"):
                    found[os.path.relpath(path, SRC)][line["line_number"]] += line["count"]
    return found


def runs(numbers):
    """[3, 4, 5, 9] as "3-5, 9"."""
    parts = []
    for number in sorted(numbers):
        if parts and parts[-1][1] == number - 1:
            parts[-1][1] = number
        else:
            parts.append([number, number])
    return ", ".join(str(a) if a == b else f"{a}-{b}" for a, b in parts)


def main():
    files = counts(sys.argv[1])
    folders = collections.defaultdict(lambda: [0, 0])
    for name, lines in files.items():
        folder = folders[name.split("/")[0]]
        folder[0] += sum(count > 0 for count in lines.values())
        folder[1] += len(lines)
    print("| folder | lines that ran | of | |\n| --- | --: | --: | --: |")
    for name, (ran, all_lines) in sorted(folders.items()):
        print(f"| {name} | {ran} | {all_lines} | {100 * ran / all_lines:.1f} % |")
    print()
    for name, lines in sorted(files.items()):
        silent = [number for number, count in lines.items() if count == 0]
        if silent:
            print(f"{name}: {runs(silent)}")


main()
