// The options of the scene's looks, for every command that draws, and --contract, which does without the scene.
#ifndef KVO_LOOK_OPTIONS_H
#define KVO_LOOK_OPTIONS_H

#include <string>
#include <vector>

#include "color_by.h"
#include "look_values.h"
#include <kvo/scene_view.h>

class CAEEnv;

namespace CLI {
class App;
}

namespace kvo {

struct LookOptions
{
    std::string style = "shaded";
    std::string light = "eye";
    float featureAngle = 30;
    bool ghosts = false;
    std::vector<std::string> transparent; // "IDS" or "IDS=ALPHA"
    std::string section;
    std::string sectionMode = "slice";
    std::string colorBy = "part";
    std::string colorRange;
    std::string colorRamp = "viridis";
    unsigned int colorBands = 0;
    bool noLegend = false;
    std::vector<std::string> edges;
    std::vector<std::string> labels;
    bool contract = false;
    std::vector<std::string> given; // names of the looks on the command line
};

void addLooks(CLI::App& command, LookOptions& options);

// The options, read; nothing of the model is needed for it.
struct LookSetup
{
    bool contract = false;
    SceneLook scene;
    ColorBy colorBy;
    std::vector<TransparentParts> transparent;
};

// Throws UsageError for values that are none, and for looks beside --contract.
LookSetup parseLooks(const LookOptions& options);

// Sets what of the looks is in the part records. Throws ProgramError for a part that the model does not have.
void applyLooks(CAEEnv& env, const LookSetup& looks);

// The section about looks of a manual.
std::string describeLooks();

} // namespace kvo

#endif
