// Operation files: a view operation a line, played in order.
//
//   # turn, then zoom in once
//   VIEW left
//   GLOBAL_ROTATION 320 240 400 240
//   SCALE_INCR
//
// A line is the name of a transformation (_TransType) followed by its values, or VIEW with the name of a standard view.
// Words are separated by blanks or tabs; # begins a comment; empty lines count for nothing. Window coordinates are
// pixels from the picture's top left corner with y downwards, for every operation; drawing turns them into what each
// operation of the library takes.
#ifndef KVO_OPS_FILE_H
#define KVO_OPS_FILE_H

#include <string>
#include <vector>

namespace kvo {

struct Operation
{
    std::size_t line = 0; // in its file, from 1
    int view = 0;         // _MViewType for a VIEW line, else 0
    int trans = 0;        // _TransType otherwise
    float values[4] = {0, 0, 0, 0};
};

// Throws ProgramError, "FILE:LINE: what", for an unknown name, a wrong number of values or a value that is no number,
// and "FILE: what" for a file that cannot be read.
std::vector<Operation> readOperations(const std::string& path);

// The values as the library takes them, for a picture of that height: rubber band and polyline count y upwards, a pan's
// dy too, a rotation downwards.
void windowValues(const Operation& operation, int height, float out[4]);

// A table of the operations and their values, for manuals.
std::string describeOperations();

} // namespace kvo

#endif
