#!/usr/bin/env python3
"""Counts the nodes and the elements of Abaqus/CalculiX input decks, by element type.

A second opinion on what `kvo import` reads: it shares no code with the importer and is deliberately simple. It knows
*NODE, *ELEMENT, *INCLUDE, INPUT=, *PART and *INSTANCE, and looks at nothing else. Ids that occur twice count once.

    count_inp.py DECK...            a table
    count_inp.py --json DECK...     one JSON object a line
"""
import argparse
import gzip
import json
import os
import re
import sys

# Node entries of types whose name does not end in that number.
ENTRIES = {
    "B21": 2, "B22": 3, "B31": 2, "B31R": 2, "B32": 3, "B32R": 3, "B33": 2, "SPRING1": 1, "SPRING2": 2, "SPRINGA": 2,
    "DASHPOT1": 1, "DASHPOT2": 2, "DASHPOTA": 2, "GAPUNI": 2, "CONN3D2": 2, "DCOUP3D": 1, "MASS": 1, "D": 3,
    "S9R5": 9, "STRI65": 6,
}


def entries_of(element_type):
    if element_type in ENTRIES:
        return ENTRIES[element_type]
    found = re.search(r"(\d+)[A-Z]*$", element_type)
    return int(found.group(1)) if found else None


class Scope:
    """The nodes and elements of the deck, of one part or of one instance."""

    def __init__(self, part=None):
        self.part = part
        self.nodes = set()
        self.elements = {}


class Counter:
    def __init__(self):
        self.deck = Scope()
        self.parts = {}
        self.instances = []
        self.scope = self.deck
        self.card = None
        self.pending = []

    def keyword(self, line, folder):
        fields = [f.strip() for f in line[1:].split(",")]
        name = fields[0].upper().replace(" ", "")
        values = {}
        for field in fields[1:]:
            key, _, value = field.partition("=")
            values[key.strip().upper()] = value.strip().strip('"')
        if name == "INCLUDE":
            self.read(os.path.join(folder, values["INPUT"]))
            return
        self.pending = []
        self.card = name
        if name == "ELEMENT":
            self.type = values["TYPE"].upper()
        elif name == "PART":
            self.scope = self.parts.setdefault(values["NAME"].upper(), Scope())
        elif name == "INSTANCE":
            self.scope = Scope(values["PART"].upper())
            self.instances.append(self.scope)
        elif name in ("ENDPART", "ENDINSTANCE", "ASSEMBLY"):
            self.scope = self.deck
        if name in ("NODE", "ELEMENT") and "INPUT" in values:
            self.read(os.path.join(folder, values["INPUT"]))

    def data(self, line):
        if self.card == "NODE":
            self.scope.nodes.add(int(line.split(",")[0]))
        elif self.card == "ELEMENT":
            fields = [f.strip() for f in line.split(",")]
            continued = fields[-1] == ""
            self.pending += fields[:-1] if continued else fields
            needed = entries_of(self.type)
            if len(self.pending) > needed if needed else not continued:
                self.scope.elements[int(self.pending[0])] = self.type
                self.pending = []

    def read(self, path):
        opener = gzip.open if path.endswith(".gz") else open
        with opener(path, "rt", encoding="latin-1") as deck:
            for line in deck:
                line = line.strip()
                if not line or line.startswith("**"):
                    continue
                if line.startswith("*"):
                    self.keyword(line, os.path.dirname(path))
                else:
                    self.data(line)

    def totals(self):
        scopes = [(self.deck.nodes, self.deck.elements)]
        for instance in self.instances:
            part = self.parts.get(instance.part, Scope())
            scopes.append((part.nodes | instance.nodes, {**part.elements, **instance.elements}))
        if not self.instances:
            scopes += [(part.nodes, part.elements) for part in self.parts.values()]
        types = {}
        for _, elements in scopes:
            for element_type in elements.values():
                types[element_type] = types.get(element_type, 0) + 1
        return {"nodes": sum(len(nodes) for nodes, _ in scopes), "elements": dict(sorted(types.items()))}


def count(path):
    counter = Counter()
    counter.read(path)
    return counter.totals()


def main():
    parser = argparse.ArgumentParser(description="Counts nodes and elements of input decks.")
    parser.add_argument("--json", action="store_true", help="one JSON object a line")
    parser.add_argument("deck", nargs="+")
    arguments = parser.parse_args()
    for path in arguments.deck:
        totals = count(path)
        if arguments.json:
            print(json.dumps({"deck": path, **totals}))
        else:
            types = " ".join(f"{name}:{number}" for name, number in totals["elements"].items())
            print(f"{path}  {totals['nodes']} nodes  {sum(totals['elements'].values())} elements  {types}")


if __name__ == "__main__":
    sys.exit(main())
