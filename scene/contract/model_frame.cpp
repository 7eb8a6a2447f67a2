// The closed form of the library's fit, and the box that makes it fill a picture.
#include <kvo/model_frame.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include <GL/gl.h>

#include "caeenv.h"
#include "loaded.h"
#include "mtrans.h"
#include "mview.h"

namespace kvo {

namespace {

const double isoTilt = 10 * 3.14159265358979323846 / 180; // the iso view is the left view tilted by 10 degrees

// What a box of the given size measures across and up in a standard view. The views' quarter turns permute the axes;
// the iso view's tilt adds the leaning y edge to the upright z edge, and its two corners that the library projects lie
// at the very bottom and top of that, so nothing of the box sticks out of the fit.
struct Seen
{
    double across;
    double up;
};

Seen seenSize(const double size[3], int viewType)
{
    switch (viewType) {
    case ISO_VIEW:
        return {size[0], size[1] * std::sin(isoTilt) + size[2] * std::cos(isoTilt)};
    case LEFT_VIEW:
    case RIGHT_VIEW:
        return {size[0], size[2]};
    case FRONT_VIEW:
    case BACK_VIEW:
        return {size[1], size[2]};
    default:
        return {size[0], size[1]};
    }
}

// The library's fit: the projection shows size x by size y; the box is scaled to touch it, all views but iso with a
// margin of five per cent.
double fitScale(const double size[3], int viewType)
{
    const Seen seen = seenSize(size, viewType);
    const double scale = std::min(size[0] / seen.across, size[1] / seen.up);
    return viewType == ISO_VIEW ? scale : 0.95 * scale;
}

// Pixels per model unit for which the seen size fills the picture. A model that is a line or a point in this view has
// only the other direction, or none.
double wantedPixelsPerUnit(const Seen& seen, int width, int height)
{
    if (seen.across <= 0 && seen.up <= 0) {
        return frameFill * std::min(width, height);
    }
    const double byWidth = seen.across > 0 ? width / seen.across : HUGE_VAL;
    const double byHeight = seen.up > 0 ? height / seen.up : HUGE_VAL;
    return frameFill * std::min(byWidth, byHeight);
}

// The proportions of the box: x:y as the picture; z so deep that seen upright it is just as high as the picture.
void proportions(int viewType, int width, int height, double out[3])
{
    out[0] = width;
    out[1] = height;
    out[2] = viewType == ISO_VIEW ? height * (1 - std::sin(isoTilt)) / std::cos(isoTilt) : height;
}

// --- Depth ---

// How far from eye depth 0 anything of the model can be, whatever the rotation: the view puts the box's centre there,
// the user's scale and translation act in the model's frame, and rotation turns about the centre of the window.
double depthReach(const Box& visible, const MTransform& trans, double viewScale)
{
    double shifted = 0, pivot = 0, radius = 0;
    for (int axis = 0; axis < 3; ++axis) {
        const double center = visible.center(axis);
        const double scale = std::fabs(trans.localScale[axis]) + SCALE_FACTOR; // a pending step may add one factor
        const double moved = center * trans.localScale[axis] + trans.localTrans[axis] - trans.centerOfWindow[axis];
        shifted += moved * moved;
        pivot += std::pow(trans.centerOfWindow[axis] - center, 2);
        radius += std::pow(scale * visible.size(axis) / 2, 2);
    }
    return viewScale * (std::sqrt(shifted) + std::sqrt(pivot) + std::sqrt(radius));
}

// Spreads the projection's depth range of +-9999 over +-reach, and a little beyond.
void spreadDepth(double reach)
{
    if (!(reach > 0) || !std::isfinite(reach)) {
        return;
    }
    GLint mode = GL_MODELVIEW;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    glMatrixMode(GL_PROJECTION);
    glScaled(1, 1, Z_MAX_COORD / (1.1 * reach));
    glMatrixMode(static_cast<GLenum>(mode));
}

// --- The visible parts' box ---

bool finite(const float extents[6])
{
    return std::all_of(extents, extents + 6, [](float v) { return std::isfinite(v); });
}

// Adds the parts without any of the given flags; false when there was none.
bool addParts(CAEEnv& env, unsigned int withoutFlags, Box& box)
{
    bool any = false;
    const PartInfoStr* parts = env.getPartsList();
    for (int part = 0; part < env.getNumParts(); ++part) {
        const float* extents = parts[part].partExtents;
        if ((parts[part].partFlag & withoutFlags) || !finite(extents)) {
            continue;
        }
        for (int axis = 0; axis < 3; ++axis) {
            const double low = extents[2 * axis], high = extents[2 * axis + 1];
            box.low[axis] = any ? std::min(box.low[axis], low) : low;
            box.high[axis] = any ? std::max(box.high[axis], high) : high;
        }
        any = true;
    }
    return any;
}

} // namespace

Framing frameModel(const Box& visible, int viewType, int width, int height)
{
    const double size[3] = {visible.size(0), visible.size(1), visible.size(2)};
    double shape[3];
    proportions(viewType, width, height, shape);

    // One unit of the shape is drawn fitScale pixels long, so a box of unit x shape shows fitScale / unit pixels a
    // unit.
    Framing out;
    out.fitScale = fitScale(shape, viewType);
    out.pixelsPerUnit = wantedPixelsPerUnit(seenSize(size, viewType), width, height);
    const double unit = out.fitScale / out.pixelsPerUnit;
    for (int axis = 0; axis < 3; ++axis) {
        out.box.low[axis] = visible.center(axis) - unit * shape[axis] / 2;
        out.box.high[axis] = visible.center(axis) + unit * shape[axis] / 2;
    }
    return out;
}

Box visibleBox(CAEEnv& env)
{
    Box box;
    if (addParts(env, PART_HIDDEN, box) || addParts(env, 0, box)) {
        return box;
    }
    std::fill(box.low, box.low + 3, -1.0);
    std::fill(box.high, box.high + 3, 1.0);
    return box;
}

Framing applyFrame(CAEEnv& env, int width, int height)
{
    requireLoaded(env);
    const Box visible = visibleBox(env);
    const Framing framing = frameModel(visible, env.getMViewPtr()->mViewType, width, height);
    float* extents = env.getExtents();
    for (int axis = 0; axis < 3; ++axis) {
        extents[2 * axis] = static_cast<float>(framing.box.low[axis]);
        extents[2 * axis + 1] = static_cast<float>(framing.box.high[axis]);
    }
    env.resizeModel(width, height);
    // Until the first frame has been drawn there is no pivot yet; it will be the middle of this box.
    if (env.getMTransformPtr()->onlyOnce & 2) {
        env.getMTransformPtr()->updateWindowCenter();
    }
    spreadDepth(depthReach(visible, *env.getMTransformPtr(), framing.fitScale));
    return framing;
}

void shiftFrame(float right, float up)
{
    if (right == 0 && up == 0) {
        return;
    }
    GLint version[2] = {0, 0};
    glGetIntegerv(GL_MAJOR_VERSION, &version[0]);
    glGetIntegerv(GL_MINOR_VERSION, &version[1]);
    if (10 * version[0] + version[1] < 41) {
        throw std::runtime_error("a shifted frame needs OpenGL 4.1");
    }
    float viewport[4];
    glGetFloatv(GL_VIEWPORT, viewport);
    glViewportIndexedf(0, viewport[0] + right, viewport[1] + up, viewport[2], viewport[3]);
}

} // namespace kvo
