// OpenGL's state around a frame: what is read is what is put back, and drawing starts from what a new context has.
#include <functional>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "headless_context.h"
#include "host_states.h"

namespace {

using kvo::ContextProfile;
using kvo::GlState;

// Where to draw is the host's matter.
bool staysTheHosts(const std::string& name)
{
    for (const char* kept : {"GL_SCISSOR_BOX", "GL_VIEWPORT", "GL_COLOR_CLEAR_VALUE", "GL_DEPTH_CLEAR_VALUE",
                             "GL_DRAW_FRAMEBUFFER_BINDING", "GL_READ_FRAMEBUFFER_BINDING"}) {
        if (name == kept) {
            return true;
        }
    }
    return false;
}

class GlStateOf : public testing::TestWithParam<ContextProfile>
{
protected:
    kvo::HeadlessContext context{"software", GetParam()};
    const bool fixedFunction = GetParam() == ContextProfile::Compatibility;

    Values values() const { return Asked(fixedFunction).values; }
};

TEST_P(GlStateOf, HostsGetBackEveryValue)
{
    Values first = values();
    const Hostile host(fixedFunction);
    const Values hostile = values();
    for (const auto& [name, value] : hostile) {
        EXPECT_NE(value, first[name]) << name << " must differ for this test to see it";
    }
    const GlState read = GlState::read();
    EXPECT_EQ(values(), hostile) << "reading changes nothing";

    read.defaults().apply();
    if (fixedFunction) {
        first["GL_POINT_SPRITE"] = {1}; // as the core profile always has it
    }
    Values atStart = values();
    for (const auto& [name, value] : hostile) {
        EXPECT_EQ(atStart[name], staysTheHosts(name) ? value : first[name]) << name;
    }
    read.apply();
    Values after = values();
    for (const auto& [name, value] : hostile) {
        EXPECT_EQ(after[name], value) << name;
    }
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_P(GlStateOf, ViewportsKeepTheirFractions)
{
    glViewportIndexedf(0, 1.25f, 2.5f, 30, 40);
    const Values before = values();
    {
        const kvo::KeepGlState host;
        glViewport(0, 0, 5, 5);
        ASSERT_NE(values(), before);
    }
    EXPECT_EQ(values(), before);
}

TEST_P(GlStateOf, SwitchesByName)
{
    glEnable(GL_DEPTH_TEST);
    GlState state = GlState::read();
    EXPECT_TRUE(state.isOn(GL_DEPTH_TEST));
    EXPECT_FALSE(state.isOn(GL_CULL_FACE));
    state.turn(GL_DEPTH_TEST, false);
    state.turn(GL_CULL_FACE, true);
    state.apply();
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_TRUE(glIsEnabled(GL_CULL_FACE));
    EXPECT_THROW(state.isOn(GL_BLEND), std::logic_error);
}

INSTANTIATE_TEST_SUITE_P(Profiles, GlStateOf, testing::Values(ContextProfile::Core, ContextProfile::Compatibility),
                         [](const testing::TestParamInfo<ContextProfile>& profile) {
                             return profile.param == ContextProfile::Core ? "Core" : "Compatibility";
                         });

} // namespace
