// The table of property cards.
#include "bdf_properties.h"

#include <algorithm>
#include <cmath>

namespace kvo {

namespace {

// Sections that are given by name, and how many sizes they have.
struct SectionShape
{
    const char* name;
    std::size_t sizes;
};

const SectionShape sectionShapes[] = {
    {"ROD", 1}, {"TUBE", 2}, {"TUBE2", 2}, {"I", 6},   {"I1", 4},   {"CHAN", 4},  {"CHAN1", 4}, {"CHAN2", 4},
    {"T", 4},   {"T1", 4},   {"T2", 4},    {"BOX", 4}, {"BOX1", 6}, {"BAR", 2},   {"CROSS", 4}, {"H", 4},
    {"Z", 4},   {"L", 4},    {"HEXA", 3},  {"HAT", 4}, {"HAT1", 5}, {"DBOX", 10},
};

// A field that is no number is no reason to lose a mesh: it stays 0.
double numberAt(const BdfCard& card, std::size_t field)
{
    double value = 0.0;
    card.isReal(field, value);
    return value;
}

std::int64_t idAt(const BdfCard& card, std::size_t field)
{
    std::int64_t value = 0;
    card.isInteger(field, value);
    return std::max<std::int64_t>(value, 0);
}

void materialOnly(const BdfCard& card, std::size_t first, MeshPart& part)
{
    part.materialId = idAt(card, first + 1);
}

void nothingElse(const BdfCard&, std::size_t, MeshPart&) {}

void plate(const BdfCard& card, std::size_t first, MeshPart& part)
{
    part.materialId = idAt(card, first + 1);
    if (part.materialId == 0) {
        part.materialId = idAt(card, first + 3); // bending only
    }
    part.data.thickness = numberAt(card, first + 2);
}

// Plies from the second line on, of four fields (PCOMP: material, thickness, angle, output) or eight (PCOMPG: ply,
// material, ...). A ply repeats what it leaves blank. With SYM the other half is the mirror image.
void laminate(const BdfCard& card, MeshPart& part, std::size_t fieldsPerPly, std::size_t material)
{
    double ply = 0.0;
    double sum = 0.0;
    for (std::size_t at = 8; at < card.fields.size(); at += fieldsPerPly) {
        bool any = false;
        for (std::size_t k = at; k < at + fieldsPerPly; ++k) {
            any = any || !card.blank(k);
        }
        if (!any) {
            continue;
        }
        ply = card.blank(at + material + 1) ? ply : numberAt(card, at + material + 1);
        sum += ply;
        part.materialId = part.materialId == 0 ? idAt(card, at + material) : part.materialId;
    }
    part.data.thickness = card.text(7).substr(0, 3) == "SYM" ? 2 * sum : sum;
}

void composite(const BdfCard& card, std::size_t, MeshPart& part)
{
    laminate(card, part, 4, 0);
}

void globalComposite(const BdfCard& card, std::size_t, MeshPart& part)
{
    laminate(card, part, 8, 1);
}

void areaOnly(const BdfCard& card, std::size_t first, MeshPart& part)
{
    part.materialId = idAt(card, first + 1);
    part.data.area = numberAt(card, first + 2);
}

void tube(const BdfCard& card, std::size_t first, MeshPart& part)
{
    part.materialId = idAt(card, first + 1);
    part.data.shape = "TUBE";
    part.data.sizes = {numberAt(card, first + 2), numberAt(card, first + 3)}; // outer diameter, wall
}

// The sizes stand in the second line; of beams with several stations those of the first one.
void namedSection(const BdfCard& card, std::size_t first, MeshPart& part)
{
    part.materialId = idAt(card, first + 1);
    part.data.shape = card.text(first + 3);
    const auto shape = std::find_if(std::begin(sectionShapes), std::end(sectionShapes),
                                    [&](const SectionShape& row) { return part.data.shape == row.name; });
    for (std::size_t k = 0; shape != std::end(sectionShapes) && k < shape->sizes; ++k) {
        part.data.sizes.push_back(numberAt(card, 8 + k));
    }
}

void spring(const BdfCard& card, std::size_t first, MeshPart& part)
{
    part.data.stiffness = numberAt(card, first + 1);
}

void damper(const BdfCard& card, std::size_t first, MeshPart& part)
{
    part.data.damping = numberAt(card, first + 1);
}

void damperWithMaterial(const BdfCard& card, std::size_t first, MeshPart& part)
{
    part.materialId = idAt(card, first + 1);
    part.data.damping = numberAt(card, first + 2);
}

// Lines that begin with K, B, ...: the first value of the K and B lines counts.
void bush(const BdfCard& card, std::size_t first, MeshPart& part)
{
    for (std::size_t k = first + 1; k < card.fields.size(); k += 8) {
        const std::string word = card.text(k);
        double* value = word == "K" ? &part.data.stiffness : word == "B" ? &part.data.damping : nullptr;
        for (std::size_t c = 1; value && c <= 6 && *value == 0.0; ++c) {
            *value = numberAt(card, k + c);
        }
    }
}

void axialBush(const BdfCard& card, std::size_t first, MeshPart& part)
{
    part.data.stiffness = numberAt(card, first + 1);
    part.data.damping = numberAt(card, first + 2);
}

void gap(const BdfCard& card, std::size_t first, MeshPart& part)
{
    part.data.stiffness = numberAt(card, first + 3);
}

const BdfPropertyRow rows[] = {
    {"PSHELL", Family::Shell, plate, 0},
    {"PSHEAR", Family::Shell, plate, 0},
    {"PCOMP", Family::Shell, composite, 0},
    {"PCOMPG", Family::Shell, globalComposite, 0},
    {"PLPLANE", Family::Shell, materialOnly, 0},
    {"PPLANE", Family::Shell, plate, 0},
    {"PSOLID", Family::Solid, materialOnly, 0},
    {"PLSOLID", Family::Solid, materialOnly, 0},
    {"PCOMPS", Family::Solid, nothingElse, 0},
    {"PBAR", Family::Beam, areaOnly, 0},
    {"PBARL", Family::Beam, namedSection, 0},
    {"PBEAM", Family::Beam, areaOnly, 0},
    {"PBEAML", Family::Beam, namedSection, 0},
    {"PBCOMP", Family::Beam, areaOnly, 0},
    {"PBEND", Family::Beam, areaOnly, 0},
    {"PBMSECT", Family::Beam, materialOnly, 0},
    {"PBRSECT", Family::Beam, materialOnly, 0},
    {"PROD", Family::Beam, areaOnly, 0},
    {"PTUBE", Family::Beam, tube, 0},
    {"PELAS", Family::Discrete, spring, 4},
    {"PDAMP", Family::Discrete, damper, 2},
    {"PDAMP5", Family::Discrete, damperWithMaterial, 0},
    {"PVISC", Family::Discrete, damper, 4},
    {"PBUSH", Family::Discrete, bush, 0},
    {"PBUSH1D", Family::Discrete, axialBush, 0},
    {"PBUSH2D", Family::Discrete, nothingElse, 0},
    {"PGAP", Family::Discrete, gap, 0},
};

// The family of most elements of each part.
std::vector<Family> mainFamilies(const Mesh& mesh)
{
    std::vector<std::vector<std::size_t>> counts(mesh.parts.size(), std::vector<std::size_t>(familyCount, 0));
    for (const MeshFile& file : mesh.files) {
        for (const ElementBlock& block : file.blocks) {
            const std::size_t family = static_cast<std::size_t>(mesh.types[block.type].family);
            for (const std::uint32_t part : block.part) {
                if (part != noPart) {
                    ++counts[part][family];
                }
            }
        }
    }
    std::vector<Family> families;
    for (const std::vector<std::size_t>& row : counts) {
        families.push_back(static_cast<Family>(std::max_element(row.begin(), row.end()) - row.begin()));
    }
    return families;
}

} // namespace

const BdfPropertyRow* findBdfProperty(CardKey key)
{
    const BdfPropertyRow* found = std::find_if(std::begin(rows), std::end(rows),
                                               [&](const BdfPropertyRow& row) { return cardKey(row.name) == key; });
    return found == std::end(rows) ? nullptr : found;
}

void BdfProperties::add(const BdfPropertyRow& row, const BdfCard& card)
{
    const std::size_t step = row.perCard ? static_cast<std::size_t>(row.perCard) : 8;
    for (std::size_t first = 0; first < 8; first += step) {
        const std::int64_t id = idAt(card, first);
        if (id == 0) {
            continue;
        }
        MeshPart property;
        property.section = row.name;
        row.read(card, first, property);
        properties[{id, row.family}] = std::move(property);
    }
}

void BdfProperties::apply(Mesh& mesh, const std::map<std::int64_t, std::string>& names) const
{
    const std::vector<Family> families = mainFamilies(mesh);
    for (std::size_t k = 0; k < mesh.parts.size(); ++k) {
        MeshPart& part = mesh.parts[k];
        const auto property = properties.find({part.propertyId, families[k]});
        if (property != properties.end()) {
            part.section = property->second.section;
            part.data = property->second.data;
            part.materialId = property->second.materialId;
        }
        const auto name = names.find(part.propertyId);
        if (part.propertyId != 0 && name != names.end()) {
            part.name = name->second;
        } else if (part.name.empty()) {
            part.name = (part.section.empty() ? "property" : part.section) + " " + std::to_string(part.propertyId);
        }
    }
}

} // namespace kvo
