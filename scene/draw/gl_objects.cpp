#include "gl_objects.h"

#include <cmath>
#include <cstring>
#include <new>
#include <stdexcept>

namespace kvo {

namespace {

GLuint compile(GLenum kind, const std::string& source)
{
    const GLuint shader = glCreateShader(kind);
    const char* text = source.c_str();
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    GLint ok = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
    if (!ok) {
        char log[4096] = "";
        glGetShaderInfoLog(shader, sizeof log, nullptr, log);
        glDeleteShader(shader);
        throw std::runtime_error(std::string("shader does not compile: ") + log);
    }
    return shader;
}

} // namespace

// --- Buffers ---

GlBuffer::~GlBuffer()
{
    if (id) {
        glDeleteBuffers(1, &id);
    }
}

void GlBuffer::bind(GLenum target) const
{
    glBindBuffer(target, id);
}

void GlBuffer::fill(GLenum target, const void* data, std::size_t bytes, GLenum usage)
{
    if (!id) {
        glGenBuffers(1, &id);
    }
    glBindBuffer(target, id);
    glBufferData(target, static_cast<GLsizeiptr>(bytes), data, usage);
    GLint made = 0;
    glGetBufferParameteriv(target, GL_BUFFER_SIZE, &made);
    size = bytes;
    if (made == 0 && bytes != 0) { // sizes beyond 2 GiB read as something else, never as 0
        glGetError();
        size = 0;
        throw std::bad_alloc();
    }
}

void GlBuffer::change(GLenum target, std::size_t offset, const void* data, std::size_t bytes)
{
    glBindBuffer(target, id);
    glBufferSubData(target, static_cast<GLintptr>(offset), static_cast<GLsizeiptr>(bytes), data);
}

GlMappedBuffer::GlMappedBuffer(const GlBuffer& buffer, GLenum boundTo) : target(boundTo), memory(nullptr)
{
    buffer.bind(target);
    memory = glMapBufferRange(target, 0, static_cast<GLsizeiptr>(buffer.bytes()), GL_MAP_READ_BIT);
}

GlMappedBuffer::~GlMappedBuffer()
{
    if (memory) {
        glUnmapBuffer(target);
    }
    glBindBuffer(target, 0);
}

GlBufferTexture::~GlBufferTexture()
{
    if (id) {
        glDeleteTextures(1, &id);
    }
}

void GlBufferTexture::fill(GLenum format, const void* data, std::size_t bytes)
{
    buffer.fill(GL_TEXTURE_BUFFER, data, bytes, GL_DYNAMIC_DRAW);
    if (!id) {
        glGenTextures(1, &id);
    }
    glBindTexture(GL_TEXTURE_BUFFER, id);
    glTexBuffer(GL_TEXTURE_BUFFER, format, buffer.name());
    glBindTexture(GL_TEXTURE_BUFFER, 0);
    glBindBuffer(GL_TEXTURE_BUFFER, 0);
}

void GlBufferTexture::change(std::size_t offset, const void* data, std::size_t bytes)
{
    buffer.change(GL_TEXTURE_BUFFER, offset, data, bytes);
    glBindBuffer(GL_TEXTURE_BUFFER, 0);
}

void GlBufferTexture::bind(unsigned int unit) const
{
    glActiveTexture(GL_TEXTURE0 + unit);
    glBindTexture(GL_TEXTURE_BUFFER, id);
    glActiveTexture(GL_TEXTURE0);
}

GlVertexArray::~GlVertexArray()
{
    if (id) {
        glDeleteVertexArrays(1, &id);
    }
}

void GlVertexArray::bind()
{
    if (!id) {
        glGenVertexArrays(1, &id);
    }
    glBindVertexArray(id);
}

// --- Programs ---

namespace {

// Shaders until their program is linked.
class Shaders
{
public:
    explicit Shaders(GLuint linked) : program(linked) {}
    ~Shaders()
    {
        for (const GLuint shader : shaders) {
            glDeleteShader(shader);
        }
    }
    Shaders(const Shaders&) = delete;
    Shaders& operator=(const Shaders&) = delete;

