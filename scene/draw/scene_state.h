// Colours and selections as shaders read them, kept up to date with what is shown.
#ifndef KVO_SCENE_SCENE_STATE_H
#define KVO_SCENE_SCENE_STATE_H

#include <cstdint>
#include <vector>

#include "gl_objects.h"
#include "scene_geometry.h"
#include "shown_parts.h"
#include <kvo/coloring.h>

namespace kvo {

class SceneState
{
public:
    // Reads flags, colours and marks, and uploads what changed since the last call: about 0.1 ms per million elements
    // when nothing did.
    void update(const ShownModel::Impl& model, const SceneGeometry& geometry, const Coloring& coloring);
    // Everything is uploaded at the next update.
    void forget();

    bool anyElementSelected() const { return elementsSelected; }
    void bind() const;
    // The colour attribute of the faces: their parts' colours, for programs with VertexColors.
    void bindVertexColors() const;
    static void unbindVertexColors();

private:
    void updateParts(const ShownModel::Impl& model, const Coloring& coloring);
    void updateVertexColors(const SceneGeometry& geometry);
    bool updateElements(const MarkBytes& now, std::uint32_t first, std::uint32_t count);

    std::vector<float> partTexels;    // 8 a part, see surface_program.cpp
    std::vector<std::uint8_t> asSeen; // marks as last seen, by element number
    std::vector<std::uint8_t> bits;   // what was uploaded: 1 selected
    bool elementsSelected = false;
    std::vector<float> vertexTexels; // partTexels as the colour attribute has them
    GlBuffer vertexColors;           // 4 x 16 bits a vertex
    GlBufferTexture partTexture;
    GlBufferTexture stateTexture;
};

} // namespace kvo

#endif
