#!/usr/bin/env python3
"""Imports every input deck of a folder and compares node and element counts with scripts/count_inp.py.

    compare_decks.py DECK_COUNTS_PROGRAM FOLDER --agree N

Element counts are compared type by type. Types that have no picture count as they are listed by the importer. Exit code 77
if the folder does not exist, 1 if fewer than N decks agree; decks that do not agree are listed with both counts.
"""
import argparse
import glob
import gzip
import json
import os
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts"))
import count_inp


def unpack(folder, target):
    """Plain copies of all decks, so that includes work and the importer need not know gzip."""
    decks = []
    for path in sorted(glob.glob(os.path.join(folder, "*.inp")) + glob.glob(os.path.join(folder, "*.inp.gz"))):
        name = os.path.basename(path)
        deck = os.path.join(target, name[:-3] if name.endswith(".gz") else name)
        with (gzip.open if name.endswith(".gz") else open)(path, "rb") as source, open(deck, "wb") as copy:
            shutil.copyfileobj(source, copy)
        decks.append(deck)
    return decks


def expected_counts(deck):
    try:
        return count_inp.count(deck), None
    except Exception as error:  # the counter is simple; what it cannot read is reported, not hidden
        return None, f"counter: {type(error).__name__}: {error}"


def difference(deck, imported):
    """Why the importer and the counter disagree, or None."""
    expected, problem = expected_counts(deck)
    if "error" in imported:
        return f"importer: {imported['error']}"
    if problem:
        return problem
    if imported["nodes"] != expected["nodes"]:
        return f"nodes: importer {imported['nodes']}, counter {expected['nodes']}"
    elements = {name: n for name, n in imported["elements"].items() if n}
    undrawn = {name: n for name, n in imported["undrawn"].items() if n}
    if set(elements) & set(undrawn):
        return "a type is both drawn and not drawn"
    if {**elements, **undrawn} != expected["elements"]:
        return f"elements: importer {elements} and not drawn {undrawn}, counter {expected['elements']}; " \
               f"warnings {imported.get('warnings')}"
    return None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("folder")
    parser.add_argument("--agree", type=int, required=True, help="decks that must agree at least")
    arguments = parser.parse_args()
    if not os.path.isdir(arguments.folder):
        print(f"{arguments.folder} is not there: skipped")
        return 77
    with tempfile.TemporaryDirectory() as target:
        decks = unpack(arguments.folder, target)
        output = subprocess.run([arguments.program] + decks, check=True, capture_output=True, text=True).stdout
        agree = 0
        undrawn_only = 0
        for deck, line in zip(decks, output.splitlines(), strict=True):
            imported = json.loads(line)
            why = difference(deck, imported)
            if why:
                print(f"{os.path.basename(deck)}: {why}")
            else:
                agree += 1
                undrawn_only += not any(imported["elements"].values())
        print(f"{agree} of {len(decks)} decks agree ({undrawn_only} of them have nothing that is drawn)")
        return 0 if agree >= arguments.agree else 1


if __name__ == "__main__":
    sys.exit(main())
