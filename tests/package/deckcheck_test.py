#!/usr/bin/env python3
"""The checks of the example decks find what they are there for: each is shown a mesh with that one fault."""
import os
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "examples", "decks"))

import deckcheck  # noqa: E402
from deckmesh import Deck, Hole, coarsen, lines, number, plate, shell_section, solid_section  # noqa: E402

UNIT = [float(k) for k in range(4)]


def solid_deck(cells=None):
    deck = Deck("test")
    part = deck.part("BLOCK", deck.pool("BLOCK", 11), 101, solid_section(), "STEEL")
    part.sweep(cells or plate(UNIT, UNIT), UNIT, lambda u, v, w: (u, v, w))
    return deck, part


def shell_deck(cells):
    deck = Deck("test")
    part = deck.part("SHEET", deck.pool("SHEET", 11), 101, shell_section(1.0), "STEEL")
    part.surface(cells, lambda u, v: (u, v, 0.0))
    return deck, part


class Faults(unittest.TestCase):
    def assert_finds(self, deck, words):
        found = deckcheck.problems(deck)
        self.assertTrue(any(words in problem for problem in found), f"{words!r} is not among {found}")

    def test_sound_meshes_have_no_faults(self):
        self.assertEqual(deckcheck.problems(solid_deck()[0]), [])
        self.assertEqual(deckcheck.problems(shell_deck(plate(UNIT, UNIT))[0]), [])

    def test_solid_turned_inside_out(self):
        deck, part = solid_deck()
        element, nodes = part.elements["C3D8"][0]
        part.elements["C3D8"][0] = (element, nodes[4:] + nodes[:4])
        self.assert_finds(deck, "not right-handed")

    def test_solid_with_one_corner_pulled_through(self):
        deck, part = solid_deck([((0.0, 0.0), (1.0, 0.0), (0.2, 0.2), (0.0, 1.0))])
        self.assert_finds(deck, "not right-handed")

    def test_repeated_node(self):
        deck, part = shell_deck(plate(UNIT, UNIT))
        element, nodes = part.elements["S4"][0]
        part.elements["S4"][0] = (element, nodes[:3] + nodes[:1])
        self.assert_finds(deck, "repeats a node")

    def test_shell_turned_against_its_neighbour(self):
        deck, part = shell_deck(plate(UNIT, UNIT))
        element, nodes = part.elements["S4"][4]
        part.elements["S4"][4] = (element, nodes[::-1])
        self.assert_finds(deck, "turned against each other")

    def test_folded_shell(self):
        deck, _ = shell_deck([((0.0, 0.0), (1.0, 0.0), (0.2, 0.2), (0.0, 1.0))])
        self.assert_finds(deck, "folded")

    def test_hanging_node(self):
        fine = plate([0.0, 0.5, 1.0], [0.0, 1.0])
        coarse = plate([0.0, 1.0], [1.0, 2.0])
        self.assert_finds(shell_deck(fine + coarse)[0], "hangs in the edge")
        self.assertEqual(deckcheck.problems(shell_deck(fine + coarsen([0.0, 0.5, 1.0], 1.0, 2.0))[0]), [])

    def test_triangle_on_a_quadrilateral(self):
        deck, part = solid_deck(plate([0.0, 1.0], [0.0, 1.0]))
        part.tetra((0.0, 0.0, 3.0), (1.0, 0.0, 3.0), (1.0, 1.0, 3.0), (0.5, 0.5, 4.0))
        self.assert_finds(deck, "triangle on a quadrilateral")

    def test_three_shells_at_one_edge(self):
        deck, part = shell_deck(plate(UNIT, UNIT))
        part.surface([((0.0, 0.0), (1.0, 0.0), (1.0, 1.0), (0.0, 1.0))], lambda u, v: (u, 1.0, v))
        self.assert_finds(deck, "share one edge")

    def test_duplicate_node(self):
        deck, part = shell_deck(plate(UNIT, UNIT))
        part.surface([((3.01, 0.0), (4.0, 0.0), (4.0, 1.0), (3.01, 1.0))], lambda u, v: (u, v, 0.0))
        self.assert_finds(deck, "are duplicates")

    def test_unused_node(self):
        deck, part = shell_deck(plate(UNIT, UNIT))
        part.pool.node((9.0, 9.0, 9.0))
        self.assert_finds(deck, "belongs to no element")

    def test_ids_used_twice(self):
        deck, _ = shell_deck(plate(UNIT, UNIT))
        other = deck.part("OTHER", deck.pool("OTHER", 11), 901, shell_section(1.0), "STEEL")
        other.surface(plate(UNIT, UNIT), lambda u, v: (u, v, 5.0))
        self.assert_finds(deck, "node ids of two pools overlap")

    def test_penetration(self):
        deck, _ = solid_deck()
        for height, fault in ((1.5, True), (3.0, False)):
            deck, _ = solid_deck()
            sheet = deck.part("SHEET", deck.pool("SHEET", 501), 901, shell_section(1.0), "STEEL")
            sheet.surface(plate([0.6, 1.4, 2.4], [0.6, 1.4]), lambda u, v, z=height: (u, v, z))
            found = [p for p in deckcheck.problems(deck) if "holds node" in p]
            self.assertEqual(bool(found), fault)


class Building(unittest.TestCase):
    def test_hole_joins_the_grid(self):
        us = lines(0.0, (10.0, 10))
        deck, part = shell_deck(plate(us, us, [Hole((3.0, 7.0, 3.0, 7.0), (1.0, 1.0))]))
        self.assertEqual(len(part.elements["S4"]), 100 - 16 + 2 * 16)
        self.assertEqual(deckcheck.problems(deck), [])

    def test_numbers_are_short(self):
        self.assertEqual([number(v) for v in (0.0, -0.0004, 1.5, -2.25, 100.0)], ["0", "0", "1.5", "-2.25", "100"])


if __name__ == "__main__":
    unittest.main()
