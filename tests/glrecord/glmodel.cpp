// State changes, matrices, selection mode and queries of the stand-in for OpenGL.
#include "glmodel.h"

#include <algorithm>
#include <cmath>

namespace glrecord {
namespace {
const std::size_t maxNames = 64;

State current;
GLuint* selectWords = nullptr;
GLsizei selectSize = 0;
int nextHits = 0;
std::vector<GLuint> nextWords;

std::size_t maxStackDepth(GLenum mode)
{
    return mode == GL_MODELVIEW ? 32 : 4;
}

std::vector<Matrix>& stack()
{
    return current.stacks[current.matrixMode];
}

// Sine and cosine that are exact at the quarter turns, as OpenGL implementations make them.
void sinCosDegrees(double degrees, double* sine, double* cosine)
{
    if (std::fmod(degrees, 90.0) == 0.0) {
        static const double sines[] = {0, 1, 0, -1};
        const int quarter = ((static_cast<long>(degrees / 90.0) % 4) + 4) % 4;
        *sine = sines[quarter];
        *cosine = sines[(quarter + 1) % 4];
        return;
    }
    const double radians = degrees * 3.14159265358979323846 / 180.0;
    *sine = std::sin(radians);
    *cosine = std::cos(radians);
}
} // namespace

State& state()
{
    return current;
}

const Matrix& modelview()
{
    return current.stacks.at(GL_MODELVIEW).back();
}

const Matrix& projection()
{
    return current.stacks.at(GL_PROJECTION).back();
}

void setSelectResult(int hits, const std::vector<GLuint>& words)
{
    nextHits = hits;
    nextWords = words;
}

namespace model {
void reset()
{
    current = State();
    for (GLenum mode : {GL_MODELVIEW, GL_PROJECTION, GL_TEXTURE}) {
        current.stacks[mode] = {identity()};
    }
    current.enabled.insert(GL_DITHER);
    selectWords = nullptr;
    selectSize = 0;
    setSelectResult(0, {});
}

void raise(GLenum error)
{
    if (current.error == GL_NO_ERROR) {
        current.error = error;
    }
}

bool legal()
{
    if (current.insideBegin) {
        raise(GL_INVALID_OPERATION);
    }
    return !current.insideBegin;
}

void begin(GLenum mode)
{
    if (mode > GL_POLYGON) {
        return raise(GL_INVALID_ENUM);
    }
    if (legal()) {
        current.insideBegin = true;
    }
}

void end()
{
    if (!current.insideBegin) {
        raise(GL_INVALID_OPERATION);
    }
    current.insideBegin = false;
}

void setEnabled(GLenum capability, bool on)
{
    if (!legal()) {
        return;
    }
    if (on) {
        current.enabled.insert(capability);
    } else {
        current.enabled.erase(capability);
    }
}

void viewport(const GLint* box)
{
    if (!legal()) {
        return;
    }
    if (box[2] < 0 || box[3] < 0) {
        return raise(GL_INVALID_VALUE);
    }
    std::copy(box, box + 4, current.viewport);
}

void polygonMode(GLenum face, GLenum mode)
{
    if (!legal()) {
        return;
    }
    if (mode != GL_POINT && mode != GL_LINE && mode != GL_FILL) {
        return raise(GL_INVALID_ENUM);
    }
    if (face != GL_BACK) {
        current.polygonMode[0] = static_cast<GLint>(mode);
    }
    if (face != GL_FRONT) {
        current.polygonMode[1] = static_cast<GLint>(mode);
    }
}

void matrixMode(GLenum mode)
{
    if (!legal()) {
        return;
    }
    if (!current.stacks.count(mode)) {
        return raise(GL_INVALID_ENUM);
    }
    current.matrixMode = mode;
}

void loadMatrix(const Matrix& matrix)
{
    if (legal()) {
        stack().back() = matrix;
    }
}

void multMatrix(const Matrix& matrix)
{
    if (legal()) {
        stack().back() = product(stack().back(), matrix);
    }
}

void pushMatrix()
{
    if (!legal()) {
        return;
    }
    if (stack().size() >= maxStackDepth(current.matrixMode)) {
        return raise(GL_STACK_OVERFLOW);
    }
    stack().push_back(Matrix(stack().back()));
}

void popMatrix()
{
    if (!legal()) {
        return;
    }
    if (stack().size() == 1) {
        return raise(GL_STACK_UNDERFLOW);
    }
    stack().pop_back();
}

Matrix identity()
{
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}

Matrix product(const Matrix& a, const Matrix& b)
{
    Matrix result{};
    for (int column = 0; column < 4; ++column) {
        for (int row = 0; row < 4; ++row) {
            for (int k = 0; k < 4; ++k) {
                result[4 * column + row] += a[4 * k + row] * b[4 * column + k];
            }
        }
    }
    return result;
}

Matrix ortho(double left, double right, double bottom, double top, double near, double far)
{
    Matrix m = identity();
    m[0] = 2 / (right - left);
    m[5] = 2 / (top - bottom);
    m[10] = -2 / (far - near);
    m[12] = -(right + left) / (right - left);
    m[13] = -(top + bottom) / (top - bottom);
    m[14] = -(far + near) / (far - near);
    return m;
}

Matrix translation(double x, double y, double z)
{
    Matrix m = identity();
    m[12] = x;
    m[13] = y;
    m[14] = z;
    return m;
}

Matrix scaling(double x, double y, double z)
{
    Matrix m = identity();
    m[0] = x;
    m[5] = y;
    m[10] = z;
    return m;
}

// Turns counter-clockwise about the axis, seen from its tip. An axis of length 0 turns nothing.
Matrix rotation(double degrees, double x, double y, double z)
{
    const double length = std::sqrt(x * x + y * y + z * z);
    if (length == 0) {
        return identity();
    }
    x /= length;
    y /= length;
    z /= length;
    double s, c;
    sinCosDegrees(degrees, &s, &c);
    const double t = 1 - c;
    return {x * x * t + c,
            y * x * t + z * s,
            z * x * t - y * s,
            0, //
            x * y * t - z * s,
            y * y * t + c,
            z * y * t + x * s,
            0, //
            x * z * t + y * s,
            y * z * t - x * s,
            z * z * t + c,
            0, //
            0,
            0,
            0,
            1};
}

void selectBuffer(GLsizei size, GLuint* buffer)
{
    if (!legal()) {
        return;
    }
    if (size < 0) {
        return raise(GL_INVALID_VALUE);
    }
    if (current.renderMode == GL_SELECT) {
        return raise(GL_INVALID_OPERATION);
    }
    selectWords = buffer;
    selectSize = size;
}

GLint renderMode(GLenum mode)
{
    if (!legal()) {
        return 0;
    }
    if (mode == GL_SELECT && !selectWords) {
        raise(GL_INVALID_OPERATION);
        return 0;
    }
    GLint answer = 0;
    if (current.renderMode == GL_SELECT) {
        answer = nextHits;
        std::copy_n(nextWords.begin(), std::min<std::size_t>(nextWords.size(), selectSize), selectWords);
        setSelectResult(0, {});
        current.names.clear();
    }
    current.renderMode = mode;
    return answer;
}

void initNames()
{
    if (legal() && current.renderMode == GL_SELECT) {
        current.names.clear();
    }
}

void loadName(GLuint name)
{
    if (!legal() || current.renderMode != GL_SELECT) {
        return;
    }
    if (current.names.empty()) {
        return raise(GL_INVALID_OPERATION);
    }
    current.names.back() = name;
}

void pushName(GLuint name)
{
    if (!legal() || current.renderMode != GL_SELECT) {
        return;
    }
    if (current.names.size() >= maxNames) {
        return raise(GL_STACK_OVERFLOW);
    }
    current.names.push_back(name);
}

void popName()
{
    if (!legal() || current.renderMode != GL_SELECT) {
        return;
    }
    if (current.names.empty()) {
        return raise(GL_STACK_UNDERFLOW);
    }
    current.names.pop_back();
}

std::vector<double> query(GLenum name)
{
    if (!legal()) {
        return {};
    }
    const State& s = current;
    const auto all = [](const auto& values) { return std::vector<double>(std::begin(values), std::end(values)); };
    switch (name) {
    case GL_VIEWPORT:
        return all(s.viewport);
    case GL_SCISSOR_BOX:
        return all(s.scissor);
    case GL_POLYGON_MODE:
        return all(s.polygonMode);
    case GL_SHADE_MODEL:
        return {double(s.shadeModel)};
    case GL_MODELVIEW_MATRIX:
        return all(modelview());
    case GL_PROJECTION_MATRIX:
        return all(projection());
    case GL_MATRIX_MODE:
        return {double(s.matrixMode)};
    case GL_RENDER_MODE:
        return {double(s.renderMode)};
    case GL_CURRENT_COLOR:
        return all(s.color);
    case GL_POINT_SIZE:
        return {s.pointSize};
    case GL_LINE_WIDTH:
        return {s.lineWidth};
    case GL_LIST_BASE:
        return {double(s.listBase)};
    case GL_DEPTH_FUNC:
        return {double(s.depthFunc)};
    case GL_DEPTH_RANGE:
        return all(s.depthRange);
    case GL_MODELVIEW_STACK_DEPTH:
        return {double(s.stacks.at(GL_MODELVIEW).size())};
    case GL_PROJECTION_STACK_DEPTH:
        return {double(s.stacks.at(GL_PROJECTION).size())};
    case GL_NAME_STACK_DEPTH:
        return {double(s.names.size())};
    case GL_BLEND:
    case GL_DEPTH_TEST:
    case GL_LIGHTING:
    case GL_SCISSOR_TEST:
        return {double(s.enabled.count(name))};
    default:
        raise(GL_INVALID_ENUM);
        return {};
    }
}

GLenum fetchError()
{
    if (current.insideBegin) {
        raise(GL_INVALID_OPERATION);
        return GL_NO_ERROR;
    }
    const GLenum error = current.error;
    current.error = GL_NO_ERROR;
    return error;
}
} // namespace model
} // namespace glrecord
