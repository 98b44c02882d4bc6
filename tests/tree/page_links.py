#!/usr/bin/env python3
"""page_links.py ROOT: refuses pages, and the package's description, that name a picture or file which is not there."""

import pathlib
import re
import sys

ROOT = pathlib.Path(sys.argv[1])
LINK = re.compile(r"\]\(([^)#:\s]+)[^):]*\)")
PATH = re.compile(r"(?<![\w/.-])(?:docs|scripts|src|simulator|tests|packaging)/[\w./-]*\w|docs/pictures/[\w.-]*\w")
WRONG = "[a](none.md#b), ![a](docs/none.png), `src/none`, https://a.example/raw/docs/pictures/none.png"  # five names


def faults_of(page, text):
    named = [page.parent / link for link in LINK.findall(text)] + [ROOT / path for path in PATH.findall(text)]
    return [f"{page}: {path}" for path in named if not path.exists()]


pages = [page for names in ("*.md", "docs/**/*.md", "packaging/*.xml*") for page in ROOT.glob(names)]
faults = [fault for page in pages for fault in faults_of(page, page.read_text(encoding="utf-8"))]
sys.exit("\n".join(faults) if faults or len(faults_of(ROOT / "README.md", WRONG)) != 5 else 0)
