// kvo pick: what of a model is at a place of its picture.
#include <iostream>
#include <memory>
#include <sstream>

#include <CLI/CLI.hpp>

#include "caeenv.h"
#include "commands.h"
#include "contract_picker.h"
#include "drawing_options.h"
#include "json.h"
#include "model_session.h"
#include "model_source.h"
#include "program_error.h"
#include "scene_options.h"
#include "table.h"
#include "vocabulary.h"

namespace kvo {

namespace {

struct PickOptions
{
    std::string model;
    std::string at;
    std::string rect;
    std::string type;
    DrawingOptions drawing;
    SceneOptions scene;
    bool json = false;
    bool contract = false;
};

std::string manual()
{
    return R"(
PLACES
  Pixels of the picture that kvo render draws with the same --size, --view and so on, from its top left
  corner, y downwards. --at looks at a square of SIZE pixels (5) about the middle of a pixel and names what
  is in front there; --rect names everything in the rectangle, what is behind something else, too. Both
  must lie in the picture.

RESULT
  One line a hit: the part's id, name and number (its position in the model), the deck's own id of the
  element or node, coordinates, and the depth, from 0 (nearest) to 1. Coordinates are a node's own, the mean
  of an element's corners, the middle of a part's extents. Nothing hit is no error.

JSON (--json)
  {"model", "type", "size": [w, h], "region": {"left", "top", "width", "height"},
   "hits": [{"part": id, "part_name", "part_number", "element" or "node": id, "at": [x, y, z], "depth"}]}
  Keys keep their names; new keys may be added.

WHAT CAN BE HIT
  What is drawn: hidden parts are not found. Beams are found as elements and by their nodes; as parts they
  are not, since they are drawn only where their elements are selected. Nodes are found behind faces, too.
  The axis triad, which the drawing library takes for a hit of the last part, is no hit here.
  --contract picks through the drawing library's selection pass, which is so far the only way; about
  100,000 hits fit into one such pick.
)" + describeDevices() +
           R"(
EXAMPLES
  kvo pick bracket --at 640,480 --type element
  kvo pick bracket --rect 600,400,700,500 --type node --view top --json
)";
}

// "X,Y" and so on: between least and most numbers.
std::vector<float> parseNumbers(const std::string& text, const std::string& option, std::size_t least, std::size_t most,
                                const std::string& usage)
{
    std::vector<float> out;
    std::istringstream in(text);
    char comma = ',';
    for (float value; comma == ',' && in >> value; comma = '\0', in >> comma)
        out.push_back(value);
    if (!in.eof() || comma == ',' || out.size() < least || out.size() > most)
        throw UsageError(option + ": \"" + text + "\" is not " + usage);
    return out;
}

Operation parsePlace(const PickOptions& options)
{
    if (options.at.empty() == options.rect.empty())
        throw UsageError("one of --at and --rect is needed");
    Operation out;
    out.verb = Verb::Pick;
    out.code = findCode(pickTypes(), options.type)->code;
    out.rectangle = options.at.empty();
    out.values[2] = defaultPickSize;
    const std::vector<float> numbers = out.rectangle ? parseNumbers(options.rect, "--rect", 4, 4, "X0,Y0,X1,Y1")
                                                     : parseNumbers(options.at, "--at", 2, 3, "X,Y or X,Y,SIZE");
    std::copy(numbers.begin(), numbers.end(), out.values);
    return out;
}

PictureRegion regionOf(const Operation& pick, const SessionOptions& settings)
{
    const float* v = pick.values;
    return pick.rectangle ? regionBetween(v, settings.width, settings.height)
                          : regionAt(v[0], v[1], v[2], settings.width, settings.height);
}

Json hitJson(const Picked& picked, const PickOptions& options)
{
    Json out = {{"part", picked.part.id}, {"part_name", picked.part.name}, {"part_number", picked.number}};
    if (options.type != "part")
        out[options.type] = picked.id;
    Json at = Json::array();
    for (double value : picked.at)
        at.push_back(number(static_cast<float>(value)));
    out["at"] = at;
    out["depth"] = number(picked.depth);
    return out;
}

