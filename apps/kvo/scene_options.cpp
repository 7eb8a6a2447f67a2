// Scene options on the command line, and setting a scene.
#include "scene_options.h"

#include <algorithm>

#include <CLI/CLI.hpp>

#include <kvo/view_names.h>

#include "caeenv.h"
#include "model_session.h"
#include "program_error.h"
#include "selection.h"
#include "session_model.h"
#include "vocabulary.h"

namespace kvo {

namespace {

std::vector<IdPiece> idsOf(const std::string& text, const std::string& option, IdScope scope = IdScope::Model)
{
    return text.empty() ? std::vector<IdPiece>() : parseIdList(text, option, scope);
}

void addSelection(SceneSetup& scene, Verb verb, int code, const std::vector<IdPiece>& ids)
{
    if (ids.empty()) {
        return;
    }
    Operation operation;
    operation.verb = verb;
    operation.code = code;
    operation.ids = ids;
    scene.selections.push_back(operation);
}

std::set<unsigned int> partIds(CAEEnv& env)
{
    std::set<unsigned int> out;
    for (const auto& entry : env.pidMap) {
        out.insert(entry.first);
    }
    return out;
}

std::set<unsigned int> visibleIds(CAEEnv& env)
{
    std::set<unsigned int> out;
    for (const auto& entry : env.pidMap) {
        if ((env.partsInfoList[entry.second].partFlag & PART_HIDDEN) == 0) {
            out.insert(entry.first);
        }
    }
    return out;
}

void choosePartsToShow(CAEEnv& env, const SceneSetup& scene)
{
    if (scene.parts.empty() && scene.hide.empty()) {
        return;
    }
    const std::set<unsigned int> known = partIds(env);
    std::set<unsigned int> shown = scene.parts.empty() ? visibleIds(env) : resolveIds(scene.parts, known, "part");
    for (unsigned int id : resolveIds(scene.hide, known, "part")) {
        shown.erase(id);
    }
    if (shown.empty()) {
        throw ProgramError("no part is left to draw");
    }
    std::vector<unsigned int> list(shown.begin(), shown.end());
    env.processPartsByID(PART_SHOWN, &list);
}

void selectAsAsked(SessionModel& model, const SceneSetup& scene)
{
    for (const Operation& operation : scene.selections) {
        if (operation.verb == Verb::Highlight) {
            highlightIds(model.env(), operation.ids);
        } else {
            selectIds(model, static_cast<unsigned int>(operation.code), operation.ids);
        }
    }
}

} // namespace

namespace {

// Numbers that are none are in every range, for comparisons.
std::string checkNumber(const std::string& text, double low, double high, const std::string& what)
{
    double value = 0;
    if (!CLI::detail::lexical_cast(text, value) || !(value >= low && value <= high)) {
        return "\"" + text + "\" is no " + what;
    }
    return "";
}

} // namespace

void addViewOptions(CLI::App& command, SceneOptions& options, const std::string& help, bool withAll)
{
    const auto noted = [&options](CLI::Option* option) {
        const std::string name = option->get_name();
        return option->each([&options, name](const std::string&) { options.cameraGiven.push_back(name); });
    };
    command.add_option("--view", options.view, help)
        ->check([withAll](const std::string& text) {
            return (withAll && text == "all") || viewOrientation(text) ? "" : "\"" + text + "\" is no view";
        })
        ->each([&options](const std::string&) { options.viewGiven = true; })
        ->type_name("VIEW")
        ->capture_default_str();
    noted(command.add_option("--up", options.up, "The model's axis that points upwards"))
        ->check(CLI::IsMember({"z", "y"}))
        ->capture_default_str();
    noted(command.add_option("--fit", options.fit, "What fills the picture: visible, all, selection or parts"))
        ->type_name("WHAT")
        ->capture_default_str();
    noted(command.add_option("--perspective", options.perspective, "Opening angle, 1 to 150; 0: parallel"))
        ->check([](const std::string& text) {
            return text == "0" ? "" : checkNumber(text, 1, 150, "opening angle of 0 or 1 to 150 degrees");
        })
        ->type_name("DEGREES")
        ->capture_default_str();
    noted(command.add_option("--zoom", options.zoom, "Enlarges the fitted picture about its middle"))
        ->check([](const std::string& text) { return checkNumber(text, 1e-6, 1e6, "factor from 1e-6 to 1e6"); })
        ->type_name("FACTOR")
        ->capture_default_str();
    noted(command.add_option("--roll", options.roll, "Turns the picture counterclockwise"))
        ->check([](const std::string& text) { return checkNumber(text, -360, 360, "angle from -360 to 360 degrees"); })
        ->type_name("DEGREES")
        ->capture_default_str();
}

void addPartOptions(CLI::App& command, SceneOptions& options)
{
    command.add_option("--parts", options.parts, "Draw only these parts")->type_name("IDS");
    command.add_option("--hide", options.hide, "Do not draw these parts")->type_name("IDS");
}

void addSelectionOptions(CLI::App& command, SceneOptions& options)
{
    command.add_option("--select-parts", options.selectParts, "Draw these parts as selected")->type_name("IDS");
    command.add_option("--select-elements", options.selectElements, "Draw these elements as selected")
        ->type_name("[PART:]IDS");
    command.add_option("--select-nodes", options.selectNodes, "Mark these nodes")->type_name("[PART:]IDS");
    command.add_option("--highlight", options.highlight, "Draw these parts as highlighted")->type_name("IDS");
}

void addStateAndOpsOptions(CLI::App& command, SceneOptions& options)
{
    command.add_option("--state", options.state, "Begin with a saved view state")->type_name("FILE");
    command.add_option("--ops", options.ops, "Play the operations of a session file")->type_name("FILE");
}

std::string describeViews()
{
    return R"(
VIEWS
  front is seen from -y with x to the right and z up, back from +y, right from +x, left from -x, top from +z
  with y up, bottom from -z with y down; iso is isometric from (1, -1, 1). With --up y, y takes the place of
  z and -z that of y: front is seen from +z. +x, -x, +y, -y, +z, -z are the views from there, AZ,EL degrees
  around from front towards right and up: 45,35.26 is iso. Write --view=-x with a sign in front.
  --fit says what fills the picture: visible parts, all parts, what is selected, or parts by their ids.
)";
}

