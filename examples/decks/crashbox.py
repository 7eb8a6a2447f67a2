"""A crash box on its test rig: mounting plate, load cell and rubber mounts, base plate, crush can, bumper beam.

          mounting   base                          cap   bumper beam
          plate      plate                          |  ___
            |  o==o   |  ________________________   | |   \\
            | [cell]  | |  foam   (  (  (        |  | |   |      z
     bolts  | [    ]  | |_________crush can______|  | |   |      |
            |  o==o   |                             | |___/      +--- x, the direction of the crash
          x = -56     0                          214

Sheet parts are meshed at mid-surface; sheets that are welded together lie half the sum of their thicknesses apart.
"""
import math

from deckmesh import (STEEL, Deck, FilletPath, Hole, beam_section, coarsen, cut, dashpot_section, lines, plate,
                      ring_cells, shell_section, solid_section, spring_section)

CAN_START, CAN_END, CAN_CELLS = 2.0, 214.0, 54
CAN_CELL = (CAN_END - CAN_START) / CAN_CELLS
TOP_BEADS, SIDE_BEADS = (44.0, 92.0, 140.0), (20.0, 68.0, 116.0)
BEAD_WIDTH, BEAD_DEPTH = 15.0, 4.0  # half width along x, depth
RIM = 2 * math.pi + 10.0            # arc and height of the base plate's folded rim
PLATE_X = -42.0                     # front face of the mounting plate
MOUNTS = [(y, z) for y in (-75.0, 75.0) for z in (-55.0, 55.0)]
CAP_X, BACK_X, HAT_X = 215.5, 218.0, 220.0
BEAM_YS = lines(-130.0, (130.0, 40))
TOW_Y = 97.5


def circle(centre, radius, count, start=0.0):
    return [(centre[0] + radius * math.cos(start + 2 * math.pi * k / count),
             centre[1] + radius * math.sin(start + 2 * math.pi * k / count)) for k in range(count)]


# ---- the can ------------------------------------------------------------------------------------------------------

def can_section(x):
    """Upper half of the section at x: flange, side, top, side, flange."""
    t = (x - CAN_START) / (CAN_END - CAN_START)
    a, b = 50.0 - 8.0 * t, 40.0 - 7.0 * t
    corners = [(a + 18.0, 1.0), (a, 1.0), (a, b), (-a, b), (-a, 1.0), (-a - 18.0, 1.0)]
    return FilletPath(corners, (5.0, 12.0, 12.0, 5.0), (4, 5, 18, 5, 4), (2, 4, 4, 2))


SECTION = can_section(CAN_START)
FLANGE_CELLS, SIDE, TOP = 4, (6, 11), (15, 33)  # counters where side and top begin and end
SECTIONS = {}


def bump(distance, width):
    return 0.5 * (1 + math.cos(math.pi * distance / width)) if abs(distance) < width else 0.0


def bead_depth(u, x):
    """How far the trigger beads push the wall inwards: the top at some stations, the sides outwards in between."""
    u = min(u, SECTION.cells - u)
    if SIDE[0] < u < SIDE[1]:
        fade = math.sin(math.pi * (u - SIDE[0]) / (SIDE[1] - SIDE[0])) ** 2
        return -0.8 * BEAD_DEPTH * fade * sum(bump(x - s, BEAD_WIDTH) for s in TOP_BEADS)
    if u > TOP[0]:
        fade = min(1.0, (u - TOP[0]) / 4) ** 2 * (3 - 2 * min(1.0, (u - TOP[0]) / 4))
        return BEAD_DEPTH * fade * sum(bump(x - s, BEAD_WIDTH) for s in TOP_BEADS)
    return 0.0


def can_point(u, x):
    """Point of the upper half: u counts cells along the section, x along the can."""
    x = round(x, 6)
    if x not in SECTIONS:
        SECTIONS[x] = can_section(x)
    path = SECTIONS[x]
    y, z = path.point(u)
    inward = bead_depth(u, x)
    if SIDE[0] < u < SIDE[1] or SIDE[0] < path.cells - u < SIDE[1]:
        return (x, y - math.copysign(inward, y), z)
    return (x, y, z - inward)


def mirrored(point):
    return (point[0], point[1], -point[2])


