// The frame once more, with numbers for colours.
#include "number_picture.h"

#include <memory>

#include "scene_view_impl.h"

namespace kvo {

// Part of the viewport is drawn as a picture of its own whose viewport is shifted: every pixel gets the same fragments
// as in the frame.
NumberPicture SceneView::Impl::drawNumbers(const PixelBox& box)
{
    NumberPicture out;
    out.box = box;
    const std::size_t pixels = static_cast<std::size_t>(box.width) * static_cast<std::size_t>(box.height);
    out.numbers.assign(pixels, 0);
    out.depths.assign(pixels, 1);
    if (geometry.elementCount() == 0) {
        return out;
    }
    const KeepGlState host;
    GlState start = host.state().defaults();
    start.turn(GL_DEPTH_TEST, host.state().isOn(GL_DEPTH_TEST));
    start.turn(GL_MULTISAMPLE, false);
    const bool rims = drawState.polygonMode[0] == GL_LINE; // which programs draw
    if (!rims) {
        std::copy(drawState.polygonMode, drawState.polygonMode + 2, start.polygonMode);
    }
    start.clearDepth = 1;
    start.apply();
    fences.keep();
    const GlFramebuffer target(box.width, box.height, {GL_R32UI});
    glViewport(camera.viewport[0] - box.left, camera.viewport[1] - box.bottom, camera.viewport[2], camera.viewport[3]);
    const GLuint nothing[4] = {0, 0, 0, 0};
    glClearBufferuiv(GL_COLOR, 0, nothing);
    glClear(GL_DEPTH_BUFFER_BIT);
    vertexArray.bind();
    state.bind();
    drawNumberedPieces(box, rims);
    fences.keep();
    glReadBuffer(GL_COLOR_ATTACHMENT0);
    glReadPixels(0, 0, box.width, box.height, GL_RED_INTEGER, GL_UNSIGNED_INT, out.numbers.data());
    glReadPixels(0, 0, box.width, box.height, GL_DEPTH_COMPONENT, GL_FLOAT, out.depths.data());
    return out;
}

// Opaque and transparent parts alike: what is nearest is hit.
void SceneView::Impl::drawNumberedPieces(const PixelBox& box, bool rims)
{
    std::vector<PartShow> parts = partsToShow(model.asRead().parts, geometry, false);
    for (PartShow& show : parts) {
        show = show == PartShow::Transparent ? PartShow::Opaque : show;
    }
    // Blocks beyond the box are skipped as in a view zoomed in to it.
    SceneCamera zoomed = camera;
    const double sx = double(camera.viewport[2]) / box.width, sy = double(camera.viewport[3]) / box.height;
    const double tx = sx + 2.0 * (camera.viewport[0] - box.left) / box.width - 1;
    const double ty = sy + 2.0 * (camera.viewport[1] - box.bottom) / box.height - 1;
    for (int column = 0; column < 4; ++column) {
        zoomed.projection[4 * column] = sx * camera.projection[4 * column] + tx * camera.projection[4 * column + 3];
        zoomed.projection[4 * column + 1] =
            sy * camera.projection[4 * column + 1] + ty * camera.projection[4 * column + 3];
    }
    SceneFrameStats uncounted;
    ScenePasses passes(geometry, zoomed, parts, uncounted);
    SurfaceUniforms values = uniforms();
    const unsigned int features = ElementNumbers | FlatLight;
    passes.faces(PartShow::Opaque, !rims && !seesBacks(), [&](FaceKind kind) {
        use(!rims ? features : features | (kind == Quads ? QuadRims : TriangleRims), values);
    });
    drawCaps(passes, PartShow::Opaque, features, values);
    const DrawnNearer nearer(camera, 1, values);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    use(features | widen(values, drawnLook.lineWidth), values);
    passes.lines(PartShow::Opaque);
    glDisable(GL_CLIP_DISTANCE0);
}

} // namespace kvo
