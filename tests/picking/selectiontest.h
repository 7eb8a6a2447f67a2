// The fixture of the selection tests: three shell parts, their flags and their marks.
#ifndef SELECTIONTEST_H
#define SELECTIONTEST_H

#include "modelbuilder.h"
#include "mtrans.h"
#include "recordedtest.h"

const unsigned int S = PART_SHOWN, H = PART_HIDDEN, E = PART_ELEMENTS_SELECTED, N = PART_NODES_SELECTED;

// Three shell parts with the ids 11 to 13: one quad at x = 0, a strip of three quads from x = 0 to 3, one quad at x
// = 20.
class Selection : public RecordedTest
{
protected:
    void SetUp() override
    {
        RecordedTest::SetUp();
        model.add(quadPart()).add(quadStripPart(3)).add(quadPart(20)).install();
        glViewport(0, 0, 800, 600);
        forget();
    }

    Indices allFlags()
    {
        Indices flags;
        for (unsigned int k = 0; k < model->numParts; ++k) {
            flags.push_back(model.flags(k));
        }
        return flags;
    }

    void setFlags(const Indices& flags)
    {
        for (unsigned int k = 0; k < model->numParts; ++k) {
            model.part(k).partFlag = flags[k];
        }
    }

    void selectNode(unsigned int part, unsigned int node) { model->selectNode(&part, &node); }
    void selectElement(unsigned int part, unsigned int element) { model->selectElement(&part, &element); }
    void selectNodes(Indices ids) { model->selectNodes(ids); }
    void selectElements(Indices elements, Indices parts) { model->selectElements(elements, parts); }
    void selectByIndex(Indices elements, Indices parts) { model->selectElementsByIndex(elements, parts); }

    // Flag characters of a part; "none" while it has no array.
    std::string elementMarks(unsigned int index)
    {
        const PartElementsStr& e = model.part(index).partElements;
        return e.selectedList ? std::string(e.selectedList, e.numElements / e.nodesPerElement) : "none";
    }

    std::string nodeMarks(unsigned int index)
    {
        const PartNodesStr& n = model.part(index).partNodes;
        return n.selectedNodes ? std::string(n.selectedNodes, n.numNodes) : "none";
    }

    TestModel model{GL_FLAT};
};

#endif