def add_can(upper, lower):
    """Both halves; returns the places (u, x) of the spot welds of their flanges."""
    us = [float(u) for u in range(SECTION.cells + 1)]
    xs = lines(CAN_START, (CAN_END, CAN_CELLS))
    hole = Hole((us[21], us[27], xs[45], xs[51]), (9.0 / 4.2, 9.0))
    side_holes = [Hole((us[u], us[u + 4], xs[44], xs[48]), (1.2, 5.5), layers=1) for u in (6, SECTION.cells - 10)]
    cells = plate(us, xs, [hole, *side_holes])
    upper.surface(cells, can_point, reverse=True)
    lower.surface(cells, lambda u, x: mirrored(can_point(u, x)))
    return [(u, x) for u in (2.0, SECTION.cells - 2.0) for x in xs[3::6]]


def add_foot_welds(welds):
    """A fillet weld of wedges between the foot of each half and the base plate."""
    first, last = FLANGE_CELLS + 2, SECTION.cells - FLANGE_CELLS - 2
    for side in (1, -1):
        rows = []
        for u in lines(first, (last, 2 * (last - first))):
            foot, above = can_point(u, CAN_START), can_point(u, CAN_START + 5.0)
            rows.append([away(foot, u, 1.0), away(foot, u, 6.0), away(above, u, 1.0)])
        if side < 0:
            rows = [[mirrored(point) for point in row] for row in rows]
        for here, there in zip(rows, rows[1:]):
            welds.solid(here, there)
        welds.skip()


def away(point, u, distance):
    """The point moved outwards, along the normal of the foot's section at u."""
    (_, y0, z0), (_, y1, z1) = can_point(u - 0.01, CAN_START), can_point(u + 0.01, CAN_START)
    length = math.hypot(y1 - y0, z1 - z0)
    return (point[0], point[1] + distance * (z1 - z0) / length, point[2] - distance * (y1 - y0) / length)


def add_foam(foam):
    """A block of tetrahedra, six to a cell, standing on the base plate inside the can."""
    xs, ys, zs = lines(CAN_START, (142.0, 14)), lines(-36.0, (36.0, 8)), lines(-30.0, (30.0, 6))
    for x0, x1 in zip(xs, xs[1:]):
        for y0, y1 in zip(ys, ys[1:]):
            for z0, z1 in zip(zs, zs[1:]):
                low, high = (x0, y0, z0), (x1, y1, z1)
                for order in ((0, 1, 2), (1, 2, 0), (2, 0, 1), (0, 2, 1), (2, 1, 0), (1, 0, 2)):
                    path = [low]
                    for axis in order:
                        path.append(tuple(high[k] if k == axis else path[-1][k] for k in range(3)))
                    foam.tetra(*path)
    foam.skip()


# ---- base plate, load cell, mounts ----------------------------------------------------------------------------------

def rim_point(z):
    """(x, z) of the base plate at developed height z: flat up to 80, then folded forward with a radius of 4."""
    over = abs(z) - 80.0
    if over <= 0:
        return (0.0, z)
    angle = min(over / 4.0, math.pi / 2)
    rise = max(0.0, over - 2 * math.pi)
    return (4 - 4 * math.cos(angle) + rise, math.copysign(80 + 4 * math.sin(angle), z))


def add_base_plate(base):
    ys = lines(-95.0, (-87.0, 2), (-63.0, 6), (-24.0, 8), (24.0, 10), (63.0, 8), (87.0, 6), (95.0, 2))
    zs = lines(-80.0 - RIM, (-80.0 - 2 * math.pi, 2), (-80.0, 2), (-67.0, 3), (-43.0, 6), (-24.0, 4), (24.0, 10),
               (43.0, 4), (67.0, 6), (80.0, 3), (80.0 + 2 * math.pi, 2), (80.0 + RIM, 2))
    holes = [Hole((y - 12, y + 12, z - 12, z + 12), (7.0, 7.0)) for y, z in MOUNTS]
    holes.append(Hole((-24.0, 24.0, -24.0, 24.0), (15.0, 15.0)))

    def place(y, z):
        x, height = rim_point(z)
        return (x, y, height)
    base.surface(plate(ys, zs, holes), place)


