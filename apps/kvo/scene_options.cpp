// Scene options on the command line, and setting a scene.
#include "scene_options.h"

#include <CLI/CLI.hpp>

#include "caeenv.h"
#include "model_session.h"
#include "mview.h"
#include "program_error.h"
#include "selection.h"
#include "view_state.h"
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

void selectAsAsked(CAEEnv& env, const SceneSetup& scene)
{
    for (const Operation& operation : scene.selections) {
        if (operation.verb == Verb::Highlight) {
            highlightIds(env, operation.ids);
        } else {
            selectIds(env, static_cast<unsigned int>(operation.code), operation.ids);
        }
    }
}

} // namespace

void addViewOption(CLI::App& command, SceneOptions& options, const std::vector<std::string>& views,
                   const std::string& help)
{
    command.add_option("--view", options.view, help)
        ->check(CLI::IsMember(views))
        ->each([&options](const std::string&) { options.viewGiven = true; })
        ->type_name("VIEW")
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

std::vector<std::string> standardViewNames()
{
    std::vector<std::string> out;
    for (const NamedView& view : standardViews()) {
        out.push_back(view.name);
    }
    return out;
}

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
        const NamedView* view = findView(options.view);
        out.view = view ? view->type : ISO_VIEW;
        out.viewGiven = options.viewGiven;
    }
    if (!options.ops.empty()) {
        out.session = readSession(options.ops);
    }
    return out;
}

void openScene(ModelSession& session, const SceneSetup& scene)
{
    CAEEnv& env = session.env();
    if (!scene.state.empty()) {
        restoreViewState(env, session.labels(), scene.state);
    }
    choosePartsToShow(env, scene);
    selectAsAsked(env, scene);
    applyLooks(env, scene.looks);
    if (scene.shade) {
        env.setShadeModel(static_cast<unsigned int>(scene.shade));
    }
    if (scene.mode) {
        env.setPolygonMode(scene.mode);
    }
    if (scene.boxes) {
        env.setBoxDisplay(PART_SHOWN);
    }
    if (scene.view) {
        session.setView(scene.viewGiven ? scene.view : session.defaultView());
    }
    session.drawFrame();
}

} // namespace kvo
