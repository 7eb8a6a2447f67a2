#include "scene_passes.h"

#include <algorithm>

namespace kvo {

namespace {

ViewVolume volumeOf(const SceneGeometry& geometry, const SceneCamera& camera)
{
    double modelview[16];
    camera.relativeTo(geometry.origin(), modelview);
    return ViewVolume(modelview, camera.projection);
}

} // namespace

std::vector<PartShow> partsToShow(const std::vector<ShownPart>& shown, const SceneGeometry& geometry, bool ghosts)
{
    std::vector<PartShow> out(geometry.partCount(), PartShow::No);
    for (std::size_t k = 0; k < out.size() && k < shown.size(); ++k) {
        if (shown[k].hidden) {
            out[k] = ghosts ? PartShow::Ghost : PartShow::No;
        } else {
            out[k] = shown[k].color[3] < 1 ? PartShow::Transparent : PartShow::Opaque;
        }
    }
    return out;
}

ScenePasses::ScenePasses(const SceneGeometry& sceneGeometry, const SceneCamera& sceneCamera,
                         const std::vector<PartShow>& shownParts, SceneFrameStats& frameStats)
    : geometry(sceneGeometry), parts(shownParts), stats(frameStats), volume(volumeOf(sceneGeometry, sceneCamera)),
      camera(sceneCamera)
{
}

bool ScenePasses::any(PartShow show) const
{
    return std::find(parts.begin(), parts.end(), show) != parts.end();
}

std::vector<const SurfaceBlock*> ScenePasses::visibleBlocks(FaceKind kind, PartShow show, bool closedOnly)
{
    std::vector<const SurfaceBlock*> blocks;
    for (const SurfaceBlock& block : coarse ? coarse->blocks() : geometry.blocks(kind)) {
        if (parts[block.part] != show || geometry.closed(block.part) != closedOnly) {
            continue;
        }
        if (volume.mayShow(block.low, block.high)) {
            blocks.push_back(&block);
        } else {
            ++stats.culledBlocks;
        }
    }
    return blocks;
}

bool ScenePasses::drawBlocks(FaceKind kind, const std::vector<const SurfaceBlock*>& blocks)
{
    if (blocks.empty()) {
        return false;
    }
    DrawRanges ranges;
    for (const SurfaceBlock* block : blocks) {
        ranges.add(block->firstIndex, block->indexCount);
    }
    std::size_t sent = coarse || !sieve ? PixelSieve::notDrawn : sieve->draw(geometry, kind, blocks, camera);
    if (sent == PixelSieve::notDrawn) {
        drawRanges(kind, ranges);
        sent = ranges.indexCount() / indicesOfFace(kind);
    }
    stats.faces += sent;
    ++stats.drawCalls;
    return true;
}

void ScenePasses::drawRanges(FaceKind kind, const DrawRanges& ranges)
{
    if (coarse) {
        coarse->bindIndices();
    } else {
        geometry.bindIndices(kind);
    }
    glMultiDrawElements(GL_TRIANGLES, ranges.counts.data(), GL_UNSIGNED_INT, ranges.offsets.data(),
                        static_cast<GLsizei>(ranges.counts.size()));
}

bool ScenePasses::faces(PartShow show, bool cullClosed, const std::function<void(FaceKind)>& prepare)
{
    if (!any(show)) {
        return false;
    }
    geometry.bindSurface();
    bool drawn = false;
    for (const bool closed : {true, false}) {
        if (closed && cullClosed) {
            glEnable(GL_CULL_FACE);
            glCullFace(GL_BACK);
            glFrontFace(camera.mirrored ? GL_CW : GL_CCW);
        } else {
            glDisable(GL_CULL_FACE);
        }
        for (const FaceKind kind : {Quads, Triangles}) {
            if (coarse && kind == Quads) {
                continue; // it has triangles only
            }
            if (prepare) {
                prepare(kind);
            }
            drawn = drawBlocks(kind, visibleBlocks(kind, show, closed)) || drawn;
        }
    }
    glDisable(GL_CULL_FACE);
    SceneGeometry::unbind();
    return drawn;
}

bool ScenePasses::edges(PartShow show)
{
    if (!any(show)) {
        return false;
    }
    geometry.bindSurface();
    bool drawn = false;
    for (const FaceKind kind : {Quads, Triangles}) {
        if (!coarse || kind == Triangles) {
            drawn = drawEdges(kind, show) || drawn;
        }
    }
    SceneGeometry::unbind();
    return drawn;
}

bool ScenePasses::drawEdges(FaceKind kind, PartShow show)
{
    DrawRanges ranges;
    for (const bool closed : {true, false}) {
        for (const SurfaceBlock* block : visibleBlocks(kind, show, closed)) {
            ranges.add(edgeIndices(kind, block->firstIndex), edgeIndices(kind, block->indexCount));
        }
    }
    if (ranges.empty()) {
        return false;
    }
    coarse ? coarse->bindEdges() : geometry.bindEdges(kind);
    glMultiDrawElements(GL_LINES, ranges.counts.data(), GL_UNSIGNED_INT, ranges.offsets.data(),
                        static_cast<GLsizei>(ranges.counts.size()));
    ++stats.drawCalls;
    return true;
}

bool ScenePasses::lines(PartShow show)
{
    return pieces(geometry.lineBuffer(), geometry.lines(), GL_LINES, show);
}

bool ScenePasses::pieces(const GlBuffer& vertices, const std::vector<VertexRange>& ranges, GLenum mode, PartShow show)
{
    std::vector<GLint> firsts;
    std::vector<GLsizei> counts;
    for (const VertexRange& range : ranges) {
        if (parts[range.part] != show) {
            continue;
        }
        if (!counts.empty() && firsts.back() + counts.back() == static_cast<GLint>(range.firstVertex)) {
            counts.back() += static_cast<GLsizei>(range.vertexCount);
        } else {
            firsts.push_back(static_cast<GLint>(range.firstVertex));
            counts.push_back(static_cast<GLsizei>(range.vertexCount));
        }
    }
    if (counts.empty()) {
        return false;
    }
    bindSurfaceVertices(vertices);
    glMultiDrawArrays(mode, firsts.data(), counts.data(), static_cast<GLsizei>(counts.size()));
    ++stats.drawCalls;
    SceneGeometry::unbind();
    return true;
}

} // namespace kvo
