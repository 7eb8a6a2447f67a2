// The options of commands that draw: size, shading, device and the like.
#ifndef KVO_DRAWING_OPTIONS_H
#define KVO_DRAWING_OPTIONS_H

#include <string>

#include "look_options.h"
#include "model_session.h"

namespace CLI {
class App;
}

namespace kvo {

struct DrawingOptions
{
    std::string size; // "": what the command takes
    std::string shade = "smooth";
    std::string background = "#22272e";
    std::string device = "auto";
    std::string log;
    std::string confine; // confinement.h
    int samples = 4;
    bool shadeGiven = false;
};

// --size, --device, --log, --confine. sizeText: what the help says about the size without it.
void addContextOptions(CLI::App& command, DrawingOptions& options, const std::string& sizeText);
// --shade, --background, --samples.
void addLookOptions(CLI::App& command, DrawingOptions& options);

// Throws UsageError for a size or colour that is none. width, height: without --size.
SessionOptions sessionOptions(const DrawingOptions& options, const LookSetup& looks, int width, int height);

// The section about --device of a manual.
std::string describeDevices();

} // namespace kvo

#endif
