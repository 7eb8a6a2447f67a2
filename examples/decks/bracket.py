"""A cast machine bracket: foot plate with pads and holes, bearing wall with a bored boss, fillet, rib, locating pins.

    z
    |   ___
    |  / o \\      bearing wall, bore through a boss
    | |     |
    | |     |\\
    | |     | \\   rib
    | |     |__\\______
    | (_______________|   foot plate, four holes
    +------------------------- x
"""
import math

from deckmesh import STEEL, Deck, Hole, cut, lines, mix, plate, rectangle_outline, ring_cells, solid_section

H = 3.5               # cell size
THICK = 12.0          # of foot and wall
FILLET = 4 * H        # radius of the inner corner
OUTER = 6.0           # radius of the outer corner
LAYERS = 3            # cells through the thickness
HALF_WIDTH = 11.5 * H
FOOT_CELLS = 23       # beyond the fillet
RIB_CELLS = 18        # foot and height of the rib
ARC_CELLS = 6         # along the fillet
BORE = 18.0
START = THICK + FILLET  # where the foot and the wall begin to be plain plates
SHIFT = (-40.0, 0.0, -60.0)

YS = lines(-HALF_WIDTH, (HALF_WIDTH, 23))
THROUGH = lines(0.0, (THICK, LAYERS))


def at(x, y, z):
    return (x + SHIFT[0], y + SHIFT[1], z + SHIFT[2])


def fillet_point(k):
    angle = math.pi * (1 + k / ARC_CELLS / 2)
    return (START + FILLET * math.cos(angle), START + FILLET * math.sin(angle))


def heel_point(k):
    """Opposite fillet_point(k): down the back of the wall, round the heel, along the underside."""
    half = ARC_CELLS // 2
    if k > half:
        return heel_point(ARC_CELLS - k)[::-1]
    if k == half:
        near = OUTER * (1 - math.sqrt(0.5))
        return (near, near)
    return (0.0, START + (OUTER - START) * k / (half - 1))


def add_heel(body):
    """The bent part between foot and wall: lines from the fillet to the heel, swept across the width."""
    profile = {(k, w): mix(heel_point(k), fillet_point(k), w / LAYERS)
               for k in range(ARC_CELLS + 1) for w in range(LAYERS + 1)}
    cells = [((k, w), (k + 1, w), (k + 1, w + 1), (k, w + 1)) for k in range(ARC_CELLS) for w in range(LAYERS)]

    def place(k, w, y):
        x, z = profile[k, w]
        return at(x, y, z)
    body.sweep(cells, YS, place)


def add_foot(body):
    xs = [START + H * k for k in range(FOOT_CELLS + 1)]
    end = xs[-1]
    holes, pads = [], []
    for side in (-1, 1):
        y0, y1 = sorted((side * 3.5 * H, side * 9.5 * H))
        pin = Hole((xs[3], xs[9], y0, y1), (5.0, 5.0), layers=2)
        bolt = Hole((xs[14], xs[20], y0, y1), (5.5, 5.5), layers=1, rings=[(8.5, 8.5)])
        holes += [pin, bolt]
        pads.append(bolt)
    cells = plate(xs, YS, holes)
    cells = cut(cells, lambda x, y: (end - x) + (HALF_WIDTH - abs(y)) - 3 * H)  # chamfered corners
    body.sweep(cells, THROUGH, lambda x, y, z: at(x, y, z))
    for hole in pads:
        body.sweep(collar(hole), lines(THICK, (THICK + 3.0, 1)), lambda x, y, z: at(x, y, z))
    return [(h.centre, h) for h in holes if h not in pads]


def collar(hole):
    """The cells of a plate between a hole and its last ring."""
    us = lines(hole.box[0], (hole.box[1], 6))
    vs = lines(hole.box[2], (hole.box[3], 6))
    outline = rectangle_outline(us, vs)
    angles = [math.atan2(v - hole.centre[1], u - hole.centre[0]) for u, v in outline]
    return ring_cells([[(hole.centre[0] + ru * math.cos(a), hole.centre[1] + rv * math.sin(a)) for a in angles]
                       for ru, rv in hole.radii])


