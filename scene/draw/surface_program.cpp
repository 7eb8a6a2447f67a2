#include "surface_program.h"

#include <iterator>

namespace kvo {

namespace {

const char* const vertexText = R"(
in vec3 position;
in vec3 normal;
in uint element;
in uint part;
in vec4 elementColor;
uniform mat4 modelviewProjection;
uniform mat3 normalMatrix;
uniform samplerBuffer parts;   // per part: colour; (1: selected or highlighted, 1: has selected elements, 0, 0)
uniform usamplerBuffer states; // per element: 1 selected
uniform samplerBuffer colors;  // per element: colour; alpha 0: its part's
uniform vec4 selected;
uniform float ambient;
uniform vec3 lights[2];
uniform vec2 diffuse;
uniform bool bothSides;
uniform vec4 viewer;
uniform vec4 plane;
uniform vec4 uniformColor;
COLOR_KIND out vec4 color;
LIGHT_KIND out float light;
flat out uint number;

vec4 ownColor()
{
#if UNIFORM_COLOR
    return uniformColor;
#elif VERTEX_COLORS
    return elementColor;
#else
    vec4 own = texelFetch(parts, int(part) * 2);
#if ELEMENT_STATES || ELEMENT_COLORS
    vec4 state = texelFetch(parts, int(part) * 2 + 1);
#endif
#if ELEMENT_COLORS
    vec4 chosen = texelFetch(colors, int(element));
    if (state.x == 0.0 && chosen.a != 0.0)
        own = vec4(chosen.rgb, own.a);
#endif
#if ELEMENT_STATES
    if (state.y != 0.0 && texelFetch(states, int(element)).r == 1u)
        own = vec4(selected.rgb, own.a);
#endif
    return own;
#endif
}

float ownLight()
{
#if UNIFORM_COLOR
    return 1.0;
#else
#if UNIT_NORMALS
    vec3 n = normal;
#else
    vec3 n = normalize(normalMatrix * normal);
#endif
    float side = bothSides && dot(n, viewer.xyz - viewer.w * position) < 0.0 ? -1.0 : 1.0;
    return ambient + diffuse.x * max(side * dot(n, lights[0]), 0.0) + diffuse.y * max(side * dot(n, lights[1]), 0.0);
#endif
}

void main()
{
    gl_Position = modelviewProjection * vec4(position, 1.0);
#if CUT
    gl_ClipDistance[0] = dot(plane, vec4(position, 1.0));
#endif
#if ELEMENT_NUMBERS
    number = element + 1u;
    color = vec4(0.0);
    light = 0.0;
#else
    number = 0u;
    color = ownColor();
    light = ownLight();
#if LIT_VERTICES
    color = vec4(min(color.rgb * light, 1.0), color.a);
#endif
#endif
}
)";

// What the vertices of lines give to geometry shaders, and what those give on.
const char* const geometryNames = R"(
COLOR_KIND in vec4 lineColor[];
LIGHT_KIND in float lineLight[];
flat in uint lineNumber[];
COLOR_KIND out vec4 color;
LIGHT_KIND out float light;
flat out uint number;
)";

// A line becomes a strip, from one round end to the other. What is before the near plane is cut off here, where it has
// a place in the window yet.
const char* const wideLineText = R"(
layout(lines) in;
layout(triangle_strip, max_vertices = 14) out;
uniform vec3 lineSize;

void corner(vec4 end, float kept, vec2 pixels)
{
    gl_Position = vec4(end.xy + pixels / lineSize.yz * end.w, end.zw);
#if CUT
    gl_ClipDistance[0] = kept;
#endif
    color = lineColor[1];
    light = lineLight[1];
    number = lineNumber[1];
    EmitVertex();
}

void main()
{
    vec4 ends[2] = vec4[2](gl_in[0].gl_Position, gl_in[1].gl_Position);
    vec2 kept = vec2(0.0);
#if CUT
    kept = vec2(gl_in[0].gl_ClipDistance[0], gl_in[1].gl_ClipDistance[0]);
#endif
    vec2 behind = vec2(ends[0].z + ends[0].w, ends[1].z + ends[1].w);
    if (behind.x < 0.0 && behind.y < 0.0)
        return;
    if (behind.x < 0.0 || behind.y < 0.0) {
        float along = behind.x / (behind.x - behind.y), keptThere = mix(kept.x, kept.y, along);
        vec4 there = mix(ends[0], ends[1], along);
        if (behind.x < 0.0) {
            ends[0] = there;
            kept.x = keptThere;
        } else {
            ends[1] = there;
            kept.y = keptThere;
        }
    }
    vec2 way = (ends[1].xy / ends[1].w - ends[0].xy / ends[0].w) * lineSize.yz;
    float pixels = length(way);
    vec2 along = lineSize.x * (pixels > 0.0 ? way / pixels : vec2(1.0, 0.0));
    vec2 across = vec2(-along.y, along.x);
    const vec2 turns[3] = vec2[3](vec2(0.8660254, 0.5), vec2(0.5, 0.8660254), vec2(0.0, 1.0));
    corner(ends[0], kept.x, -along);
    for (int k = 0; k < 3; ++k) {
        corner(ends[0], kept.x, turns[k].y * across - turns[k].x * along);
        corner(ends[0], kept.x, -turns[k].y * across - turns[k].x * along);
    }
    for (int k = 2; k >= 0; --k) {
        corner(ends[1], kept.y, turns[k].y * across + turns[k].x * along);
        corner(ends[1], kept.y, -turns[k].y * across + turns[k].x * along);
    }
    corner(ends[1], kept.y, along);
    EndPrimitive();
}
)";

// A triangle becomes the sides of its face, in the colour and light of its last vertex where they are the face's.
const char* const rimText = R"(
layout(triangles) in;
layout(line_strip, max_vertices = 4) out;

