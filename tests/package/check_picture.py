#!/usr/bin/env python3
"""The example host's picture has the size asked for and shows a lit model with one selected (blue) part on black.

usage: check_picture.py PICTURE.ppm WIDTH HEIGHT
"""
import sys


def main(path, width, height):
    with open(path, "rb") as stream:
        magic, size, depth, data = stream.read().split(b"\n", 3)
    pixels = [tuple(data[k:k + 3]) for k in range(0, len(data), 3)]
    black = sum(1 for p in pixels if p == (0, 0, 0))
    blue = sum(1 for r, g, b in pixels if b > 60 and b > 3 * max(r, g))
    problems = []
    if (magic, size, depth) != (b"P6", f"{width} {height}".encode(), b"255") or len(pixels) != width * height:
        problems.append(f"header {magic} {size} {depth} with {len(pixels)} pixels")
    share = 1 - black / len(pixels)
    if not 0.05 < share < 0.95:
        problems.append(f"{share:.0%} of the picture is drawn")
    if blue < 200:
        problems.append(f"only {blue} pixels of a selected part")
    if len(set(pixels)) < 4:
        problems.append(f"only {len(set(pixels))} colours")
    for problem in problems:
        print(f"{path}: {problem}", file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], int(sys.argv[2]), int(sys.argv[3])))
