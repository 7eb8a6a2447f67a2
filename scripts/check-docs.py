#!/usr/bin/env python3
"""Checks what the pages say against the tree: links, paths, commands, names and quoted code.

usage: check-docs.py [--root DIR] [--kvo PROGRAM]

- Links and pictures lead to files, and to headings that exist.
- Text in backquotes that looks like a path of this repository names a file or folder; `*` and `{a,b}` stand for several.
- Commands in code: scripts exist, are executable and take the configuration named; presets exist; with --kvo, kvo's
  commands and options are those of its own manual.
- `Class::member` and `Class` of the contract stand in a public header.
- A code block after `<!-- file: PATH -->` is that file, after `<!-- part of: PATH -->` a run of its lines.

Exit status 1 with one line per problem.
"""
import argparse
import glob
import json
import os
import re
import subprocess
import sys

PAGES = ("*.md", "docs/*.md", "examples/**/*.md", "bench/*.md")
FOLDERS = ("render", "generic", "readgen", "import", "model", "host", "apps", "tests", "bench", "examples", "docs", "scripts",
           "cmake", ".ci")
MADE = ("build/", "demo/")  # by the commands of the pages themselves
HEADER_FOLDERS = ("render", "generic", "readgen", "import/generic", "scene/include/kvo", "model/include/kvo")
ENDINGS = r"(?:md|h|cpp|py|txt|json|inp|stl|png|svg|cmake|in|yml|supp)"


class Page:
    def __init__(self, root, path):
        self.path = path
        self.name = os.path.relpath(path, root)
        with open(path, encoding="utf-8") as stream:
            self.lines = stream.read().splitlines()
        self.headings = {anchor(line.lstrip("# ")) for line in self.text_lines() if line.startswith("#")}

    def text_lines(self):
        """Lines outside fenced code, indented code left out, too."""
        return [line for line, code in self.marked_lines() if not code]

    def code_lines(self):
        return [line for line, code in self.marked_lines() if code]

    def marked_lines(self):
        fenced = False
        for line in self.lines:
            fence = line.lstrip().startswith("```")
            yield line, fenced or fence or line.startswith("    ")
            fenced = fenced != fence

    def inline_code(self):
        return [piece for line in self.text_lines() for piece in re.findall(r"`([^`]+)`", line)]


def anchor(heading):
    return re.sub(r"[^\w\- ]", "", heading.lower()).strip().replace(" ", "-")


def pages(root):
    paths = {path for pattern in PAGES for path in glob.glob(os.path.join(root, pattern), recursive=True)}
    return [Page(root, path) for path in sorted(paths)]


def link_problems(root, page, everything):
    for target in re.findall(r"\]\(([^)\s]+)\)", "\n".join(page.text_lines())):
        if re.match(r"[a-z]+:", target):
            continue
        file, _, heading = target.partition("#")
        path = os.path.normpath(os.path.join(os.path.dirname(page.path), file)) if file else page.path
        if not os.path.exists(path):
            yield f"link to {target}: no such file"
            continue
        other = next((p for p in everything if os.path.samefile(p.path, path)), None)
        if heading and other and heading not in other.headings:
            yield f"link to {target}: no such heading"


def braces(pattern):
    """a{b,c}d -> abd, acd"""
    found = re.search(r"\{([^{}]*)\}", pattern)
    if not found:
        return [pattern]
    return [result for word in found.group(1).split(",")
            for result in braces(pattern[:found.start()] + word + pattern[found.end():])]


def looks_like_path(text):
    if re.search(r"[\s<>()=$|:]|\.\.\.", text) or text.startswith(MADE) or "/" not in text:
        return False
    return text.split("/")[0] in FOLDERS or re.search(rf"\.{ENDINGS}$", text) is not None and text[0] not in "/<"


def path_problems(root, page):
    for text in page.inline_code():
        if looks_like_path(text):
            for path in braces(text):
                if not glob.glob(os.path.join(root, path)) and not glob.glob(
                        os.path.join(os.path.dirname(page.path), path)):
                    yield f"`{text}`: no such path"


def commands(page):
    """Command lines of the code blocks and of the inline code, without comments and prompts."""
    for text in page.code_lines() + page.inline_code():
        for command in re.split(r"&&|;|\|\|", re.sub(r"(^|\s)#.*", "", text.strip().removeprefix("$ "))):
            words = [word for word in command.split() if not re.fullmatch(r"[A-Z_]+=\S*", word)]
            if words:
                yield words


