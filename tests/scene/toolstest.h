// What the tests of the tools share: shapes, turned and scaled copies, sets as lists.
#ifndef TOOLSTEST_H
#define TOOLSTEST_H

#include <cmath>
#include <random>
#include <utility>
#include <vector>

#include <GL/gl.h>
#include <gtest/gtest.h>

#include "modelbuilder.h"
#include <kvo/select_more.h>

namespace toolstest {

// One element of each shape with sides of 1; releases itself.
struct TestPart
{
    PartInfoStr part;
    explicit TestPart(const PartInfoStr& part) : part(part) {}
    TestPart(unsigned int type, unsigned int stride, const Floats& nodes, const Indices& indices)
        : part(makePart(type, stride, nodes, indices))
    {
    }
    TestPart(const TestPart&) = delete;
    TestPart& operator=(const TestPart&) = delete;
    ~TestPart() { releasePart(part); }
    operator kvo::PartMesh() const { return part; }
};

inline PartInfoStr pyramidPart(float height = 1, float apexX = 0.5f)
{
    return makePart(SOLID, 8, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, apexX, 0.5f, height}, {0, 1, 2, 3, 4, 4, 4, 4});
}

// Slots that are neither a wedge's, a pyramid's nor a tetrahedron's: the unit cube with one edge shrunk to a node.
inline PartInfoStr collapsedPart()
{
    PartInfoStr part = hexaPart();
    part.partElements.elmIndices[7] = 6;
    return part;
}

// nx x ny unit squares in z = 0; node (i, j) is j (nx + 1) + i, element (i, j) is j nx + i.
PartInfoStr gridPart(unsigned int nx, unsigned int ny);

// n x n x n unit cubes; node (i, j, k) is (k (n + 1) + j) (n + 1) + i, elements likewise with n.
PartInfoStr blockPart(unsigned int n);

inline void setNodeIds(PartInfoStr& part, const Indices& ids)
{
    for (std::size_t k = 0; k < ids.size(); ++k) {
        part.partNodes.idList[k] = ids[k];
    }
}

// Turned about two axes, scaled and moved.
void transform(PartInfoStr& part, double angle, double scale, double shift);

typedef std::vector<std::pair<unsigned int, unsigned int>> Members; // part, position

inline Members membersOf(const kvo::MarkSet& set)
{
    Members members;
    for (unsigned int part = 0; part < set.numParts(); ++part) {
        for (unsigned int k = 0; k < set.size(part); ++k) {
            if (set.contains(part, k)) {
                members.push_back({part, k});
            }
        }
    }
    return members;
}

inline kvo::ElementSet elementSet(CAEEnv& env, const Members& members)
{
    kvo::ElementSet set(env);
    for (const auto& m : members) {
        set.insert(m.first, m.second);
    }
    return set;
}

inline void hide(PartInfoStr& part)
{
    part.partFlag = (part.partFlag & ~PART_SHOWN) | PART_HIDDEN;
}

} // namespace toolstest

using namespace toolstest;

#endif
