// Numbering of joints, and elements by joint.
#include "model_joints.h"

#include "element_shape.h"

namespace kvo {

namespace {

// Consecutive numbers for nodes that are joined to no other part's.
void numberAlone(std::uint32_t nodes, unsigned int part, ModelJoints& j)
{
    for (std::uint32_t k = 0; k < nodes; ++k) {
        j.jointOf[j.firstNode[part] + k] = static_cast<std::uint32_t>(j.numJoints++);
    }
}

// Parts in scope whose nodes are joined by their ids, with these.
struct NumberedPart
{
    unsigned int part;
    std::vector<std::uint32_t> ids;
};

// Ids up to the highest as a table of numbers: one pass marks them, one counts, one looks up.
void numberByTable(const std::vector<NumberedPart>& numbered, std::uint32_t highest, ModelJoints& j)
{
    std::vector<std::uint32_t> numbers(static_cast<std::size_t>(highest) + 1, noJoint);
    for (const NumberedPart& one : numbered) {
        for (std::size_t k = 0; k < one.ids.size(); ++k) {
            std::uint32_t& number = numbers[one.ids[k]];
            if (number == noJoint) {
                number = static_cast<std::uint32_t>(j.numJoints++);
            }
            j.jointOf[j.firstNode[one.part] + k] = number;
        }
    }
}

// For ids too thinly spread for a table.
void numberBySorting(const std::vector<NumberedPart>& numbered, ModelJoints& j)
{
    std::vector<std::uint32_t> ids;
    for (const NumberedPart& one : numbered) {
        ids.insert(ids.end(), one.ids.begin(), one.ids.end());
    }
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    for (const NumberedPart& one : numbered) {
        parallelFor(one.ids.size(), 4096, [&](std::size_t begin, std::size_t end) {
            for (std::size_t k = begin; k < end; ++k) {
                j.jointOf[j.firstNode[one.part] + k] = static_cast<std::uint32_t>(
                    j.numJoints +
                    static_cast<std::size_t>(std::lower_bound(ids.begin(), ids.end(), one.ids[k]) - ids.begin()));
            }
        });
    }
    j.numJoints += ids.size();
}

void numberJoints(ShownModel::Impl& model, ModelJoints& j)
{
    j.jointOf.assign(j.firstNode.back(), noJoint);
    std::vector<NumberedPart> byId;
    std::vector<unsigned int> alone;
    std::uint32_t highest = 0;
    std::size_t nodes = 0;
    for (unsigned int part = 0; part < j.inScope.size(); ++part) {
        if (j.inScope[part] == 0) {
            continue;
        }
        const IdTable* ids = j.joint == Joint::NodeIds ? model.nodeIds(part) : nullptr;
        if (!ids) {
            alone.push_back(part);
            continue;
        }
        byId.push_back({part, ids->toVector()});
        nodes += ids->size();
        highest = std::max(highest, ids->highest());
    }
    if (highest <= 4 * nodes + 65536) {
        numberByTable(byId, highest, j);
    } else {
        numberBySorting(byId, j);
    }
    for (const unsigned int part : alone) {
        numberAlone(model.meshes[part].nodeCount, part, j);
    }
}

unsigned int cornersOfAny(const PartMesh& part, std::uint32_t element, std::uint32_t nodes[8])
{
    const ElementShape shape = shapeOf(part, element);
    return shape == ElementShape::None ? 0 : cornersOf(part, element, shape, nodes);
}

void findCorners(const PartMesh* parts, ModelJoints& j)
{
    j.firstCorner.assign(j.firstElement.back() + 1, 0);
    forElements(j.firstElement, j.inScope, [&](unsigned int part, std::uint32_t element, std::size_t number) {
        std::uint32_t nodes[8];
        j.firstCorner[number + 1] = cornersOfAny(parts[part], element, nodes);
    });
    for (std::size_t k = 1; k < j.firstCorner.size(); ++k) {
        j.firstCorner[k] += j.firstCorner[k - 1];
    }
    j.corners.resize(j.firstCorner.back());
    forElements(j.firstElement, j.inScope, [&](unsigned int part, std::uint32_t element, std::size_t number) {
        std::uint32_t nodes[8];
        const unsigned int count = cornersOfAny(parts[part], element, nodes);
        for (unsigned int k = 0; k < count; ++k) {
            j.corners[j.firstCorner[number] + k] = j.jointOf[j.firstNode[part] + nodes[k]];
        }
    });
}

} // namespace

bool partInScope(const ShownPart& part, Scope scope)
{
    return scope == Scope::AllParts || !part.hidden;
}

std::vector<std::uint8_t> partsInScope(const ShownModel::Impl& model, Scope scope)
{
    std::vector<std::uint8_t> in(model.partCount);
    for (std::size_t part = 0; part < model.partCount; ++part) {
        in[part] = partInScope(model.parts[part], scope);
    }
    return in;
}

ModelJoints findJoints(ShownModel::Impl& model, const MarkSet& elements, const MarkSet& nodes, Joint joint,
                       const std::vector<std::uint8_t>& inScope)
{
    ModelJoints j;
    j.joint = joint;
    j.inScope = inScope;
    j.firstElement = elements.first;
    j.firstNode = nodes.first;
    numberJoints(model, j);
    findCorners(model.meshes.data(), j);
    return j;
}

const Buckets<std::uint32_t>& ModelJoints::elementsAt() const
{
    if (!elementsAtJoint) {
        elementsAtJoint =
            std::make_unique<Buckets<std::uint32_t>>(fillBuckets<std::uint32_t>(numJoints, [&](const auto& put) {
                parallelFor(firstElement.back(), 4096, [&](std::size_t begin, std::size_t end) {
                    for (std::size_t e = begin; e < end; ++e) {
                        for (std::size_t c = firstCorner[e]; c < firstCorner[e + 1]; ++c) {
                            put(corners[c], static_cast<std::uint32_t>(e));
                        }
                    }
                });
            }));
    }
    return *elementsAtJoint;
}

const FaceSkin& ModelJoints::skin(const PartMesh* parts, bool solidsToo) const
{
    std::unique_ptr<FaceSkin>& known = skins[solidsToo ? 1 : 0];
    if (!known) {
        known = std::make_unique<FaceSkin>(findSkin(parts, *this, solidsToo));
    }
    return *known;
}

} // namespace kvo