def add_wall(body, boss):
    top = START + RIB_CELLS * H
    zs = [START + H * k for k in range(RIB_CELLS + 1)]
    centre = top + 9 * H
    body.sweep(plate(YS, zs), THROUGH, lambda y, z, x: at(x, y, z))

    side = lines(top, (centre, 9))
    outline = [(y, top) for y in YS[:-1]] + [(HALF_WIDTH, z) for z in side]
    outline += [(HALF_WIDTH * math.cos(a), centre + HALF_WIDTH * math.sin(a)) for a in lines(0.0, (math.pi, 28))[1:-1]]
    outline += [(-HALF_WIDTH, z) for z in side[:0:-1]]
    angles = [math.atan2(z - centre, y) for y, z in outline]
    rings = [[(r * math.cos(a), centre + r * math.sin(a)) for a in angles] for r in (BORE, 22.0, 26.0)]
    web = [[mix(a, b, k / 3) for a, b in zip(rings[-1], outline)] for k in (1, 2, 3)]
    body.sweep(ring_cells(rings + web), THROUGH, lambda y, z, x: at(x, y, z))
    for levels in (lines(-8.0, (0.0, 2)), lines(THICK, (THICK + 4.0, 1))):
        boss.sweep(ring_cells(rings), levels, lambda y, z, x: at(x, y, z))


def quarter_disc():
    """Cells (a, b) of the quarter disc of the fillet's radius; its straight borders have FILLET / H cells."""
    n = ARC_CELLS // 2
    core, corner = n * H, 0.53 * FILLET

    def inner(i, j):
        low, high = mix((0.0, 0.0), (core, 0.0), i / n), mix((0.0, core), (corner, corner), i / n)
        return mix(low, high, j / n)

    cells = [(inner(i, j), inner(i + 1, j), inner(i + 1, j + 1), inner(i, j + 1)) for i in range(n) for j in range(n)]
    border = [inner(n, j) for j in range(n)] + [inner(i, n) for i in range(n, -1, -1)]
    arc = [(FILLET * math.cos(t), FILLET * math.sin(t)) for t in lines(0.0, (math.pi / 2, ARC_CELLS))]
    cells += [(border[k], arc[k], arc[k + 1], border[k + 1]) for k in range(ARC_CELLS)]
    return cells


def add_rib(rib):
    """The triangular web in the corner: squares, triangles along its slope, a quarter disc on the fillet."""
    disc = [tuple((START - a, START - b) for a, b in cell) for cell in quarter_disc()]
    grid = [THICK + H * k for k in range(RIB_CELLS + 5)]
    squares = [cell for cell in plate(grid, grid) if max(p[0] for p in cell) > START + 1e-6
               or max(p[1] for p in cell) > START + 1e-6]
    reach = 2 * THICK + (RIB_CELLS + 4) * H
    cells = disc + cut(squares, lambda x, z: reach - x - z)
    rib.sweep(cells, YS[10:14], lambda x, z, y: at(x, y, z))


def add_pin(pins, centre, hole):
    """A pressed-in pin: rings of hexahedra round a fan of wedges, with a conical tip that ends in tetrahedra."""
    radii = [(5.0, 5.0), (2.5, 2.5)]
    angles = sorted(math.atan2(v - centre[1], u - centre[0]) for u, v in rectangle_outline(
        lines(hole.box[0], (hole.box[1], 6)), lines(hole.box[2], (hole.box[3], 6))))
    ring, core = ([(ru * math.cos(a), rv * math.sin(a)) for a in angles] for ru, rv in radii)
    fan = [((0.0, 0.0), core[k - 1], core[k]) for k in range(len(core))]
    # (z, scale): the shank, then the cone downwards
    levels = [(z, 1.0) for z in (*reversed(THROUGH), -4.0, -8.0)] + [(-10.0, 0.8), (-12.0, 0.6)]

    def place(u, v, level):
        z, scale = level
        return at(centre[0] + u * scale, centre[1] + v * scale, z)
    pins.sweep(ring_cells([core, ring]) + fan, levels, place)
    tip = at(*centre, -15.0)
    for cell in fan:
        pins.tetra(*(place(u, v, levels[-1]) for u, v in cell), tip)
    pins.skip()


def build():
    deck = Deck("Machine bracket")
    body_nodes = deck.pool("BRACKET", 1001)
    pin_nodes = deck.pool("PINS", 20001)
    body = deck.part("BRACKET_BODY", body_nodes, 100001, solid_section(), "CAST_IRON")
    boss = deck.part("BORE_BOSS", body_nodes, 200001, solid_section(), "CAST_IRON")
    rib = deck.part("RIB", body_nodes, 300001, solid_section(), "CAST_IRON")
    pins = deck.part("LOCATING_PINS", pin_nodes, 400001, solid_section(), "STEEL")

    add_heel(body)
    pin_holes = add_foot(body)
    add_wall(body, boss)
    add_rib(rib)
    for centre, hole in pin_holes:
        add_pin(pins, centre, hole)

    deck.materials = {"CAST_IRON": ["*ELASTIC", "110000.,0.28", "*DENSITY", "7.2e-9"], "STEEL": STEEL}
    underside = [n for n, p in body_nodes.coords.items() if abs(p[2] - SHIFT[2]) < 1e-6]
    deck.node_sets = [("N_UNDERSIDE", underside)]
    return deck
