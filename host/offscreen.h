// A framebuffer object to draw into: colour RGBA8 and 24 bits of depth, of any size, optionally multisampled.
#ifndef KVO_HOST_OFFSCREEN_H
#define KVO_HOST_OFFSCREEN_H

#include "drawing_fences.h"
#include "host_error.h"
#include "picture.h"

namespace kvo {

// The largest width and height that the current context can draw.
int largestOffscreenSize();

class Offscreen
{
public:
    // Needs a current context; bound for drawing and reading from here on. samples: 0 or 1 draw without multisampling;
    // more than the driver has is cut to what it has. Throws HostError for a size that the driver cannot do.
    Offscreen(int width, int height, int samples = 0);
    ~Offscreen(); // the same context must be current
    Offscreen(const Offscreen&) = delete;
    Offscreen& operator=(const Offscreen&) = delete;

    void bind(); // again, after another framebuffer was bound

    int width() const { return w; }
    int height() const { return h; }
    int samples() const { return samplesPerPixel; }

    // What has been drawn, top row first, samples averaged. Alpha is 255 everywhere: what parts of a scene leave in the
    // framebuffer's alpha is no transparency of the picture. Binds this framebuffer.
    Picture read();

private:
    void release();

    DrawingFences fences;
    int w;
    int h;
    int samplesPerPixel;
    unsigned int framebuffers[2] = {0, 0};     // drawn into; samples averaged into (0 without multisampling)
    unsigned int renderbuffers[3] = {0, 0, 0}; // colour, depth, averaged colour
};

} // namespace kvo

#endif
