#!/usr/bin/env python3
"""Runs clang-tidy over every file of ours in a build's compile_commands.json, one for each processor.

    clang_tidy.py BUILD STAMPS

STAMPS is a folder: a file in it stands for one text that clang-tidy had nothing to say about. Its name is made of all
that the verdict depends on: the preprocessed text with comments and macros, the checks, and clang-tidy's version.
"""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import shlex
import subprocess
import sys

build, stamps = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
root = pathlib.Path.cwd()


def output_of(*command, folder=root):
    return subprocess.run(command, cwd=folder, check=True, stdout=subprocess.PIPE).stdout


def stamp_of(entry):
    command = shlex.split(entry["command"])
    output = command.index("-o")
    text = output_of(*command[:output], *command[output + 2 :], "-E", "-P", "-C", "-dD", folder=entry["directory"])
    settings = [folder / ".clang-tidy" for folder in pathlib.Path(entry["file"]).parents]
    parts = [text, tidy_version, *(file.read_bytes() for file in settings if file.exists())]
    return stamps / hashlib.sha256(b"\0".join(parts)).hexdigest()


def check(entry):
    try:
        stamp = stamp_of(entry)
    except subprocess.CalledProcessError:
        print(f"{entry['file']}: cannot be preprocessed", flush=True)
        return False
    if not stamp.exists():
        tidy = ["clang-tidy", "-p", str(build), "--quiet", entry["file"]]
        result = subprocess.run(tidy, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if result.returncode != 0:
            print(result.stdout, end="", flush=True)
            return False
    stamp.touch()
    return True


tidy_version = output_of("clang-tidy", "--version")
entries = {entry["file"]: entry for entry in json.loads((build / "compile_commands.json").read_text())}
ours = [entry for file, entry in entries.items() if not pathlib.Path(file).is_relative_to(build)]
with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as pool:
    verdicts = list(pool.map(check, ours))
print(f"clang-tidy: {len(ours)} files, {verdicts.count(False)} with complaints")
sys.exit(0 if ours and all(verdicts) else 1)
