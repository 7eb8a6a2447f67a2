// Growing over edges of faces up to a feature angle, and following free edges.
#include <algorithm>
#include <cmath>
#include <limits>

#include "model_joints.h"
#include "vectors.h"
#include <kvo/select_more.h>

namespace kvo {

using namespace vectors;

namespace {

// --- Feature angle ---

std::vector<Vector3> faceNormals(const PartMesh* parts, const FaceSkin& skin)
{
    std::vector<Vector3> normals(skin.faces.size());
    parallelFor(skin.faces.size(), 4096, [&](std::size_t begin, std::size_t end) {
        for (std::size_t f = begin; f < end; ++f) {
            const SkinFace& face = skin.faces[f];
            normals[f] = unit(areaVector(parts[face.part], face.nodes, face.corners));
        }
    });
    return normals;
}

// The smallest cosine between neighbours that may be passed. Beyond 1: none, for an angle below 0 and NaN.
double smallestCosine(double degrees)
{
    if (!(degrees >= 0)) {
        return 2;
    }
    const double limit = degrees + 0.001;
    return limit >= 180 ? -1 : std::cos(limit / degreesPerRadian);
}

struct AngleFlood
{
    const ModelJoints& joints;
    const FaceSkin& skin;
    std::vector<Vector3> normals;
    double cosine;
    std::vector<std::uint8_t> reached; // per face
    std::vector<std::uint32_t> queue;

    void reach(std::uint32_t face)
    {
        if (reached[face] == 0) {
            reached[face] = 1;
            queue.push_back(face);
        }
    }

    // Faces that are wound alike run along their common edge in opposite directions.
    bool passes(std::uint32_t from, unsigned int side, const FaceSide& to) const
    {
        const Vector3 &a = normals[from], &b = normals[to.face];
        const bool alike =
            skin.jointAt(joints, from, side) != skin.jointAt(joints, to.face, static_cast<unsigned int>(to.side));
        const bool area = dot(a, a) > 0 && dot(b, b) > 0; // false for NaN too
        return area && (alike ? dot(a, b) : -dot(a, b)) >= cosine;
    }

    void run()
    {
        for (std::size_t next = 0; next < queue.size(); ++next) {
            const std::uint32_t face = queue[next];
            for (unsigned int side = 0; side < skin.faces[face].corners; ++side) {
                skin.atEdge(joints, face, side, [&](const FaceSide& other) {
                    if (reached[other.face] == 0 && passes(face, side, other)) {
                        reach(other.face);
                    }
                });
            }
        }
    }
};

AngleFlood floodFrom(const PartMesh* parts, const ModelJoints& joints, double degrees)
{
    const FaceSkin& skin = joints.skin(parts, true);
    return {joints,
            skin,
            faceNormals(parts, skin),
            smallestCosine(degrees),
            std::vector<std::uint8_t>(skin.faces.size(), 0),
            {}};
}

AngleFlood floodFromSet(const PartMesh* parts, const ModelJoints& joints, const ElementSet& set, double degrees)
{
    AngleFlood flood = floodFrom(parts, joints, degrees);
    for (std::uint32_t f = 0; f < flood.skin.faces.size(); ++f) {
        if (set.contains(flood.skin.faces[f].part, flood.skin.faces[f].element)) {
            flood.reach(f);
        }
    }
    flood.run();
    return flood;
}

AngleFlood floodFromFace(const PartMesh* parts, const ModelJoints& joints, unsigned int part, std::size_t element,
                         unsigned int number, double degrees)
{
    AngleFlood flood = floodFrom(parts, joints, degrees);
    if (part + 1 >= joints.firstElement.size() ||
        element >= joints.firstElement[part + 1] - joints.firstElement[part]) {
        return flood;
    }
    const std::size_t e = joints.firstElement[part] + element;
    for (std::uint32_t f = flood.skin.firstOf[e]; f < flood.skin.firstOf[e + 1]; ++f) {
        if (flood.skin.faces[f].number == number) {
            flood.reach(f);
        }
    }
    flood.run();
    return flood;
}

void addElements(const AngleFlood& flood, ElementSet& set)
{
    for (std::uint32_t f : flood.queue) {
        set.insert(flood.skin.faces[f].part, flood.skin.faces[f].element);
    }
}

void addNodes(const AngleFlood& flood, NodeSet& set)
{
    for (std::uint32_t f : flood.queue) {
        const SkinFace& face = flood.skin.faces[f];
        for (unsigned int k = 0; k < face.corners; ++k) {
            set.insert(face.part, face.nodes[k]);
        }
    }
}

// --- Free edges ---

// A side of a face with the direction in which it is followed.
struct Step
{
    std::uint32_t face;
    unsigned int side;
    bool forward; // from the side's first corner to its second

