#include "scene_geometry.h"

#include <algorithm>
#include <cmath>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "spring_symbol.h"
#include "surface_program.h"

namespace kvo {

namespace {

constexpr GLuint surfaceAttributes[] = {positionAttribute, normalAttribute, elementAttribute, partAttribute};

// What building needed for a while stays with the process otherwise: as much again as the buffers.
void giveMemoryBack()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

} // namespace

void bindSurfaceVertices(const GlBuffer& buffer)
{
    buffer.bind(GL_ARRAY_BUFFER);
    const GLsizei stride = sizeof(SurfaceVertex);
    for (const GLuint attribute : surfaceAttributes) {
        glEnableVertexAttribArray(attribute);
    }
    glVertexAttribPointer(positionAttribute, 3, GL_FLOAT, GL_FALSE, stride,
                          bufferOffset(offsetof(SurfaceVertex, position)));
    glVertexAttribPointer(normalAttribute, 3, GL_SHORT, GL_TRUE, stride, bufferOffset(offsetof(SurfaceVertex, normal)));
    glVertexAttribIPointer(elementAttribute, 1, GL_UNSIGNED_INT, stride,
                           bufferOffset(offsetof(SurfaceVertex, element)));
    glVertexAttribIPointer(partAttribute, 1, GL_UNSIGNED_INT, stride, bufferOffset(offsetof(SurfaceVertex, part)));
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void SceneGeometry::numberElements(const std::vector<PartMesh>& parts)
{
    firstElements.assign(1, 0);
    for (const PartMesh& part : parts) {
        firstElements.push_back(firstElements.back() + part.elementCount);
    }
}

// Single precision loses a model that is small against its distance from the origin, when it is multiplied by a matrix
// that moves it to the middle. Its middle is then taken off here and added to the matrix in double precision.
void SceneGeometry::chooseOrigin(const std::vector<PartMesh>& parts)
{
    std::fill(shift, shift + 3, 0.0);
    double low[3], high[3], size = 0, distance = 0;
    bool any = false;
    for (const PartMesh& part : parts) {
        const float* e = part.extents.data();
        if (!std::all_of(e, e + 6, [](float v) { return std::isfinite(v); })) {
            continue;
        }
        for (int axis = 0; axis < 3; ++axis) {
            low[axis] = any ? std::min<double>(low[axis], e[2 * axis]) : e[2 * axis];
            high[axis] = any ? std::max<double>(high[axis], e[2 * axis + 1]) : e[2 * axis + 1];
        }
        any = true;
    }
    for (int axis = 0; any && axis < 3; ++axis) {
        size = std::max(size, high[axis] - low[axis]);
        distance = std::max(distance, std::fabs(high[axis] + low[axis]) / 2);
    }
    if (distance > 16 * size) {
        for (int axis = 0; axis < 3; ++axis) {
            shift[axis] = static_cast<float>((low[axis] + high[axis]) / 2);
        }
    }
}

// Beams are lines; discrete elements get a symbol.
void SceneGeometry::addLines(const PartMesh& part, std::uint32_t number, const ElementMask& absent,
                             std::vector<SurfaceVertex>& out)
{
    if (part.kind != ElementKind::Beam && part.kind != ElementKind::Discrete) {
        return;
    }
    const std::uint32_t first = static_cast<std::uint32_t>(out.size());
    const std::uint32_t elements = part.elementCount;
    std::vector<float> points;
    for (std::uint32_t element = 0; element < elements; ++element) {
        if (shapeOf(part, element) != ElementShape::Line || (element < absent.size() && absent[element])) {
            continue;
        }
        const unsigned int* slots = slotsOf(part, element);
        points.clear();
        addLineSymbol(part.kind == ElementKind::Discrete, positionOf(part, slots[0]), positionOf(part, slots[1]),
                      points);
        for (std::size_t k = 0; k < points.size(); k += 3) {
            SurfaceVertex vertex = {{}, {0, 0, 32767}, 0, firstElements[number] + element, number};
            for (int axis = 0; axis < 3; ++axis) {
                vertex.position[axis] = static_cast<float>(points[k + axis] - shift[axis]);
            }
            out.push_back(vertex);
        }
    }
    const std::uint32_t count = static_cast<std::uint32_t>(out.size()) - first;
    if (count) {
        lineRanges.push_back({number, first, count});
    }
}

void SceneGeometry::build(const std::vector<PartMesh>& parts, const NormalChoice& choice,
                          const std::vector<ElementMask>& absent)
{
    numberElements(parts);
    chooseOrigin(parts);
    closedParts.assign(parts.size(), 0);
    firstVertices.assign(1, 0);
    lineRanges.clear();
    SurfaceMesh mesh;
    std::copy(shift, shift + 3, mesh.origin);
    std::vector<SurfaceVertex> lineData;
    const ElementMask none;
    for (std::uint32_t number = 0; number < parts.size(); ++number) {
        const PartMesh& part = parts[number];
        const ElementMask& mask = number < absent.size() ? absent[number] : none;
        const PartSurface surface = findSurface(part, mask);
        closedParts[number] = surface.closed;
        if (!surface.faces.empty()) {
            addSurface(part, number, firstElements[number], surface, FaceNormals(part, surface, choice), mesh);
        }
        firstVertices.push_back(static_cast<std::uint32_t>(mesh.vertices.size()));
        addLines(part, number, mask, lineData);
    }
    vertices.fill(GL_ARRAY_BUFFER, mesh.vertices);
    lineVertices.fill(GL_ARRAY_BUFFER, lineData);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    for (FaceKind kind : {Triangles, Quads}) {
        indices[kind].fill(GL_ELEMENT_ARRAY_BUFFER, mesh.indices[kind]);
        surfaceBlocks[kind] = std::move(mesh.blocks[kind]);
        edges[kind].drop();
    }
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    mesh = SurfaceMesh();
    giveMemoryBack();
}

SurfaceMesh SceneGeometry::readBack() const
{
    SurfaceMesh mesh;
    std::copy(shift, shift + 3, mesh.origin);
    const auto read = [](const GlBuffer& buffer, GLenum target, auto& out) {
        out.resize(buffer.bytes() / sizeof(out[0]));
        buffer.bind(target);
        glGetBufferSubData(target, 0, static_cast<GLsizeiptr>(buffer.bytes()), out.data());
        glBindBuffer(target, 0);
    };
    read(vertices, GL_ARRAY_BUFFER, mesh.vertices);
    for (FaceKind kind : {Triangles, Quads}) {
        read(indices[kind], GL_ELEMENT_ARRAY_BUFFER, mesh.indices[kind]);
        mesh.blocks[kind] = surfaceBlocks[kind];
    }
    return mesh;
}

std::uint32_t SceneGeometry::partOf(std::uint32_t element) const
{
    const auto behind = std::upper_bound(firstElements.begin(), firstElements.end(), element);
    return static_cast<std::uint32_t>(behind - firstElements.begin()) - 1;
}

std::size_t SceneGeometry::bufferBytes() const
{
    return vertices.bytes() + indices[Triangles].bytes() + indices[Quads].bytes() + lineVertices.bytes() +
           edges[Triangles].bytes() + edges[Quads].bytes();
}

void SceneGeometry::makeEdges()
{
    for (const FaceKind kind : {Triangles, Quads}) {
        edges[kind].make(indices[kind], kind);
    }
}

void SceneGeometry::bindSurface() const
{
    bindSurfaceVertices(vertices);
}

void SceneGeometry::unbind()
{
    for (const GLuint attribute : surfaceAttributes) {
        glDisableVertexAttribArray(attribute);
    }
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
}

} // namespace kvo
