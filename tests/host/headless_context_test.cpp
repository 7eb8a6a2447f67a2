// A context without a display, and drawing in it.
#include <GL/gl.h>
#include <GL/glext.h>

#include "host_fixture.h"

using kvo::Color;
using kvo::HeadlessContext;
using kvo::Offscreen;
using kvo::Picture;

namespace {

std::string rendererName()
{
    const GLubyte* text = glGetString(GL_RENDERER);
    return text ? reinterpret_cast<const char*>(text) : "";
}

void clearTo(float r, float g, float b)
{
    glClearColor(r, g, b, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

} // namespace

TEST(HeadlessContext, SoftwareDeviceDrawsOnTheProcessor)
{
    HeadlessContext context("software");
    EXPECT_TRUE(contains(rendererName(), "llvmpipe") || contains(rendererName(), "softpipe")) << rendererName();
    EXPECT_TRUE(contains(context.description(), rendererName())) << context.description();
}

TEST(HeadlessContext, HasTheCompatibilityProfile)
{
    HeadlessContext context("auto");
    GLint profile = 0;
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
    EXPECT_TRUE(profile & GL_CONTEXT_COMPATIBILITY_PROFILE_BIT);
    Offscreen target(8, 8);
    glBegin(GL_POINTS);
    glVertex2f(0, 0);
    glEnd();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST(HeadlessContext, HasTheCoreProfileWhereThatIsWanted)
{
    HeadlessContext context("software", kvo::ContextProfile::Core);
    GLint profile = 0, version[2] = {0, 0};
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
    glGetIntegerv(GL_MAJOR_VERSION, &version[0]);
    glGetIntegerv(GL_MINOR_VERSION, &version[1]);
    EXPECT_EQ(profile, GL_CONTEXT_CORE_PROFILE_BIT);
    EXPECT_GE(10 * version[0] + version[1], 33);
    Offscreen target(8, 8, 4);
    clearTo(0, 0, 1);
    EXPECT_EQ(findColor(target.read(), {0, 0, 255, 255}).count, 64);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << "drawing and reading need nothing else";
    glPushMatrix();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
}

TEST(HeadlessContext, EveryListedDeviceHasItsOwnNumber)
{
    const auto devices = kvo::listRenderDevices();
    ASSERT_FALSE(devices.empty());
    for (std::size_t k = 0; k < devices.size(); ++k) {
        EXPECT_EQ(devices[k].index, static_cast<int>(k));
    }
    for (const auto& device : devices) {
        if (device.software) {
            EXPECT_TRUE(contains(HeadlessContext(std::to_string(device.index)).description(), "device "))
                << device.name;
        }
    }
}

TEST(HeadlessContext, UnknownDeviceIsAnErrorThatListsTheKnownOnes)
{
    for (const char* name : {"99", "-1", "gpu", "", "0x0", "1 "}) {
        const std::string error = hostError([&] { HeadlessContext context(name); });
        EXPECT_TRUE(contains(error, std::string("no device \"") + name + "\"")) << error;
        EXPECT_TRUE(contains(error, kvo::describeRenderDevices())) << error;
    }
}

TEST(HeadlessContext, NothingIsCurrentAfterItsScope)
{
    {
        HeadlessContext context("software");
    }
    EXPECT_EQ(rendererName(), "");
}

TEST(HeadlessContext, OneOfTwoContextsSurvivesTheOther)
{
    HeadlessContext first("software");
    {
        HeadlessContext second("software");
    }
    first.makeCurrent();
    Offscreen target(4, 4);
    clearTo(0, 1, 0);
    EXPECT_EQ(target.read().at(3, 3), (Color{0, 255, 0, 255}));
}

class OffscreenTest : public Drawing
{
};

TEST_F(OffscreenTest, ReadsTheTopRowFirst)
{
    Offscreen target(20, 10);
    clearTo(0, 0, 0);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 7, 5, 3); // OpenGL counts rows from the bottom
    clearTo(1, 0, 0);
    glDisable(GL_SCISSOR_TEST);
    const Blob red = findColor(target.read(), {255, 0, 0, 255});
    EXPECT_EQ(red.count, 15);
    EXPECT_EQ(red.top, 0);
    EXPECT_EQ(red.bottom, 2);
    EXPECT_EQ(red.left, 0);
}

TEST_F(OffscreenTest, PicturesAreOpaqueWhateverAlphaWasDrawn)
{
    Offscreen target(2, 2);
    glClearColor(0.2f, 0.4f, 0.6f, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(target.read().at(1, 1), (Color{51, 102, 153, 255}));
}

TEST_F(OffscreenTest, ReadingIgnoresTheHostsPackingState)
{
    Offscreen target(3, 3);
    clearTo(0, 0, 1);
    glPixelStorei(GL_PACK_ROW_LENGTH, 77);
    glPixelStorei(GL_PACK_SKIP_ROWS, 5);
    glPixelStorei(GL_PACK_SWAP_BYTES, GL_TRUE);
    EXPECT_EQ(findColor(target.read(), {0, 0, 255, 255}).count, 9);
    GLint length = 0;
    glGetIntegerv(GL_PACK_ROW_LENGTH, &length);
    EXPECT_EQ(length, 77);
}

TEST_F(OffscreenTest, DepthTestWorks)
{
    Offscreen target(4, 4);
    glViewport(0, 0, 4, 4);
    clearTo(0, 0, 0);
    glEnable(GL_DEPTH_TEST);
    glColor3f(0, 1, 0);
    glRectf(-1, -1, 1, 1); // at depth 0
    glTranslatef(0, 0, 0.5f);
    glColor3f(1, 0, 0);
    glRectf(-1, -1, 1, 1); // behind it
    EXPECT_EQ(target.read().at(2, 2), (Color{0, 255, 0, 255}));
}

TEST_F(OffscreenTest, MultisamplingSoftensEdges)
{
    int between[2] = {0, 0};
    for (int samples : {0, 4}) {
        Offscreen target(32, 32, samples);
        glViewport(0, 0, 32, 32);
        clearTo(0, 0, 0);
        glColor3f(1, 1, 1);
        glBegin(GL_TRIANGLES);
        glVertex2f(-1, -1);
        glVertex2f(1, -0.6f);
        glVertex2f(-0.4f, 1);
        glEnd();
        const Picture picture = target.read();
        const int plain = findColor(picture, {0, 0, 0, 255}).count + findColor(picture, {255, 255, 255, 255}).count;
        between[samples > 0] = 32 * 32 - plain;
    }
    EXPECT_EQ(between[0], 0);
    EXPECT_GT(between[1], 30);
}

TEST_F(OffscreenTest, SelectionModeFindsWhatIsDrawn)
{
    Offscreen target(16, 16);
    glViewport(0, 0, 16, 16);
    GLuint buffer[64];
    glSelectBuffer(64, buffer);
    glRenderMode(GL_SELECT);
    glInitNames();
    glPushName(7);
    glRectf(-0.5f, -0.5f, 0.5f, 0.5f);
    glLoadName(8);
    glRectf(2, 2, 3, 3); // outside
    ASSERT_EQ(glRenderMode(GL_RENDER), 1);
    EXPECT_EQ(buffer[0], 1u);
    EXPECT_EQ(buffer[3], 7u);
}

TEST_F(OffscreenTest, ImpossibleSizesAreErrorsThatNameTheLimit)
{
    const int limit = kvo::largestOffscreenSize();
    ASSERT_GE(limit, 2048);
    EXPECT_TRUE(contains(hostError([&] { Offscreen target(limit + 1, 10); }), std::to_string(limit)));
    EXPECT_TRUE(contains(hostError([&] { Offscreen target(10, 0); }), "10x0"));
}
