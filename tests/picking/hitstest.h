// The fixture of the tests of hit records: records made by hand and given to PickRect::processHits as OpenGL would have
// left them in the selection buffer.
#ifndef HITSTEST_H
#define HITSTEST_H

#include "modelbuilder.h"
#include "mtrans.h"
#include "pickrect.h"
#include "recordedtest.h"

// Depth words that print as 0.125, 0.25, 0.5 and 0.75.
const GLuint eighth = 0x20000000, quarter = 0x40000000, half = 0x80000000, threeQuarters = 0xC0000000;
const GLuint noPart = 0xFFFFFFFF; // the name below all parts

class Hits : public RecordedTest
{
protected:
    void SetUp() override
    {
        RecordedTest::SetUp();
        for (float x : {0.0f, 10.0f, 20.0f}) {
            model.add(quadPart(x));
        }
        model.install();
        glEnable(GL_DEPTH_TEST);
        forget();
    }

    void replace(unsigned int index, const PartInfoStr& part)
    {
        releasePart(model.part(index));
        model.part(index) = part;
    }

    void record(GLuint nearest, GLuint farthest, const Indices& names)
    {
        words.insert(words.end(), {static_cast<GLuint>(names.size()), nearest, farthest});
        words.insert(words.end(), names.begin(), names.end());
        ++records;
    }

    // The records followed by zeros, as in the zero-filled buffer.
    int decode(unsigned int type, unsigned int method)
    {
        std::vector<GLuint> buffer = words;
        buffer.insert(buffer.end(), 16, 0);
        pick.pickType = type;
        pick.pickMethod = method;
        return pick.processHits(records, buffer.data());
    }

    // The stored entities as "part element" in the order of their depths.
    Lines entities()
    {
        Lines list;
        for (const auto& entry : pick.zPartMap) {
            list.push_back(std::to_string(entry.second.pid) + " " + std::to_string(entry.second.eid));
        }
        return list;
    }

    Floats depths()
    {
        Floats keys;
        for (const auto& entry : pick.zPartMap) {
            keys.push_back(entry.first);
        }
        return keys;
    }

    // Flag characters of a part; empty while it has none.
    std::string elementMarks(unsigned int index)
    {
        const PartElementsStr& e = model.part(index).partElements;
        return e.selectedList ? std::string(e.selectedList, e.numElements / e.nodesPerElement) : "";
    }

    std::string nodeMarks(unsigned int index)
    {
        const PartNodesStr& n = model.part(index).partNodes;
        return n.selectedNodes ? std::string(n.selectedNodes, n.numNodes) : "";
    }

    Indices selectedParts() { return numbersWith(PART_SELECTED); }
    Indices numbersWith(unsigned int flag)
    {
        Indices numbers;
        for (unsigned int k = 0; k < model->numParts; ++k) {
            if (model.flags(k) & flag) {
                numbers.push_back(k + 1);
            }
        }
        return numbers;
    }

    bool nothingSelected() { return numbersWith(PART_SELECTED | PART_ELEMENTS_SELECTED | PART_NODES_SELECTED).empty(); }

    TestModel model{GL_FLAT};
    PickRect pick;
    std::vector<GLuint> words;
    int records = 0;
};

#endif
