// One input, given to one deck reader as a file: what fuzzing and its short replay in CTest share.
#ifndef KVO_TESTS_FUZZ_READ_INPUT_H
#define KVO_TESTS_FUZZ_READ_INPUT_H

#include <cstddef>
#include <string>

#include "deck.h"

// Reads the bytes as a deck of this format, and asks all formats whether it is one of theirs. With a modelDir, a mesh
// that came of it is written there. Nothing but a mesh that keeps the promises of mesh.h or an ImportError that names
// its file may come of it: all else ends the process with a line on stderr.
void readInput(const kvo::DeckFormat& format, const char* bytes, std::size_t size, const std::string& modelDir = {});

#endif
