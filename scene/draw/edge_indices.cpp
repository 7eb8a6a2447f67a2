#include "edge_indices.h"

#include "parallel.h"

namespace kvo {

namespace {

constexpr std::size_t grain = 65536; // faces

} // namespace

std::vector<std::uint32_t> edgesOf(const std::uint32_t* faces, std::size_t indexCount, FaceKind kind)
{
    const std::size_t size = indicesOfFace(kind), corners = cornersOfFace(kind);
    std::vector<std::uint32_t> out(edgeIndices(kind, indexCount));
    parallelFor(indexCount / size, grain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t face = begin; face < end; ++face) {
            const std::uint32_t* from = faces + face * size;
            std::uint32_t* to = &out[face * 2 * corners];
            for (unsigned int k = 0; k < corners; ++k) {
                *to++ = from[placeOfCorner(kind, k)];
                *to++ = from[placeOfCorner(kind, k + 1 == corners ? 0 : k + 1)];
            }
        }
    });
    return out;
}

void EdgeIndices::make(const GlBuffer& faces, FaceKind kind)
{
    if (made) {
        return;
    }
    std::vector<std::uint32_t> read(faces.bytes() / sizeof(std::uint32_t));
    faces.bind(GL_COPY_READ_BUFFER);
    if (!read.empty()) {
        glGetBufferSubData(GL_COPY_READ_BUFFER, 0, static_cast<GLsizeiptr>(faces.bytes()), read.data());
    }
    glBindBuffer(GL_COPY_READ_BUFFER, 0);
    indices.fill(GL_ELEMENT_ARRAY_BUFFER, edgesOf(read.data(), read.size(), kind));
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    made = true;
}

void EdgeIndices::drop()
{
    if (made) {
        indices.fill(GL_ELEMENT_ARRAY_BUFFER, nullptr, 0, GL_STATIC_DRAW);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    }
    made = false;
}

} // namespace kvo
