"""Checks of a deck: element shapes, conforming meshes, orientation, nodes, penetration, counts."""
import math
from collections import defaultdict

from deckmesh import ELEMENT_TYPES, cross, dot, sub, triple

# Local corner -> its three neighbours, right-handed when the element is.
CORNERS = {
    "C3D8": [(0, 1, 3, 4), (1, 2, 0, 5), (2, 3, 1, 6), (3, 0, 2, 7), (4, 7, 5, 0), (5, 4, 6, 1), (6, 5, 7, 2), (7, 6, 4, 3)],
    "C3D6": [(0, 1, 2, 3), (1, 2, 0, 4), (2, 0, 1, 5), (3, 5, 4, 0), (4, 3, 5, 1), (5, 4, 3, 2)],
    "C3D4": [(0, 1, 2, 3)],
}
FACES = {
    "C3D8": [(0, 3, 2, 1), (4, 5, 6, 7), (0, 1, 5, 4), (1, 2, 6, 5), (2, 3, 7, 6), (3, 0, 4, 7)],
    "C3D6": [(0, 2, 1), (3, 4, 5), (0, 1, 4, 3), (1, 2, 5, 4), (2, 0, 3, 5)],
    "C3D4": [(0, 2, 1), (0, 1, 3), (1, 2, 3), (2, 0, 3)],
}
# Tetrahedra that fill an element, for the question "does it hold this point".
TETRAHEDRA = {
    "C3D8": [(0, 1, 2, 6), (0, 2, 3, 6), (0, 3, 7, 6), (0, 7, 4, 6), (0, 4, 5, 6), (0, 5, 1, 6)],
    "C3D6": [(0, 1, 2, 3), (1, 2, 3, 4), (2, 4, 5, 3)],
    "C3D4": [(0, 1, 2, 3)],
}


def element_problems(coords, part):
    """Repeated nodes, solids with a corner that is not right-handed, shells with a reflex or collapsed corner."""
    for kind, number, nodes in part.all():
        p = [coords[n] for n in nodes]
        if len(set(nodes)) != len(nodes) or len(nodes) != ELEMENT_TYPES[kind][0]:
            yield f"{part.name}: element {number} repeats a node"
        elif kind in CORNERS and min(triple(*(p[k] for k in corner)) for corner in CORNERS[kind]) <= 1e-4:
            yield f"{part.name}: element {number} ({kind}) is not right-handed at every corner"
        elif kind in ("S4", "S3"):
            count = len(p)
            normals = [cross(sub(p[(k + 1) % count], p[k]), sub(p[k - 1], p[k])) for k in range(count)]
            if min(dot(normals[0], n) for n in normals) <= 1e-4:
                yield f"{part.name}: element {number} ({kind}) is folded or flat"


def faces_of(part):
    for kind, number, nodes in part.all():
        for face in FACES.get(kind, ()):
            yield number, tuple(nodes[k] for k in face)


def solid_mesh_problems(pool, parts):
    """Faces of three elements, faces seen twice from the same side, triangles on quadrilaterals."""
    seen = defaultdict(list)
    for part in parts:
        for number, face in faces_of(part):
            seen[frozenset(face)].append((number, face))
    border = []
    for key, users in seen.items():
        if len(users) > 2:
            yield f"{pool.name}: elements {[u[0] for u in users]} share one face"
        elif len(users) == 2:
            (first, a), (second, b) = users
            turn = b.index(a[0])
            if b[(turn + 1) % len(b)] == a[1]:
                yield f"{pool.name}: elements {first} and {second} lie on the same side of their common face"
        else:
            border.append(key)
    quads = {frozenset(q - {n}) for q in border if len(q) == 4 for n in q}
    yield from (f"{pool.name}: triangle on a quadrilateral at nodes {sorted(t)}"
                for t in border if len(t) == 3 and t in quads)
    edges = {frozenset((face[k - 1], face[k])) for users in seen.values() if len(users) == 1
             for face in (users[0][1],) for k in range(len(face))}
    yield from hanging_nodes(pool, edges)


def shell_mesh_problems(pool, parts):
    """Edges of three shells, edges run through in the same direction twice, nodes inside free edges."""
    seen = defaultdict(list)
    for part in parts:
        for kind, number, nodes in part.all():
            if ELEMENT_TYPES[kind][1] == "shell":
                for k in range(len(nodes)):
                    seen[frozenset((nodes[k - 1], nodes[k]))].append((number, nodes[k - 1]))
    for users in seen.values():
        if len(users) > 2:
            yield f"{pool.name}: shells {[u[0] for u in users]} share one edge"
        elif len(users) == 2 and users[0][1] == users[1][1]:
            yield f"{pool.name}: shells {users[0][0]} and {users[1][0]} are turned against each other"
    yield from hanging_nodes(pool, {edge for edge, users in seen.items() if len(users) == 1})


