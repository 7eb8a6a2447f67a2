#include "scene_camera.h"

#include <algorithm>
#include <cmath>

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

// Column-major: out = a b.
template <class Number> void multiply(const Number a[16], const Number b[16], Number out[16])
{
    for (int column = 0; column < 4; ++column) {
        const Number* from = b + 4 * column;
        for (int row = 0; row < 4; ++row) {
            out[4 * column + row] =
                a[row] * from[0] + a[4 + row] * from[1] + a[8 + row] * from[2] + a[12 + row] * from[3];
        }
    }
}

// By elimination, with the largest pivot of each column. False for a matrix that has no inverse.
bool invert(const double matrix[16], double out[16])
{
    double rows[4][8] = {};
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            rows[row][column] = matrix[4 * column + row];
        }
        rows[row][4 + row] = 1;
    }
    for (int pivot = 0; pivot < 4; ++pivot) {
        int best = pivot;
        for (int row = pivot + 1; row < 4; ++row) {
            best = std::fabs(rows[row][pivot]) > std::fabs(rows[best][pivot]) ? row : best;
        }
        if (!(std::fabs(rows[best][pivot]) > 0)) {
            return false;
        }
        std::swap(rows[best], rows[pivot]);
        for (int row = 0; row < 4; ++row) {
            const double factor = row == pivot ? 0 : rows[row][pivot] / rows[pivot][pivot];
            for (int column = 0; column < 8 && factor != 0; ++column) {
                rows[row][column] -= factor * rows[pivot][column];
            }
        }
    }
    for (int k = 0; k < 16; ++k) {
        out[k] = rows[k % 4][4 + k / 4] / rows[k % 4][k % 4];
    }
    return true;
}

// The inverse's transpose, but for its scale: the programs make unit vectors.
void setNormalMatrix(const double m[16], float out[9])
{
    const double sign = determinant(m) < 0 ? -1 : 1;
    double cofactors[9], largest = 0;
    for (int k = 0; k < 9; ++k) {
        const int a = 4 * ((k / 3 + 1) % 3), b = 4 * ((k / 3 + 2) % 3), r = (k % 3 + 1) % 3, s = (k % 3 + 2) % 3;
        cofactors[k] = sign * (m[a + r] * m[b + s] - m[b + r] * m[a + s]);
        largest = std::max(largest, std::fabs(cofactors[k]));
    }
    for (int k = 0; k < 9; ++k) {
        out[k] = largest > 0 ? static_cast<float>(cofactors[k] / largest) : 0;
    }
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
    captured = true;
    // Window depth grows with eye z when the projection's third row says so: the viewer then looks along +z.
    viewer = projection[10] > 0 ? -1.0f : 1.0f;
    // Eye coordinates are right-handed with the viewer looking along -z; that projection has a negative determinant.
    unitScale = commonScale(modelview);
    mirrored = determinant(modelview) * determinant(projection) > 0;
}

void SceneCamera::see(const Camera& camera, const int pixels[4], const Box& box, const double newOrigin[3])
{
    std::copy(pixels, pixels + 4, viewport);
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
    mirrored = captured = false;
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
    double toWindow[16], fromWindow[16];
    multiply(projection, modelview, toWindow);
    if (!invert(toWindow, fromWindow)) {
        std::copy(origin, origin + 3, model);
        return;
    }
    const double at[4] = {2 * (window[0] - viewport[0]) / viewport[2] - 1,
                          2 * (window[1] - viewport[1]) / viewport[3] - 1, 2 * window[2] - 1, 1};
    double out[4] = {0, 0, 0, 0};
    for (int k = 0; k < 16; ++k) {
        out[k % 4] += fromWindow[k] * at[k / 4];
    }
    for (int axis = 0; axis < 3; ++axis) {
        model[axis] = out[axis] / out[3] + origin[axis];
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
    const bool asCaptured = captured && std::equal(origin, origin + 3, otherOrigin);
    for (int axis = 0; axis < 2 && !perspective && !asCaptured;
         ++axis) { // a parallel projection's axes are independent
        modelviewOut[12 + axis] += projection[12 + axis] / projection[5 * axis];
        projectionOut[12 + axis] = 0;
    }
}

// What was captured is multiplied as the fixed pipeline does it, in single precision: the same pixels are covered.
void SceneCamera::setMatrices(const double otherOrigin[3], SurfaceUniforms& uniforms) const
{
    double toEye[16], toClip[16];
    matricesFrom(otherOrigin, toEye, toClip);
    if (captured) {
        float single[2][16];
        std::transform(toEye, toEye + 16, single[0], [](double v) { return static_cast<float>(v); });
        std::transform(toClip, toClip + 16, single[1], [](double v) { return static_cast<float>(v); });
        multiply(single[1], single[0], uniforms.modelviewProjection);
    } else {
        double product[16];
        multiply(toClip, toEye, product);
        std::transform(product, product + 16, uniforms.modelviewProjection,
                       [](double v) { return static_cast<float>(v); });
    }
    setNormalMatrix(toEye, uniforms.normalMatrix);
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

} // namespace

DrawnNearer::DrawnNearer(const SceneCamera& camera, int steps, SurfaceUniforms& uniforms)
    : perspective(camera.perspective)
{
    if (!perspective) {
        glDepthRange(0, std::pow(1 - nearerStep, steps));
        return;
    }
    // What is left to the far plane grows: depth - step (1 - depth), of clip coordinates.
    float* const m = uniforms.modelviewProjection;
    for (int column = 0; column < 4; ++column) {
        const double depth = m[4 * column + 2], w = m[4 * column + 3];
        m[4 * column + 2] = static_cast<float>(depth - steps * nearerStep * (w - depth));
    }
}

DrawnNearer::~DrawnNearer()
{
    if (!perspective) {
        glDepthRange(0, 1);
    }
}

} // namespace kvo
