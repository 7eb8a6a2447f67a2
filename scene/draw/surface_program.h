// The shaders that draw faces and lines: colours by part and element, two lights, one cutting plane.
#ifndef KVO_SCENE_SURFACE_PROGRAM_H
#define KVO_SCENE_SURFACE_PROGRAM_H

#include <map>
#include <memory>

#include "gl_objects.h"

namespace kvo {

// Which of the shader's texts are compiled in. Combine.
enum SurfaceFeature : unsigned int
{
    FlatLight = 1,       // light from the face's last vertex; else from all, interpolated
    ElementStates = 2,   // elements may be selected: colours are looked up by element
    ElementColors = 4,   // elements have colours of their own (looked up), unless selected or highlighted
    Cut = 8,             // the cutting plane
    UniformColor = 16,   // one colour for everything, without light: edges
    ElementNumbers = 32, // draws the element's number + 1 into an unsigned target instead of a colour
    Layers = 64,         // accumulates transparent layers in two targets: see transparency.h
    VertexColors = 128,  // colours from the colour attribute, which knows neither states nor elements
    TriangleRims = 1024, // faces as their rims: triangles
    QuadRims = 2048,     // and quadrilaterals, of which every second triangle is the other half: no diagonals
    WideLines = 512,     // lines of more than a pixel, with round ends; draws nothing but lines
    UnitNormals = 256    // normals stay of unit length under the modelview, up to its scale
};

// Indices of the attributes.
constexpr GLuint positionAttribute = 0;
constexpr GLuint normalAttribute = 1;
constexpr GLuint elementAttribute = 2;
constexpr GLuint partAttribute = 3;
constexpr GLuint colorAttribute = 4;

// Texture units.
constexpr unsigned int partsUnit = 1;
constexpr unsigned int statesUnit = 2;
constexpr unsigned int colorsUnit = 3;

struct SurfaceUniforms
{
    float modelviewProjection[16] = {}; // column-major
    float normalMatrix[9] = {};         // for normals without UnitNormals; of any scale
    float selected[4] = {0, 0, 1, 1};   // colour of selected elements
    float ambient = 1;
    // Unit vectors towards the lights and the viewer: in model coordinates with UnitNormals, else in eye coordinates.
    float lights[2][3] = {{0, 0, 1}, {0, 0, 1}};
    float viewer[4] = {0, 0, 1, 0}; // in perspective, with UnitNormals: the eye, and 1
    float diffuse[2] = {0, 0};
    bool bothSides = true;         // normals are turned to the viewer
    float plane[4] = {0, 0, 0, 0}; // cutting plane: kept where dot(plane, vertex) >= 0
    float lineSize[3] = {1, 1, 1}; // of WideLines, in pixels: half a line's width, half the viewport's size
    float color[4] = {0, 0, 0, 1}; // of UniformColor; its alpha is also the opacity of ghosts
};

class SurfacePrograms
{
public:
    // Makes the program for these features current and sets its uniforms. Compiled at first use.
    void use(unsigned int features, const SurfaceUniforms& uniforms);

private:
    std::map<unsigned int, std::unique_ptr<GlProgram>> programs;
};

} // namespace kvo

#endif
