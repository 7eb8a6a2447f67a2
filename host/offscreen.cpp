// The framebuffer object and reading it back.
#include "offscreen.h"

#include <algorithm>
#include <string>

#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>

namespace kvo {

namespace {

// Framebuffer objects came after the entry points that every libGL exports, so they are looked up.
struct FramebufferCalls
{
    PFNGLGENFRAMEBUFFERSPROC genFramebuffers;
    PFNGLDELETEFRAMEBUFFERSPROC deleteFramebuffers;
    PFNGLBINDFRAMEBUFFERPROC bindFramebuffer;
    PFNGLFRAMEBUFFERRENDERBUFFERPROC framebufferRenderbuffer;
    PFNGLCHECKFRAMEBUFFERSTATUSPROC checkFramebufferStatus;
    PFNGLBLITFRAMEBUFFERPROC blitFramebuffer;
    PFNGLGENRENDERBUFFERSPROC genRenderbuffers;
    PFNGLDELETERENDERBUFFERSPROC deleteRenderbuffers;
    PFNGLBINDRENDERBUFFERPROC bindRenderbuffer;
    PFNGLRENDERBUFFERSTORAGEMULTISAMPLEPROC renderbufferStorageMultisample;
};

template <class Function> void lookUp(Function& target, const char* name)
{
    target = reinterpret_cast<Function>(eglGetProcAddress(name));
    if (!target) {
        throw HostError(std::string("this OpenGL driver has no framebuffer objects (") + name + " is missing)");
    }
}

const FramebufferCalls& calls()
{
    static const FramebufferCalls table = [] {
        FramebufferCalls t{};
        lookUp(t.genFramebuffers, "glGenFramebuffers");
        lookUp(t.deleteFramebuffers, "glDeleteFramebuffers");
        lookUp(t.bindFramebuffer, "glBindFramebuffer");
        lookUp(t.framebufferRenderbuffer, "glFramebufferRenderbuffer");
        lookUp(t.checkFramebufferStatus, "glCheckFramebufferStatus");
        lookUp(t.blitFramebuffer, "glBlitFramebuffer");
        lookUp(t.genRenderbuffers, "glGenRenderbuffers");
        lookUp(t.deleteRenderbuffers, "glDeleteRenderbuffers");
        lookUp(t.bindRenderbuffer, "glBindRenderbuffer");
        lookUp(t.renderbufferStorageMultisample, "glRenderbufferStorageMultisample");
        return t;
    }();
    return table;
}

void storage(unsigned int renderbuffer, int samples, GLenum format, int width, int height)
{
    calls().bindRenderbuffer(GL_RENDERBUFFER, renderbuffer);
    calls().renderbufferStorageMultisample(GL_RENDERBUFFER, samples, format, width, height);
}

int supportedSamples(int wanted)
{
    GLint most = 0;
    glGetIntegerv(GL_MAX_SAMPLES, &most);
    return wanted <= 1 ? 0 : std::min<int>(wanted, most);
}

bool complete()
{
    return calls().checkFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
}

std::string sizeText(int width, int height)
{
    return std::to_string(width) + "x" + std::to_string(height);
}

// How pixels are laid out in memory that is read into: without gaps while this lives, then as before.
class PlainPacking
{
public:
    PlainPacking()
    {
        for (Setting& setting : settings) {
            glGetIntegerv(setting.name, &setting.before);
            glPixelStorei(setting.name, setting.plain);
        }
    }
    ~PlainPacking()
    {
        for (const Setting& setting : settings) {
            glPixelStorei(setting.name, setting.before);
        }
    }
    PlainPacking(const PlainPacking&) = delete;
    PlainPacking& operator=(const PlainPacking&) = delete;

private:
    struct Setting
    {
        GLenum name;
        GLint plain;
        GLint before;
    };
    Setting settings[6] = {{GL_PACK_ALIGNMENT, 4, 0},   {GL_PACK_ROW_LENGTH, 0, 0}, {GL_PACK_SKIP_ROWS, 0, 0},
                           {GL_PACK_SKIP_PIXELS, 0, 0}, {GL_PACK_SWAP_BYTES, 0, 0}, {GL_PACK_LSB_FIRST, 0, 0}};
};

// Rows of OpenGL come bottom first.
Picture readPixels(int width, int height)
{
    Picture out(width, height);
    {
        const PlainPacking packing;
        glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, out.rgba.data());
    }
    out.flipRows();
    for (std::size_t k = 3; k < out.rgba.size(); k += 4) {
        out.rgba[k] = 255;
    }
    return out;
}

} // namespace

int largestOffscreenSize()
{
    GLint viewport[2] = {0, 0};
    GLint renderbuffer = 0;
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, viewport);
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &renderbuffer);
    return std::min({viewport[0], viewport[1], renderbuffer});
}

Offscreen::Offscreen(int width, int height, int samples)
    : w(width), h(height), samplesPerPixel(supportedSamples(samples))
{
    const int largest = largestOffscreenSize();
    if (width < 1 || height < 1 || width > largest || height > largest) {
        throw HostError("a picture of " + sizeText(width, height) + " cannot be drawn; this driver does up to " +
                        sizeText(largest, largest));
    }
    calls().genFramebuffers(samplesPerPixel ? 2 : 1, framebuffers);
    calls().genRenderbuffers(samplesPerPixel ? 3 : 2, renderbuffers);
    storage(renderbuffers[0], samplesPerPixel, GL_RGBA8, w, h);
    storage(renderbuffers[1], samplesPerPixel, GL_DEPTH_COMPONENT24, w, h);
    bool good = true;
    if (samplesPerPixel) {
        storage(renderbuffers[2], 0, GL_RGBA8, w, h);
        calls().bindFramebuffer(GL_FRAMEBUFFER, framebuffers[1]);
        calls().framebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, renderbuffers[2]);
        good = complete();
    }
    calls().bindFramebuffer(GL_FRAMEBUFFER, framebuffers[0]);
    calls().framebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, renderbuffers[0]);
    calls().framebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, renderbuffers[1]);
    if (!good || !complete()) {
        release();
        throw HostError("this OpenGL driver cannot draw a picture of " + sizeText(w, h));
    }
}

Offscreen::~Offscreen()
{
    release();
}

void Offscreen::release()
{
    calls().bindFramebuffer(GL_FRAMEBUFFER, 0);
    calls().deleteFramebuffers(2, framebuffers);
    calls().deleteRenderbuffers(3, renderbuffers);
}

void Offscreen::bind()
{
    calls().bindFramebuffer(GL_FRAMEBUFFER, framebuffers[0]);
}

Picture Offscreen::read()
{
    fences.keep();
    bind();
    if (!samplesPerPixel) {
        return readPixels(w, h);
    }
    calls().bindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffers[1]);
    calls().blitFramebuffer(0, 0, w, h, 0, 0, w, h, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    fences.keep();
    calls().bindFramebuffer(GL_READ_FRAMEBUFFER, framebuffers[1]);
    Picture out = readPixels(w, h);
    bind();
    return out;
}

} // namespace kvo
