"""Mesh building blocks for the example decks: nodes, parts, two-dimensional cells, sweeps and the .inp writer.

Lengths are in millimetres. Coordinates are rounded to 0.001 mm when a node is made, so the output is the same on
every machine and points that belong together become one node.
"""
import math

# Abaqus/CalculiX element type -> (number of nodes, family)
ELEMENT_TYPES = {
    "C3D8": (8, "solid"), "C3D6": (6, "solid"), "C3D4": (4, "solid"),
    "S4": (4, "shell"), "S3": (3, "shell"),
    "B31": (2, "beam"), "SPRINGA": (2, "discrete"), "DASHPOTA": (2, "discrete"),
}


def sub(a, b):
    return (a[0] - b[0], a[1] - b[1], a[2] - b[2])


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def dot(a, b):
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]


def triple(o, a, b, c):
    """Six times the volume of the tetrahedron o a b c, positive when it is right-handed."""
    return dot(cross(sub(a, o), sub(b, o)), sub(c, o))


class NodePool:
    """Nodes of one or more parts that share them: equal coordinates give the same node."""

    def __init__(self, name, first_id):
        self.name = name
        self.next_id = first_id
        self.ids = {}     # coordinates -> id
        self.coords = {}  # id -> coordinates

    def node(self, point):
        # The shift keeps a value that lies on a rounding boundary from going either way by its last bit.
        key = tuple(round(c + 1e-7, 3) + 0.0 for c in point)
        if key not in self.ids:
            self.ids[key] = self.next_id
            self.coords[self.next_id] = key
            self.next_id += 1
        return self.ids[key]

    def skip(self, step=100):
        """Go on at the next round number: engineers leave gaps between the patches of a mesh."""
        self.next_id = (self.next_id // step + 1) * step + 1

    def nearest(self, point):
        return min(self.coords, key=lambda n: (dot(sub(self.coords[n], point), sub(self.coords[n], point)), n))


class Part:
    """One named part: its elements, and the pool that its nodes come from."""

    def __init__(self, name, pool, first_element, section, material):
        self.name = name
        self.pool = pool
        self.next_id = first_element
        self.section = section    # lines after the part's *ELEMENT blocks, with {elset} and {material} to fill in
        self.material = material  # key of Deck.materials, or None
        self.elements = {}        # type -> [(id, node ids)]

    def add(self, kind, nodes):
        self.elements.setdefault(kind, []).append((self.next_id, tuple(nodes)))
        self.next_id += 1

    def skip(self, step=100):
        self.next_id = (self.next_id // step + 1) * step + 1
        self.pool.skip(step)

    def all(self):
        return [(kind, number, nodes) for kind, rows in self.elements.items() for number, nodes in rows]

    def surface(self, cells, place, reverse=False):
        """Shells: place(u, v) gives the point of every corner of the cells."""
        for cell in cells:
            nodes = [self.pool.node(place(*corner)) for corner in cell]
            self.add("S4" if len(nodes) == 4 else "S3", nodes[::-1] if reverse else nodes)
        self.skip()

    def sweep(self, cells, levels, place):
        """Solids between successive levels: place(u, v, w). Quadrilaterals give hexahedra, triangles wedges."""
        for lower, upper in zip(levels, levels[1:]):
            for cell in cells:
                self.solid([place(u, v, lower) for u, v in cell], [place(u, v, upper) for u, v in cell])
        self.skip()

    def solid(self, bottom, top):
        """A hexahedron or a wedge from two opposite faces with corresponding corners."""
        if triple(bottom[0], bottom[1], bottom[-1], top[0]) < 0:
            bottom, top = top, bottom
        self.add("C3D8" if len(bottom) == 4 else "C3D6", [self.pool.node(p) for p in bottom + top])

    def tetra(self, a, b, c, d):
        if triple(a, b, c, d) < 0:
            b, c = c, b
        self.add("C3D4", [self.pool.node(p) for p in (a, b, c, d)])

    def chain(self, kind, points):
        """Line elements through the points; an int stands for an existing node of any pool."""
        nodes = [p if isinstance(p, int) else self.pool.node(p) for p in points]
        for pair in zip(nodes, nodes[1:]):
            self.add(kind, pair)


def lines(start, *runs):
    """Grid lines: from start, each run (end, cells) divided evenly."""
    values = [start]
    for end, cells in runs:
        begin = values[-1]
        values += [begin + (end - begin) * k / cells for k in range(1, cells + 1)]
    return values


def mix(a, b, t):
    return tuple(p + (q - p) * t for p, q in zip(a, b))


class Hole:
    """An elliptical hole in the rectangle box = (u0, u1, v0, v1) of grid lines.

    rings: further (radius u, radius v) pairs outside the hole's own, for collars; layers: cells from there to the box.
    """

    def __init__(self, box, radii, layers=2, rings=()):
        self.box = box
        self.centre = ((box[0] + box[1]) / 2, (box[2] + box[3]) / 2)
        self.radii = [radii, *rings]
        self.layers = layers


def between(values, low, high):
    return [v for v in values if low - 1e-6 <= v <= high + 1e-6]


def rectangle_outline(us, vs):
    """Corner points of the grid cells along the border of the grid, counter-clockwise, each once."""
    return ([(u, vs[0]) for u in us[:-1]] + [(us[-1], v) for v in vs[:-1]]
            + [(u, vs[-1]) for u in us[:0:-1]] + [(us[0], v) for v in vs[:0:-1]])


def ring_cells(loops):
    """Quadrilaterals between successive closed loops of equally many points, innermost first."""
    cells = []
    for inner, outer in zip(loops, loops[1:]):
        count = len(inner)
        for k in range(count):
            n = (k + 1) % count
            cells.append((inner[k], outer[k], outer[n], inner[n]))
    return cells


def hole_cells(outline, centre, radii, layers):
    """Cells from an elliptical hole through its rings out to the outline."""
    def on_ellipse(point, ru, rv):
        angle = math.atan2((point[1] - centre[1]) / rv, (point[0] - centre[0]) / ru)
        return (centre[0] + ru * math.cos(angle), centre[1] + rv * math.sin(angle))

    loops = [[on_ellipse(p, ru, rv) for p in outline] for ru, rv in radii]
    last = loops[-1]
    loops += [[mix(a, b, k / layers) for a, b in zip(last, outline)] for k in range(1, layers + 1)]
    return ring_cells(loops)


def plate(us, vs, holes=()):
    """Counter-clockwise cells of a rectangular grid with holes."""
    def in_hole(u, v):
        return any(h.box[0] < u < h.box[1] and h.box[2] < v < h.box[3] for h in holes)

    cells = [((u, v), (u2, v), (u2, v2), (u, v2))
             for u, u2 in zip(us, us[1:]) for v, v2 in zip(vs, vs[1:]) if not in_hole((u + u2) / 2, (v + v2) / 2)]
    for hole in holes:
        outline = rectangle_outline(between(us, *hole.box[:2]), between(vs, *hole.box[2:]))
        cells += hole_cells(outline, hole.centre, hole.radii, hole.layers)
    return cells


def cut(cells, keep):
    """What lies on the side keep(u, v) >= 0; the cut must run along edges or diagonals of the cells."""
    kept = []
    for cell in cells:
        inside = tuple(p for p in cell if keep(*p) > -1e-6)
        on_line = sum(1 for p in inside if keep(*p) < 1e-6)
        if len(inside) >= 3 and on_line < len(inside):
            kept.append(inside)
    return kept


def coarsen(us, v, v2):
    """One strip of triangles from the grid lines us at v to every second of them at v2 (v2 > v or v2 < v)."""
    cells = []
    for a, b, c in zip(us[0::2], us[1::2], us[2::2]):
        cells += [((a, v), (b, v), (a, v2)), ((b, v), (c, v2), (a, v2)), ((b, v), (c, v), (c, v2))]
    return cells if v2 > v else [cell[::-1] for cell in cells]


class FilletPath:
    """A polyline with rounded corners, as a function of a cell counter: point(0) to point(cells).

    corners: the vertices; radii: one per inner vertex; straight, arc: cells per straight run and per corner.
    """

    def __init__(self, corners, radii, straight, arc):
        self.pieces = []  # (first counter, cells, function of 0..1)
        self.cells = 0
        start = corners[0]
        for k, radius in enumerate(radii):
            before, corner, after = corners[k:k + 3]
            first, last, bend = self._corner(before, corner, after, radius)
            self._append(straight[k], lambda t, a=start, b=first: mix(a, b, t))
            self._append(arc[k], bend)
            start = last
        self._append(straight[-1], lambda t, a=start, b=corners[-1]: mix(a, b, t))

    def _append(self, cells, function):
        self.pieces.append((self.cells, cells, function))
        self.cells += cells

    @staticmethod
    def _corner(before, corner, after, radius):
        def unit(a, b):
            length = math.hypot(b[0] - a[0], b[1] - a[1])
            return ((b[0] - a[0]) / length, (b[1] - a[1]) / length)

        back, ahead = unit(corner, before), unit(corner, after)
        half = math.acos(back[0] * ahead[0] + back[1] * ahead[1]) / 2
        reach = radius / math.tan(half)
        first = (corner[0] + back[0] * reach, corner[1] + back[1] * reach)
        last = (corner[0] + ahead[0] * reach, corner[1] + ahead[1] * reach)
        middle = unit(corner, mix(first, last, 0.5))
        centre = tuple(c + m * radius / math.sin(half) for c, m in zip(corner, middle))
        begin = math.atan2(first[1] - centre[1], first[0] - centre[0])
        sweep = math.atan2(last[1] - centre[1], last[0] - centre[0]) - begin
        sweep = (sweep + math.pi) % (2 * math.pi) - math.pi

        def bend(t):
            angle = begin + sweep * t
            return (centre[0] + radius * math.cos(angle), centre[1] + radius * math.sin(angle))
        return first, last, bend

    def point(self, counter):
        for first, cells, function in self.pieces:
            if counter <= first + cells + 1e-9:
                return function(min(1.0, max(0.0, (counter - first) / cells)))
        return self.pieces[-1][2](1.0)


class Deck:
    """Parts, materials and sets; writes itself as an .inp file."""

    def __init__(self, title):
        self.title = title
        self.pools = []
        self.parts = []
        self.materials = {}  # name -> lines of the material cards
        self.node_sets = []  # (name, node ids)

    def pool(self, name, first_id):
        self.pools.append(NodePool(name, first_id))
        return self.pools[-1]

    def part(self, name, pool, first_element, section, material=None):
        self.parts.append(Part(name, pool, first_element, section, material))
        return self.parts[-1]

    def text(self):
        out = ["*HEADING", self.title, "** lengths mm, forces N, masses t"]
        for pool in self.pools:
            out.append(f"*NODE, NSET=N_{pool.name}")
            out += [",".join([str(n), *(number(c) for c in pool.coords[n])]) for n in sorted(pool.coords)]
        for part in self.parts:
            for kind in part.elements:
                out.append(f"*ELEMENT, TYPE={kind}, ELSET={part.name}")
                out += [",".join(map(str, (e, *nodes))) for e, nodes in part.elements[kind]]
        for name, nodes in self.node_sets:
            out += [f"*NSET, NSET={name}", *set_rows(nodes)]
        out.append("** ---- sections and materials")
        for part in self.parts:
            out += [line.format(elset=part.name, material=part.material) for line in part.section]
        for name, cards in self.materials.items():
            out += [f"*MATERIAL, NAME={name}", *cards]
        return "\n".join(out) + "\n"


def number(value):
    """The shortest text with at most three decimals."""
    text = f"{value:.3f}".rstrip("0").rstrip(".")
    return "0" if text in ("", "-0") else text


def set_rows(numbers, width=12):
    rows = sorted(numbers)
    return [",".join(map(str, rows[k:k + width])) + ("," if k + width < len(rows) else "")
            for k in range(0, len(rows), width)]


STEEL = ["*ELASTIC", "210000.,0.3", "*DENSITY", "7.85e-9"]


def solid_section():
    return ["*SOLID SECTION, ELSET={elset}, MATERIAL={material}"]


def shell_section(thickness):
    return ["*SHELL SECTION, ELSET={elset}, MATERIAL={material}", number(thickness)]


def beam_section(radius, direction="0.,0.,1."):
    return ["*BEAM SECTION, ELSET={elset}, MATERIAL={material}, SECTION=CIRC", number(radius), direction]


def spring_section(rate):
    return ["*SPRING, ELSET={elset}", "", number(rate)]


def dashpot_section(rate):
    return ["*DASHPOT, ELSET={elset}", "", number(rate)]
