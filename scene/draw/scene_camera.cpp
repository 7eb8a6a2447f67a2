#include "scene_camera.h"

#include <algorithm>
#include <cmath>

#include <GL/glu.h>

#include <kvo/scene_view.h>

namespace kvo {

void setUnit(const double v[3], float out[3])
{
    const double length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    for (int axis = 0; axis < 3; ++axis) {
        out[axis] = length > 0 ? static_cast<float>(v[axis] / length) : 0.0f;
    }
}

namespace {

double determinant(const double m[16]) // of the upper left 3 x 3
{
    return m[0] * (m[5] * m[10] - m[9] * m[6]) - m[4] * (m[1] * m[10] - m[9] * m[2]) +
           m[8] * (m[1] * m[6] - m[5] * m[2]);
}

// The common length of the columns, if they have one and stand on each other; else 0.
double commonScale(const double m[16])
{
    const auto dot = [m](int a, int b) {
        return m[4 * a] * m[4 * b] + m[4 * a + 1] * m[4 * b + 1] + m[4 * a + 2] * m[4 * b + 2];
    };
    const double square = (dot(0, 0) + dot(1, 1) + dot(2, 2)) / 3;
    for (int a = 0; a < 3; ++a) {
        if (std::fabs(dot(a, a) - square) > 1e-4 * square || std::fabs(dot(a, (a + 1) % 3)) > 1e-4 * square) {
            return 0;
        }
    }
    return std::sqrt(square);
}

// A direction of eye coordinates in model coordinates, for a modelview that keeps angles.
void toModel(const double m[16], float v[3])
{
    double out[3];
    for (int column = 0; column < 3; ++column) {
        out[column] = m[4 * column] * v[0] + m[4 * column + 1] * v[1] + m[4 * column + 2] * v[2];
    }
    setUnit(out, v);
}

struct LightRow
{
    double direction[3];
    float diffuse;
};

const LightRow eyeLights[2] = {{{-0.35, 0.5, 1}, 0.62f}, {{0.8, -0.2, 0.6}, 0.22f}};
const LightRow modelLights[2] = {{{0.4, -0.6, 0.8}, 0.6f}, {{-0.7, 0.5, 0.3}, 0.3f}};
constexpr float softAmbient = 0.28f;

} // namespace

void SceneCamera::capture()
{
    glGetIntegerv(GL_VIEWPORT, viewport);
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    std::fill(origin, origin + 3, 0.0);
    perspective = inside = false;
    // Window depth grows with eye z when the projection's third row says so: the viewer then looks along +z.
    viewer = projection[10] > 0 ? -1.0f : 1.0f;
    // Eye coordinates are right-handed with the viewer looking along -z; that projection has a negative determinant.
    unitScale = commonScale(modelview);
    mirrored = determinant(modelview) * determinant(projection) > 0;
}

void SceneCamera::see(const Camera& camera, const Box& box, const double newOrigin[3])
{
    glGetIntegerv(GL_VIEWPORT, viewport);
    std::copy(newOrigin, newOrigin + 3, origin);
    const CameraMatrices matrices =
        camera.matrices({viewport[2], viewport[3]}, box, {newOrigin[0], newOrigin[1], newOrigin[2]});
    std::copy(matrices.modelview.begin(), matrices.modelview.end(), modelview);
    std::copy(matrices.projection.begin(), matrices.projection.end(), projection);
    perspective = camera.perspective() > 0;
    inside = perspective;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        const double eye = camera.eye()[axis];
        inside = inside && eye >= box.low[axis] && eye <= box.high[axis];
    }
    viewer = 1;
    unitScale = 1;
    mirrored = false;
}

bool SceneCamera::project(const double model[3], double window[3]) const
{
    const double from[3] = {model[0] - origin[0], model[1] - origin[1], model[2] - origin[2]};
    double eye[4], clip[4];
    for (int row = 0; row < 4; ++row) {
        eye[row] = modelview[row] * from[0] + modelview[4 + row] * from[1] + modelview[8 + row] * from[2] +
                   modelview[12 + row];
    }
    for (int row = 0; row < 4; ++row) {
        clip[row] = projection[row] * eye[0] + projection[4 + row] * eye[1] + projection[8 + row] * eye[2] +
                    projection[12 + row] * eye[3];
    }
    if (!(clip[3] > 0)) {
        return false;
    }
    window[0] = viewport[0] + (clip[0] / clip[3] + 1) / 2 * viewport[2];
    window[1] = viewport[1] + (clip[1] / clip[3] + 1) / 2 * viewport[3];
    window[2] = (clip[2] / clip[3] + 1) / 2;
    return true;
}

