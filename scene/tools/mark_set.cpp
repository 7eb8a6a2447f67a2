// Sets of elements and nodes, and the way between them and the environment's selection.
#include <algorithm>
#include <cstring>

#include "element_shape.h"
#include "select_more.h"

namespace kvo {

namespace {

template <class Size> void layOut(MarkSet& set, CAEEnv& env, Size sizeOfPart)
{
    set.first.assign(1, 0);
    for (unsigned int part = 0; part < env.numParts; ++part) {
        set.first.push_back(set.first.back() + sizeOfPart(env.partsInfoList[part]));
    }
    set.marks.assign(set.first.back(), 0);
}

void readFlags(const char* flags, std::uint8_t* marks, std::size_t count)
{
    for (std::size_t k = 0; k < count; ++k) {
        marks[k] = flags[k] == SELECTED_CHAR;
    }
}

// One call of the environment per mark, with numbers from 1.
void selectEach(CAEEnv& env, const MarkSet& set, void (CAEEnv::*select)(unsigned int*, unsigned int*))
{
    for (unsigned int part = 0; part < set.numParts(); ++part) {
        const std::uint8_t* marks = set.of(part);
        for (std::size_t k = 0; k < set.size(part); ++k) {
            if (marks[k] != 0) {
                unsigned int partNumber = part + 1, number = static_cast<unsigned int>(k + 1);
                (env.*select)(&partNumber, &number);
            }
        }
    }
}

std::size_t countMarks(const std::uint8_t* begin, const std::uint8_t* end)
{
    return static_cast<std::size_t>(end - begin) - static_cast<std::size_t>(std::count(begin, end, 0));
}

} // namespace

// --- Sets ---

unsigned int MarkSet::numParts() const
{
    return first.empty() ? 0 : static_cast<unsigned int>(first.size() - 1);
}

std::size_t MarkSet::size(unsigned int part) const
{
    return part < numParts() ? first[part + 1] - first[part] : 0;
}

std::uint8_t* MarkSet::of(unsigned int part)
{
    return marks.data() + first[part];
}

const std::uint8_t* MarkSet::of(unsigned int part) const
{
    return marks.data() + first[part];
}

bool MarkSet::contains(unsigned int part, std::size_t position) const
{
    return position < size(part) && of(part)[position] != 0;
}

void MarkSet::insert(unsigned int part, std::size_t position)
{
    if (position < size(part)) {
        of(part)[position] = 1;
    }
}

void MarkSet::erase(unsigned int part, std::size_t position)
{
    if (position < size(part)) {
        of(part)[position] = 0;
    }
}

bool MarkSet::empty() const
{
    return count() == 0;
}

std::size_t MarkSet::count() const
{
    return countMarks(marks.data(), marks.data() + marks.size());
}

std::size_t MarkSet::count(unsigned int part) const
{
    return part < numParts() ? countMarks(of(part), of(part) + size(part)) : 0;
}

bool MarkSet::fits(const MarkSet& other) const
{
    return first == other.first;
}

bool MarkSet::unite(const MarkSet& other)
{
    if (!fits(other)) {
        return false;
    }
    std::transform(marks.begin(), marks.end(), other.marks.begin(), marks.begin(),
                   [](std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>(a | b); });
    return true;
}

bool MarkSet::intersect(const MarkSet& other)
{
    if (!fits(other)) {
        return false;
    }
    std::transform(marks.begin(), marks.end(), other.marks.begin(), marks.begin(),
                   [](std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>(a & b); });
    return true;
}

bool MarkSet::subtract(const MarkSet& other)
{
    if (!fits(other)) {
        return false;
    }
    std::transform(marks.begin(), marks.end(), other.marks.begin(), marks.begin(),
                   [](std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>(a & ~b); });
    return true;
}

ElementSet::ElementSet(CAEEnv& env)
{
    layOut(*this, env, elementCountOf);
}

NodeSet::NodeSet(CAEEnv& env)
{
    layOut(*this, env, [](const PartInfoStr& part) { return part.partNodes.numNodes; });
}

// --- The environment's selection ---

// A mark without the part's flag is not drawn, and a flag restored from a file comes without marks.
ElementSet selectedElements(CAEEnv& env)
{
    ElementSet set(env);
    for (unsigned int k = 0; k < env.numParts; ++k) {
        const PartInfoStr& part = env.partsInfoList[k];
        if ((part.partFlag & PART_ELEMENTS_SELECTED) != 0 && part.partElements.selectedList != nullptr) {
            readFlags(part.partElements.selectedList, set.of(k), set.size(k));
        }
    }
    return set;
}

NodeSet selectedNodes(CAEEnv& env)
{
    NodeSet set(env);
    for (unsigned int k = 0; k < env.numParts; ++k) {
        const PartInfoStr& part = env.partsInfoList[k];
        if ((part.partFlag & PART_NODES_SELECTED) != 0 && part.partNodes.selectedNodes != nullptr) {
            readFlags(part.partNodes.selectedNodes, set.of(k), set.size(k));
        }
    }
    return set;
}

bool selectAlso(CAEEnv& env, const ElementSet& set)
{
    if (!set.fits(ElementSet(env))) {
        return false;
    }
    selectEach(env, set, &CAEEnv::selectElement);
    return true;
}

bool selectOnly(CAEEnv& env, const ElementSet& set)
{
    if (!set.fits(ElementSet(env))) {
        return false;
    }
    env.clearSelectedElements();
    selectEach(env, set, &CAEEnv::selectElement);
    return true;
}

bool selectAlso(CAEEnv& env, const NodeSet& set)
{
    if (!set.fits(NodeSet(env))) {
        return false;
    }
    selectEach(env, set, &CAEEnv::selectNode);
    return true;
}

bool selectOnly(CAEEnv& env, const NodeSet& set)
{
    if (!set.fits(NodeSet(env))) {
        return false;
    }
    env.clearSelectedNodes();
    selectEach(env, set, &CAEEnv::selectNode);
    return true;
}

} // namespace kvo