    bool operator==(const Step& other) const
    {
        return face == other.face && side == other.side && forward == other.forward;
    }
};

class EdgeWalker
{
public:
    EdgeWalker(const ModelJoints& joints, const FaceSkin& skin)
        : joints(joints), skin(skin), elementsAt(joints.elementsAt()), walked(4 * skin.faces.size(), false)
    {
    }

    // The free side at a joint, the first in model order; with `towards`, the one that leads there.
    bool findStart(std::uint32_t from, std::uint32_t towards, Step& start) const
    {
        return findFree(from, [&](const Step& step) { return towards == noJoint || endOf(step) == towards; }, start);
    }

    void walk(Step start, EdgePath& path)
    {
        first = start;
        for (Step step = start;;) {
            add(step, path);
            Step next = step;
            if (!findNext(next) || !isNew(next)) {
                path.nodes.push_back(nodeAt(step.face, endCorner(step)));
                return;
            }
            step = next;
            if (step == start) {
                path.closed = true;
                return;
            }
        }
    }

private:
    void add(const Step& step, EdgePath& path)
    {
        walked[4 * static_cast<std::size_t>(step.face) + step.side] = true;
        path.nodes.push_back(nodeAt(step.face, step.forward ? step.side : step.side + 1));
        path.elements.insert(skin.faces[step.face].part, skin.faces[step.face].element);
    }

    // Round the end of the step through the faces there until an edge is free again. An edge of three and more faces
    // ends the fan; then any free edge of that joint will do that was not walked yet.
    bool findNext(Step& step) const
    {
        const std::uint32_t joint = endOf(step);
        Step turning = step;
        for (std::size_t turns = 0; turns < skin.faces.size(); ++turns) {
            turning = otherSide(turning, joint);
            FaceSide mate = {};
            const unsigned int count = facesAt(turning.face, turning.side, mate);
            if (count == 1) {
                step = turning;
                return true;
            }
            if (count != 2) {
                break;
            }
            // Seen from the next face, the walk comes in over this side.
            turning = {mate.face, static_cast<unsigned int>(mate.side),
                       skin.jointAt(joints, mate.face, static_cast<unsigned int>(mate.side) + 1) == joint};
        }
        return findFree(joint, [this](const Step& free) { return isNew(free); }, step);
    }

    bool isNew(const Step& step) const
    {
        return step == first || !walked[4 * static_cast<std::size_t>(step.face) + step.side];
    }

    // The neighbouring side at the joint where `in` ends, leading away from it.
    Step otherSide(const Step& in, std::uint32_t joint) const
    {
        const unsigned int corners = skin.faces[in.face].corners;
        const unsigned int side = (in.side + (in.forward ? 1 : corners - 1)) % corners;
        return {in.face, side, skin.jointAt(joints, in.face, side) == joint};
    }

    // How many faces have this edge; `mate`: the last that is not the given one.
    unsigned int facesAt(std::uint32_t face, unsigned int side, FaceSide& mate) const
    {
        unsigned int count = 0;
        skin.atEdge(joints, face, side, [&](const FaceSide& s) {
            ++count;
            mate = s.face == face ? mate : s;
        });
        return count;
    }

