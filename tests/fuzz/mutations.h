// Damage to decks, the same on every machine.
#ifndef KVO_TESTS_FUZZ_MUTATIONS_H
#define KVO_TESTS_FUZZ_MUTATIONS_H

#include <string>

// The deck with one to three faults, which depend on the number and the deck's size only: flipped bytes, an early end,
// lines that are missing, doubled or exchanged, pieces cut out, numbers blown up.
std::string damaged(const std::string& deck, unsigned number);

#endif
