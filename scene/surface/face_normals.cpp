#include "face_normals.h"

#include <cmath>

#include "mantypes.h"
#include "parallel.h"

namespace kvo {

namespace {

constexpr std::size_t grain = 8192;

float dot(const float* a, const float* b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

unsigned int cornerCount(const SurfaceFace& face)
{
    return face.nodes[3] == noCorner ? 3 : 4;
}

// The corners that meet at each node: corner 4 * face + k, listed by node.
struct CornersOfNodes
{
    std::vector<std::uint32_t> starts; // nodes + 1
    RawVector<std::uint32_t> corners;

    CornersOfNodes(std::size_t nodes, const RawVector<SurfaceFace>& faces) : starts(nodes + 1, 0)
    {
        for (const SurfaceFace& face : faces) {
            for (unsigned int k = 0; k < cornerCount(face); ++k) {
                ++starts[face.nodes[k] + 1];
            }
        }
        for (std::size_t node = 0; node < nodes; ++node) {
            starts[node + 1] += starts[node];
        }
        corners.resize(starts[nodes]);
        std::vector<std::uint32_t> next(starts.begin(), starts.end() - 1);
        for (std::size_t f = 0; f < faces.size(); ++f) {
            for (unsigned int k = 0; k < cornerCount(faces[f]); ++k) {
                corners[next[faces[f].nodes[k]]++] = static_cast<std::uint32_t>(4 * f + k);
            }
        }
    }
};

} // namespace

PackedNormal packNormal(const float vector[3])
{
    const double length =
        std::sqrt(double(vector[0]) * vector[0] + double(vector[1]) * vector[1] + double(vector[2]) * vector[2]);
    if (!(length > 0) || !std::isfinite(length)) {
        return {0, 0, 32767};
    }
    const double scale = 32767 / length;
    return {static_cast<std::int16_t>(std::lrint(vector[0] * scale)),
            static_cast<std::int16_t>(std::lrint(vector[1] * scale)),
            static_cast<std::int16_t>(std::lrint(vector[2] * scale))};
}

void faceVector(const PartMesh& part, const SurfaceFace& face, float out[3])
{
    const float* a = positionOf(part, face.nodes[0]);
    const float* b = positionOf(part, face.nodes[1]);
    const float* c = positionOf(part, face.nodes[2]);
    const float* d = face.nodes[3] == noCorner ? a : positionOf(part, face.nodes[3]);
    // Of a triangle the "diagonals" are two of its edges.
    const float u[3] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    const float v[3] = {d[0] - b[0], d[1] - b[1], d[2] - b[2]};
    out[0] = u[1] * v[2] - u[2] * v[1];
    out[1] = u[2] * v[0] - u[0] * v[2];
    out[2] = u[0] * v[1] - u[1] * v[0];
}

FaceNormals::FaceNormals(const PartMesh& drawnPart, const PartSurface& drawnSurface, const NormalChoice& how)
    : part(drawnPart), surface(drawnSurface), choice(how)
{
    const bool recorded = choice.smooth ? part.nodeNormals != nullptr : part.elementNormals != nullptr;
    if (choice.source == NormalSource::Record && recorded) {
        fromRecord();
    } else if (choice.smooth) {
        smoothen();
    } else {
        fromFaces();
    }
}

// Three floats a shell; eighteen a solid, by face.
void FaceNormals::fromRecord()
{
    const RawVector<SurfaceFace>& faces = surface.faces;
    if (!choice.smooth) {
        flat.resize(faces.size());
        const std::size_t stride = part.kind == ElementKind::Solid ? 18 : 3;
        for (std::size_t f = 0; f < faces.size(); ++f) {
            flat[f] = packNormal(part.elementNormals + stride * faces[f].element + 3 * faces[f].number);
        }
        return;
    }
    corners.resize(4 * faces.size());
    for (std::size_t f = 0; f < faces.size(); ++f) {
        for (unsigned int k = 0; k < cornerCount(faces[f]); ++k) {
            corners[4 * f + k] = packNormal(part.nodeNormals + 3 * std::size_t(faces[f].nodes[k]));
        }
    }
}

void FaceNormals::fromFaces()
{
    flat.resize(surface.faces.size());
    parallelFor(flat.size(), grain, [this](std::size_t begin, std::size_t end) {
        for (std::size_t f = begin; f < end; ++f) {
            float vector[3];
            faceVector(part, surface.faces[f], vector);
            flat[f] = packNormal(vector);
        }
    });
}

// The normal of a corner is the sum of the vectors (normal x area) of those faces at its node that turn less than the
// feature angle against its own. Shells of one surface may be wound either way: theirs count with the sign that fits.
void FaceNormals::smoothen()
{
    const RawVector<SurfaceFace>& faces = surface.faces;
    const bool eitherWay = part.kind == ElementKind::Shell;
    RawVector<float> vectors(3 * faces.size()), lengths(faces.size());
    parallelFor(faces.size(), grain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t f = begin; f < end; ++f) {
            faceVector(part, faces[f], &vectors[3 * f]);
            lengths[f] = std::sqrt(dot(&vectors[3 * f], &vectors[3 * f]));
        }
    });
    const std::size_t nodes = part.nodeCount;
    const CornersOfNodes around(nodes, faces);
    corners.resize(4 * faces.size());
    const float limit = std::cos(choice.featureAngle * 3.14159265f / 180);
    parallelFor(nodes, grain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t node = begin; node < end; ++node) {
            for (std::uint32_t i = around.starts[node]; i < around.starts[node + 1]; ++i) {
                const std::size_t own = around.corners[i] / 4;
                float sum[3] = {0, 0, 0};
                for (std::uint32_t j = around.starts[node]; j < around.starts[node + 1]; ++j) {
                    const std::size_t other = around.corners[j] / 4;
                    const float* vector = &vectors[3 * other];
                    const float d = dot(&vectors[3 * own], vector);
                    const float cosine = d / (lengths[own] * lengths[other]); // not a number for faces without area
                    const bool along = cosine >= limit || own == other;
                    if (along || (eitherWay && -cosine >= limit)) {
                        const float sign = along ? 1.0f : -1.0f;
                        sum[0] += sign * vector[0];
                        sum[1] += sign * vector[1];
                        sum[2] += sign * vector[2];
                    }
                }
                corners[around.corners[i]] = packNormal(sum);
            }
        }
    });
}

} // namespace kvo