def hanging_nodes(pool, edges, cell=15.0):
    """Nodes of border edges that lie inside another border edge."""
    buckets = defaultdict(set)
    for node in {n for edge in edges for n in edge}:
        buckets[tuple(math.floor(c / cell) for c in pool.coords[node])].add(node)
    for edge in edges:
        a, b = (pool.coords[n] for n in sorted(edge))
        along = sub(b, a)
        length2 = dot(along, along)
        ranges = [range(math.floor(min(p, q) / cell), math.floor(max(p, q) / cell) + 1) for p, q in zip(a, b)]
        for node in {n for i in ranges[0] for j in ranges[1] for k in ranges[2] for n in buckets.get((i, j, k), ())}:
            offset = sub(pool.coords[node], a)
            t = dot(offset, along) / length2
            away = cross(offset, along)
            if 1e-3 < t < 1 - 1e-3 and dot(away, away) < 1e-4 * length2:
                yield f"{pool.name}: node {node} hangs in the edge {sorted(edge)}"


def pool_problems(pool):
    """Different nodes of one pool closer than 0.05 mm."""
    buckets = defaultdict(list)
    for node, p in pool.coords.items():
        base = [math.floor(c / 0.1) for c in p]
        near = [m for i in (-1, 0, 1) for j in (-1, 0, 1) for k in (-1, 0, 1)
                for m in buckets.get((base[0] + i, base[1] + j, base[2] + k), ())]
        for other in near:
            if math.dist(p, pool.coords[other]) < 0.05:
                yield f"{pool.name}: nodes {other} and {node} are duplicates"
        buckets[tuple(base)].append(node)


def penetrations(deck, depth=0.02, cell=10.0):
    """Nodes of one pool inside a solid element of another (deeper than depth, as a share of the element's size)."""
    buckets = defaultdict(list)
    for pool in deck.pools:
        for node, p in pool.coords.items():
            buckets[tuple(math.floor(c / cell) for c in p)].append((pool, node, p))
    for part in deck.parts:
        coords = part.pool.coords
        for kind, number, nodes in part.all():
            if kind not in TETRAHEDRA:
                continue
            p = [coords[n] for n in nodes]
            ranges = [range(math.floor(min(c) / cell), math.floor(max(c) / cell) + 1) for c in zip(*p)]
            for pool, node, q in (hit for i in ranges[0] for j in ranges[1] for k in ranges[2]
                                  for hit in buckets.get((i, j, k), ())):
                if pool is not part.pool and any(holds([p[k] for k in tet], q, depth) for tet in TETRAHEDRA[kind]):
                    yield f"{part.name}: element {number} holds node {node} of {pool.name}"


def holds(tet, point, depth):
    whole = triple(*tet)
    if abs(whole) < 1e-6:
        return False
    for k in range(4):
        corners = list(tet)
        corners[k] = point
        if triple(*corners) / whole < depth:
            return False
    return True


def identity_problems(deck):
    """Ids used twice, nodes that no element uses, parts without elements."""
    nodes = [n for pool in deck.pools for n in pool.coords]
    used = {n for part in deck.parts for _, _, ids in part.all() for n in ids}
    elements = [number for part in deck.parts for _, number, _ in part.all()]
    if len(set(nodes)) != len(nodes):
        yield "node ids of two pools overlap"
    if len(set(elements)) != len(elements):
        yield "element ids of two parts overlap"
    yield from (f"node {n} belongs to no element" for n in nodes if n not in used)
    yield from (f"element refers to the unknown node {n}" for n in used - set(nodes))
    yield from (f"part {part.name} is empty" for part in deck.parts if not part.elements)


def problems(deck):
    found = list(identity_problems(deck))
    if found:
        return found
    coords = {n: p for pool in deck.pools for n, p in pool.coords.items()}
    for part in deck.parts:
        found += element_problems(coords, part)
    if found:
        return found
    for pool in deck.pools:
        parts = [part for part in deck.parts if part.pool is pool]
        found += [*pool_problems(pool), *solid_mesh_problems(pool, parts), *shell_mesh_problems(pool, parts)]
    return found + list(penetrations(deck))


def counts(deck):
    """Elements per type."""
    total = defaultdict(int)
    for part in deck.parts:
        for kind, rows in part.elements.items():
            total[kind] += len(rows)
    return dict(total)


def extents(deck):
    points = [p for pool in deck.pools for p in pool.coords.values()]
    return [(min(axis), max(axis)) for axis in zip(*points)]