def add_mounting_plate(plate_part):
    ys = lines(-105.0, (-90.0, 3), (-60.0, 5), (60.0, 16), (90.0, 5), (105.0, 3))
    zs = lines(-90.0, (-70.0, 4), (-40.0, 5), (40.0, 11), (70.0, 5), (90.0, 4))
    holes = [Hole((y - 15, y + 15, z - 15, z + 15), (7.0, 7.0)) for y, z in MOUNTS]
    cells = cut(plate(ys, zs, holes), lambda y, z: (105 - abs(y)) + (90 - abs(z)) - 10)
    plate_part.sweep(cells, lines(PLATE_X - 14.0, (PLATE_X, 2)), lambda y, z, x: (x, y, z))


def add_load_cell(cell):
    ys = lines(-50.0, (-20.0, 6), (20.0, 8), (50.0, 6))
    zs = lines(-40.0, (-20.0, 4), (20.0, 8), (40.0, 4))
    cells = plate(ys, zs, [Hole((-20.0, 20.0, -20.0, 20.0), (12.0, 12.0))])

    def place(y, z, x):
        t = abs(2 * (x - PLATE_X) / (-2.0 - PLATE_X) - 1)  # 1 at the ends, 0 in the middle
        waist = 1 - 0.16 * min(1.0, max(0.0, (0.9 - t) / 0.4))
        return (x, y * waist, z * waist)
    cell.sweep(cells, lines(PLATE_X, (PLATE_X + 4, 1), (-6.0, 6), (-2.0, 1)), place)


def add_mounts(mounts):
    """Rubber bushes round the bolts: rings of wedges, barrel-shaped."""
    for y, z in MOUNTS:
        rings = [circle((0.0, 0.0), r, 16) for r in (7.0, 11.0, 15.0)]
        cells = [half for a, b, c, d in ring_cells(rings) for half in ((a, b, c), (a, c, d))]

        def place(u, v, x, y=y, z=z):
            r = math.hypot(u, v)
            belly = 1 + 0.14 * (r - 7.0) / 8.0 * math.sin(math.pi * (x - PLATE_X) / (-2.0 - PLATE_X))
            return (x, y + u * belly, z + v * belly)
        mounts.sweep(cells, lines(PLATE_X, (-2.0, 7)), place)


def add_bolt_heads(heads):
    """Hexagonal heads and nuts outside the plates, with the bore of the bolt left open."""
    for y, z in MOUNTS:
        outer = circle((y, z), 12.0, 6)
        outer = [p for a, b in zip(outer, outer[1:] + outer[:1]) for p in (a, tuple((s + t) / 2 for s, t in zip(a, b)))]
        inner = circle((y, z), 5.0, 12)
        middle = [tuple((s + t) / 2 for s, t in zip(a, b)) for a, b in zip(inner, outer)]
        for low, high in ((2.0, 10.0), (PLATE_X - 22.0, PLATE_X - 14.0)):
            heads.sweep(ring_cells([inner, middle, outer]), lines(low, (high, 2)), lambda u, v, x: (x, u, v))


def add_bolts(bolts, base_nodes, plate_nodes):
    """Shanks as chains of beams, with spokes to the edges of the holes."""
    for y, z in MOUNTS:
        bolts.chain("B31", [(x, y, z) for x in lines(PLATE_X - 22.0, (PLATE_X - 14, 2), (PLATE_X, 2), (0.0, 8), (10.0, 2))])
        for nodes, x in ((base_nodes, 0.0), (plate_nodes, PLATE_X - 14.0)):
            edge = [n for n, p in sorted(nodes.coords.items())
                    if abs(p[0] - x) < 1e-6 and abs(math.hypot(p[1] - y, p[2] - z) - 7.0) < 0.01]
            for node in edge:
                bolts.chain("B31", [(x, y, z), node])
        bolts.skip()


# ---- cap, bumper beam, tow sleeve -----------------------------------------------------------------------------------

def swept(y):
    """How far the ends of the beam lie back."""
    return 18.0 * (max(0.0, abs(y) - 120.0) / 70.0) ** 2


def hat_section():
    half = [(HAT_X, 62.0), (HAT_X, 48.0), (262.0, 44.0), (262.0, 25.0), (250.0, 21.0)]
    corners = half + [(x, -z) for x, z in half[::-1]]
    return FilletPath(corners, (4, 5, 5, 4, 4, 5, 5, 4), (4, 8, 4, 2, 8, 2, 4, 8, 4), (2,) * 8)


