// Transparent layers whose order does not matter.
//
// Weighted blended transparency (McGuire and Bavoil, Journal of Computer Graphics Techniques 2(2), 2013): a first
// target sums the layers' colours with weights that fall with depth and multiplies in alpha what they let through, a
// second one sums the weights. Sums and products are the same in any order, and both targets blend alike, as OpenGL 3.3
// has it.
#ifndef KVO_SCENE_TRANSPARENCY_H
#define KVO_SCENE_TRANSPARENCY_H

#include <functional>
#include <memory>

#include "gl_objects.h"

namespace kvo {

class TransparentLayers
{
public:
    // drawOpaque draws what covers layers (only its depth counts), drawLayers draws them with programs that have the
    // feature Layers. Both into a target of the viewport's size. Then the layers are laid over the bound framebuffer.
    void draw(const int viewport[4], const std::function<void()>& drawOpaque, const std::function<void()>& drawLayers);

private:
    void layOver();

    std::unique_ptr<GlFramebuffer> target;
    std::unique_ptr<GlProgram> program;
    GlVertexArray noAttributes; // drawing needs one
};

} // namespace kvo

#endif