void corner(int k)
{
    gl_Position = gl_in[k].gl_Position;
#if CUT
    gl_ClipDistance[0] = gl_in[k].gl_ClipDistance[0];
#endif
    color = lineColor[FLAT_COLOR ? 2 : k];
    light = lineLight[FLAT_LIGHT ? 2 : k];
    number = lineNumber[2];
    EmitVertex();
}

void main()
{
#if QUAD_RIMS
    int first = (gl_PrimitiveIDIn & 1) == 0 ? 2 : 0; // 0 1 3 and 1 2 3 of a face: 3 0 1, then 1 2 3
    for (int k = 0; k < 3; ++k)
        corner((first + k) % 3);
#else
    for (int k = 0; k < 4; ++k)
        corner(k % 3);
#endif
    EndPrimitive();
}
)";

// What the vertices of lines give on goes to the geometry's text first.
const char* const namesBeforeGeometry = "#define color lineColor\n#define light lineLight\n#define number lineNumber\n";

const char* const fragmentText = R"(
COLOR_KIND in vec4 color;
LIGHT_KIND in float light;
flat in uint number;
#if ELEMENT_NUMBERS
out uint pixel;
void main()
{
    pixel = number;
}
#else
vec4 lit()
{
#if LIT_VERTICES
    return color;
#else
    return vec4(min(color.rgb * light, 1.0), color.a);
#endif
}
#if LAYERS
layout(location = 0) out vec4 sum;    // alpha: of what is behind, this much is covered
layout(location = 1) out vec4 weights;
void main()
{
    vec4 c = lit();
    float z = 1.0 - gl_FragCoord.z;
    float weight = c.a * clamp(3000.0 * z * z * z, 0.01, 3000.0); // nearer layers count more
    sum = vec4(c.rgb * weight, c.a);
    weights = vec4(weight, 0.0, 0.0, c.a);
}
#else
out vec4 pixel;
void main()
{
    pixel = lit();
}
#endif
#endif
)";

struct FeatureName
{
    unsigned int bit;
    const char* name;
};

const FeatureName featureNames[] = {
    {ElementStates, "ELEMENT_STATES"}, {ElementColors, "ELEMENT_COLORS"},   {Cut, "CUT"},
    {UniformColor, "UNIFORM_COLOR"},   {ElementNumbers, "ELEMENT_NUMBERS"}, {Layers, "LAYERS"},
    {VertexColors, "VERTEX_COLORS"},   {UnitNormals, "UNIT_NORMALS"},       {QuadRims, "QUAD_RIMS"}};

// Colours that are the same all over a part are lit at the vertices and interpolated, as the fixed pipeline does it.
// Colours of single elements are the last vertex's, and meet the light at the pixel.
std::string header(unsigned int features)
{
    const bool byElement = (features & (ElementStates | ElementColors)) != 0;
    const bool flat = (features & FlatLight) != 0;
    std::string out = "#version 330 core\n";
    for (const FeatureName& feature : featureNames) {
        out += std::string("#define ") + feature.name + (features & feature.bit ? " 1\n" : " 0\n");
    }
    out += std::string("#define LIT_VERTICES ") + (byElement && !flat ? "0\n" : "1\n");
    out += std::string("#define COLOR_KIND ") + (byElement || flat ? "flat\n" : "\n");
    out += std::string("#define LIGHT_KIND ") + (flat ? "flat\n" : "\n");
    out += std::string("#define FLAT_COLOR ") + (byElement || flat ? "true\n" : "false\n");
    out += std::string("#define FLAT_LIGHT ") + (flat ? "true\n" : "false\n");
    return out;
}

} // namespace

void SurfacePrograms::use(unsigned int features, const SurfaceUniforms& uniforms)
{
    std::unique_ptr<GlProgram>& program = programs[features];
    if (!program) {
        const std::string head = header(features);
        const char* const geometry = features & WideLines                   ? wideLineText
                                     : features & (TriangleRims | QuadRims) ? rimText
                                                                            : nullptr;
        program =
            std::make_unique<GlProgram>(head + (geometry ? namesBeforeGeometry : "") + vertexText, head + fragmentText,
                                        std::vector<GlProgram::Attribute>{{"position", positionAttribute},
                                                                          {"normal", normalAttribute},
                                                                          {"element", elementAttribute},
                                                                          {"part", partAttribute},
                                                                          {"elementColor", colorAttribute}},
                                        geometry ? head + geometryNames + geometry : std::string());
    }
    program->use();
    glUniformMatrix4fv(program->uniform("modelviewProjection"), 1, GL_FALSE, uniforms.modelviewProjection);
    glUniformMatrix3fv(program->uniform("normalMatrix"), 1, GL_FALSE, uniforms.normalMatrix);
    glUniform1i(program->uniform("parts"), partsUnit);
    glUniform1i(program->uniform("states"), statesUnit);
    glUniform1i(program->uniform("colors"), colorsUnit);
    glUniform4fv(program->uniform("selected"), 1, uniforms.selected);
    glUniform1f(program->uniform("ambient"), uniforms.ambient);
    glUniform3fv(program->uniform("lights"), 2, uniforms.lights[0]);
    glUniform2fv(program->uniform("diffuse"), 1, uniforms.diffuse);
    glUniform1i(program->uniform("bothSides"), uniforms.bothSides);
    glUniform4fv(program->uniform("viewer"), 1, uniforms.viewer);
    glUniform4fv(program->uniform("plane"), 1, uniforms.plane);
    glUniform4fv(program->uniform("uniformColor"), 1, uniforms.color);
    glUniform3fv(program->uniform("lineSize"), 1, uniforms.lineSize);
}

} // namespace kvo