std::string asJson(const std::vector<Picked>& hits, const PickOptions& options, const PictureRegion& region,
                   const ModelSource& source, const SessionOptions& settings)
{
    Json list = Json::array();
    for (const Picked& picked : hits)
        list.push_back(hitJson(picked, options));
    return formatJson({{"model", source.title()},
                       {"type", options.type},
                       {"size", {settings.width, settings.height}},
                       {"region",
                        {{"left", number(region.left)},
                         {"top", number(region.top)},
                         {"width", number(region.width)},
                         {"height", number(region.height)}}},
                       {"hits", list}});
}

std::string asTable(const std::vector<Picked>& hits, const PickOptions& options)
{
    if (hits.empty())
        return "nothing is there\n";
    const bool member = options.type != "part";
    std::vector<Column> columns = {{"part", true}, {"name"}, {"number", true}};
    if (member)
        columns.push_back({options.type, true});
    for (const char* title : {"x", "y", "z", "depth"})
        columns.push_back({title, true});
    std::vector<std::vector<std::string>> rows;
    for (const Picked& picked : hits) {
        std::vector<std::string> row = {std::to_string(picked.part.id), picked.part.name,
                                        std::to_string(picked.number)};
        if (member)
            row.push_back(std::to_string(picked.id));
        for (double value : picked.at)
            row.push_back(formatCoordinate(value));
        row.push_back(formatDepth(picked.depth));
        rows.push_back(row);
    }
    return formatTable(columns, rows);
}

// --contract names the one way that there is so far; it is also the default.
std::unique_ptr<Picker> makePicker(const PickOptions&)
{
    return std::make_unique<ContractPicker>();
}

void pick(const PickOptions& options)
{
    const Operation place = parsePlace(options);
    const SceneSetup scene = parseScene(options.scene);
    const SessionOptions settings = sessionOptions(options.drawing, scene.session.width ? scene.session.width : 1280,
                                                   scene.session.height ? scene.session.height : 960);
    const PictureRegion region = regionOf(place, settings); // wrong ones are told before the model is loaded
    const ModelSource source(options.model);
    warnOfLeftOut(source);
    ModelSession session(source, settings);
    openScene(session, scene);
    const std::unique_ptr<Picker> picker = makePicker(options);
    playSession(session, *picker, scene.session);
    const std::vector<Picked> hits = describeHits(
        session.env(), session.labels(), static_cast<unsigned int>(place.code), pickHits(session, *picker, place));
    session.print(options.json ? asJson(hits, options, region, source, settings) : asTable(hits, options));
}

} // namespace

void addPickCommand(CLI::App& program)
{
    auto options = std::make_shared<PickOptions>();
    CLI::App* command = program.add_subcommand("pick", "Say what of a model is at a place of its picture.");
    command->add_option("model", options->model, "Model directory, or deck (imported for the while)")
        ->required()
        ->type_name("MODELDIR|DECK");
    command->add_option("--at", options->at, "What is in front at this pixel")->type_name("X,Y[,SIZE]");
    command->add_option("--rect", options->rect, "Everything between two corners")->type_name("X0,Y0,X1,Y1");
    command->add_option("--type", options->type, "What to look for")
        ->required()
        ->check(CLI::IsMember(namesOf(pickTypes())));
    command->add_flag("--json", options->json, "For programs, instead of a table");
    addViewOption(*command, options->scene, standardViewNames(), "Standard view");
    addPartOptions(*command, options->scene);
    addStateAndOpsOptions(*command, options->scene);
    addContextOptions(*command, options->drawing, "1280x960");
    command->add_flag("--contract", options->contract, "Through the drawing library's selection pass (the default)");
    command->footer(manual);
    command->callback([options] { pick(*options); });
}

} // namespace kvo
