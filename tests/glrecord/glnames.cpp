// The names of enums, and numbers as text.
#include "glnames.h"

#include <cstdio>
#include <map>
#include <vector>

namespace glrecord {
namespace {
#define NAMED(value) {value, #value}

const std::map<GLenum, const char*>& enumTable()
{
    static const std::map<GLenum, const char*> table = {
        NAMED(GL_NEVER),
        NAMED(GL_LESS),
        NAMED(GL_EQUAL),
        NAMED(GL_LEQUAL),
        NAMED(GL_GREATER),
        NAMED(GL_NOTEQUAL),
        NAMED(GL_GEQUAL),
        NAMED(GL_ALWAYS),
        NAMED(GL_SRC_COLOR),
        NAMED(GL_ONE_MINUS_SRC_COLOR),
        NAMED(GL_SRC_ALPHA),
        NAMED(GL_ONE_MINUS_SRC_ALPHA),
        NAMED(GL_DST_ALPHA),
        NAMED(GL_ONE_MINUS_DST_ALPHA),
        NAMED(GL_FRONT),
        NAMED(GL_BACK),
        NAMED(GL_FRONT_AND_BACK),
        NAMED(GL_INVALID_ENUM),
        NAMED(GL_INVALID_VALUE),
        NAMED(GL_INVALID_OPERATION),
        NAMED(GL_STACK_OVERFLOW),
        NAMED(GL_STACK_UNDERFLOW),
        NAMED(GL_CURRENT_COLOR),
        NAMED(GL_CURRENT_NORMAL),
        NAMED(GL_CURRENT_RASTER_POSITION),
        NAMED(GL_POINT_SMOOTH),
        NAMED(GL_POINT_SIZE),
        NAMED(GL_LINE_SMOOTH),
        NAMED(GL_LINE_WIDTH),
        NAMED(GL_LINE_STIPPLE),
        NAMED(GL_POLYGON_MODE),
        NAMED(GL_POLYGON_OFFSET_FILL),
        NAMED(GL_CULL_FACE),
        NAMED(GL_LIGHTING),
        NAMED(GL_SHADE_MODEL),
        NAMED(GL_COLOR_MATERIAL),
        NAMED(GL_DEPTH_RANGE),
        NAMED(GL_DEPTH_TEST),
        NAMED(GL_DEPTH_FUNC),
        NAMED(GL_MATRIX_MODE),
        NAMED(GL_NORMALIZE),
        NAMED(GL_VIEWPORT),
        NAMED(GL_MODELVIEW_STACK_DEPTH),
        NAMED(GL_PROJECTION_STACK_DEPTH),
        NAMED(GL_MODELVIEW_MATRIX),
        NAMED(GL_PROJECTION_MATRIX),
        NAMED(GL_NAME_STACK_DEPTH),
        NAMED(GL_BLEND),
        NAMED(GL_SCISSOR_BOX),
        NAMED(GL_SCISSOR_TEST),
        NAMED(GL_RENDER_MODE),
        NAMED(GL_LIST_BASE),
        NAMED(GL_LIGHT0),
        NAMED(GL_LIGHT1),
        NAMED(GL_LIGHT2),
        NAMED(GL_AMBIENT),
        NAMED(GL_DIFFUSE),
        NAMED(GL_SPECULAR),
        NAMED(GL_POSITION),
        NAMED(GL_SPOT_DIRECTION),
        NAMED(GL_SPOT_EXPONENT),
        NAMED(GL_SPOT_CUTOFF),
        NAMED(GL_CONSTANT_ATTENUATION),
        NAMED(GL_LINEAR_ATTENUATION),
        NAMED(GL_QUADRATIC_ATTENUATION),
        NAMED(GL_BYTE),
        NAMED(GL_UNSIGNED_BYTE),
        NAMED(GL_SHORT),
        NAMED(GL_UNSIGNED_SHORT),
        NAMED(GL_INT),
        NAMED(GL_UNSIGNED_INT),
        NAMED(GL_FLOAT),
        NAMED(GL_DOUBLE),
        NAMED(GL_MODELVIEW),
        NAMED(GL_PROJECTION),
        NAMED(GL_TEXTURE),
        NAMED(GL_POINT),
        NAMED(GL_LINE),
        NAMED(GL_FILL),
        NAMED(GL_RENDER),
        NAMED(GL_FEEDBACK),
        NAMED(GL_SELECT),
        NAMED(GL_FLAT),
        NAMED(GL_SMOOTH),
        NAMED(GL_RESCALE_NORMAL),
        NAMED(GL_VERTEX_ARRAY),
        NAMED(GL_NORMAL_ARRAY),
        NAMED(GL_COLOR_ARRAY),
        NAMED(GL_TEXTURE_2D),
    };
    return table;
}

template <class T> std::string format(const char* pattern, T value)
{
    char text[64];
    std::snprintf(text, sizeof text, pattern, value);
    return text;
}
} // namespace

std::string arg(float value)
{
    return format("%.9g", static_cast<double>(value));
}

std::string arg(double value)
{
    return format("%.17g", value);
}

std::string arg(int value)
{
    return std::to_string(value);
}

std::string arg(unsigned int value)
{
    return std::to_string(value);
}

std::string arg(const void* value)
{
    return value ? "data" : "null";
}

std::string enumName(GLenum value)
{
    const auto found = enumTable().find(value);
    return found == enumTable().end() ? format("0x%04X", value) : found->second;
}

std::string primitiveName(GLenum value)
{
    static const char* const names[] = {"GL_POINTS",     "GL_LINES",          "GL_LINE_LOOP",    "GL_LINE_STRIP",
                                        "GL_TRIANGLES",  "GL_TRIANGLE_STRIP", "GL_TRIANGLE_FAN", "GL_QUADS",
                                        "GL_QUAD_STRIP", "GL_POLYGON"};
    return value < 10 ? names[value] : enumName(value);
}

std::string blendName(GLenum value)
{
    if (value == GL_ZERO) {
        return "GL_ZERO";
    }
    return value == GL_ONE ? "GL_ONE" : enumName(value);
}

std::string clearMaskName(GLbitfield mask)
{
    static const std::vector<std::pair<GLbitfield, const char*>> bits = {
        {GL_COLOR_BUFFER_BIT, "GL_COLOR_BUFFER_BIT"},
        {GL_DEPTH_BUFFER_BIT, "GL_DEPTH_BUFFER_BIT"},
        {GL_STENCIL_BUFFER_BIT, "GL_STENCIL_BUFFER_BIT"}};
    std::string text;
    for (const auto& bit : bits) {
        if (mask & bit.first) {
            text += (text.empty() ? "" : "|") + std::string(bit.second);
        }
        mask &= ~bit.first;
    }
    if (mask || text.empty()) {
        text += (text.empty() ? "" : "|") + format("0x%04X", mask);
    }
    return text;
}
} // namespace glrecord