def script_problems(root, words):
    path = words[0].removeprefix("./")
    if not re.match(r"(scripts|\.ci)/\w", path) and not re.match(r"examples/\S+\.py$", path):
        return
    full = os.path.join(root, path)
    if os.path.isfile(full) and path.endswith(".txt"):
        return
    if not os.path.isfile(full) or not os.access(full, os.X_OK):
        yield f"{path}: no such program"
    elif path == "scripts/check":
        known = configurations(full)
        yield from (f"scripts/check {word}: no such configuration" for word in words[1:]
                    if re.fullmatch(r"[a-z]+", word) and word not in known)


def configurations(script):
    with open(script, encoding="utf-8") as stream:
        return {word for label in re.findall(r"^\s*([a-z |]+)\)", stream.read(), re.M) for word in label.split(" | ")}


def preset_problems(root, words):
    if words[0] not in ("cmake", "ctest") or "--preset" not in words[:-1]:
        return
    kind = "testPresets" if words[0] == "ctest" else "buildPresets" if "--build" in words else "configurePresets"
    with open(os.path.join(root, "CMakePresets.json"), encoding="utf-8") as stream:
        known = {preset["name"] for preset in json.load(stream)[kind] if not preset.get("hidden")}
    preset = words[words.index("--preset") + 1]
    if preset not in known:
        yield f"{' '.join(words)}: no such preset"


class Manual:
    """kvo's own --help texts."""

    def __init__(self, program):
        self.program = program
        self.texts = {}

    def text(self, *command):
        if command not in self.texts:
            done = subprocess.run([self.program, *command, "--help"], capture_output=True, text=True, check=False)
            self.texts[command] = done.stdout if done.returncode == 0 else ""
        return self.texts[command]

    def problems(self, words):
        if os.path.basename(words[0]) != "kvo" or len(words) < 2 or words[1].startswith("["):
            return
        command = () if words[1].startswith("-") else (words[1],)
        if command and not self.text(*command):
            yield f"kvo {words[1]}: no such command"
            return
        for option in (w for word in words[1:] for w in re.findall(r"(?<![\w-])--?[a-z][\w-]*", word)):
            if not re.search(rf"(?<![\w-]){option}(?![\w-])", self.text(*command)):
                yield f"{' '.join(['kvo', *command])}: no option {option}"


def command_problems(root, page, manual):
    for words in commands(page):
        yield from script_problems(root, words)
        yield from preset_problems(root, words)
        if manual:
            yield from manual.problems(words)


def public_headers(root):
    text = ""
    for folder in HEADER_FOLDERS:
        for path in sorted(glob.glob(os.path.join(root, folder, "*.h"))):
            with open(path, encoding="utf-8") as stream:
                text += stream.read()
    return text


def name_problems(page, headers):
    classes = set(re.findall(r"^(?:class|struct)\s+(?:KVO_EXPORT\s+)?(\w+)\s*$", headers, re.M))
    for text in page.inline_code():
        for owner, member in re.findall(r"\b(\w+)::(~?\w+)", text):
            if owner in classes and not re.search(rf"\b{member.lstrip('~')}\b", headers):
                yield f"`{owner}::{member}`: no such member"
        called = re.fullmatch(r"(\w+)\(.*\)", text)
        if called and re.match(r"[a-z]+[A-Z]", called.group(1)) and not re.search(rf"\b{called.group(1)}\(", headers):
            yield f"`{text}`: no such function in a public header"


def quotation_problems(root, page):
    text = "\n".join(page.lines)
    for kind, path, code in re.findall(r"<!-- (file|part of): (\S+) -->\n+```\w*\n(.*?)\n```", text, re.S):
        try:
            with open(os.path.join(root, path), encoding="utf-8") as stream:
                source = stream.read().rstrip("\n")
        except OSError as error:
            yield f"quotes {path}: {error.strerror}"
            continue
        same = code == source if kind == "file" else f"\n{code}\n" in f"\n{source}\n"
        if not same:
            yield f"the code quoted from {path} is not what stands there"
    count = len(re.findall(r"<!-- (?:file|part of): ", text))
    if count != len(re.findall(r"<!-- (?:file|part of): \S+ -->\n+```", text)):
        yield "a mark for quoted code without a code block after it"


def problems(root, kvo=""):
    everything = pages(root)
    headers = public_headers(root)
    manual = Manual(kvo) if kvo else None
    for page in everything:
        found = [*link_problems(root, page, everything), *path_problems(root, page),
                 *command_problems(root, page, manual), *name_problems(page, headers),
                 *quotation_problems(root, page)]
        yield from (f"{page.name}: {problem}" for problem in dict.fromkeys(found))


def main():
    here = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--root", default=here)
    parser.add_argument("--kvo", default="", help="the program whose manual the commands are checked against")
    arguments = parser.parse_args()
    found = list(problems(arguments.root, arguments.kvo))
    print("\n".join(found) or f"{len(pages(arguments.root))} pages agree with the tree")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
