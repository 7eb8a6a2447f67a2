// A host without a window: loads a model, draws it, turns it, picks a part and writes what a viewer would show.
//
//   example_host DIR MODEL OUT.ppm      the model directory is DIR/MODEL
#include <cstdio>
#include <vector>

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>

#include "caeenv.h"
#include "mtrans.h"
#include "mview.h"
#include "pickrect.h"

namespace {

// A desktop OpenGL context that draws into a buffer of that size. Needs no display and no window.
bool makeContext(int width, int height)
{
    EGLDisplay display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (!eglInitialize(display, nullptr, nullptr)) {
        display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
        if (!eglInitialize(display, nullptr, nullptr)) {
            return false;
        }
    }
    // clang-format off
    const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
                             EGL_RED_SIZE, 8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8, EGL_DEPTH_SIZE, 24, EGL_NONE};
    // clang-format on
    EGLConfig config;
    EGLint found = 0;
    if (!eglBindAPI(EGL_OPENGL_API) || !eglChooseConfig(display, wanted, &config, 1, &found) || found == 0) {
        return false;
    }
    const EGLint size[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    const EGLSurface surface = eglCreatePbufferSurface(display, config, size);
    const EGLContext context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    return eglMakeCurrent(display, surface, surface, context) == EGL_TRUE;
}

// The projection is the extents box and is stretched over the viewport: a viewport of the same shape stretches nothing.
void chooseSize(const float* extents, int longest, int* width, int* height)
{
    const float x = extents[1] - extents[0];
    const float y = extents[3] - extents[2];
    *width = x >= y ? longest : static_cast<int>(longest * x / y + 0.5f);
    *height = x >= y ? static_cast<int>(longest * y / x + 0.5f) : longest;
}

bool writePicture(const char* path, int width, int height)
{
    std::vector<unsigned char> pixels(3u * width * height);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
    FILE* file = std::fopen(path, "wb");
    if (!file) {
        return false;
    }
    std::fprintf(file, "P6\n%d %d\n255\n", width, height);
    for (int row = height - 1; row >= 0; --row) { // OpenGL's rows begin at the bottom
        std::fwrite(&pixels[3u * width * row], 3, width, file);
    }
    return std::fclose(file) == 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: example_host DIR MODEL OUT.ppm\n");
        return 2;
    }
    CAEEnv env(argv[1], argv[2], GL_FLAT);
    if (env.getAll(nullptr) != 0 || env.getNumParts() == 0) { // needs no context yet
        std::fprintf(stderr, "example_host: no model at %s/%s\n", argv[1], argv[2]);
        return 1;
    }
    int width = 0;
    int height = 0;
    chooseSize(env.getExtents(), 600, &width, &height);
    if (!makeContext(width, height)) {
        std::fprintf(stderr, "example_host: no OpenGL context to be had from EGL (error 0x%x)\n", eglGetError());
        return 1;
    }
    env.loadAndInitGL(0, true, nullptr); // true: the parts are there already
    env.resizeModel(width, height);
    env.renderModel(); // operations work on the matrices of the last frame

    float drag[4] = {0.5f * width, 0.5f * height, 0.6f * width, 0.56f * height};
    float smaller[1] = {-0.3f};
    env.getMViewPtr()->mViewType = LEFT_VIEW;
    env.getMTransformPtr()->updateValues(GLOBAL_ROTATION, drag);
    env.getMTransformPtr()->updateValues(GLOBAL_SCALE, smaller);
    env.renderModel();

    float spot[4] = {0.66f * width, 0.57f * height, 5.0f, 5.0f}; // y upwards
    PickRect picker;
    picker.process(PICK_TYPE_PART, SELECT_PICK, spot); // the nearest part there turns blue
    env.renderModel();

    if (!writePicture(argv[3], width, height)) {
        std::fprintf(stderr, "example_host: cannot write %s\n", argv[3]);
        return 1;
    }
    return 0;
}
