// Drawing options on the command line.
#include "drawing_options.h"

#include <CLI/CLI.hpp>

#include "colors.h"
#include "confinement.h"
#include "headless_context.h"
#include "program_error.h"
#include "session_file.h"
#include "vocabulary.h"

namespace kvo {

void addContextOptions(CLI::App& command, DrawingOptions& options, const std::string& sizeText)
{
    command.add_option("--size", options.size, "Pixels of the picture (" + sizeText + ")")->type_name("WxH");
    command.add_option("--device", options.device, "What draws: auto, software or a number, see below")
        ->capture_default_str();
    command.add_option("--log", options.log, "Keep the library's commentary in this file")->type_name("FILE");
    addConfineOption(command, options.confine);
}

void addLookOptions(CLI::App& command, DrawingOptions& options)
{
    command.add_option("--shade", options.shade, "Light per element (flat) or per node (smooth)")
        ->check(CLI::IsMember(namesOf(shadeModels())))
        ->each([&options](const std::string&) { options.shadeGiven = true; })
        ->capture_default_str();
    command.add_option("--background", options.background, "#RRGGBB, black, white or grey")
        ->type_name("COLOR")
        ->capture_default_str();
    command.add_option("--samples", options.samples, "Samples a pixel for smooth edges; 1: none")
        ->check(CLI::IsMember({1, 2, 4, 8, 16}))
        ->capture_default_str();
}

SessionOptions sessionOptions(const DrawingOptions& options, const LookSetup& looks, int width, int height)
{
    SessionOptions out;
    out.width = width;
    out.height = height;
    if (!options.size.empty() && !parsePictureSize(options.size, out.width, out.height)) {
        throw UsageError("--size: \"" + options.size + "\" is no size such as 1280x800");
    }
    out.samples = options.samples;
    out.shadeModel = findCode(shadeModels(), options.shade)->code;
    out.background = parseColor(options.background, "--background");
    out.device = options.device;
    out.log = options.log;
    out.contract = looks.contract;
    out.look = looks.scene;
    out.colorBy = looks.colorBy;
    return out;
}

std::string describeDevices()
{
    return R"(
DEVICES (--device)
  auto      graphics hardware where EGL offers it, else the processor
  software  the processor: the same picture on every machine
  N         one of the devices that EGL lists here:)" +
           describeRenderDevices() + "\n";
}

} // namespace kvo
