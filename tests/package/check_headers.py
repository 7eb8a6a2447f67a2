#!/usr/bin/env python3
"""Every installed header compiles on its own, with the package's folders and nothing else on the include path: as C++11
the contract's four folders, as C++17 those of kvo/.

usage: check_headers.py COMPILER INCLUDE_FOLDER
"""
import os
import subprocess
import sys

CONTRACT = ("render", "generic", "readgen", "import/generic")
FOLDERS = (*CONTRACT, "kvo")
EXPECTED = {
    "render": "boundbox caeenv glfuncs maptypes mtrans mview partstr pickrect rubberband trackball unit_axis",
    "generic": "gentime kvoexport",
    "readgen": "modelinfo modelwriter readelements readids readnodes",
    "import/generic": "mantypes",
    "kvo": "box camera coloring id_range id_table measure model model_directory model_frame model_view part_mesh pick quality rotation "
           "scene_load scene_view select_more shown_model span standard_view through_picker view_names visible_picker",
}


def compiles(compiler, root, folder, header):
    standard = "-std=c++11" if folder in CONTRACT else "-std=c++17"
    command = [compiler, standard, "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only", "-x", "c++", "-"]
    own = () if folder in CONTRACT else (".",)
    command += [f"-I{os.path.join(root, name)}" for name in (*CONTRACT, *own)]
    name = f"kvo/{header}" if folder == "kvo" else header
    twice = f'#include "{name}"\n#include "{name}"\n'
    result = subprocess.run(command, input=twice, text=True, capture_output=True, check=False)
    if result.returncode != 0:
        print(f"{header}:\n{result.stderr}", file=sys.stderr)
    return result.returncode == 0


def main(compiler, root):
    failed = False
    for folder in FOLDERS:
        there = sorted(os.listdir(os.path.join(root, folder)))
        there = [name for name in there if os.path.isfile(os.path.join(root, folder, name))]
        expected = sorted(name + ".h" for name in EXPECTED[folder].split())
        if there != expected:
            print(f"{folder} holds {there}, not {expected}", file=sys.stderr)
            failed = True
        failed = not all([compiles(compiler, root, folder, header) for header in there]) or failed
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
