// kvo render: a picture of a model.
#include <algorithm>
#include <map>
#include <memory>

#include <CLI/CLI.hpp>
#include <GL/gl.h>

#include "caeenv.h"
#include "colors.h"
#include "commands.h"
#include "contact_sheet.h"
#include "headless_context.h"
#include "id_list.h"
#include "model_session.h"
#include "model_source.h"
#include "model_summary.h"
#include "mtrans.h"
#include "names.h"
#include "ops_file.h"
#include "program_error.h"

namespace kvo {

namespace {

const std::map<std::string, int> polygonModes = {{"fill", GL_FILL}, {"line", GL_LINE}, {"point", GL_POINT}};
const std::map<std::string, int> shadeModels = {{"flat", GL_FLAT}, {"smooth", GL_SMOOTH}};

struct RenderOptions
{
    std::string model;
    std::string output;
    std::string view = "iso";
    std::string size;
    std::string shade = "smooth";
    std::string mode = "fill";
    std::string parts;
    std::string hide;
    std::string ops;
    std::string background = "#22272e";
    std::string device = "auto";
    std::string log;
    int samples = 4;
    bool boxes = false;
};

std::string manual()
{
    return R"(
PICTURE
  The model is drawn undistorted and fills the picture up to a small margin, whatever its shape. OUT.png
  is written whole or not at all.

PARTS
  Lists are ids and ranges: 1,5-9. An id that the model does not have is an error, a range takes what is
  there. --hide is applied after --parts.

OPERATIONS (--ops FILE)
  A text file of view operations, one a line, # begins a comment; each line is carried out and a frame
  drawn, and the picture is the frame of the last line (end with NO_TRANSFORM for a picture without the
  mark that zooming leaves for one frame). Positions are pixels from the picture's top left corner, y
  downwards. The names and their values:
)" + describeOperations() +
           R"(
DEVICES (--device)
  auto      graphics hardware where EGL offers it, else the processor
  software  the processor: the same picture on every machine
  N         one of the devices that EGL lists here:)" +
           describeRenderDevices() +
           R"(

EXAMPLES
  kvo render bracket -o bracket.png --view front --size 800x600
  kvo render car.inp -o hull.png --hide 7,20-29 --mode line
  kvo render bracket -o sheet.png --view all --size 1600x900 --background white
)";
}

// "1280x800"; empty: the default for the kind of picture.
void parseSize(const RenderOptions& options, int& width, int& height)
{
    const bool sheet = options.view == "all";
    width = sheet ? 1600 : 1280;
    height = 960;
    if (options.size.empty())
        return;
    char rest = 0;
    if (std::sscanf(options.size.c_str(), "%5dx%5d%c", &width, &height, &rest) != 2 || width < 1 || height < 1)
        throw UsageError("--size: \"" + options.size + "\" is no size such as 1280x800");
}

SessionOptions sessionOptions(const RenderOptions& options)
{
    SessionOptions out;
    parseSize(options, out.width, out.height);
    out.samples = options.samples;
    out.shadeModel = shadeModels.at(options.shade);
    out.background = parseColor(options.background, "--background");
    out.device = options.device;
    out.log = options.log;
    return out;
}

void choosePartsToShow(ModelSession& session, const std::vector<IdRange>& parts, const std::vector<IdRange>& hide)
{
    if (parts.empty() && hide.empty())
        return;
    const std::set<unsigned int> known = session.partIds();
    std::set<unsigned int> shown = parts.empty() ? known : resolveIds(parts, known, "part");
    for (unsigned int id : resolveIds(hide, known, "part"))
        shown.erase(id);
    if (shown.empty())
        throw ProgramError("no part is left to draw");
    session.showParts(shown);
}

// One view, with the operations played in it. The first frame is what operations start from.
Picture drawView(ModelSession& session, int viewType, const std::vector<Operation>& operations)
{
    session.setView(viewType);
    session.drawFrame();
    for (const Operation& operation : operations)
        session.play(operation);
    return session.picture();
}

Picture drawSheet(ModelSession& session, const ContactSheet& sheet, const ModelSource& source,
                  std::vector<Operation> operations)
{
    Operation reset; // every view starts afresh
    reset.trans = RESET_TRANSFORM;
    operations.insert(operations.begin(), reset);
    return sheet.compose([&](std::size_t k) { return drawView(session, standardViews()[k].type, operations); },
                         describeModel(source));
}

