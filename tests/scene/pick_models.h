// Models made at random for the tests of picking, and views of them that need no OpenGL.
#ifndef PICK_MODELS_H
#define PICK_MODELS_H

#include <GL/gl.h>

#include <random>

#include "modelbuilder.h"
#include <kvo/pick.h>

// Random numbers that are the same on every machine.
class Dice
{
public:
    explicit Dice(unsigned int seed) : generator(seed) {}
    double between(double low, double high) { return low + (high - low) * (generator() / 4294967296.0); }
    unsigned int below(unsigned int end) { return static_cast<unsigned int>(generator() % end); }
    bool chance(double share) { return between(0, 1) < share; }

private:
    std::mt19937 generator;
};

// A few elements of any kind: shells, triangles, hexahedra, wedges, tetrahedra, beams, discretes, collapsed elements;
// about the given centre, `size` across, some so large that they surround the window, some degenerate.
PartInfoStr randomPart(Dice& dice, const double* centre, double size);

// Seen from the top: the window of width x height pixels shows x and y from 0 to width and height, one unit a pixel,
// the smallest z nearest.
kvo::PickView topView(int width, int height);

#endif
