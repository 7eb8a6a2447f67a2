// kvo pick: what of a model is at a place of its picture.
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "caeenv.h"
#include "commands.h"
#include "confinement.h"
#include "deck_file.h"
#include "drawing_options.h"
#include "file_checks.h"
#include "json.h"
#include "model_session.h"
#include "model_source.h"
#include "numbers.h"
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
    std::vector<std::string> polygon;
    std::string type;
    DrawingOptions drawing;
    SceneOptions scene;
    bool through = false;
    bool json = false;
};

std::string manual()
{
    return std::string(R"(
PLACES
  Pixels of the picture that kvo render draws with the same --size, --view and so on, from its top left
  corner, y downwards. --at looks at a square of SIZE pixels (5) about the middle of a pixel and names what
  is in front there; --rect names everything in the rectangle, --polygon everything inside three corners or
  more (even-odd where the outline crosses itself). All must lie in the picture.

WHAT IS FOUND
  What the picture shows: nothing that is hidden, cut off, covered or turned away. --through finds what is
  covered, too: all elements that touch the place, all nodes in it, whether a face is before them or not.

RESULT
  One line a hit: the part's id, name and number (its position in the model), the deck's own id of the
  element or node, coordinates, and the depth, from 0 (nearest) to 1. Coordinates are a node's own, the mean
  of an element's corners, the middle of a part's extents. Of a model that kvo import --shift-origin has
  moved a last line says what to add for the deck's coordinates. Nothing hit is no error.

JSON (--json)
  {"model", "type", "size": [w, h], "through", "origin": [x, y, z],
   "region": {"left", "top", "width", "height"[, "polygon"]},
   "hits": [{"part": id, "part_name", "part_number", "element" or "node": id, its "number" in the part,
             "at": [x, y, z], "depth", "pixel": [x, y], "point": [x, y, z]}]}
  pixel and point are where it was hit, in the picture and on the model; --contract has neither. origin was
  taken off the deck's coordinates: at and point with it added are the deck's; zeros mostly. Keys keep
  their names; new keys may be added.

WITH --contract
  Picks go through the drawing library's selection pass: always through what covers, without polygons, and
  of no more than about 100,000 hits. Parts of beams are not found as parts.
)") + describeViews() +
           describeLooks() + describeDevices() +
           R"(
EXAMPLES
  kvo pick bracket --at 700,600 --type element
  kvo pick bracket --rect 600,400,700,500 --type node --view top --through --json
  kvo pick bracket --polygon 700,600 780,620 740,700 --type element
)";
}

void parsePolygon(const std::vector<std::string>& corners, Operation& out)
{
    for (const std::string& corner : corners) {
        const std::vector<float> numbers = parseNumbers(corner, "--polygon", 2, 2, "X,Y");
        out.outline.insert(out.outline.end(), numbers.begin(), numbers.end());
    }
    if (corners.size() < 3) {
        throw UsageError("--polygon: three corners or more are needed");
    }
}

Operation parsePlace(const PickOptions& options)
{
    if (!options.at.empty() + !options.rect.empty() + !options.polygon.empty() != 1) {
        throw UsageError("one of --at, --rect and --polygon is needed");
    }
    Operation out;
    out.verb = Verb::Pick;
    out.code = findCode(pickTypes(), options.type)->code;
    out.through = options.through;
    std::vector<float> numbers;
    if (!options.polygon.empty()) {
        out.shape = PickShape::Polygon;
        parsePolygon(options.polygon, out);
    } else if (!options.rect.empty()) {
        out.shape = PickShape::Rectangle;
        numbers = parseNumbers(options.rect, "--rect", 4, 4, "X0,Y0,X1,Y1");
    } else {
        out.values[2] = defaultPickSize;
        numbers = parseNumbers(options.at, "--at", 2, 3, "X,Y or X,Y,SIZE");
    }
    std::copy(numbers.begin(), numbers.end(), out.values);
    return out;
}

Json regionJson(const PictureRegion& region)
{
    Json out = {{"left", number(region.left)},
                {"top", number(region.top)},
                {"width", number(region.width)},
                {"height", number(region.height)}};
    for (std::size_t k = 0; k + 1 < region.outline.size(); k += 2) {
        out["polygon"].push_back({number(region.outline[k]), number(region.outline[k + 1])});
    }
    return out;
}

template <std::size_t count> Json numbersJson(const double (&values)[count])
{
    Json out = Json::array();
    for (double value : values) {
        out.push_back(number(static_cast<float>(value)));
    }
    return out;
}