void checkOperations(const RenderOptions& options, const std::vector<Operation>& operations)
{
    for (const Operation& operation : operations) {
        if (operation.view && options.view == "all")
            throw ProgramError(options.ops, operation.line, "VIEW cannot be used with --view all");
    }
}

void render(const RenderOptions& options)
{
    SessionOptions settings = sessionOptions(options);
    const std::vector<IdRange> parts =
        options.parts.empty() ? std::vector<IdRange>() : parseIdList(options.parts, "--parts");
    const std::vector<IdRange> hide =
        options.hide.empty() ? std::vector<IdRange>() : parseIdList(options.hide, "--hide");
    const std::vector<Operation> operations =
        options.ops.empty() ? std::vector<Operation>() : readOperations(options.ops);
    checkOperations(options, operations);

    std::unique_ptr<ContactSheet> sheet;
    if (options.view == "all") {
        sheet = std::make_unique<ContactSheet>(settings.width, settings.height, settings.background);
        settings.width = sheet->viewWidth();
        settings.height = sheet->viewHeight();
    }
    const ModelSource source(options.model);
    warnOfLeftOut(source);
    ModelSession session(source, settings);
    choosePartsToShow(session, parts, hide);
    session.env().setPolygonMode(polygonModes.at(options.mode));
    if (options.boxes)
        session.env().setBoxDisplay(PART_SHOWN);
    const Picture picture = sheet ? drawSheet(session, *sheet, source, operations)
                                  : drawView(session, findView(options.view)->type, operations);
    writePng(picture, options.output);
}

std::vector<std::string> viewNames()
{
    std::vector<std::string> out;
    for (const NamedView& view : standardViews())
        out.push_back(view.name);
    out.push_back("all");
    return out;
}

template <class Map> std::vector<std::string> keys(const Map& map)
{
    std::vector<std::string> out;
    for (const auto& entry : map)
        out.push_back(entry.first);
    return out;
}

} // namespace

void addRenderCommand(CLI::App& program)
{
    auto options = std::make_shared<RenderOptions>();
    CLI::App* command = program.add_subcommand("render", "Draw a model into a PNG picture, without a display.");
    command->add_option("model", options->model, "Model directory, or deck (imported for the while)")
        ->required()
        ->type_name("MODELDIR|DECK");
    command->add_option("-o,--output", options->output, "Picture to write")->required()->type_name("OUT.png");
    command->add_option("--view", options->view, "Standard view, or all: a contact sheet of the seven")
        ->check(CLI::IsMember(viewNames()))
        ->type_name("VIEW")
        ->capture_default_str();
    command->add_option("--size", options->size, "Pixels of the picture (1280x960; contact sheet 1600x960)")
        ->type_name("WxH");
    command->add_option("--shade", options->shade, "Light per element (flat) or per node (smooth)")
        ->check(CLI::IsMember(keys(shadeModels)))
        ->capture_default_str();
    command->add_option("--mode", options->mode, "Draw faces, their edges or their corners")
        ->check(CLI::IsMember(keys(polygonModes)))
        ->capture_default_str();
    command->add_option("--parts", options->parts, "Draw only these parts")->type_name("IDS");
    command->add_option("--hide", options->hide, "Do not draw these parts")->type_name("IDS");
    command->add_flag("--boxes", options->boxes, "Draw the parts' bounding boxes with numbered corners");
    command->add_option("--ops", options->ops, "Play a file of view operations")->type_name("FILE");
    command->add_option("--background", options->background, "#RRGGBB, black, white or grey")
        ->type_name("COLOR")
        ->capture_default_str();
    command->add_option("--samples", options->samples, "Samples a pixel for smooth edges; 1: none")
        ->check(CLI::Range(1, 64))
        ->capture_default_str();
    command->add_option("--device", options->device, "What draws: auto, software or a number, see below")
        ->capture_default_str();
    command->add_option("--log", options->log, "Keep the library's commentary in this file")->type_name("FILE");
    command->footer(manual);
    command->callback([options] { render(*options); });
}

} // namespace kvo
