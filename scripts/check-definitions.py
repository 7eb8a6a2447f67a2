#!/usr/bin/env python3
"""A name has one definition: two sources that both define `struct kvo::Piece`, or an inline function or a template of one
name and the same parameters, compile and link without a word, and exchange records of different sizes when they run.

Looks at types, templates and functions that other sources can name: all that are neither static nor in an unnamed
namespace nor inside something else. Tests may define functions that a library has: some are readers of their own. What a compiler would find out with -flto -Wodr takes minutes; this takes a second.

usage: check-definitions.py [ROOT]
"""
import os
import re
import sys

LIBRARIES = ("model", "render", "generic", "readgen", "import", "scene", "host", "apps")
# Programs of their own; each of these folders is checked together with all libraries.
PROGRAMS = ("bench", "tests")

LITERALS = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"'
    r"|(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])+'|^[ \t]*#(?:\\\n|[^\n])*", re.S | re.M)
NAMESPACE = re.compile(r"(?:inline )?namespace ?(?P<name>[\w:]*)$")
TYPE = re.compile(r"(?:template ?<.*> )?(?:typedef )?(?:struct|class|union|enum(?: class| struct)?) "
                  r"(?:[A-Z_]{3,} )?(?P<name>\w+(?: ?<.*>)?)(?: final)?(?: ?:(?!:)[^()]*)?$")
FUNCTION = re.compile(r"(?:template ?<.*?> )?(?:\w[\w:<>,&* ]*? [&*]*)??(?P<name>[\w:]+|operator\W+)\((?P<parameters>.*)\)"
                      r"[^()]*$")


def blanked(match):
    return re.sub(r"[^\n]", " ", match.group()) if match.group()[0] in "/#\t " else '""' + "\n" * match.group().count("\n")


def parameter_types(parameters):
    """Without names and defaults."""
    parts, depth, part = [], 0, ""
    for char in parameters + ",":
        depth += (char in "<([{") - (char in ">)]}")
        if char == "," and depth == 0:
            part = re.sub(r"=.*", "", part).strip()
            parts.append(re.sub(r"(?<=[\w>&*]) ?(?<![\w:])\w+$", "", part).strip())
            part = ""
        else:
            part += char
    return ", ".join(parts)


def definition(statement, every_function):
    """What other sources may define again, or None. Of functions those of headers, or every one."""
    found = TYPE.match(statement)
    if found:
        return found.group("name")
    shared = re.match(r"(?:template|inline|constexpr)\b", statement)
    if (shared or every_function) and not re.search(r"\bstatic\b|\] ?=|^TEST", statement):
        found = FUNCTION.match(statement)
        if found and found.group("name") != "main":
            return f"{found.group('name')}({parameter_types(found.group('parameters'))})"
    return None


def definitions(path, every_function):
    """[(qualified name, line)] of a source."""
    with open(path, encoding="utf-8") as stream:
        text = LITERALS.sub(blanked, stream.read())
    result, scopes, start = [], [], 0  # a scope: "name::" of a namespace, None of all that hides what is in it
    for place in re.finditer(r"[{};]", text):
        written = text[start:place.start()]
        statement = " ".join(written.split())
        begin = start + len(written) - len(written.lstrip())
        start = place.end()
        if place.group() == "}":
            scopes = scopes[:-1]
        if place.group() != "{":
            continue
        space = NAMESPACE.match(statement)
        if space:
            scopes.append(space.group("name") + "::" if space.group("name") else None)
        elif re.match(r'extern ""$', statement):
            scopes.append("")
        else:
            name = None if None in scopes else definition(statement, every_function)
            if name:
                result.append(("".join(scopes) + name, text.count("\n", 0, begin) + 1))
            scopes.append(None)
    return result


def sources(root, folders):
    for folder in folders:
        for path, _, names in sorted(os.walk(os.path.join(root, folder))):
            for name in sorted(names):
                if name.endswith((".h", ".cpp")):
                    yield os.path.join(path, name)


def program_folders(root):
    for folder in PROGRAMS:
        inner = [os.path.join(folder, name) for name in sorted(os.listdir(os.path.join(root, folder)))
                 if os.path.isdir(os.path.join(root, folder, name))] if os.path.isdir(os.path.join(root, folder)) else []
        yield from [folder] if folder == "bench" else inner


def main(root):
    first, count, problems = {}, 0, []

    def enter(path, known):
        nonlocal count
        for name, line in definitions(path, known is first):
            count += 1
            here = f"{os.path.relpath(path, root)}:{line}"
            there = first.get(name) or known.get(name)
            if there and there.split(":")[0] != here.split(":")[0]:
                problems.append(f"{here}: {name} is defined in {there}, too")
            known.setdefault(name, here)

    for path in sources(root, LIBRARIES):
        enter(path, first)
    for folder in program_folders(root):
        known = {}
        for path in sources(root, [folder]):
            enter(path, known)
    print("\n".join(problems + [f"{count} definitions, {len(problems)} of them a second one"]))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.dirname(os.path.abspath(__file__)))))
