// Two directional lights that follow the model's extents.
#include "caeenv.h"

#include <GL/gl.h>

#include "diagnostics.h"

namespace {

// Homogeneous positions (w = 0: directional) from xmin, xmax, ymin, ymax, zmin, zmax.
struct LightPositions
{
    float first[4];
    float second[4];

    // deliberate(light-y-from-xmax): the first light's y is the negated xmax, not ymax; pictures depend on it.
    explicit LightPositions(const float* e)
        : first{(e[0] + e[1]) / 2, -e[1], -e[5], 0}, second{2 * e[1], 2 * e[3], 2 * e[5], 0}
    {
    }
};

void setLight(GLenum light, const float* position)
{
    const float ambient[4] = {0.1f, 0.1f, 0.1f, 1.0f};
    const float bright[4] = {0.9f, 0.9f, 0.9f, 0.0f};
    // deliberate(spot-without-cutoff): no effect while the cut-off stays at 180 degrees, which is never set.
    const float spotDirection[3] = {1.0f, 1.0f, 1.0f};
    glLightfv(light, GL_POSITION, position);
    glLightfv(light, GL_AMBIENT, ambient);
    glLightfv(light, GL_DIFFUSE, bright);
    glLightfv(light, GL_SPECULAR, bright);
    glLightfv(light, GL_SPOT_DIRECTION, spotDirection);
    glLighti(light, GL_SPOT_EXPONENT, 30);
    glLightf(light, GL_CONSTANT_ATTENUATION, 1.0f);
    glLightf(light, GL_LINEAR_ATTENUATION, 0.0f);
    glLightf(light, GL_QUADRATIC_ATTENUATION, 0.0f);
}

} // namespace

void CAEEnv::switchOnLights()
{
    diagnostics::printRanges("LIGHT ", modelExtents);
    const LightPositions positions(modelExtents);
    diagnostics::printList(label::lightPosition0, positions.first, 3);
    diagnostics::printList(label::lightPosition1, positions.second, 3);
    glEnable(GL_COLOR_MATERIAL);
    setLight(GL_LIGHT0, positions.first);
    setLight(GL_LIGHT1, positions.second);
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    glEnable(GL_LIGHT1);
    glEnable(GL_NORMALIZE);
    glEnable(GL_RESCALE_NORMAL);
    // deliberate(lights-switch-depth-on): whatever setHideMode said before.
    setHideMode(1);
}

void CAEEnv::changeLightPositions()
{
    const LightPositions positions(modelExtents);
    diagnostics::printList(label::newLightPosition0, positions.first, 3);
    diagnostics::printList(label::newLightPosition1, positions.second, 3);
    glLightfv(GL_LIGHT0, GL_POSITION, positions.first);
    glLightfv(GL_LIGHT1, GL_POSITION, positions.second);
}
