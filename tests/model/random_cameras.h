// Cameras and boxes of all sizes and places, the same ones in every run.
#ifndef KVO_TESTS_RANDOM_CAMERAS_H
#define KVO_TESTS_RANDOM_CAMERAS_H

#include <string>
#include <vector>

#include <kvo/camera.h>

namespace kvotest {

struct Sight
{
    kvo::Camera camera; // looks at the box, more or less
    kvo::Box box;
    kvo::Viewport viewport;
    std::string name;
};

// Parallel and in perspective; models of 1e-9 to 1e6, at the origin and at 1e9 times their size from it.
std::vector<Sight> randomSights(unsigned int seed, std::size_t count);

kvo::Point3 cornerOf(const kvo::Box& box, unsigned int k); // k: 0 to 7

// Window position and depth (0 to 1) as OpenGL makes them from the matrices, in double precision; w in the end.
std::array<double, 4> throughMatrices(const kvo::CameraMatrices& matrices, const kvo::Point3& fromOrigin,
                                      kvo::Viewport viewport);

} // namespace kvotest

#endif
