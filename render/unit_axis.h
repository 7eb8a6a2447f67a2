// The coloured axis triad with its X, Y and Z letters.
#ifndef UNIT_AXIS_H
#define UNIT_AXIS_H

#include "kvoexport.h"

class KVO_EXPORT UnitAxis
{
public:
    // Draws the triad at the origin of the current modelview: axis_length[3] are the arm lengths in model units,
    // letter_offset moves each letter outwards along its arm. The y arm points along NEGATIVE y.
    static void render(float* axis_length, float letter_offset);

    // 16 x 16 one-bit letters for glBitmap: 16 rows of 4 bytes (2 of pixels, 2 of padding), bottom row first.
    static const unsigned char xbitmap[64];
    static const unsigned char ybitmap[64];
    static const unsigned char zbitmap[64];
};

#endif
