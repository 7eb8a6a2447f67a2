#!/usr/bin/env python3
"""What the shared libraries promise to hosts that are compiled already: functions, and the layout of public types, compared
with the files in tests/package/abi. With KVO_UPDATE_ABI set in the environment these are written anew.

usage: check_abi.py INSTALLED_HEADERS LIBRARY...

Exit status 77: not looked at, for the reason that is printed.
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile

BASELINES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "abi")
# Types of the standard library are the compiler's to keep, private structures may change at any time, and the address
# sanitizer has variables of its own.
LEFT_OUT = """[suppress_type]
  name_regexp = ^(std|__gnu_cxx|__cxxabiv1)::|::Impl$
  drop_artifact = yes
[suppress_function]
  symbol_name_regexp = ^_Z(N?K?S|nw|na|dl|da)
  drop_artifact = yes
[suppress_variable]
  symbol_name_regexp = ^__odr_asan
  drop_artifact = yes
"""


def reason_not_to():
    if not shutil.which("abidw") or not shutil.which("abidiff"):
        return "the package abigail-tools is not installed"
    return None


def has_types(library):
    sections = subprocess.run(["readelf", "-SW", library], check=True, capture_output=True, text=True).stdout
    return ".debug_info" in sections


def inline_functions(library):
    """Left out too: which of them the compiler leaves in a library depends on how far it optimises."""
    lines = subprocess.run(["nm", "-D", "--defined-only", library], check=True, capture_output=True, text=True).stdout
    names = [line.split()[2] for line in lines.splitlines() if line.split()[1] == "W"]
    return "".join(f"[suppress_function]\n  symbol_name = {name}\n  drop_artifact = yes\n" for name in names)


def describe(library, headers, scratch, out):
    left_out = os.path.join(scratch, "left_out.abignore")
    with open(left_out, "w", encoding="ascii") as stream:
        stream.write(LEFT_OUT + inline_functions(library))
    subprocess.run(["abidw", "--suppressions", left_out, "--no-corpus-path", "--no-show-locs", "--no-comp-dir-path",
                    "--no-elf-needed", "--drop-private-types", "--drop-undefined-syms", "--headers-dir", headers,
                    "--out-file", out, library], check=True)
    with open(out, encoding="utf-8") as stream:
        text = stream.read()
    with open(out, "w", encoding="utf-8") as stream:  # sources by their place in the tree, wherever that is
        stream.write(re.sub(r"path='[^']*?((?:model|readgen|render|scene|generic)/[^']*)'", r"path='\1'", text))


def differs(library, headers, scratch):
    name = os.path.basename(library)
    baseline = os.path.join(BASELINES, name + ".abi")
    now = os.path.join(scratch, name + ".abi")
    describe(library, headers, scratch, now)
    update = bool(os.environ.get("KVO_UPDATE_ABI"))
    if update and not os.path.exists(baseline):
        shutil.copy(now, baseline)
    # Symbols without a public type are package.symbols' matter.
    report = subprocess.run(["abidiff", "--no-unreferenced-symbols", baseline, now], capture_output=True, text=True, check=False)
    if report.returncode != 0 and update:  # and else not: the order within a file is nobody's
        shutil.copy(now, baseline)
        return False
    if report.returncode != 0:
        print(f"The binary interface of {name} has changed. If that is meant: tests/package/update-abi\n{report.stdout}"
              f"{report.stderr}", file=sys.stderr)
    return report.returncode != 0


def main(headers, libraries):
    reason = reason_not_to()
    if not reason and not all([has_types(library) for library in libraries]):
        reason = "this build has no debugging information about types; scripts/check sanitize has"
    if reason:
        print(f"not compared: {reason}")
        return 77
    with tempfile.TemporaryDirectory() as scratch:
        return 1 if any([differs(library, headers, scratch) for library in libraries]) else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