def beam_cells(us, holes):
    """Fine in the middle; at 130 mm a strip of triangles leads to every second line, in both directions."""
    cells = plate(us, BEAM_YS, holes)
    for side in (-1, 1):
        cells += coarsen(us, side * 130.0, side * 140.0)
        outer = lines(140.0, (190.0, 4))
        cells += plate(us[::2], outer if side > 0 else [-y for y in outer[::-1]])
    return cells


def tow_hole(us, first, last, radius_u):
    return Hole((us[first], us[last], TOW_Y - 13.0, TOW_Y + 13.0), (radius_u, 11.0), layers=1)


def add_beam(front, back):
    path = hat_section()
    us = [float(u) for u in range(path.cells + 1)]
    middle = path.cells // 2
    floor = abs(path.point(middle - 4)[1] - path.point(middle + 4)[1]) / 8
    cells = beam_cells(us, [tow_hole(us, middle - 4, middle + 4, 11.0 / floor)])
    front.surface(cells, lambda u, y: (path.point(u)[0] - swept(y), y, path.point(u)[1]))

    flange = sorted(path.point(k)[1] for k in range(5))
    zs = lines(-flange[-1], *((-z, 1) for z in flange[-2::-1]), (-17.0, 5), (17.0, 8), (flange[0], 5),
               *((z, 1) for z in flange[1:]))
    cells = beam_cells(zs, [tow_hole(zs, zs.index(-17.0), zs.index(17.0), 11.0)])
    back.surface(cells, lambda z, y: (BACK_X - swept(y), y, z))
    return flange[2]


def add_tow_sleeve(sleeve):
    rings = [circle((TOW_Y, 0.0), r, 24) for r in (7.0, 9.0, 11.0)]
    sleeve.sweep(ring_cells(rings), lines(196.0, (276.0, 18)), lambda y, z, x: (x, y, z))


def add_cap(cap):
    ys = lines(-66.0, (-18.0, 9), (18.0, 8), (66.0, 9))
    zs = lines(-44.0, (-18.0, 5), (18.0, 8), (44.0, 5))
    cap.surface(plate(ys, zs, [Hole((-18.0, 18.0, -18.0, 18.0), (12.0, 12.0))]), lambda y, z: (CAP_X, y, z))


# ---- welds, stays, springs ------------------------------------------------------------------------------------------

def add_spot_welds(welds, can, upper, lower, flange_z, front, back):
    for u, x in can:
        top = can_point(u, x)
        welds.chain("B31", [upper.node(top), lower.node(mirrored(top))])
    for y in BEAM_YS[2:-2:4]:
        for z in (-flange_z, flange_z):
            welds.chain("B31", [back.node((BACK_X - swept(y), y, z)), front.node((HAT_X - swept(y), y, z))])
    welds.skip()


def add_cap_welds(welds, cap, back):
    for y in (-52.0, -26.0, 26.0, 52.0):
        for z in (-34.0, 34.0):
            node = cap.nearest((CAP_X, y, z))
            welds.chain("B31", [node, back.nearest((BACK_X, *cap.coords[node][1:]))])
    welds.skip()


def add_stays(stays, base, back):
    """Tubes from the edges of the base plate to the ends of the beam."""
    for side in (-1, 1):
        for z in (-30.0, 30.0):
            a, b = base.nearest((0.0, side * 95.0, z)), back.nearest((BACK_X - swept(170.0), side * 170.0, z))
            p, q = base.coords[a], back.coords[b]
            inner = [tuple(s + (t - s) * k / 20 for s, t in zip(p, q)) for k in range(1, 20)]
            stays.chain("B31", [a, *inner, b])
            stays.skip()


def add_springs(springs, dampers, base, back, mounting):
    for side in (-1, 1):
        for z in (-52.0, -14.0, 14.0, 52.0):
            springs.chain("SPRINGA", [base.nearest((0.0, side * 91.0, z)),
                                      back.nearest((BACK_X - swept(150.0), side * 150.0, z))])
        for z in (-20.0, 0.0, 20.0):
            springs.chain("SPRINGA", [mounting.nearest((PLATE_X, side * 75.0, z)), base.nearest((0.0, side * 75.0, z))])
        dampers.chain("DASHPOTA", [mounting.nearest((PLATE_X, side * 97.0, 0.0)), base.nearest((0.0, side * 91.0, 0.0))])


