// Models of a few elements, built in memory: no reader, no files.
#ifndef MODELBUILDER_H
#define MODELBUILDER_H

#include <memory>
#include <string>
#include <vector>

#include "caeenv.h"
#include "mantypes.h"
#include "partstr.h"

using Floats = std::vector<float>;
using Indices = std::vector<unsigned int>;

const unsigned int noNode = 0xFFFFFFFFu; // third slot of a beam: -1

// A shown part of file 0 with node ids 1, 2, ..., element ids 101, 102, ..., the colour (0.5, 0.25, 0.125, 1) and the
// extents of its nodes. Without normals, NPE and flag arrays. Its arrays are made as the reader makes them.
PartInfoStr makePart(unsigned int drawType, unsigned int stride, const Floats& nodes, const Indices& indices);
void releasePart(PartInfoStr& part); // for parts that no environment owns

// Parts of one element. The shells lie in z = 0, counter-clockwise seen from +z, with their lower left corner at (x,
// y).
PartInfoStr quadPart(float x = 0, float y = 0); // unit square
PartInfoStr trianglePart();                     // (0,0) (1,0) (0,1), third node repeated
PartInfoStr quadStripPart(unsigned int count);  // unit squares along x, 2 (count + 1) nodes: lower row, then upper row
PartInfoStr hexaPart();                         // unit cube
PartInfoStr tetraPart();                        // corner of the unit cube, slots a b c d d d d d
PartInfoStr pentaPart(); // wedge a(0,0,0) b(1,0,0) c(0,1,0), d e f above at z = 1, slots a c f d b b e e
PartInfoStr beamPart(unsigned int third = noNode); // nodes (0,0,0) (1,0,0) (0,0,1), line from node 0 to node 1
PartInfoStr discretePart();                        // the same line

// Copies for array fields of a record, made with new[].
char* newChars(const std::string& text);
float* newFloats(const Floats& values);

// An environment with parts in it, as after loading, but without a reader.
class TestModel
{
public:
    explicit TestModel(int shadeModel);
    ~TestModel(); // also releases the two arrays that an environment leaves behind

    // Part ids are 11, 12, ... in the order of adding.
    TestModel& add(const PartInfoStr& part);
    // The parts go into the environment: list, ids and extents (those of all parts), as getAll leaves it.
    TestModel& installParts();
    // Also the boxes, mView and mTrans, but no normals.
    TestModel& install();

    CAEEnv& operator*() { return *env; }
    CAEEnv* operator->() { return env.get(); }
    PartInfoStr& part(unsigned int index) { return env->partsInfoList[index]; }
    unsigned int flags(unsigned int index) { return part(index).partFlag; }

private:
    void unionOfExtents();

    std::unique_ptr<CAEEnv> env;
    std::vector<PartInfoStr> added;
};

// The recorder's line for one node of a part.
std::string vertexLine(const PartInfoStr& part, unsigned int node); // glVertex3fv(x,y,z)
std::string normalLine(const float* normal);                        // glNormal3fv(x,y,z)
std::string colorLine(const float* color);                          // glColor4fv(r,g,b,a)

#endif
