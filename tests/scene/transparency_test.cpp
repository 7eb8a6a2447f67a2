// Laying transparent layers over a frame, without the passes that draw them.
#include <gtest/gtest.h>

#include "gl_state.h"
#include "headless_context.h"
#include "offscreen.h"
#include "transparency.h"

namespace {

using kvo::Color;
using kvo::ContextProfile;

class LayersIn : public testing::TestWithParam<ContextProfile>
{
protected:
    static constexpr int width = 32, height = 24;

    // Red layers that let a quarter through, over blue.
    kvo::Picture drawOver(const int viewport[4])
    {
        glViewport(0, 0, width, height);
        glClearColor(0, 0, 1, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        glViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
        layers.draw(
            viewport, [] {},
            [] {
                const float sum[4] = {0.5f, 0, 0, 0.25f}, weights[4] = {0.5f, 0, 0, 0.25f};
                glClearBufferfv(GL_COLOR, 0, sum);
                glClearBufferfv(GL_COLOR, 1, weights);
            });
        return target.read();
    }

    kvo::HeadlessContext context{"software", GetParam()};
    kvo::Offscreen target{width, height};
    kvo::TransparentLayers layers;
};

TEST_P(LayersIn, CoverTheViewportAndNothingElse)
{
    const int viewport[4] = {5, 3, 20, 15};
    const kvo::Picture picture = drawOver(viewport);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int up = height - 1 - y;
            const bool inside = x >= 5 && x < 25 && up >= 3 && up < 18;
            ASSERT_EQ(picture.at(x, y), (inside ? Color{191, 0, 64, 255} : Color{0, 0, 255, 255})) << x << " " << up;
        }
    }
}

TEST_P(LayersIn, LeaveTheHostsVertexArrayBound)
{
    const int viewport[4] = {0, 0, width, height};
    kvo::GlVertexArray host;
    host.bind();
    const kvo::GlState before = kvo::GlState::read();
    drawOver(viewport);
    EXPECT_NE(before.vertexArray, 0);
    EXPECT_EQ(kvo::GlState::read().vertexArray, before.vertexArray);
}

INSTANTIATE_TEST_SUITE_P(Profiles, LayersIn, testing::Values(ContextProfile::Core, ContextProfile::Compatibility),
                         [](const testing::TestParamInfo<ContextProfile>& profile) {
                             return profile.param == ContextProfile::Core ? "Core" : "Compatibility";
                         });

} // namespace
