#!/usr/bin/env python3
"""libkvoscene calls nothing of OpenGL's beyond the core profile of 3.3, but for what is listed here with the reason.

usage: check_entry_points.py NM HEADER OBJECT...

HEADER: glcorearb.h, whose sections tell which version has an entry point. OBJECT: the library's object files, in folders that
are named as those of their sources.
"""
import re
import subprocess
import sys

# What draws and picks models must do without the fixed-function pipeline. Environments of the drawing library are seen
# with its matrices, lit by its lights and have boxes and overlays of its own making, which need a compatibility context.
OF_ENVIRONMENTS = {
    "contract_frame.cpp": {
        "glMatrixMode", "glPushMatrix", "glPopMatrix", "glLoadMatrixd",  # boxes at the scene's matrices
        "glEnableClientState", "glPushClientAttrib", "glPopClientAttrib",  # boxes draw from client memory
        "glPushAttrib", "glPopAttrib",  # boxes set colours and stipples; overlays are cut away
        "glScaled",  # depth the right way round
        "glGetLightfv",  # the context's lights
    },
    "model_frame.cpp": {"glMatrixMode", "glScaled"},  # depth is spread over the model
    "standard_view.cpp": {"glMatrixMode", "glPushMatrix", "glPopMatrix"},  # the orientation that MView makes
}
# What newer versions have, called only where the context says that it is one.
OF_NEWER_VERSIONS = {
    "gl_state.cpp": {"glBlendEquationSeparatei", "glBlendFuncSeparatei"},  # 4.0: hosts may have set them so
    "gl_objects.cpp": {"glViewportIndexedfv"},  # 4.1: viewports with fractions
    "model_frame.cpp": {"glViewportIndexedf"},
}


def core_entry_points(header):
    """Names in the sections of the versions up to 3.3."""
    names, within = set(), False
    for line in open(header, encoding="utf-8"):
        start = re.match(r"#ifndef GL_VERSION_(\d)_(\d)$", line)
        if start:
            within = (int(start[1]), int(start[2])) <= (3, 3)
        elif re.match(r"#endif /\* GL_VERSION_\d_\d \*/", line):
            within = False
        found = re.match(r"GLAPI .*APIENTRY (gl\w+) \(", line)
        if within and found:
            names.add(found[1])
    return names


def called(nm, path):
    listing = subprocess.run([nm, "--undefined-only", path], check=True, capture_output=True, text=True).stdout
    return set(re.findall(r"\bU (glu?[A-Z]\w*)$", listing, re.MULTILINE))


def main():
    nm, header, *objects = sys.argv[1:]
    core = core_entry_points(header)
    if "glDrawArrays" not in core or "glBegin" in core or "glViewportIndexedf" in core:
        sys.exit(f"{header} does not tell versions apart")
    faults, seen = [], set()
    for path in (name for name in objects if name.endswith((".o", ".obj"))):
        folder, source = re.sub(r"\.o(bj)?$", "", path).split("/")[-2:]
        allowed = set(OF_NEWER_VERSIONS.get(source, ()))
        if folder == "contract":
            allowed |= OF_ENVIRONMENTS.get(source, set())
        calls = called(nm, path)
        seen |= {(source, name) for name in calls}
        faults += [f"{folder}/{source} calls {name}" for name in sorted(calls - core - allowed)]
    for rows in (OF_ENVIRONMENTS, OF_NEWER_VERSIONS):
        for source, names in rows.items():
            faults += [f"{source} does not call {name} any more: the list can be shorter"
                       for name in sorted(names) if (source, name) not in seen]
    print("\n".join(faults) if faults else f"{len(objects)} objects call what the core profile of OpenGL 3.3 has")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
