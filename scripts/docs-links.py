#!/usr/bin/env python3
"""Checks the links of the documents: each relative link and picture in a committed *.md names a
committed file or folder, and each picture in docs/pictures/ is linked. Prints what is wrong and exits
with 1."""

import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LINK = re.compile(r"\]\(([^)\s]+)\)")


def committed():
    names = subprocess.run(["git", "-C", ROOT, "ls-files", "-z"], check=True, capture_output=True,
                           text=True).stdout.split("\0")
    return set(filter(None, names))


files = committed()
known = files | {str(folder) for name in files for folder in pathlib.PurePath(name).parents}
linked, wrong = [], []
for document in sorted(name for name in files if name.endswith(".md")):
    for link in LINK.findall((ROOT / document).read_text()):
        target = link.split("#")[0]
        if not target or re.match(r"[a-z]+:", target):
            continue
        linked.append(os.path.normpath(os.path.join(os.path.dirname(document), target)))
        if linked[-1] not in known:
            wrong.append(f"{document}: {link} isn't in the repository")
wrong += [f"{name}: no document shows it" for name in sorted(files - set(linked))
          if name.startswith("docs/pictures/")]
print("\n".join(wrong + [f"docs-links: {len(linked)} links, {len(wrong)} wrong"]))
sys.exit(1 if wrong else 0)
