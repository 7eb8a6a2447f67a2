// Colours of single elements as shaders read them.
#ifndef KVO_SCENE_ELEMENT_COLORS_H
#define KVO_SCENE_ELEMENT_COLORS_H

#include "gl_objects.h"
#include "scene_geometry.h"
#include "surface_program.h"
#include <kvo/coloring.h>

namespace kvo {

class ElementColorTexture
{
public:
    // 4 bytes an element over all parts, made anew after forget(); nothing for a colouring without values.
    void update(const Coloring& coloring, const SceneGeometry& geometry);
    void forget() { known = false; }

    bool any() const { return used; }
    std::size_t bytes() const { return texture.bytes(); }
    void bind() const { texture.bind(colorsUnit); }

private:
    bool known = false;
    bool used = false;
    GlBufferTexture texture;
};

} // namespace kvo

#endif