namespace {

void readCamera(const SceneOptions& options, SceneSetup& out)
{
    if (options.looks.contract && !options.cameraGiven.empty()) {
        throw UsageError(options.cameraGiven[0] + " is of the scene's camera, which --contract does without");
    }
    if (options.looks.contract && options.view != "all" && !findView(options.view)) {
        throw UsageError("--view: \"" + options.view + "\" is of the scene's camera, which --contract does without");
    }
    out.wish.view = out.view;
    out.wish.up = options.up == "y" ? UpAxis::Y : UpAxis::Z;
    out.wish.fit = parseFitTo(options.fit, "--fit");
    out.wish.perspective = options.perspective;
    out.wish.zoom = options.zoom;
    out.wish.roll = options.roll;
    out.cameraGiven = options.cameraGiven;
}

bool given(const SceneSetup& scene, const std::string& option)
{
    return std::find(scene.cameraGiven.begin(), scene.cameraGiven.end(), option) != scene.cameraGiven.end();
}

// With a view the whole wish; else the state's camera, and what of the wish is on the command line.
void aimCamera(SessionCamera& camera, const SceneSetup& scene)
{
    if (!scene.view.empty()) {
        return camera.show(scene.wish);
    }
    Camera changed = camera.camera();
    if (given(scene, "--perspective")) {
        changed.setPerspective(scene.wish.perspective);
    }
    camera.take(changed.roll(scene.wish.roll));
    if (given(scene, "--fit")) {
        camera.fit(scene.wish.fit);
    }
    camera.take(camera.camera().zoom(scene.wish.zoom));
}

} // namespace

SceneSetup parseScene(const SceneOptions& options)
{
    SceneSetup out;
    out.parts = idsOf(options.parts, "--parts");
    out.hide = idsOf(options.hide, "--hide");
    addSelection(out, Verb::Select, PICK_TYPE_PART, idsOf(options.selectParts, "--select-parts"));
    addSelection(out, Verb::Select, PICK_TYPE_ELEMENT,
                 idsOf(options.selectElements, "--select-elements", IdScope::Parts));
    addSelection(out, Verb::Select, PICK_TYPE_NODE, idsOf(options.selectNodes, "--select-nodes", IdScope::Parts));
    addSelection(out, Verb::Highlight, 0, idsOf(options.highlight, "--highlight"));
    out.state = options.state;
    out.looks = parseLooks(options.looks);
    if (options.viewGiven || options.state.empty()) {
        out.view = options.view == "all" ? "iso" : options.view;
    }
    readCamera(options, out);
    if (!options.ops.empty()) {
        out.session = readSession(options.ops);
    }
    return out;
}

void openScene(ModelSession& session, const SceneSetup& scene)
{
    CAEEnv& env = session.env();
    if (!scene.state.empty()) {
        restoreState(session, scene.state);
    }
    choosePartsToShow(env, scene);
    selectAsAsked(session.model(), scene);
    applyLooks(env, scene.looks);
    if (scene.shade) {
        session.setShade(scene.shade);
    }
    if (scene.mode) {
        env.setPolygonMode(scene.mode);
    }
    if (scene.boxes) {
        env.setBoxDisplay(PART_SHOWN);
    }
    if (session.camera()) {
        aimCamera(*session.camera(), scene);
    } else if (!scene.view.empty()) {
        session.setView(scene.view);
    }
    session.drawFrame();
}

} // namespace kvo
