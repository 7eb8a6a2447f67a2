// Toggles of OpenGL render state.
#include "glfuncs.h"

#include <GL/gl.h>

namespace {

void togglePolygonMode()
{
    GLint mode[2] = {GL_FILL, GL_FILL};
    glGetIntegerv(GL_POLYGON_MODE, mode);
    if (mode[0] == GL_LINE) {
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    } else if (mode[0] == GL_FILL) {
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    }
}

// deliberate(toggle-without-normals): OpenGL's state only; the environment reads it back with the next frame.
void toggleShadeModel()
{
    GLint model = GL_SMOOTH;
    glGetIntegerv(GL_SHADE_MODEL, &model);
    if (model == GL_FLAT) {
        glShadeModel(GL_SMOOTH);
    } else if (model == GL_SMOOTH) {
        glShadeModel(GL_FLAT);
    }
}

void toggleDepthTest()
{
    if (glIsEnabled(GL_DEPTH_TEST)) {
        glDisable(GL_DEPTH_TEST);
        return;
    }
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glDepthRange(0.0, 1.0);
}

void toggleBlend()
{
    if (glIsEnabled(GL_BLEND)) {
        glDisable(GL_BLEND);
        return;
    }
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

struct Toggle
{
    int type;
    void (*run)();
};
const Toggle toggles[] = {
    {GL_POLYGON_MODE, togglePolygonMode},
    {GL_SHADE_MODEL, toggleShadeModel},
    {GL_DEPTH_TEST, toggleDepthTest},
    {GL_BLEND, toggleBlend},
};

} // namespace

void GLFuncs::process(int gl_type)
{
    for (const Toggle& toggle : toggles) {
        if (toggle.type == gl_type) {
            toggle.run();
        }
    }
}
