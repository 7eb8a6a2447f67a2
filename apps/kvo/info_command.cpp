// kvo info: what a model consists of.
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>
#include <GL/gl.h>

#include "caeenv.h"
#include "commands.h"
#include "confinement.h"
#include "deck_file.h"
#include "json.h"
#include "model_source.h"
#include "model_summary.h"
#include "output_redirect.h"
#include "program_error.h"
#include "table.h"
#include "text/printable.h"
#include "vocabulary.h"

namespace kvo {

namespace {

const char* const manual = R"(
TABLE
  One line a part: its id, name, kind (shell, solid, beam, discrete), elements, the nodes that they use and
  the extents; then the totals. Nodes that several parts use count once in the total. The last line says what
  kvo import --shift-origin took off the deck's coordinates, if anything.

SETS (--sets)
  What the deck has beyond the parts: its sets of nodes, elements and parts, the sections and element types of
  each part, and what is not drawn, such as masses and rigid elements.

JSON (--json)
  {"model", "files": [{"name", "nodes"}],
   "totals": {"parts", "elements", "nodes", "elements_by_kind": {KIND: count}},
   "extents": {"min": [x, y, z], "max": [x, y, z]},
   "parts": [{"id", "name", "kind", "file", "elements", "nodes", "extents": {...}, "color": [r, g, b, a],
              "property": {"id", "name"}, "material": {"id", "name"}}],
   "deck": {"format", "sources", "origin", "facts", "parts", "sets", "orientations", "undrawn"}}
  deck is the model directory's deck.json, null without one; ids in it are numbers, or [first, last(, step)].
  Its origin was taken off all coordinates, so that extents with it added are the deck's.
  Keys keep their names; a part without property or material has null there. New keys may be added.
)";

struct InfoOptions
{
    std::string model;
    std::string confine;
    bool sets = false;
    bool json = false;
};

// A part as the model file describes it, and as it was loaded.
struct PartLine
{
    const ModelPartInfo& described;
    const PartInfoStr& loaded;
};

Json extentsJson(const float extents[6])
{
    Json low = Json::array(), high = Json::array();
    for (int axis = 0; axis < 3; ++axis) {
        low.push_back(number(extents[2 * axis]));
        high.push_back(number(extents[2 * axis + 1]));
    }
    return {{"min", low}, {"max", high}};
}

Json idAndName(unsigned int id, const std::string& name)
{
    if (id == 0 && name.empty()) {
        return nullptr;
    }
    return {{"id", id}, {"name", name}};
}

Json partJson(const PartLine& line, const ModelInfo& info)
{
    const ModelPart& part = line.described.part;
    Json color = Json::array();
    for (float channel : line.loaded.partColor) {
        color.push_back(number(channel));
    }
    return {{"id", part.id},
            {"name", part.name},
            {"kind", kindName(part.drawType)},
            {"file", info.files.at(static_cast<std::size_t>(line.described.fileIndex))},
            {"elements", line.described.numElements},
            {"nodes", line.loaded.partNodes.numNodes},
            {"extents", extentsJson(line.loaded.partExtents)},
            {"color", color},
            {"property", idAndName(part.propertyId, part.propertyName)},
            {"material", idAndName(part.materialId, part.materialName)}};
}

void printJson(const ModelSource& source, const std::vector<PartLine>& lines)
{
    const ModelInfo& info = source.info();
    const ModelTotals totals = countModel(info);
    Json files = Json::array();
    for (std::size_t k = 0; k < info.files.size(); ++k) {
        files.push_back({{"name", info.files[k]}, {"nodes", info.numNodes.at(k)}});
    }
    Json parts = Json::array();
    for (const PartLine& line : lines) {
        parts.push_back(partJson(line, info));
    }
    const Json all = {{"model", source.title()},
                      {"files", files},
                      {"totals",
                       {{"parts", info.parts.size()},
                        {"elements", totals.elements},
                        {"nodes", totals.nodes},
                        {"elements_by_kind", totals.elementsByKind}}},
                      {"extents", extentsJson(info.extents)},
                      {"parts", parts},
                      {"deck", readDeckFile(source)}};
    std::cout << formatJson(all);
}

std::string range(const float extents[6], int axis)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.5g .. %.5g", extents[2 * axis], extents[2 * axis + 1]);
    return text;
}

void printTable(const ModelSource& source, const std::vector<PartLine>& lines)
{
    std::vector<std::vector<std::string>> rows;
    for (const PartLine& line : lines) {
        const ModelPart& part = line.described.part;
        const float* extents = line.loaded.partExtents;
        rows.push_back({std::to_string(part.id), part.name, kindName(part.drawType),
                        std::to_string(line.described.numElements), std::to_string(line.loaded.partNodes.numNodes),
                        range(extents, 0), range(extents, 1), range(extents, 2)});
    }
    std::cout << formatTable({{"part", true},
                              {"name"},
                              {"kind"},
                              {"elements", true},
                              {"nodes", true},
                              {"x", true},
                              {"y", true},
                              {"z", true}},
                             rows);
    const ModelInfo& info = source.info();
    const ModelTotals totals = countModel(info);
    std::cout << "\n"
              << printable(source.title()) << ": " << counted(info.parts.size(), "part") << ", "
              << counted(totals.elements, "element") << ", " << counted(totals.nodes, "node") << "\n";
    for (const auto& entry : totals.elementsByKind) {
        std::cout << "  " << entry.first << ": " << counted(entry.second, "element") << "\n";
    }
    std::cout << "extents: x " << range(info.extents, 0) << ", y " << range(info.extents, 1) << ", z "
              << range(info.extents, 2) << "\n"
              << formatOrigin(readOrigin(source));
}

std::vector<PartLine> partLines(CAEEnv& env, const ModelSource& source)
{
    std::vector<PartLine> out;
    for (const ModelPartInfo& described : source.info().parts) {
        const auto index = env.getPartsMapPtr()->find(described.part.id);
        if (index == env.getPartsMapPtr()->end()) {
            throw ProgramError(source.shownName(), "part " + std::to_string(described.part.id) + " is not loaded");
        }
        out.push_back({described, env.getPartsList()[index->second]});
    }
    return out;
}

void info(const InfoOptions& options)
{
    const ModelSource source(options.model, Confinement(options.confine));
    warnOfLeftOut(source);
    CAEEnv env(source.dirName().c_str(), source.modelName().c_str(), GL_FLAT);
    {
        const OutputRedirect quiet("");
        loadParts(env, source);
    }
    const std::vector<PartLine> lines = partLines(env, source);
    if (options.json) {
        printJson(source, lines);
    } else {
        printTable(source, lines);
    }
    if (options.sets && !options.json) {
        std::cout << formatDeckFile(readDeckFile(source));
    }
}

} // namespace

void addInfoCommand(CLI::App& program)
{
    auto options = std::make_shared<InfoOptions>();
    CLI::App* command = program.add_subcommand("info", "Say what a model consists of.");
    command->add_option("model", options->model, "Model directory, or deck (imported for the while)")
        ->required()
        ->type_name("MODELDIR|DECK");
    command->add_flag("--sets", options->sets, "Sets, sections and what is not drawn as well");
    command->add_flag("--json", options->json, "For programs, instead of a table");
    addConfineOption(*command, options->confine);
    command->footer(manual);
    command->callback([options] { info(*options); });
}

} // namespace kvo