    // Of the free sides that start at the joint and are wanted, the first in model order.
    template <class Wanted> bool findFree(std::uint32_t joint, const Wanted& wanted, Step& found) const
    {
        std::uint32_t best = noJoint;
        for (const std::uint32_t* e = elementsAt.begin(joint); e != elementsAt.end(joint); ++e) {
            for (std::uint32_t f = skin.firstOf[*e]; f < std::min(best, skin.firstOf[*e + 1]); ++f) {
                best = findFreeOf(f, joint, wanted, found) ? f : best;
            }
        }
        return best != noJoint;
    }

    template <class Wanted>
    bool findFreeOf(std::uint32_t face, std::uint32_t joint, const Wanted& wanted, Step& found) const
    {
        for (unsigned int side = 0; side < skin.faces[face].corners; ++side) {
            const bool forward = skin.jointAt(joints, face, side) == joint;
            const Step step = {face, side, forward};
            FaceSide mate = {};
            if ((forward || skin.jointAt(joints, face, side + 1) == joint) && facesAt(face, side, mate) == 1 &&
                wanted(step)) {
                found = step;
                return true;
            }
        }
        return false;
    }

    static unsigned int endCorner(const Step& step) { return step.forward ? step.side + 1 : step.side; }
    std::uint32_t endOf(const Step& step) const { return skin.jointAt(joints, step.face, endCorner(step)); }
    NodePosition nodeAt(std::uint32_t face, unsigned int corner) const
    {
        const SkinFace& f = skin.faces[face];
        return {f.part, f.nodes[corner % f.corners]};
    }

    const ModelJoints& joints;
    const FaceSkin& skin;
    const Buckets<std::uint32_t>& elementsAt;
    std::vector<bool> walked; // per side of each face
    Step first = {};
};

std::uint32_t jointOf(const ModelJoints& j, NodePosition at)
{
    const bool known =
        at.part + std::size_t{1} < j.firstNode.size() && at.node < j.firstNode[at.part + 1] - j.firstNode[at.part];
    return known ? j.jointOf[j.firstNode[at.part] + at.node] : noJoint;
}

void follow(const PartMesh* parts, const ModelJoints& j, std::uint32_t from, std::uint32_t towards, EdgePath& path)
{
    EdgeWalker walker(j, j.skin(parts, false));
    Step start = {};
    if (from != noJoint && walker.findStart(from, towards, start)) {
        walker.walk(start, path);
    }
}

} // namespace

ElementSet Selector::growByAngle(const ElementSet& set, double degrees)
{
    ElementSet result(model);
    if (set.fits(result)) {
        result = set;
        addElements(floodFromSet(model.asRead().meshes.data(), joints(), set, degrees), result);
    }
    return result;
}

NodeSet Selector::nodesByAngle(const ElementSet& set, double degrees)
{
    NodeSet result(model);
    if (set.fits(ElementSet(model))) {
        addNodes(floodFromSet(model.asRead().meshes.data(), joints(), set, degrees), result);
    }
    return result;
}

ElementSet Selector::elementsByAngle(unsigned int part, std::size_t element, unsigned int face, double degrees)
{
    ElementSet result(model);
    addElements(floodFromFace(model.asRead().meshes.data(), joints(), part, element, face, degrees), result);
    return result;
}

NodeSet Selector::nodesByAngle(unsigned int part, std::size_t element, unsigned int face, double degrees)
{
    NodeSet result(model);
    addNodes(floodFromFace(model.asRead().meshes.data(), joints(), part, element, face, degrees), result);
    return result;
}

EdgePath Selector::freeEdgePath(NodePosition start)
{
    EdgePath path;
    path.elements = ElementSet(model);
    const ModelJoints& j = joints();
    follow(model.asRead().meshes.data(), j, jointOf(j, start), noJoint, path);
    return path;
}

EdgePath Selector::freeEdgePath(NodePosition start, NodePosition next)
{
    EdgePath path;
    path.elements = ElementSet(model);
    const ModelJoints& j = joints();
    const std::uint32_t towards = jointOf(j, next);
    follow(model.asRead().meshes.data(), j, towards == noJoint ? noJoint : jointOf(j, start), towards, path);
    return path;
}

} // namespace kvo
