// Sets of elements and nodes, and the way between them and the environment's selection.
#include <algorithm>

#include "shown_parts.h"
#include <kvo/select_more.h>

namespace kvo {

namespace {

template <class Size> void layOut(MarkSet& set, const ShownModel& model, Size sizeOfPart)
{
    set.first.assign(1, 0);
    const ShownModel::Impl& shown = model.read();
    for (std::size_t part = 0; part < shown.partCount; ++part) {
        set.first.push_back(set.first.back() + sizeOfPart(shown.meshes[part]));
    }
    set.marks.assign(set.first.back(), 0);
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

ElementSet::ElementSet(const ShownModel& model)
{
    layOut(*this, model, [](const PartMesh& part) { return part.elementCount; });
}

NodeSet::NodeSet(const ShownModel& model)
{
    layOut(*this, model, [](const PartMesh& part) { return part.nodeCount; });
}

// --- Between sets and what is selected ---

ElementSet selectedElements(const ShownModel& model)
{
    ElementSet set(model);
    for (unsigned int k = 0; k < set.numParts(); ++k) {
        model.asRead().parts[k].selectedElements.states(set.size(k), set.of(k));
    }
    return set;
}

NodeSet selectedNodes(const ShownModel& model)
{
    NodeSet set(model);
    for (unsigned int k = 0; k < set.numParts(); ++k) {
        model.asRead().parts[k].selectedNodes.states(set.size(k), set.of(k));
    }
    return set;
}

Marks marksOf(const MarkSet& set, unsigned int part)
{
    if (set.count(part) == 0) {
        return nullptr;
    }
    return std::make_shared<const std::vector<std::uint8_t>>(set.of(part), set.of(part) + set.size(part));
}

namespace {

bool setMarks(ModelView& view, const MarkSet& set, const MarkSet& empty, Marks PartLook::* member)
{
    if (!set.fits(empty) || view.parts.size() < set.numParts()) {
        return false;
    }
    for (unsigned int part = 0; part < set.numParts(); ++part) {
        view.parts[part].*member = marksOf(set, part);
    }
    return true;
}

} // namespace

bool selectOnly(ModelView& view, const ElementSet& set)
{
    return setMarks(view, set, ElementSet(view), &PartLook::selectedElements);
}

bool selectOnly(ModelView& view, const NodeSet& set)
{
    return setMarks(view, set, NodeSet(view), &PartLook::selectedNodes);
}

bool selectAlso(ModelView& view, const ElementSet& set)
{
    ElementSet all = selectedElements(view);
    return all.unite(set) && selectOnly(view, all);
}

bool selectAlso(ModelView& view, const NodeSet& set)
{
    NodeSet all = selectedNodes(view);
    return all.unite(set) && selectOnly(view, all);
}

bool hideOnly(ModelView& view, const ElementSet& set)
{
    return setMarks(view, set, ElementSet(view), &PartLook::hiddenElements);
}

} // namespace kvo
