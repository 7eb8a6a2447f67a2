// The fixture of tests of one MTransform, without an environment around it.
#ifndef TRANSFORMTEST_H
#define TRANSFORMTEST_H

#include <algorithm>
#include <array>
#include <memory>

#include "mtrans.h"
#include "recordedtest.h"

class TransformTest : public RecordedTest
{
protected:
    using Triple = std::array<float, 3>;
    using DoubleTriple = std::array<double, 3>;

    void SetUp() override
    {
        RecordedTest::SetUp();
        trans = std::make_unique<MTransform>(extents);
        loadIdentity(trans->mvMatrixLocal);
        loadIdentity(trans->mvMatrix);
        loadIdentity(trans->projMatrix);
        trans->setViewport(800, 600);
        forget();
    }

    void TearDown() override
    {
        if (trans) {
            trans->updateValues(POLYLINE_PICK, nullptr); // the destructor leaves the points
        }
        trans.reset();
        RecordedTest::TearDown();
    }

    static void loadIdentity(double* matrix)
    {
        for (int k = 0; k < 16; ++k) {
            matrix[k] = k % 5 == 0 ? 1 : 0;
        }
    }

    // From here on the middle of the window unprojects to (x, y, z), and a pixel is worth 1/400 and 1/300 units.
    void putUnderWindowMiddle(double x, double y, double z)
    {
        trans->mvMatrix[12] = -x;
        trans->mvMatrix[13] = -y;
        trans->mvMatrix[14] = -z;
    }

    void operate(int operation, std::array<float, 4> values = {}) { trans->updateValues(operation, values.data()); }

    // One operation and the frame that carries it out.
    void step(int operation)
    {
        operate(operation);
        trans->update();
    }

    void addPoints(int count)
    {
        for (int k = 0; k < count; ++k) {
            operate(START_POLYLINE, {400.0f + 40 * k, 300});
        }
    }

    void setScale(float x, float y, float z)
    {
        const float scale[3] = {x, y, z};
        std::copy(scale, scale + 3, trans->localScale);
    }

    static Triple triple(const float* values) { return {values[0], values[1], values[2]}; }
    static DoubleTriple triple(const double* values) { return {values[0], values[1], values[2]}; }

    // Spans (abs(min) + abs(max)) 4, 7 and 9; middles 1, 1.5 and 2.5.
    float extents[6] = {-1, 3, -2, 5, -2, 7};
    std::unique_ptr<MTransform> trans;
};

#endif
