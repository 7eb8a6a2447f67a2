#include "spring_symbol.h"

#include <cmath>

namespace kvo {

namespace {

// A coil between straight ends, in fractions of the spring's length.
constexpr float coilBegin = 0.2f, coilEnd = 0.8f, coilRadius = 0.04f;
constexpr int coilTurns = 5, stepsPerTurn = 8, coilSteps = coilTurns * stepsPerTurn;

void addPoint(const float* point, std::vector<float>& out)
{
    out.insert(out.end(), point, point + 3);
}

void cross(const float* a, const float* b, float* out)
{
    out[0] = a[1] * b[2] - a[2] * b[1];
    out[1] = a[2] * b[0] - a[0] * b[2];
    out[2] = a[0] * b[1] - a[1] * b[0];
}

// Two directions across d and each other, both as long as d.
void across(const float* d, float* first, float* second)
{
    int least = std::fabs(d[1]) < std::fabs(d[0]) ? 1 : 0;
    least = std::fabs(d[2]) < std::fabs(d[least]) ? 2 : least;
    float axis[3] = {0, 0, 0};
    axis[least] = 1;
    cross(d, axis, first);
    cross(d, first, second);
    const float length = std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
    const float firstLength = std::sqrt(first[0] * first[0] + first[1] * first[1] + first[2] * first[2]);
    for (int k = 0; k < 3; ++k) {
        first[k] *= length / firstLength;
        second[k] /= firstLength;
    }
}

} // namespace

void addLineSymbol(bool spring, const float* a, const float* b, std::vector<float>& out)
{
    const float d[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    const bool flat = d[0] == 0 && d[1] == 0 && d[2] == 0;
    if (!spring || flat) {
        addPoint(a, out);
        addPoint(b, out);
        return;
    }
    float first[3], second[3];
    across(d, first, second);
    float last[3] = {a[0], a[1], a[2]};
    const auto lineTo = [&](float along, float u, float v) {
        addPoint(last, out);
        for (int axis = 0; axis < 3; ++axis) {
            last[axis] = a[axis] + along * d[axis] + u * first[axis] + v * second[axis];
        }
        addPoint(last, out);
    };
    lineTo(coilBegin, 0, 0);
    for (int step = 1; step < coilSteps; ++step) {
        const float angle = 6.2831853f * static_cast<float>(step) / stepsPerTurn;
        const float along = coilBegin + (coilEnd - coilBegin) * static_cast<float>(step) / coilSteps;
        lineTo(along, coilRadius * std::cos(angle), coilRadius * std::sin(angle));
    }
    lineTo(coilEnd, 0, 0);
    lineTo(1, 0, 0);
}

} // namespace kvo
