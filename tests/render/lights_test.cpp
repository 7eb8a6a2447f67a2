// The two lights: where the extents put them, and the whole set-up around them.
#include "modelbuilder.h"
#include "recordedtest.h"

namespace {
class Lights : public RecordedTest
{
protected:
    void setExtents(const Floats& extents) { std::copy(extents.begin(), extents.end(), env.modelExtents); }

    CAEEnv env{"dir", "model", GL_FLAT};
};

const Floats box = {-1, 3, 0, 2, -5, 4};

// The nine parameters of one light.
Lines lightLines(const std::string& light, const std::string& position)
{
    const std::string fv = "glLightfv(" + light + ",", f = "glLightf(" + light + ",";
    return {fv + "GL_POSITION," + position + ")",
            fv + "GL_AMBIENT,0.100000001,0.100000001,0.100000001,1)",
            fv + "GL_DIFFUSE,0.899999976,0.899999976,0.899999976,0)",
            fv + "GL_SPECULAR,0.899999976,0.899999976,0.899999976,0)",
            fv + "GL_SPOT_DIRECTION,1,1,1)",
            "glLighti(" + light + ",GL_SPOT_EXPONENT,30)",
            f + "GL_CONSTANT_ATTENUATION,1)",
            f + "GL_LINEAR_ATTENUATION,0)",
            f + "GL_QUADRATIC_ATTENUATION,0)"};
}

Lines joined(std::initializer_list<Lines> blocks)
{
    Lines all;
    for (const Lines& block : blocks) {
        all.insert(all.end(), block.begin(), block.end());
    }
    return all;
}
} // namespace

TEST_F(Lights, SwitchingOnMakesEveryCallInOrder)
{
    setExtents(box);
    env.switchOnLights();
    EXPECT_EQ(glrecord::lines(),
              joined({{"glEnable(GL_COLOR_MATERIAL)"},
                      lightLines("GL_LIGHT0", "1,-3,-4,0"), // all nine of one light, then all nine of the other
                      lightLines("GL_LIGHT1", "6,4,8,0"),
                      {"glEnable(GL_LIGHTING)", "glEnable(GL_LIGHT0)", "glEnable(GL_LIGHT1)", "glEnable(GL_NORMALIZE)",
                       "glEnable(GL_RESCALE_NORMAL)", "glEnable(GL_DEPTH_TEST)", "glDepthFunc(GL_LESS)",
                       "glDepthRange(0,1)"}}));
}

TEST_F(Lights, SwitchingOnPrintsExtentsAndPositions)
{
    setExtents(box);
    env.switchOnLights();
    EXPECT_EQ(printed(), "LIGHT xmin=-1 xmax=3\nLIGHT ymin=0 ymax=2\nLIGHT zmin=-5 zmax=4\n"
                         "Lightpos0=1,-3,-4\nLightpos1=6,4,8\n");
}

TEST_F(Lights, TheFirstLightsHeightComesFromTheXExtents)
{
    setExtents({0, 10, 0, 77, 0, 1});
    env.switchOnLights();
    EXPECT_EQ(glrecord::matching("glLightfv(GL_LIGHT0,GL_POSITION").at(0),
              "glLightfv(GL_LIGHT0,GL_POSITION,5,-10,-1,0)");
}

TEST_F(Lights, NegatedZerosPrintTheirSign)
{
    setExtents({-4, 0, -1, 1, -2, 0});
    env.switchOnLights();
    EXPECT_NE(printed().find("Lightpos0=-2,-0,-0\nLightpos1=0,2,0\n"), std::string::npos);
}

TEST_F(Lights, DegenerateExtentsPutTheLightsAtTheOrigin)
{
    setExtents({0, 0, 0, 0, 0, 0});
    env.switchOnLights();
    EXPECT_EQ(glrecord::matching("glLightfv(GL_LIGHT1,GL_POSITION").at(0), "glLightfv(GL_LIGHT1,GL_POSITION,0,0,0,0)");
}

TEST_F(Lights, SwitchingOnAlsoSwitchesTheDepthTestOn)
{
    env.setHideMode(0);
    ASSERT_FALSE(glIsEnabled(GL_DEPTH_TEST));
    env.switchOnLights();
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
}

TEST_F(Lights, TheSpotCutoffIsNeverSet)
{
    env.switchOnLights();
    EXPECT_EQ(glrecord::text().find("GL_SPOT_CUTOFF"), std::string::npos);
}

TEST_F(Lights, MovingThemChangesThePositionsOnly)
{
    setExtents(box);
    env.changeLightPositions();
    EXPECT_EQ(glrecord::lines(),
              (Lines{"glLightfv(GL_LIGHT0,GL_POSITION,1,-3,-4,0)", "glLightfv(GL_LIGHT1,GL_POSITION,6,4,8,0)"}));
    EXPECT_EQ(printed(), "NEW Lightpos0=1,-3,-4\nNEW Lightpos1=6,4,8\n");
}
