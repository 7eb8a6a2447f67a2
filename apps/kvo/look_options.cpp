// Looks on the command line.
#include "look_options.h"

#include <algorithm>
#include <cmath>
#include <set>

#include <CLI/CLI.hpp>

#include "caeenv.h"
#include "program_error.h"
#include "vocabulary.h"

namespace kvo {

namespace {

template <class Code> struct NamedLook
{
    const char* name;
    Code code;
};

const NamedLook<SceneStyle> styles[] = {{"shaded", SceneStyle::Shaded},
                                        {"edges", SceneStyle::ShadedEdges},
                                        {"hidden-line", SceneStyle::HiddenLine},
                                        {"wire", SceneStyle::Wire}};

struct CutLook
{
    const char* name;
    SceneCut cut;
    bool caps;
};

const CutLook cuts[] = {
    {"slice", SceneCut::Slice, true}, {"open", SceneCut::Slice, false}, {"elements", SceneCut::Elements, false}};

const NamedLook<bool SceneLines::*> edgeKinds[] = {
    {"feature", &SceneLines::feature}, {"free", &SceneLines::free}, {"multi", &SceneLines::branching}};
const NamedLook<bool SceneLabels::*> labelKinds[] = {
    {"parts", &SceneLabels::parts}, {"elements", &SceneLabels::elements}, {"nodes", &SceneLabels::nodes}};

const NamedLook<SceneLight> lights[] = {
    {"eye", SceneLight::Eye}, {"model", SceneLight::Model}, {"contract", SceneLight::Contract}};

template <class Row, std::size_t count> std::vector<std::string> namesIn(const Row (&rows)[count])
{
    std::vector<std::string> out;
    for (const Row& row : rows) {
        out.push_back(row.name);
    }
    return out;
}

// The command line has checked that the name is there.
template <class Code, std::size_t count> Code codeIn(const NamedLook<Code> (&rows)[count], const std::string& name)
{
    for (const auto& row : rows) {
        if (name == row.name) {
            return row.code;
        }
    }
    return rows[0].code;
}

void readSection(const LookOptions& options, SceneSection& out)
{
    if (options.section.empty()) {
        return;
    }
    parseSection(options.section, out);
    for (const CutLook& row : cuts) {
        if (options.sectionMode == row.name) {
            out.cut = row.cut;
            out.caps = row.caps;
        }
    }
}

ColorBy readColors(const LookOptions& options)
{
    ColorBy out = parseColorBy(options.colorBy);
    if (!options.colorRange.empty()) {
        parseColorRange(options.colorRange, out);
    }
    out.ramp = rampNamed(options.colorRamp);
    out.bands = options.colorBands;
    return out;
}

// Looks that say nothing by themselves.
void checkTogether(const LookOptions& options)
{
    if (options.contract && !options.given.empty()) {
        throw UsageError(options.given[0] + " is a look of the scene, which --contract does without");
    }
    const bool quality = parseColorBy(options.colorBy).key == ColorKey::Quality;
    const struct
    {
        const char* option;
        bool hasIt;
        const char* needed;
    } needs[] = {{"--section-mode", !options.section.empty(), "--section"},
                 {"--color-range", quality, "--color-by quality:NAME"},
                 {"--color-ramp", quality, "--color-by quality:NAME"},
                 {"--color-bands", quality, "--color-by quality:NAME"}};
    for (const auto& need : needs) {
        const bool given = std::count(options.given.begin(), options.given.end(), need.option) > 0;
        if (given && !need.hasIt) {
            throw UsageError(std::string(need.option) + " needs " + need.needed);
        }
    }
    if (options.colorBands == 1) {
        throw UsageError("--color-bands: 1 step shows no difference; 0 is a continuous ramp");
    }
}

// Adds options whose use is noted, so that --contract can tell which look it does without.
class NotedOptions
{
public:
    NotedOptions(CLI::App& g, LookOptions& o) : group(g), options(o) {}

    template <class Value> CLI::Option* add(const std::string& name, Value& value, const std::string& help)
    {
        return note(name, group.add_option(name, value, help));
    }
    CLI::Option* flag(const std::string& name, bool& value, const std::string& help)
    {
        return note(name, group.add_flag(name, value, help));
    }

private:
    CLI::Option* note(const std::string& name, CLI::Option* option)
    {
        LookOptions& kept = options;
        return option->each([&kept, name](const std::string&) { kept.given.push_back(name); });
    }

