// A model-reading library for tests. Its definitions of ReadIDS, ReadNodes and ReadElements stand in the test program
// and win over those of the shared library; what they deliver is set here, and every call can be watched as a line
// "reader: ..." on standard output, in order with the prints of the library under test.
#ifndef READERSTUB_H
#define READERSTUB_H

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "partstr.h"

namespace readerstub {
struct File
{
    std::vector<unsigned int> nodeIds;                                        // empty: ReadIDS::get returns 0
    std::vector<float> nodeValues;                                            // empty: ReadNodes::getValues returns 0
    std::vector<std::pair<unsigned int, std::function<PartInfoStr()>>> parts; // part id, maker
};

extern std::map<std::string, File> files; // by file name; a name that is missing reads as an empty file
extern bool watched;                      // prints the calls

void reset(); // no files, not watched
} // namespace readerstub

#endif