# ---- the deck -------------------------------------------------------------------------------------------------------

SOLIDS = {"MOUNTING_PLATE": "STEEL", "LOAD_CELL": "STEEL", "RUBBER_MOUNTS": "RUBBER", "BOLT_HEADS": "STEEL",
          "FOAM_CORE": "ALU_FOAM", "FOOT_WELDS": "STEEL", "TOW_SLEEVE": "STEEL"}
SHELLS = {"BASE_PLATE": 4.0, "CRUSH_CAN_UPPER": 2.0, "CRUSH_CAN_LOWER": 2.0, "FRONT_CAP": 3.0, "BEAM_BACK": 2.0,
          "BEAM_FRONT": 2.0}
LINES = {"BOLTS": 5.0, "SPOT_WELDS": 3.0, "CAP_WELDS": 4.0, "STAYS": 6.0}


def make_parts(deck):
    """Every part with its own range of node and element ids; in the order in which the rig is put together."""
    parts = {}
    for name, material in SOLIDS.items():
        parts[name] = (solid_section(), material)
    for name, thickness in SHELLS.items():
        parts[name] = (shell_section(thickness), "STEEL_DP600")
    for name, radius in LINES.items():
        parts[name] = (beam_section(radius), "STEEL")
    parts["RETURN_SPRINGS"] = (spring_section(350.0), None)
    parts["DAMPERS"] = (dashpot_section(2.5), None)
    return {name: deck.part(name, deck.pool(name, 10000 * k + 1), 10000 * k + 5001, section, material)
            for k, (name, (section, material)) in enumerate(parts.items(), start=1)}


def build():
    deck = Deck("Crash box on its test rig")
    part = make_parts(deck)
    pool = {name: p.pool for name, p in part.items()}

    add_mounting_plate(part["MOUNTING_PLATE"])
    add_load_cell(part["LOAD_CELL"])
    add_mounts(part["RUBBER_MOUNTS"])
    add_bolt_heads(part["BOLT_HEADS"])
    add_base_plate(part["BASE_PLATE"])
    can_welds = add_can(part["CRUSH_CAN_UPPER"], part["CRUSH_CAN_LOWER"])
    add_foot_welds(part["FOOT_WELDS"])
    add_foam(part["FOAM_CORE"])
    add_cap(part["FRONT_CAP"])
    flange_z = add_beam(part["BEAM_FRONT"], part["BEAM_BACK"])
    add_tow_sleeve(part["TOW_SLEEVE"])
    add_bolts(part["BOLTS"], pool["BASE_PLATE"], pool["MOUNTING_PLATE"])
    add_spot_welds(part["SPOT_WELDS"], can_welds, pool["CRUSH_CAN_UPPER"], pool["CRUSH_CAN_LOWER"], flange_z,
                   pool["BEAM_FRONT"], pool["BEAM_BACK"])
    add_cap_welds(part["CAP_WELDS"], pool["FRONT_CAP"], pool["BEAM_BACK"])
    add_stays(part["STAYS"], pool["BASE_PLATE"], pool["BEAM_BACK"])
    add_springs(part["RETURN_SPRINGS"], part["DAMPERS"], pool["BASE_PLATE"], pool["BEAM_BACK"], pool["MOUNTING_PLATE"])

    deck.pools = [p for p in deck.pools if p.coords]  # welds and springs use the nodes of others
    deck.materials = {
        "STEEL": STEEL, "STEEL_DP600": [*STEEL, "*PLASTIC", "350.,0.", "600.,0.12"],
        "RUBBER": ["*ELASTIC", "6.,0.49", "*DENSITY", "1.1e-9"],
        "ALU_FOAM": ["*ELASTIC", "180.,0.05", "*DENSITY", "4.e-10"],
    }
    clamped = [n for n, p in pool["MOUNTING_PLATE"].coords.items() if abs(p[0] - (PLATE_X - 14)) < 1e-6]
    deck.node_sets = [("N_CLAMPED", clamped)]
    return deck
