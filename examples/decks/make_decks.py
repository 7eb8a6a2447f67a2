#!/usr/bin/env python3
"""Makes the example decks bracket.inp and crashbox.inp.

usage: make_decks.py [--check] [--output DIR]

Without --check the decks are written to DIR (default: this folder). With --check nothing is written: the meshes are
examined, and the decks in DIR must be what this program would write. Exit code 0, or 1 with a line per problem.
"""
import argparse
import importlib
import os
import sys

sys.dont_write_bytecode = True

import deckcheck  # noqa: E402

HERE = os.path.dirname(os.path.abspath(__file__))

# deck -> elements at least and at most, named parts at least, element types that it must have
DECKS = {
    "bracket": (2000, 7000, 4, {"C3D8", "C3D6", "C3D4"}),
    "crashbox": (20000, 26000, 10, {"C3D8", "C3D6", "C3D4", "S4", "S3", "B31", "SPRINGA", "DASHPOTA"}),
}
MAX_BYTES = 2_000_000
MAX_SLENDERNESS = 3.0  # of the x and y extents, so that the pictures fill their frame


def limits_missed(name, deck, text):
    low, high, parts, kinds = DECKS[name]
    counts = deckcheck.counts(deck)
    if not low <= sum(counts.values()) <= high:
        yield f"{sum(counts.values())} elements, not {low} to {high}"
    if len(deck.parts) < parts:
        yield f"{len(deck.parts)} parts, fewer than {parts}"
    if set(counts) != kinds:
        yield f"element types {sorted(counts)}, not {sorted(kinds)}"
    if len(text) > MAX_BYTES:
        yield f"{len(text)} bytes, more than {MAX_BYTES}"
    x, y, z = (high - low for low, high in deckcheck.extents(deck))
    if min(x, y, z) <= 0 or not 1 / MAX_SLENDERNESS <= x / y <= MAX_SLENDERNESS:
        yield f"extents {x:g} x {y:g} x {z:g}"


def file_problems(path, text):
    try:
        with open(path, encoding="ascii") as stream:
            if stream.read() != text:
                yield f"{path} is not what make_decks.py makes; run it again"
    except OSError as error:
        yield f"{path}: {error.strerror}"


def write(path, text):
    temporary = path + ".tmp"
    with open(temporary, "w", encoding="ascii", newline="\n") as stream:
        stream.write(text)
    os.replace(temporary, path)


def summary(name, deck, text):
    counts = deckcheck.counts(deck)
    kinds = ", ".join(f"{counts[kind]} {kind}" for kind in sorted(counts))
    nodes = sum(len(pool.coords) for pool in deck.pools)
    return f"{name}: {sum(counts.values())} elements ({kinds}), {nodes} nodes, {len(deck.parts)} parts, {len(text)} bytes"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true", help="examine the decks, write nothing")
    parser.add_argument("--output", default=HERE, help="folder of the decks")
    arguments = parser.parse_args()
    failed = False
    for name in DECKS:
        deck = importlib.import_module(name).build()
        text = deck.text()
        path = os.path.join(arguments.output, name + ".inp")
        found = [*deckcheck.problems(deck), *limits_missed(name, deck, text)]
        if arguments.check:
            found += file_problems(path, text)
        for problem in found:
            print(f"{name}: {problem}", file=sys.stderr)
        failed = failed or bool(found)
        if not arguments.check and not found:
            write(path, text)
        print(summary(name, deck, text))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
