// Outer faces and their edges, by counting.
#include "face_skin.h"

#include <algorithm>

#include "element_shape.h"
#include "model_joints.h"

namespace kvo {

namespace {

// A face of a solid, in the bucket of its lowest joint. A triangle has noJoint as last.
struct SolidFace
{
    std::uint32_t others[3]; // ascending
    std::uint32_t element;   // number in the model
    std::uint8_t position;   // in what facesOf gives
};

bool isShell(ElementShape shape)
{
    return shape == ElementShape::Triangle || shape == ElementShape::Quad;
}

bool isSolid(ElementShape shape)
{
    return shape != ElementShape::None && shape != ElementShape::Line && !isShell(shape);
}

template <class Put>
void putFaces(const PartMesh& part, std::uint32_t element, std::size_t number, const std::uint32_t* jointOf,
              const Put& put)
{
    const ElementShape shape = shapeOf(part, element);
    if (!isSolid(shape)) {
        return;
    }
    ElementFace faces[maxFaces];
    const unsigned int count = facesOf(part, element, shape, faces);
    for (unsigned int f = 0; f < count; ++f) {
        std::uint32_t joints[4] = {noJoint, noJoint, noJoint, noJoint};
        for (unsigned int k = 0; k < faces[f].corners; ++k) {
            joints[k] = jointOf[faces[f].nodes[k]];
        }
        std::sort(joints, joints + 4);
        put(joints[0], SolidFace{{joints[1], joints[2], joints[3]},
                                 static_cast<std::uint32_t>(number),
                                 static_cast<std::uint8_t>(f)});
    }
}

// Marks faces without a second in their bucket: outer[element * maxFaces + position].
void markOuter(const Buckets<SolidFace>& buckets, std::vector<std::uint8_t>& outer)
{
    parallelFor(buckets.first.size() - 1, 4096, [&](std::size_t begin, std::size_t end) {
        for (std::size_t b = begin; b < end; ++b) {
            for (const SolidFace* face = buckets.begin(b); face != buckets.end(b); ++face) {
                const auto same = [face](const SolidFace& other) {
                    return std::equal(face->others, face->others + 3, other.others);
                };
                if (std::count_if(buckets.begin(b), buckets.end(b), same) == 1) {
                    outer[static_cast<std::size_t>(face->element) * maxFaces + face->position] = 1;
                }
            }
        }
    });
}

std::vector<std::uint8_t> outerFaces(const PartMesh* parts, const ModelJoints& j)
{
    std::vector<std::uint8_t> outer(j.firstElement.back() * maxFaces, 0);
    const auto emitAll = [&](const auto& put) {
        forElements(j.firstElement, j.inScope, [&](unsigned int part, std::uint32_t element, std::size_t number) {
            putFaces(parts[part], element, number, j.jointOf.data() + j.firstNode[part], put);
        });
    };
    markOuter(fillBuckets<SolidFace>(j.numJoints, emitAll), outer);
    return outer;
}

// The faces of one element that belong to the skin, at most maxFaces. outer: of this element, null: solids have none.
unsigned int skinFacesOf(const PartMesh& part, std::uint32_t element, const std::uint8_t* outer, ElementFace* found)
{
    const ElementShape shape = shapeOf(part, element);
    if (isShell(shape)) {
        return facesOf(part, element, shape, found);
    }
    if (!isSolid(shape) || outer == nullptr || std::count(outer, outer + maxFaces, 1) == 0) {
        return 0;
    }
    ElementFace faces[maxFaces];
    const unsigned int count = facesOf(part, element, shape, faces);
    unsigned int kept = 0;
    for (unsigned int f = 0; f < count; ++f) {
        if (outer[f] != 0) {
            found[kept++] = faces[f];
        }
    }
    return kept;
}

void collectFaces(const PartMesh* parts, const ModelJoints& j, const std::vector<std::uint8_t>& outer, FaceSkin& skin)
{
    const auto facesAt = [&](unsigned int part, std::uint32_t element, std::size_t number, ElementFace* faces) {
        return skinFacesOf(parts[part], element, outer.empty() ? nullptr : outer.data() + number * maxFaces, faces);
    };
    skin.firstOf.assign(j.firstElement.back() + 1, 0);
    forElements(j.firstElement, j.inScope, [&](unsigned int part, std::uint32_t element, std::size_t number) {
        ElementFace faces[maxFaces];
        skin.firstOf[number + 1] = facesAt(part, element, number, faces);
    });
    for (std::size_t k = 1; k < skin.firstOf.size(); ++k) {
        skin.firstOf[k] += skin.firstOf[k - 1];
    }
    skin.faces.resize(skin.firstOf.back());
    forElements(j.firstElement, j.inScope, [&](unsigned int part, std::uint32_t element, std::size_t number) {
        ElementFace faces[maxFaces];
        const unsigned int count = facesAt(part, element, number, faces);
        for (unsigned int f = 0; f < count; ++f) {
            SkinFace& face = skin.faces[skin.firstOf[number] + f];
            std::copy_n(faces[f].nodes, 4, face.nodes);
            face.part = part;
            face.element = element;
            face.corners = faces[f].corners;
            face.number = faces[f].number;
        }
    });
}

// Sides between two nodes of one joint have no edge.
void collectSides(const ModelJoints& j, FaceSkin& skin)
{
    const auto emitAll = [&](const auto& put) {
        parallelFor(skin.faces.size(), 4096, [&](std::size_t begin, std::size_t end) {
            for (std::size_t f = begin; f < end; ++f) {
                const std::uint32_t face = static_cast<std::uint32_t>(f);
                for (unsigned int k = 0; k < skin.faces[f].corners; ++k) {
                    const std::uint32_t a = skin.jointAt(j, face, k), b = skin.jointAt(j, face, k + 1);
                    if (a != b) {
                        put(std::min(a, b), FaceSide{std::max(a, b), face, k});
                    }
                }
            }
        });
    };
    skin.sides = fillBuckets<FaceSide>(j.numJoints, emitAll);
}

} // namespace

std::uint32_t FaceSkin::jointAt(const ModelJoints& joints, std::uint32_t face, unsigned int corner) const
{
    const SkinFace& f = faces[face];
    return joints.jointOf[joints.firstNode[f.part] + f.nodes[corner < f.corners ? corner : corner - f.corners]];
}

FaceSkin findSkin(const PartMesh* parts, const ModelJoints& joints, bool solidsToo)
{
    FaceSkin skin;
    collectFaces(parts, joints, solidsToo ? outerFaces(parts, joints) : std::vector<std::uint8_t>(), skin);
    collectSides(joints, skin);
    return skin;
}

} // namespace kvo
