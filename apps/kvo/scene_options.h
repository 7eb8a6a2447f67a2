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
    std::string up = "z";
    std::string fit = "visible";
    double perspective = 0;
    double zoom = 1;
    double roll = 0;
    std::string parts;
    std::string hide;
    std::string selectParts;
    std::string selectElements;
    std::string selectNodes;
    std::string highlight;
    std::string state;
    std::string ops;
    bool viewGiven = false;
    std::vector<std::string> cameraGiven; // names of the camera's options on the command line, but for --view
    LookOptions looks;
};

// --view and the other options of the camera. help: of --view. withAll: --view all is a contact sheet.
void addViewOptions(CLI::App& command, SceneOptions& options, const std::string& help, bool withAll);
void addPartOptions(CLI::App& command, SceneOptions& options);
void addSelectionOptions(CLI::App& command, SceneOptions& options);
void addStateAndOpsOptions(CLI::App& command, SceneOptions& options);

// The section about views of a manual.
std::string describeViews();

// The options, read; nothing of the model is needed for it.
struct SceneSetup
{
    std::vector<IdPiece> parts;
    std::vector<IdPiece> hide;
    std::vector<Operation> selections; // Select and Highlight
    std::string state;
    std::string view; // "": the state's
    ViewWish wish;    // of the scene's camera
    std::vector<std::string> cameraGiven;
    int shade = 0; // OpenGL's shade model and polygon mode; 0: the state's, else as loaded
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
