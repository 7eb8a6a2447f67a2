// Outlines drawn in line mode, with the host's polygon mode put back. Private to render/.
#ifndef POLYGON_MODE_H
#define POLYGON_MODE_H

#include <GL/gl.h>

// deliberate(front-mode-restored): of the two saved modes only the front one comes back, for both faces.
class LineModeScope
{
public:
    LineModeScope()
    {
        glGetIntegerv(GL_POLYGON_MODE, saved);
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    }
    ~LineModeScope() { glPolygonMode(GL_FRONT_AND_BACK, static_cast<GLenum>(saved[0])); }
    LineModeScope(const LineModeScope&) = delete;
    LineModeScope& operator=(const LineModeScope&) = delete;

private:
    GLint saved[2] = {GL_FILL, GL_FILL};
};

#endif
