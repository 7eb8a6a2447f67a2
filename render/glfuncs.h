// Toggles for items of OpenGL render state that a host can bind to keys or menu entries.
#ifndef GLFUNCS_H
#define GLFUNCS_H

#include "kvoexport.h"

class KVO_EXPORT GLFuncs
{
public:
    // Toggles one item of the current context: GL_POLYGON_MODE (line/fill; point is left alone), GL_SHADE_MODEL,
    // GL_DEPTH_TEST or GL_BLEND; any other value does nothing. The shade toggle changes OpenGL only and computes no
    // normals: call CAEEnv::setShadeModel when the ones that it needs may be missing.
    static void process(int gl_type);
};

#endif
