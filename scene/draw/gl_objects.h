// OpenGL objects that live as long as their scope. The context that made them must be current when they die.
#ifndef KVO_SCENE_GL_OBJECTS_H
#define KVO_SCENE_GL_OBJECTS_H

#ifndef GL_GLEXT_PROTOTYPES
#define GL_GLEXT_PROTOTYPES
#endif
#include <GL/gl.h>
#include <GL/glext.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace kvo {

// A place in the bound buffer, as OpenGL wants it: a pointer that is none.
inline const void* bufferOffset(std::size_t bytes)
{
    return reinterpret_cast<const void*>(static_cast<std::uintptr_t>(bytes));
}

class GlBuffer
{
public:
    GlBuffer() = default;
    ~GlBuffer();
    GlBuffer(const GlBuffer&) = delete;
    GlBuffer& operator=(const GlBuffer&) = delete;

    // Replaces the contents. Throws std::bad_alloc when the driver has no memory for it.
    void fill(GLenum target, const void* data, std::size_t bytes, GLenum usage = GL_STATIC_DRAW);
    template <class Vector> void fill(GLenum target, const Vector& data, GLenum usage = GL_STATIC_DRAW)
    {
        fill(target, data.data(), data.size() * sizeof(data[0]), usage);
    }
    void change(GLenum target, std::size_t offset, const void* data, std::size_t bytes);
    void bind(GLenum target) const;
    std::size_t bytes() const { return size; }
    GLuint name() const { return id; }

private:
    GLuint id = 0;
    std::size_t size = 0;
};

// A buffer's contents to read, as long as this lives; OpenGL may not use the buffer meanwhile. Bound to `target`, which
// should be one that nothing draws from.
class GlMappedBuffer
{
public:
    GlMappedBuffer(const GlBuffer& buffer, GLenum target);
    ~GlMappedBuffer();
    GlMappedBuffer(const GlMappedBuffer&) = delete;
    GlMappedBuffer& operator=(const GlMappedBuffer&) = delete;

    const void* data() const { return memory; } // null where the driver refuses

private:
    const GLenum target;
    const void* memory;
};

// A buffer that shaders read by texelFetch.
class GlBufferTexture
{
public:
    GlBufferTexture() = default;
    ~GlBufferTexture();
    GlBufferTexture(const GlBufferTexture&) = delete;
    GlBufferTexture& operator=(const GlBufferTexture&) = delete;

    // format: GL_RGBA32F, GL_R8UI...
    void fill(GLenum format, const void* data, std::size_t bytes);
    void change(std::size_t offset, const void* data, std::size_t bytes);
    void bind(unsigned int unit) const; // leaves GL_TEXTURE0 active
    std::size_t bytes() const { return buffer.bytes(); }

private:
    GlBuffer buffer;
    GLuint id = 0;
};

// Where a program's attributes come from. Made when it is first bound.
class GlVertexArray
{
public:
    GlVertexArray() = default;
    ~GlVertexArray();
    GlVertexArray(const GlVertexArray&) = delete;
    GlVertexArray& operator=(const GlVertexArray&) = delete;

    void bind();

private:
    GLuint id = 0;
};

class GlProgram
{
public:
    // Attribute k is bound to index attributes[k].index. Throws std::runtime_error with the compiler's messages.
    struct Attribute
    {
        const char* name;
        GLuint index;
    };
    // geometrySource: empty for programs without one.
    GlProgram(const std::string& vertexSource, const std::string& fragmentSource,
              const std::vector<Attribute>& attributes, const std::string& geometrySource = std::string());
    ~GlProgram();
    GlProgram(const GlProgram&) = delete;
    GlProgram& operator=(const GlProgram&) = delete;

    void use() const { glUseProgram(id); }
    GLint uniform(const char* name); // -1 for one that it does not have; the name must outlive the program

private:
    GLuint id = 0;
    std::vector<std::pair<const char*, GLint>> uniforms; // that were asked for
};

// A framebuffer with textures or renderbuffers of its own, without samples.
class GlFramebuffer
{
public:
    // One colour renderbuffer or texture per format, and a depth buffer. Binds it for drawing and reading.
    GlFramebuffer(int width, int height, const std::vector<GLenum>& colorFormats);
    ~GlFramebuffer();
    GlFramebuffer(const GlFramebuffer&) = delete;
    GlFramebuffer& operator=(const GlFramebuffer&) = delete;

    void bind() const { glBindFramebuffer(GL_FRAMEBUFFER, id); }
    GLuint color(std::size_t k) const { return colors[k]; } // texture
    int width() const { return w; }
    int height() const { return h; }

private:
    int w;
    int h;
    GLuint id = 0;
    GLuint depth = 0;
    std::vector<GLuint> colors;
};

// Binds what was bound before when the scope ends.
class KeepFramebuffer
{
public:
    KeepFramebuffer();
    ~KeepFramebuffer();
    KeepFramebuffer(const KeepFramebuffer&) = delete;
    KeepFramebuffer& operator=(const KeepFramebuffer&) = delete;

private:
    GLint draw = 0;
    GLint read = 0;
    float viewport[4];
};

// Also with fractions of a pixel.
void setViewport(const float viewport[4]);

} // namespace kvo

#endif
