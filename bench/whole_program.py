#!/usr/bin/env python3
"""From a file on disk to a PNG: kvo against F3D, one after the other, wall time and peak memory.

usage: whole_program.py KVO [--f3d F3D] [--elements N] [--runs N]

Writes a .vtu of a cube of hexahedra and one of a curved sheet of quadrilaterals (raw appended arrays), and renders each
1280 x 800 with both programs, F3D under xvfb-run. Prints the medians and their ratios. Debian: f3d, xvfb.
"""
import argparse
import array
import math
import os
import shutil
import statistics
import struct
import subprocess
import sys
import tempfile
import time

HEXAHEDRON, QUADRILATERAL = 12, 9


def cube(count):
    side = round(count ** (1 / 3))
    m = side + 1
    points = array.array("f", (c for k in range(m) for j in range(m) for i in range(m) for c in (i, j, k)))
    cells = array.array("q")
    for k in range(side):
        for j in range(side):
            row = (k * m + j) * m
            for a in range(row, row + side):
                cells.extend((a, a + 1, a + m + 1, a + m, a + m * m, a + m * m + 1, a + m * m + m + 1, a + m * m + m))
    return points, cells, HEXAHEDRON, 8


def sheet(count):
    side = round(math.sqrt(count))
    m = side + 1
    points = array.array("f", (c for j in range(m) for i in range(m)
                               for c in (i, j, 20 * math.sin(0.02 * i) * math.cos(0.02 * j))))
    cells = array.array("q")
    for j in range(side):
        for a in range(j * m, j * m + side):
            cells.extend((a, a + 1, a + m + 1, a + m))
    return points, cells, QUADRILATERAL, 4


def write_vtu(path, points, cells, kind, corners):
    count = len(cells) // corners
    blocks = [points.tobytes(), cells.tobytes(), array.array("q", range(corners, len(cells) + 1, corners)).tobytes(),
              bytes([kind]) * count]
    offsets, at = [], 0
    for block in blocks:
        offsets.append(at)
        at += 8 + len(block)
    head = ('<VTKFile type="UnstructuredGrid" version="1.0" byte_order="LittleEndian" header_type="UInt64">'
            '<UnstructuredGrid><Piece NumberOfPoints="%d" NumberOfCells="%d"><Points>'
            '<DataArray type="Float32" NumberOfComponents="3" format="appended" offset="%d"/></Points><Cells>'
            '<DataArray type="Int64" Name="connectivity" format="appended" offset="%d"/>'
            '<DataArray type="Int64" Name="offsets" format="appended" offset="%d"/>'
            '<DataArray type="UInt8" Name="types" format="appended" offset="%d"/></Cells></Piece></UnstructuredGrid>'
            '<AppendedData encoding="raw">_' % (len(points) // 3, count, *offsets))
    with open(path, "wb") as file:
        file.write(head.encode())
        for block in blocks:
            file.write(struct.pack("<Q", len(block)))
            file.write(block)
        file.write(b"</AppendedData></VTKFile>")


def run(command, picture):
    """Seconds and peak megabytes of a program and those that it starts."""
    if os.path.exists(picture):
        os.remove(picture)
    start = time.monotonic()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.monotonic() - start
    if status != 0 or not os.path.exists(picture):
        sys.exit("failed: " + " ".join(command))
    return seconds, usage.ru_maxrss / 1024


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("kvo")
    parser.add_argument("--f3d", default="f3d")
    parser.add_argument("--elements", type=int, default=1_000_000)
    parser.add_argument("--runs", type=int, default=5)
    options = parser.parse_args()
    os.environ["LIBGL_ALWAYS_SOFTWARE"] = "1"
    against = shutil.which(options.f3d) and shutil.which("xvfb-run")
    with tempfile.TemporaryDirectory() as folder:
        for name, make in (("hexahedra", cube), ("quadrilaterals", sheet)):
            deck, picture = os.path.join(folder, name + ".vtu"), os.path.join(folder, "out.png")
            write_vtu(deck, *make(options.elements))
            commands = {"kvo": [options.kvo, "render", deck, "-o", picture, "--size", "1280x800"]}
            if against:
                commands["f3d"] = ["xvfb-run", "-a", options.f3d, deck, "--output", picture, "--resolution", "1280,800"]
            found = {program: [] for program in commands}
            for _ in range(options.runs):
                for program, command in commands.items():
                    found[program].append(run(command, picture))
            medians = {p: [statistics.median(column) for column in zip(*rows)] for p, rows in found.items()}
            for program, (seconds, megabytes) in medians.items():
                print(f"{options.elements} {name}, {program}: {seconds:.2f} s, {megabytes:.0f} MB at most")
            if against:
                print("  kvo / f3d: %.2f of the time, %.2f of the memory"
                      % tuple(a / b for a, b in zip(medians["kvo"], medians["f3d"])))


if __name__ == "__main__":
    main()
