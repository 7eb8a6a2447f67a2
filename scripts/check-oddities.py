#!/usr/bin/env python3
"""Keeps the deliberate oddities in step: source tags `deliberate(name)`, rows of docs/oddities.md, and tests.

Every tag in the sources needs a row, every row a tag and at least one test that exists. Prints what is missing; exit
status 1 if anything is.

usage: check-oddities.py [ROOT]
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else __file__ + "/../..").resolve()
PAGE = ROOT / "docs" / "oddities.md"


def sources(*folders):
    for folder in folders:
        yield from sorted((ROOT / folder).rglob("*.h"))
        yield from sorted((ROOT / folder).rglob("*.cpp"))


def tags():
    found = {}
    for path in sources("render", "readgen", "generic"):
        for name in re.findall(r"deliberate\(([a-z0-9-]+)\)", path.read_text()):
            found.setdefault(name, path.relative_to(ROOT))
    return found


def tests():
    found = set()
    for path in sources("tests"):
        found.update(f"{suite}.{name}" for suite, name in re.findall(r"\bTEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", path.read_text()))
    return found


def rows():
    found = {}
    for line in PAGE.read_text().splitlines():
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if len(cells) == 3 and re.fullmatch(r"`[a-z0-9-]+`", cells[0]):
            found[cells[0].strip("`")] = re.findall(r"`(\w+\.\w+)`", cells[2])
    return found


def main():
    tagged, tested, listed = tags(), tests(), rows()
    problems = [f"{path}: deliberate({name}) has no row in docs/oddities.md" for name, path in tagged.items() if name not in listed]
    for name, names in listed.items():
        if name not in tagged:
            problems.append(f"docs/oddities.md: `{name}` is tagged nowhere")
        if not names:
            problems.append(f"docs/oddities.md: `{name}` names no test")
        problems += [f"docs/oddities.md: `{name}`: no such test {test}" for test in names if test not in tested]
    print("\n".join(problems) or f"{len(listed)} oddities, each tagged and tested")
    return 1 if problems else 0


sys.exit(main())
