#!/usr/bin/env python3
"""Holds that a fact stands in one place: names of pictures, settings and counters, the size of the
screen, the sum of the file list, lanes' numbers, the average of a paytable's row, and what a demo frog
is are not written out a second time in src/, lab/, cabinet/ or art/. Prints what is wrong and exits with 1."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = ("src", "lab", "cabinet", "art")


def names(file, pattern):
    """The texts of a list that are long enough to mean nothing else."""
    found = set(re.findall(pattern, (ROOT / file).read_text(), re.M))
    if not found:
        sys.exit(f"facts: {file} holds no names any more")
    return found


def code(path):
    """A file's lines without its comments, and without the prose of raw strings of many lines."""
    text = re.sub(r'R"\((.*?)\)"', lambda raw: "\n" * raw[1].count("\n") or raw[0],
                  path.read_text(), flags=re.S)
    return [re.sub(r"(^|\s)//.*", "", line) for line in text.splitlines()]


def any_of(texts, before='"', after='"'):
    return re.compile(f"{before}(?:" + "|".join(re.escape(text) for text in sorted(texts)) +
                      f"){after}")


PICTURES = names("src/gfx/picture_list.h", r'^\s*(?:X\(|#define )\w+,?\s+"([\w.]+)"')
# One word may be a label's as well as a name's.
SETTINGS = {n for n in names("src/books/settings.h", r'\.name = "([^"]+)"') if " " in n}
AUDITS = {n for n in names("src/books/audit_list.h", r'^\s*X\(\w+,\s+"([^"]+)"') if " " in n}

# What is looked for, where it may stand, and what it is.
FACTS = (
    (any_of(PICTURES, r"(?<![\w.])", r"(?![\w.])"), {"src/gfx/picture_list.h"}, "a picture's file"),
    (any_of(SETTINGS), {"src/books/settings.h"}, "a setting's name"),
    (any_of(AUDITS, after='(?: Left| Right)?"'), {"src/books/audit_list.h"}, "a counter's name"),
    (re.compile(r"\b1360(?:\.0F?)?\b|(?<!1024, )\b768(?:\.0F?)?\b"),
     {"src/gfx/picture_list.h"}, "the size of the screen"),
    (re.compile(r"0xEDB88320|0x63046310", re.I), {"src/operator/list_sum.h"},
     "the sum of the file list"),
    (re.compile(r"\blane (?:[<>]=?|[!=]=) [1-9]"), {"src/playfield/playfield.h"}, "a lane's number"),
    (re.compile(r"\bPAYTABLE_(?:LEAST|STEP)\b"),
     {"src/playfield/paytable.h", "src/playfield/paytable.cpp"}, "the average of a paytable's row"),
    (re.compile(r"& FROG_DEMO\b"), {"src/playfield/playfield.h"}, "a test for a demo frog"),
)


def main():
    files = [path for folder in FOLDERS for path in sorted((ROOT / folder).rglob("*"))
             if path.suffix in (".h", ".cpp")]
    wrong = []
    for path in files:
        name = str(path.relative_to(ROOT))
        for number, line in enumerate(code(path), 1):
            for pattern, homes, what in FACTS:
                match = pattern.search(line)
                if match and name not in homes:
                    wrong.append(f"{name}:{number}: {match[0]} is {what}, "
                                 f"which {', '.join(sorted(homes))} holds")
    for line in wrong:
        print(line)
    print(f"facts: {len(files)} files, {len(wrong)} wrong")
    return 1 if wrong else 0


sys.exit(main())
