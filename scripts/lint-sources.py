#!/usr/bin/env python3
"""Prints the sources of libraries and programs that a compile database names, the slowest folder first.

usage: lint-sources.py COMPILE_COMMANDS
"""
import json
import os
import sys

FIRST = "apps"  # its headers take longest, so that none of them is left for the end


def main(path):
    with open(path, encoding="utf-8") as stream:
        sources = {os.path.relpath(entry["file"]) for entry in json.load(stream)}
    wanted = [name for name in sources if name.split("/")[0] not in ("tests", "bench", "build", "..")]
    if not wanted:
        sys.exit(f"{path}: no sources of libraries or programs")
    print(*sorted(wanted, key=lambda name: (not name.startswith(FIRST + "/"), name)), sep="\n")


if __name__ == "__main__":
    main(*sys.argv[1:])
