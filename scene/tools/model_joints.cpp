// Numbering of joints, and elements by joint.
#include "model_joints.h"

#include "element_shape.h"

namespace kvo {

namespace {

bool hasIds(const PartInfoStr& part)
{
    return part.partNodes.idList != nullptr;
}

// Consecutive numbers for nodes that are joined to no other part's.
void numberAlone(const PartInfoStr* parts, unsigned int part, ModelJoints& j)
{
    for (unsigned int k = 0; k < parts[part].partNodes.numNodes; ++k) {
        j.jointOf[j.firstNode[part] + k] = static_cast<std::uint32_t>(j.numJoints++);
    }
}

std::vector<unsigned int> partsToNumberById(const PartInfoStr* parts, const ModelJoints& j)
{
    std::vector<unsigned int> found;
    for (unsigned int part = 0; part < j.inScope.size(); ++part) {
        if (j.inScope[part] != 0 && j.joint == Joint::NodeIds && hasIds(parts[part])) {
            found.push_back(part);
        }
    }
    return found;
}

// Ids up to the highest as a table of numbers: one pass marks them, one counts, one looks up.
void numberByTable(const PartInfoStr* parts, const std::vector<unsigned int>& which, unsigned int highest,
                   ModelJoints& j)
{
    std::vector<std::uint32_t> numbers(static_cast<std::size_t>(highest) + 1, noJoint);
    for (unsigned int part : which) {
        const PartNodesStr& nodes = parts[part].partNodes;
        for (unsigned int k = 0; k < nodes.numNodes; ++k) {
            std::uint32_t& number = numbers[nodes.idList[k]];
            if (number == noJoint) {
                number = static_cast<std::uint32_t>(j.numJoints++);
            }
            j.jointOf[j.firstNode[part] + k] = number;
        }
    }
}

// For ids too thinly spread for a table.
void numberBySorting(const PartInfoStr* parts, const std::vector<unsigned int>& which, ModelJoints& j)
{
    std::vector<unsigned int> ids;
    for (unsigned int part : which) {
        ids.insert(ids.end(), parts[part].partNodes.idList,
                   parts[part].partNodes.idList + parts[part].partNodes.numNodes);
    }
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    for (unsigned int part : which) {
        const PartNodesStr& nodes = parts[part].partNodes;
        parallelFor(nodes.numNodes, 4096, [&](std::size_t begin, std::size_t end) {
            for (std::size_t k = begin; k < end; ++k) {
                j.jointOf[j.firstNode[part] + k] = static_cast<std::uint32_t>(
                    j.numJoints +
                    static_cast<std::size_t>(std::lower_bound(ids.begin(), ids.end(), nodes.idList[k]) - ids.begin()));
            }
        });
    }
    j.numJoints += ids.size();
}

void numberJoints(const PartInfoStr* parts, ModelJoints& j)
{
    j.jointOf.assign(j.firstNode.back(), noJoint);
    const std::vector<unsigned int> byId = partsToNumberById(parts, j);
    unsigned int highest = 0;
    std::size_t nodes = 0;
    for (unsigned int part : byId) {
        const PartNodesStr& n = parts[part].partNodes;
        nodes += n.numNodes;
        highest = n.numNodes == 0 ? highest : std::max(highest, *std::max_element(n.idList, n.idList + n.numNodes));
    }
    if (highest <= 4 * nodes + 65536) {
        numberByTable(parts, byId, highest, j);
    } else {
        numberBySorting(parts, byId, j);
    }
    for (unsigned int part = 0; part < j.inScope.size(); ++part) {
        if (j.inScope[part] != 0 && (j.joint == Joint::OwnPart || !hasIds(parts[part]))) {
            numberAlone(parts, part, j);
        }
    }
}

unsigned int cornersOfAny(const PartInfoStr& part, std::uint32_t element, std::uint32_t nodes[8])
{
    const ElementShape shape = shapeOf(part, element);
    return shape == ElementShape::None ? 0 : cornersOf(part, element, shape, nodes);
}

void findCorners(const PartInfoStr* parts, ModelJoints& j)
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

bool partInScope(const PartInfoStr& part, Scope scope)
{
    return scope == Scope::AllParts || (part.partFlag & PART_HIDDEN) == 0;
}

std::vector<std::uint8_t> partsInScope(const CAEEnv& env, Scope scope)
{
    std::vector<std::uint8_t> in(env.numParts);
    for (unsigned int part = 0; part < env.numParts; ++part) {
        in[part] = partInScope(env.partsInfoList[part], scope);
    }
    return in;
}

ModelJoints findJoints(const PartInfoStr* parts, const MarkSet& elements, const MarkSet& nodes, Joint joint,
                       const std::vector<std::uint8_t>& inScope)
{
    ModelJoints j;
    j.joint = joint;
    j.inScope = inScope;
    j.firstElement = elements.first;
    j.firstNode = nodes.first;
    numberJoints(parts, j);
    findCorners(parts, j);
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

const FaceSkin& ModelJoints::skin(const PartInfoStr* parts, bool solidsToo) const
{
    std::unique_ptr<FaceSkin>& known = skins[solidsToo ? 1 : 0];
    if (!known) {
        known = std::make_unique<FaceSkin>(findSkin(parts, *this, solidsToo));
    }
    return *known;
}

} // namespace kvo