Json hitJson(const Picked& picked, const PickOptions& options)
{
    Json out = {{"part", picked.part.id}, {"part_name", picked.part.name}, {"part_number", picked.number}};
    if (options.type != "part") {
        out[options.type] = picked.id;
        out["number"] = picked.hit.member + 1;
    }
    out["at"] = numbersJson(picked.at);
    out["depth"] = number(picked.hit.depth);
    if (picked.hit.located) {
        out["pixel"] = numbersJson(picked.hit.pixel);
        out["point"] = numbersJson(picked.hit.point);
    }
    return out;
}

std::string asJson(const std::vector<Picked>& hits, const PickOptions& options, const PictureRegion& region,
                   const ModelSource& source, const SessionOptions& settings)
{
    Json list = Json::array();
    for (const Picked& picked : hits) {
        list.push_back(hitJson(picked, options));
    }
    return formatJson({{"model", source.title()},
                       {"type", options.type},
                       {"size", {settings.width, settings.height}},
                       {"through", options.through || options.scene.looks.contract},
                       {"origin", readOrigin(source)},
                       {"region", regionJson(region)},
                       {"hits", list}});
}

std::string asTable(const std::vector<Picked>& hits, const PickOptions& options, const ModelSource& source)
{
    if (hits.empty()) {
        return "nothing is there\n";
    }
    const bool member = options.type != "part";
    std::vector<Column> columns = {{"part", true}, {"name"}, {"number", true}};
    if (member) {
        columns.push_back({options.type, true});
    }
    for (const char* title : {"x", "y", "z", "depth"}) {
        columns.push_back({title, true});
    }
    std::vector<std::vector<std::string>> rows;
    for (const Picked& picked : hits) {
        std::vector<std::string> row = {std::to_string(picked.part.id), picked.part.name,
                                        std::to_string(picked.number)};
        if (member) {
            row.push_back(std::to_string(picked.id));
        }
        for (double value : picked.at) {
            row.push_back(formatCoordinate(value));
        }
        row.push_back(formatDepth(picked.hit.depth));
        rows.push_back(row);
    }
    return formatTable(columns, rows) + formatOrigin(readOrigin(source));
}

void pick(const PickOptions& options)
{
    const Operation place = parsePlace(options);
    const Confinement confinement(options.drawing.confine);
    confinement.check({options.model, options.drawing.log, options.scene.state, options.scene.ops});
    const SceneSetup scene = parseScene(options.scene);
    confinement.checkSession(scene.session);
    const SessionOptions settings =
        sessionOptions(options.drawing, scene.looks, scene.session.width ? scene.session.width : 1280,
                       scene.session.height ? scene.session.height : 960);
    const PictureRegion region =
        regionOf(place, settings.width, settings.height); // wrong ones are told before the model is loaded
    if (scene.looks.contract && !options.polygon.empty()) {
        throw UsageError("--polygon goes through the scene, which --contract does without");
    }
    FileRoles roles;
    roles.reads(options.model, "the model");
    addScene(roles, scene);
    addOutput(roles, options.drawing.log, "--log");
    const ModelSource source(options.model, confinement, settings.decks());
    addModel(roles, source);
    warnOfLeftOut(source);
    ModelSession session(source, settings);
    openScene(session, scene);
    playSession(session, session.picker(), scene.session);
    const std::vector<Picked> hits =
        describeHits(session.model(), session.labels(), static_cast<unsigned int>(place.code),
                     pickHits(session, session.picker(), place));
    session.print(options.json ? asJson(hits, options, region, source, settings) : asTable(hits, options, source));
    session.finish();
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
    command->add_option("--polygon", options->polygon, "Everything inside an outline")->type_name("X,Y X,Y X,Y ...");
    command->add_option("--type", options->type, "What to look for")
        ->required()
        ->check(CLI::IsMember(namesOf(pickTypes())));
    command->add_flag("--through", options->through, "What is covered, too");
    command->add_flag("--json", options->json, "For programs, instead of a table");
    addViewOptions(*command, options->scene, "Where it is seen from", false);
    addPartOptions(*command, options->scene);
    addStateAndOpsOptions(*command, options->scene);
    addContextOptions(*command, options->drawing, "1280x960");
    addLooks(*command, options->scene.looks);
    command->footer(manual);
    command->callback([options] { pick(*options); });
}

} // namespace kvo
