// Picking: parts, elements or nodes under the mouse or inside a rectangle, through OpenGL's selection mode.
#ifndef PICKRECT_H
#define PICKRECT_H

#include <GL/gl.h>

#include "kvoexport.h"
#include "maptypes.h"

const unsigned int SELECT_BUFFER_SIZE = 524288; // words of the selection buffer (2 MiB of stack in every pass)

class KVO_EXPORT PickRect
{
public:
    PickRect();
    ~PickRect();

    // One picking pass over the current environment (CAEEnv::getPtr()), between frames, context current.
    // pick_type: PICK_TYPE_...; pick_method: RECT_PICK (select everything hit) or SELECT_PICK (the nearest only).
    // mouse_xy[4]: centre x, y, width, height of the region in window coordinates (origin lower left, y upwards).
    // Returns the number of interpreted hits; 0 when nothing was hit or the selection buffer overflowed.
    int process(int pick_type, int pick_method, float* mouse_xy);

    // Interprets num_hits (>= 1) hit records lying one after another in select_buf; returns zPartMap.size() / 2.
    int processHits(GLint num_hits, GLuint* select_buf);

    unsigned int pickType;   // of the last pass
    unsigned int pickMethod; // of the last pass
    ZPartMap zPartMap;       // hits of the last pass, two entries each (minimum and maximum depth)
};

#endif
