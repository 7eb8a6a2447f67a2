#!/usr/bin/env python3
"""The shared libraries export exactly what exported_symbols.txt lists, under the right names, open to interposition.

usage: check_symbols.py [--print] LIST LIBRARY...

The implicit members of exported records are not counted, and an inline member (W) of a class in the list may be there or not:
whether the compiler leaves one in a library depends on how far it optimises. --print writes a list of what the libraries export, to compare
with LIST by eye when the interface grows.
"""
import os
import re
import subprocess
import sys

# What the demangler writes -> what the list says.
SPELLINGS = [
    (r"std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >", "std::string"),
    (r"std::map<unsigned int, unsigned int, std::less<unsigned int>, "
     r"std::allocator<std::pair<unsigned int const, unsigned int> > >", "UIUIMap"),
    # Twice, for vectors of vectors.
    (r"std::vector<([\w:*]+(?: [\w:*]+)*(?:<[\w ]+>)?), std::allocator<\1 ?> >", r"std::vector<\1>"),
    (r"std::vector<([\w:*]+(?: [\w:*]+)*(?:<[\w ]+>)?), std::allocator<\1 ?> >", r"std::vector<\1>"),
]
IMPLICIT = re.compile(r"^(?:\w+::)*(\w+)::(~?\1\(|operator=)")


def kind(letter):
    """nm's letter, all kinds of data alike."""
    return "D" if letter in "BDRGS" else letter


def exported(library):
    lines = subprocess.run(["nm", "-DC", "--defined-only", library], check=True, capture_output=True, text=True).stdout
    found = set()
    for line in lines.splitlines():
        letter, name = line[17:].split(" ", 1)
        for pattern, spelling in SPELLINGS:
            name = re.sub(pattern, spelling, name)
        if name.startswith("__odr_asan") or (letter == "W" and IMPLICIT.match(name)):
            continue
        found.add(f"{kind(letter)} {name}")
    return found


def class_of(symbol):
    """"W kvo::Camera::scale() const" -> "kvo::Camera"."""
    return symbol[2:].split("(")[0].rpartition("::")[0]


def differences(there, wanted, classes):
    """What is missing and what is too much; inline members of these classes are neither."""
    for symbol in sorted(wanted - there):
        if not symbol.startswith("W "):
            yield f"missing: {symbol}"
    for symbol in sorted(there - wanted):
        if not (symbol.startswith("W ") and class_of(symbol) in classes):
            yield f"not in the list: {symbol}"


def listed(path):
    """Library name -> its lines in the list."""
    libraries = {}
    with open(path, encoding="ascii") as stream:
        for line in stream.read().splitlines():
            if line.startswith("library "):
                current = libraries.setdefault(line.split()[1], set())
            elif line and not line.startswith("#"):
                current.add(line)
    return libraries


def dynamic_problems(library, name):
    """Its own name, and nothing that binds its references to itself."""
    section = subprocess.run(["readelf", "-dW", library], check=True, capture_output=True, text=True).stdout
    if f"soname: [{name}]" not in section:
        yield f"its own name is not {name}"
    if "SYMBOLIC" in section:
        yield "it is linked with -Bsymbolic"
    symbols = subprocess.run(["readelf", "-W", "--dyn-syms", library], check=True, capture_output=True, text=True).stdout
    for line in symbols.splitlines():
        if " PROTECTED " in line:
            yield f"protected visibility: {line.split()[-1]}"


def main(arguments):
    if arguments[0] == "--print":
        for library in arguments[2:]:
            print(f"library {os.path.basename(library)}", *sorted(exported(library), key=lambda s: s[2:]), sep="\n")
        return 0
    expected = listed(arguments[0])
    classes = {class_of(symbol) for symbols in expected.values() for symbol in symbols} - {""}
    failed = False
    for library in arguments[1:]:
        name = os.path.basename(library)
        there, wanted = exported(library), expected.get(name, set())
        problems = [*differences(there, wanted, classes), *dynamic_problems(library, name)]
        for problem in problems:
            print(f"{name}: {problem}", file=sys.stderr)
        failed = failed or bool(problems)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
