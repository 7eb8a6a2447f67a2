// Reading of *PART, *SECTION_ and *MAT_.
#include "key_definitions.h"

#include "text/fields.h"

namespace kvo {

namespace {

constexpr int defaultPoints = 2; // of integration through a shell
constexpr int anglesOfLine = 8;

} // namespace

bool KeyDefinitions::begin(int kind)
{
    current = static_cast<Kind>(kind);
    KeyKeyword& keyword = context.keyword;
    titled = keyword.takeOption("TITLE");
    title.clear();
    at = 0;
    part = nullptr;
    section = nullptr;
    if (current == Part || current == CompositePart) {
        return partOptions();
    }
    // These add to a material of the same id, or have ids of their own.
    if (current == Material && !keyword.options.empty() &&
        (keyword.options.front() == "ADD" || keyword.options.front() == "THERMAL")) {
        return false;
    }
    // Further options of a section or material bring lines of their own behind those that are of interest here.
    oneOnly = !keyword.options.empty();
    return true;
}

bool KeyDefinitions::partOptions()
{
    KeyKeyword& keyword = context.keyword;
    inertia = keyword.takeOption("INERTIA");
    longLayers = keyword.takeOption("LONG");
    optionCards = (inertia ? 3 : 0) + keyword.takeOption("REPOSITION") + keyword.takeOption("CONTACT") +
                  keyword.takeOption("PRINT") + keyword.takeOption("FIELD");
    if (keyword.takeOption("ATTACHMENT")) {
        keyword.takeOption("NODES");
        ++optionCards;
    }
    keyword.takeOption("TSHELL");
    keyword.takeOption("IGA");
    keyword.takeOption("SHELL");
    extraCards = optionCards;
    return keyword.options.empty();
}

void KeyDefinitions::line(std::string_view text)
{
    ++at;
    if (current == Part || current == CompositePart) {
        return partLine(text);
    }
    if (titled && at == 1) {
        title.assign(trimmed(text));
        return;
    }
    if (current == Material) {
        return materialLine(text);
    }
    sectionLine(text);
}

void KeyDefinitions::end()
{
    const bool isPart = current == Part || current == CompositePart;
    if (isPart && at == 1 && !title.empty()) {
        context.log.warn(warnCutCards, context.keyword.place, "*" + context.keyword.name + " ends behind its title");
    }
}

// --- parts ---

void KeyDefinitions::partLine(std::string_view text)
{
    if (at == 1) {
        title.assign(trimmed(text));
        return;
    }
    if (at == 2) {
        return partHead(text);
    }
    // With a local system of its own, the inertia has one line more.
    if (inertia && at == 3) {
        KeyFields fields = context.fields(text);
        for (int k = 0; k < 4; ++k) {
            fields.text(10);
        }
        extraCards += fields.integer(10) == 1;
    }
    if (current == CompositePart) {
        if (at > 2 + extraCards) {
            layers(text);
        }
    } else if (at == 2 + extraCards) {
        at = 0;
        extraCards = optionCards;
    }
}

void KeyDefinitions::partHead(std::string_view text)
{
    KeyFields fields = context.fields(text);
    const std::int64_t id = context.lines.shifted(fields.integer(10), KeyOffsets::Part);
    std::int64_t sectionOfPart = 0;
    std::int64_t material = 0;
    if (current == Part) {
        sectionOfPart = context.lines.shifted(fields.integer(10), KeyOffsets::Other);
        material = context.lines.shifted(fields.integer(10), KeyOffsets::Material);
    }
    part = nullptr;
    if (context.accept(fields) && id != 0) {
        part = &parts[id];
        *part = {title, current == Part ? "" : context.keyword.name, sectionOfPart, material, 0.0};
    }
    if (current == Part && extraCards == 0) {
        at = 0;
    }
}

// Two layers a line: material, thickness, angle and one field more each. The part is as thick as all of them.
void KeyDefinitions::layers(std::string_view text)
{
    KeyFields fields = context.fields(text);
    for (int layer = 0; layer < (longLayers ? 1 : 2); ++layer) {
        const std::int64_t material = fields.integer(10);
        const double thickness = fields.real(10);
        fields.text(10);
        fields.text(10);
        if (!context.accept(fields)) {
            return;
        }
        if (part && material != 0) {
            part->materialId =
                part->materialId ? part->materialId : context.lines.shifted(material, KeyOffsets::Material);
            part->thickness += thickness;
        }
    }
}

// --- sections ---

// A keyword may hold several sections one after the other: ids, then sizes, then the angles of layers.
void KeyDefinitions::sectionLine(std::string_view text)
{
    const int inSection = at - (titled ? 1 : 0);
    KeyFields fields = context.fields(text);
    if (inSection == 1) {
        return sectionHead(fields);
    }
    if (inSection == 2) {
        sectionSizes(fields);
    }
    const bool more = current == ShellSection || current == BeamSection;
    if (more && !oneOnly && inSection == 2 + angleCards) {
        at = 0;
    }
}

void KeyDefinitions::sectionHead(KeyFields& fields)
{
    sectionId = context.lines.shifted(fields.integer(10), KeyOffsets::Other);
    form = static_cast<int>(fields.integer(10));
    fields.text(10); // shear factor
    const double points = fields.real(10);
    const double shapeOfBeam = fields.real(10);
    fields.text(10);
    const bool layered = current == ShellSection && fields.integer(10) == 1;
    section = nullptr;
    if (!context.accept(fields) || sectionId == 0) {
        return;
    }
    const int layers = points == 0 ? defaultPoints : points > 0 && points < 10000 ? static_cast<int>(points) : 0;
    angleCards = layered ? (layers + anglesOfLine - 1) / anglesOfLine : 0;
    oneOnly = oneOnly || form > 100; // a formulation of the user's has lines of its own
    section = &sections[sectionId];
    *section = {context.keyword.base, {}};
    if (context.keyword.base == "SECTION_TSHELL") {
        // No thickness: the next line is that of the angles, or the next section's.
        at = angleCards == 0 ? 0 : at + 1;
    }
    if (current == BeamSection && (form == 1 || form == 4 || form == 5 || form == 11)) {
        section->data.shape = shapeOfBeam == 1.0 ? "tube" : shapeOfBeam == 0.0 ? "rectangle" : "";
    }
}

void KeyDefinitions::sectionSizes(KeyFields& fields)
{
    if (!section) {
        return;
    }
    if (current == BeamSection) {
        beamSizes(fields);
    } else if (current == ShellSection) {
        const double thickness = fields.real(10);
        if (context.accept(fields)) {
            section->data.thickness = thickness;
        }
    }
}

// What the line means depends on the formulation: sizes in two directions at both ends (1, 4, 5, 7, 8, 9, 11), or the
// area first (2, 3, 12, 13), or the name of a standard shape and its sizes.
void KeyDefinitions::beamSizes(KeyFields& fields)
{
    const std::string first(fields.text(10));
    SectionData& data = section->data;
    if (startsWithIgnoringCase(first, "SECTION_")) {
        data.shape = upperCase(first);
        for (int k = 0; k < 6; ++k) {
            data.sizes.push_back(fields.real(10));
        }
    } else {
        KeyFields again(first, {}, context.parameters);
        const double value = again.real(80);
        if (!context.accept(again)) {
            return;
        }
        if (form == 2 || form == 3 || form == 12 || form == 13) {
            data.area = value;
        } else if (form != 6 && form != 14) {
            data.sizes = {value, fields.real(10), fields.real(10), fields.real(10)};
        }
    }
    if (!context.accept(fields)) {
        data.sizes.clear();
    }
}

// --- materials ---

void KeyDefinitions::materialLine(std::string_view text)
{
    if (at != (titled ? 2 : 1)) {
        return;
    }
    KeyFields fields = context.fields(text);
    const std::int64_t id = context.lines.shifted(fields.integer(10), KeyOffsets::Material);
    if (!context.accept(fields) || id == 0) {
        return;
    }
    MaterialCard& material = materials[id];
    std::string name = context.keyword.base;
    for (const std::string& word : context.keyword.options) {
        name += "_" + word;
    }
    material.name = title.empty() ? name : title;
    const bool spring = name == "MAT_SPRING_ELASTIC" || name == "MAT_S01";
    const bool damper = name == "MAT_DAMPER_VISCOUS" || name == "MAT_S02";
    const double value = spring || damper ? fields.real(10) : 0.0;
    if (context.accept(fields)) {
        material.stiffness = spring ? value : 0.0;
        material.damping = damper ? value : 0.0;
    }
}

// --- the end ---

void KeyDefinitions::describeParts()
{
    for (MeshPart& target : context.mesh.parts) {
        const auto card = parts.find(target.id);
        if (card == parts.end()) {
            target.name = "PART " + std::to_string(target.id);
            continue;
        }
        const PartCard& source = card->second;
        target.name = source.title.empty() ? "PART " + std::to_string(target.id) : source.title;
        target.propertyId = source.sectionId;
        target.materialId = source.materialId;
        target.section = source.section;
        const auto sectionOfPart = sections.find(source.sectionId);
        if (sectionOfPart != sections.end()) {
            target.section = sectionOfPart->second.name;
            target.data = sectionOfPart->second.data;
        }
        target.data.thickness = source.thickness > 0.0 ? source.thickness : target.data.thickness;
        const auto material = materials.find(source.materialId);
        if (material != materials.end()) {
            target.materialName = material->second.name;
            target.data.stiffness = material->second.stiffness;
            target.data.damping = material->second.damping;
        }
    }
}

} // namespace kvo