void SceneCamera::unproject(const double window[3], double model[3]) const
{
    gluUnProject(window[0], window[1], window[2], modelview, projection, viewport, &model[0], &model[1], &model[2]);
    for (int axis = 0; axis < 3; ++axis) {
        model[axis] += origin[axis];
    }
}

void SceneCamera::relativeTo(const double otherOrigin[3], double out[16]) const
{
    const double shift[3] = {otherOrigin[0] - origin[0], otherOrigin[1] - origin[1], otherOrigin[2] - origin[2]};
    std::copy(modelview, modelview + 16, out);
    for (int row = 0; row < 4; ++row) {
        for (int axis = 0; axis < 3; ++axis) {
            out[12 + row] += modelview[4 * axis + row] * shift[axis];
        }
    }
}

void SceneCamera::matricesFrom(const double otherOrigin[3], double modelviewOut[16], double projectionOut[16]) const
{
    relativeTo(otherOrigin, modelviewOut);
    std::copy(projection, projection + 16, projectionOut);
    for (int axis = 0; axis < 2 && !perspective; ++axis) { // a parallel projection's axes are independent
        modelviewOut[12 + axis] += projection[12 + axis] / projection[5 * axis];
        projectionOut[12 + axis] = 0;
    }
}

void setLights(SceneLight light, const SceneCamera& camera, SurfaceUniforms& uniforms)
{
    uniforms.ambient = softAmbient;
    uniforms.bothSides = true;
    for (int k = 0; k < 2; ++k) {
        const LightRow& row = light == SceneLight::Model ? modelLights[k] : eyeLights[k];
        double direction[3] = {row.direction[0], row.direction[1], row.direction[2] * camera.viewer};
        if (light == SceneLight::Model) {
            for (int axis = 0; axis < 3; ++axis) {
                direction[axis] = camera.modelview[axis] * row.direction[0] +
                                  camera.modelview[4 + axis] * row.direction[1] +
                                  camera.modelview[8 + axis] * row.direction[2];
            }
        }
        setUnit(direction, uniforms.lights[k]);
        uniforms.diffuse[k] = row.diffuse;
    }
}

void lightTheModel(const SceneCamera& camera, SurfaceUniforms& uniforms)
{
    uniforms.viewer[0] = uniforms.viewer[1] = uniforms.viewer[3] = 0;
    uniforms.viewer[2] = camera.viewer;
    if (camera.unitScale != 0) {
        toModel(camera.modelview, uniforms.lights[0]);
        toModel(camera.modelview, uniforms.lights[1]);
        toModel(camera.modelview, uniforms.viewer);
    }
    if (camera.perspective) { // the eye itself: the modelview is a rotation and a shift
        for (int axis = 0; axis < 3; ++axis) {
            const double* column = camera.modelview + 4 * axis;
            const double* shift = camera.modelview + 12;
            uniforms.viewer[axis] =
                static_cast<float>(-(column[0] * shift[0] + column[1] * shift[1] + column[2] * shift[2]));
        }
        uniforms.viewer[3] = 1;
    }
}

namespace {

constexpr double nearerStep = 0.0005;

void loadProjection(const double matrix[16])
{
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(matrix);
    glMatrixMode(GL_MODELVIEW);
}

} // namespace

DrawnNearer::DrawnNearer(const SceneCamera& camera, int steps) : perspective(camera.perspective)
{
    if (!perspective) {
        glDepthRange(0, std::pow(1 - nearerStep, steps));
        return;
    }
    // What is left to the far plane grows: depth - step (1 - depth), of clip coordinates.
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    double nearer[16];
    std::copy(projection, projection + 16, nearer);
    for (int column = 0; column < 4; ++column) {
        nearer[4 * column + 2] -= steps * nearerStep * (projection[4 * column + 3] - projection[4 * column + 2]);
    }
    loadProjection(nearer);
}

DrawnNearer::~DrawnNearer()
{
    if (perspective) {
        loadProjection(projection);
    } else {
        glDepthRange(0, 1);
    }
}

} // namespace kvo
