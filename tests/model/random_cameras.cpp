#include "random_cameras.h"

#include <cmath>
#include <random>

namespace kvotest {

using namespace kvo;

std::vector<Sight> randomSights(unsigned int seed, std::size_t count)
{
    std::mt19937 numbers(seed);
    const auto between = [&](double low, double high) {
        return low + (high - low) * (double(numbers()) / std::mt19937::max());
    };
    const double sizes[] = {1e-9, 1e-3, 1, 100, 1e6};
    const Viewport viewports[] = {{640, 480}, {480, 640}, {1000, 100}, {33, 33}};
    std::vector<Sight> out;
    for (std::size_t k = 0; k < count; ++k) {
        Sight sight;
        const double size = sizes[k % 5], away = k % 3 == 0 ? 1e9 * size : 0;
        for (int axis = 0; axis < 3; ++axis) {
            sight.box.low[axis] = between(-1, 1) * away - between(0.1, 1) * size;
            sight.box.high[axis] = sight.box.low[axis] + between(0.2, 2) * size;
        }
        sight.viewport = viewports[k % 4];
        sight.camera.setOrientation(
            Rotation::ofQuaternion(between(-1, 1), between(-1, 1), between(-1, 1), between(0.1, 1)));
        sight.camera.setPerspective(k % 2 ? between(5, 100) : 0);
        sight.camera.setScale(size * between(0.5, 4));
        sight.camera.setTarget({sight.box.center(0) + between(-0.5, 0.5) * size,
                                sight.box.center(1) + between(-0.5, 0.5) * size, sight.box.center(2)});
        sight.name = "sight " + std::to_string(k);
        out.push_back(sight);
    }
    return out;
}

Point3 cornerOf(const Box& box, unsigned int k)
{
    return {k & 1 ? box.high[0] : box.low[0], k & 2 ? box.high[1] : box.low[1], k & 4 ? box.high[2] : box.low[2]};
}

std::array<double, 4> throughMatrices(const CameraMatrices& matrices, const Point3& fromOrigin, Viewport viewport)
{
    const auto apply = [](const std::array<double, 16>& m, const std::array<double, 4>& v) {
        std::array<double, 4> out = {};
        for (std::size_t row = 0; row < 4; ++row) {
            for (std::size_t column = 0; column < 4; ++column) {
                out[row] += m[4 * column + row] * v[column];
            }
        }
        return out;
    };
    const std::array<double, 4> eye = apply(matrices.modelview, {fromOrigin[0], fromOrigin[1], fromOrigin[2], 1});
    const std::array<double, 4> clip = apply(matrices.projection, eye);
    return {(clip[0] / clip[3] + 1) / 2 * viewport.width, (clip[1] / clip[3] + 1) / 2 * viewport.height,
            (clip[2] / clip[3] + 1) / 2, clip[3]};
}

} // namespace kvotest