    void add(GLenum kind, const std::string& source)
    {
        shaders.push_back(compile(kind, source));
        glAttachShader(program, shaders.back());
    }

private:
    const GLuint program;
    std::vector<GLuint> shaders;
};

void link(GLuint program)
{
    glLinkProgram(program);
    GLint ok = 0;
    glGetProgramiv(program, GL_LINK_STATUS, &ok);
    if (!ok) {
        char log[4096] = "";
        glGetProgramInfoLog(program, sizeof log, nullptr, log);
        throw std::runtime_error(std::string("shaders do not link: ") + log);
    }
}

} // namespace

GlProgram::GlProgram(const std::string& vertexSource, const std::string& fragmentSource,
                     const std::vector<Attribute>& attributes, const std::string& geometrySource)
    : id(glCreateProgram())
{
    try {
        Shaders shaders(id);
        shaders.add(GL_VERTEX_SHADER, vertexSource);
        if (!geometrySource.empty()) {
            shaders.add(GL_GEOMETRY_SHADER, geometrySource);
        }
        shaders.add(GL_FRAGMENT_SHADER, fragmentSource);
        for (const Attribute& attribute : attributes) {
            glBindAttribLocation(id, attribute.index, attribute.name);
        }
        link(id);
    } catch (...) {
        glDeleteProgram(id);
        throw;
    }
}

GLint GlProgram::uniform(const char* name)
{
    for (const auto& [known, place] : uniforms) {
        if (std::strcmp(known, name) == 0) {
            return place;
        }
    }
    uniforms.emplace_back(name, glGetUniformLocation(id, name));
    return uniforms.back().second;
}

GlProgram::~GlProgram()
{
    glDeleteProgram(id);
}

// --- Framebuffers ---

GlFramebuffer::GlFramebuffer(int width, int height, const std::vector<GLenum>& colorFormats)
    : w(width), h(height), colors(colorFormats.size())
{
    glGenFramebuffers(1, &id);
    glBindFramebuffer(GL_FRAMEBUFFER, id);
    glGenTextures(static_cast<GLsizei>(colors.size()), colors.data());
    std::vector<GLenum> attachments;
    for (std::size_t k = 0; k < colors.size(); ++k) {
        const bool integer = colorFormats[k] == GL_R32UI;
        glBindTexture(GL_TEXTURE_2D, colors[k]);
        glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(colorFormats[k]), w, h, 0, integer ? GL_RED_INTEGER : GL_RGBA,
                     integer ? GL_UNSIGNED_INT : GL_FLOAT, nullptr);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        attachments.push_back(static_cast<GLenum>(GL_COLOR_ATTACHMENT0 + k));
        glFramebufferTexture2D(GL_FRAMEBUFFER, attachments.back(), GL_TEXTURE_2D, colors[k], 0);
    }
    glBindTexture(GL_TEXTURE_2D, 0);
    glGenRenderbuffers(1, &depth);
    glBindRenderbuffer(GL_RENDERBUFFER, depth);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, w, h);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, depth);
    glDrawBuffers(static_cast<GLsizei>(attachments.size()), attachments.data());
}

GlFramebuffer::~GlFramebuffer()
{
    glDeleteFramebuffers(1, &id);
    glDeleteRenderbuffers(1, &depth);
    glDeleteTextures(static_cast<GLsizei>(colors.size()), colors.data());
}

KeepFramebuffer::KeepFramebuffer()
{
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &draw);
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &read);
    glGetFloatv(GL_VIEWPORT, viewport);
}

KeepFramebuffer::~KeepFramebuffer()
{
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(draw));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(read));
    setViewport(viewport);
}

void setViewport(const float viewport[4])
{
    const bool whole = viewport[0] == std::floor(viewport[0]) && viewport[1] == std::floor(viewport[1]);
    if (whole) { // OpenGL 3.3 knows no others
        glViewport(static_cast<GLint>(viewport[0]), static_cast<GLint>(viewport[1]), static_cast<GLsizei>(viewport[2]),
                   static_cast<GLsizei>(viewport[3]));
    } else {
        glViewportIndexedfv(0, viewport);
    }
}

} // namespace kvo
