// An OpenGL context without a display or a window, through EGL.
//
//   kvo::HeadlessContext context("auto");    // current on this thread from here to the end of the scope
//   kvo::Offscreen target(1280, 800);        // something to draw into: offscreen.h
//
// The context is desktop OpenGL in the compatibility profile, since the drawing library needs the fixed-function
// pipeline and selection mode, or in the core profile where that is asked for. It has no surface of its own where the
// driver allows that, else a pbuffer of one pixel: drawing goes to a framebuffer object.
#ifndef KVO_HOST_HEADLESS_CONTEXT_H
#define KVO_HOST_HEADLESS_CONTEXT_H

#include <memory>
#include <string>
#include <vector>

#include "host_error.h"

namespace kvo {

// One rendering device that EGL offers.
struct RenderDevice
{
    int index = 0;         // what --device takes
    bool software = false; // a driver that draws on the processor
    std::string name;      // device file or driver name, for people
};

// The devices, in EGL's order; empty where EGL cannot list them. Needs no context.
std::vector<RenderDevice> listRenderDevices();

// The devices as lines "\n  0  NAME (software)" for the end of messages and manuals.
std::string describeRenderDevices();

enum class ContextProfile
{
    Compatibility, // the newest version that the driver has
    Core           // 3.3 or newer, without the fixed-function pipeline
};

class HeadlessContext
{
public:
    // Makes a context and makes it current on this thread. device:
    //   "auto"      graphics hardware first, then what the driver chooses without a display, then the processor
    //   "software"  the processor
    //   "0", "1"... that entry of listRenderDevices(), nothing else
    // Throws HostError: names every way that was tried with the reason why it failed, or an unknown device.
    explicit HeadlessContext(const std::string& device = "auto",
                             ContextProfile profile = ContextProfile::Compatibility);
    ~HeadlessContext(); // nothing is current on this thread afterwards
    HeadlessContext(const HeadlessContext&) = delete;
    HeadlessContext& operator=(const HeadlessContext&) = delete;

    void makeCurrent(); // again, after another context was current

    // Which way worked and what draws: "device 0: llvmpipe (...), OpenGL 4.5 (Compatibility Profile) ...".
    const std::string& description() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace kvo

#endif
