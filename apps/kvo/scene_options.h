// The options that say what of a model is to be seen and how: view, parts, selections, view state, operations.
#ifndef KVO_SCENE_OPTIONS_H
#define KVO_SCENE_OPTIONS_H

#include <string>
#include <vector>

#include "look_options.h"
#include "session_file.h"

namespace CLI {
class App;
}

namespace kvo {

class ModelSession;

struct SceneOptions
{
    std::string view = "iso";
    std::string parts;
    std::string hide;
    std::string selectParts;
    std::string selectElements;
    std::string selectNodes;
    std::string highlight;
    std::string state;
    std::string ops;
    bool viewGiven = false;
    LookOptions looks;
};

void addViewOption(CLI::App& command, SceneOptions& options, const std::vector<std::string>& views,
                   const std::string& help);
void addPartOptions(CLI::App& command, SceneOptions& options);
void addSelectionOptions(CLI::App& command, SceneOptions& options);
void addStateAndOpsOptions(CLI::App& command, SceneOptions& options);

std::vector<std::string> standardViewNames();

// The options, read; nothing of the model is needed for it.
struct SceneSetup
{
    std::vector<IdPiece> parts;
    std::vector<IdPiece> hide;
    std::vector<Operation> selections; // Select and Highlight
    std::string state;
    int view = 0;           // _MViewType; 0: the state's
    bool viewGiven = false; // else one in which the model is seen
    int shade = 0;          // OpenGL's shade model and polygon mode; 0: the state's, else as loaded
    int mode = 0;
    bool boxes = false;
    LookSetup looks;
    Session session;
};

// Throws UsageError for lists that are none, ProgramError for a bad file of operations.
SceneSetup parseScene(const SceneOptions& options);

// The state; then what the scene says beside it; then the first frame. Throws ProgramError.
void openScene(ModelSession& session, const SceneSetup& scene);

} // namespace kvo

#endif