    CLI::App& group;
    LookOptions& options;
};

void addSurfaceLooks(NotedOptions& group, LookOptions& options)
{
    group.add("--style", options.style, "Faces, faces and edges, edges that are not covered, all edges")
        ->check(CLI::IsMember(namesIn(styles)))
        ->capture_default_str();
    group.add("--light", options.light, "From beside the eye, turning with the model, or the library's")
        ->check(CLI::IsMember(namesIn(lights)))
        ->capture_default_str();
    group.add("--feature-angle", options.featureAngle, "Faces that meet at more degrees meet sharply")
        ->check(CLI::Range(0.0, 180.0))
        ->type_name("DEGREES")
        ->capture_default_str();
    group.add("--edges", options.edges, "Lines along sharp edges, rims, edges of more than two faces")
        ->delimiter(',')
        ->check(CLI::IsMember(namesIn(edgeKinds)));
    group.flag("--ghosts", options.ghosts, "Hidden parts stay as pale hulls");
    group.add("--transparent", options.transparent, "Parts to look through; opacity 0.35")
        ->type_name("IDS[=OPACITY]")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void addSectionAndText(NotedOptions& group, LookOptions& options)
{
    group.add("--section", options.section, "Cut the model: x=..10, y=0.. or a point and a direction")
        ->type_name("PLANE");
    group.add("--section-mode", options.sectionMode, "Cross-sections filled, open, or whole elements")
        ->check(CLI::IsMember(namesIn(cuts)))
        ->capture_default_str();
    group.add("--color-by", options.colorBy, "part, kind, property, material or quality:NAME, see below")
        ->type_name("WHAT")
        ->capture_default_str();
    group.add("--color-range", options.colorRange, "Ends of the quality's colours")->type_name("LOW,HIGH");
    group.add("--color-ramp", options.colorRamp, "Colours of the quality")
        ->check(CLI::IsMember(rampNames()))
        ->capture_default_str();
    group.add("--color-bands", options.colorBands, "Steps of the quality's colours; 0: none")
        ->check(CLI::Range(0, 64))
        ->capture_default_str();
    group.flag("--no-legend", options.noLegend, "Without the legend of --color-by");
    group.add("--labels", options.labels, "Ids of what is seen, as many as have room")
        ->delimiter(',')
        ->check(CLI::IsMember(namesIn(labelKinds)));
}

} // namespace

void addLooks(CLI::App& command, LookOptions& options)
{
    CLI::App* group = command.add_option_group("Looks");
    NotedOptions noted(*group, options);
    addSurfaceLooks(noted, options);
    addSectionAndText(noted, options);
    group->add_flag("--contract", options.contract, "Draw and pick through the drawing library alone, see below");
}

LookSetup parseLooks(const LookOptions& options)
{
    checkTogether(options);
    LookSetup out;
    out.contract = options.contract;
    out.scene.style = codeIn(styles, options.style);
    out.scene.light = codeIn(lights, options.light);
    if (std::isnan(options.featureAngle)) { // in every range, for comparisons
        throw UsageError("--feature-angle: nan is no angle");
    }
    out.scene.featureAngle = options.featureAngle;
    out.scene.ghosts = options.ghosts;
    out.scene.legend = !options.noLegend;
    for (const std::string& name : options.edges) {
        out.scene.lines.*codeIn(edgeKinds, name) = true;
    }
    for (const std::string& name : options.labels) {
        out.scene.labels.*codeIn(labelKinds, name) = true;
    }
    readSection(options, out.scene.section);
    out.colorBy = readColors(options);
    for (const std::string& text : options.transparent) {
        out.transparent.push_back(parseTransparent(text));
    }
    return out;
}

void applyLooks(CAEEnv& env, const LookSetup& looks)
{
    std::set<unsigned int> known;
    for (const auto& entry : env.pidMap) {
        known.insert(entry.first);
    }
    for (const TransparentParts& parts : looks.transparent) {
        for (unsigned int id : resolveIds(parts.ids, known, "part")) {
            env.partsInfoList[env.pidMap.at(id)].partColor[3] = parts.alpha;
        }
    }
}

std::string describeLooks()
{
    return std::string(R"(
LOOKS
  Faces are drawn smooth up to the feature angle (--shade flat: each by itself), both sides lit. Beams are
  lines, springs and dampers coils. --ghosts keeps what --hide and --parts leave out as a pale hull; framed is
  what is shown. --transparent may be given more than once: --transparent 1-3 --transparent 7=0.6.
  --edges takes a list: feature (black), free (red: rims, holes, cracks), multi (magenta).
  --section x=..10 keeps what has x up to 10, x=10.. what has x from 10 on; X,Y,Z,NX,NY,NZ is a point of the
  plane and the direction towards what stays. --section-mode slice fills the cross-sections of solids, open
  does not, elements leaves whole elements.
  --color-by quality:NAME colours by shape, best to worst; NAME is one of
  )") + qualityNames() +
           R"(. Grey elements have no quality.
  --contract draws as the drawing library alone does: every face of every element, triangular faces of
  solids dark, beams only where elements are selected, no looks; picks go through its selection pass.
)";
}

} // namespace kvo
