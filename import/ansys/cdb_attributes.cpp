// Attributes of archive files, and their parts.
#include "cdb_attributes.h"

#include <algorithm>
#include <cstdlib>
#include <set>

#include "text/fields.h"

namespace kvo {

namespace {

constexpr std::size_t maxReals = 1000; // of a set; no type of elements takes more

// Types whose numbers stand in the set of real constants rather than in a section.
bool usesReals(const CdbType& type)
{
    return type.layout == CdbLayout::Spring || startsWithIgnoringCase(type.name, "MASS");
}

} // namespace

void CdbAttributes::defineType(std::int64_t number, const std::string& name)
{
    const std::size_t digits = name.find_first_of("0123456789");
    const int known = digits == std::string::npos ? 0 : std::atoi(name.substr(digits, 6).c_str());
    CdbType& type = types[number];
    type.name = cdbTypeName(known, name);
    type.layout = cdbLayout(known, name);
    type.mostNodes = cdbMostNodes(known, type.layout);
    type.rows.fill(noPart);
    type.defined = true;
}

bool CdbAttributes::hasType(std::int64_t number) const
{
    const auto known = types.find(number);
    return known != types.end() && known->second.defined;
}

void CdbAttributes::setFirstOption(std::int64_t number, std::int64_t value)
{
    CdbType& known = type(number);
    if (const CdbOption* option = findCdbOption(known.name, value)) {
        known.layout = option->layout;
        known.mostNodes = option->nodes;
    } else if (known.name == "MESH200") {
        known.layout = CdbLayout::Undrawn;
    } else if (known.name == "PLANE183") {
        known.layout = CdbLayout::Face;
    }
}

CdbType& CdbAttributes::type(std::int64_t number)
{
    CdbType& known = types[number];
    if (known.name.empty()) {
        known.name = "type " + std::to_string(number) + " without ET";
    }
    return known;
}

void CdbAttributes::addReals(std::int64_t set, std::size_t first, const std::vector<double>& values)
{
    if (first + values.size() > maxReals) {
        return;
    }
    std::vector<double>& list = reals[set];
    list.resize(std::max(list.size(), first + values.size()), 0.0);
    std::copy(values.begin(), values.end(), list.begin() + static_cast<std::ptrdiff_t>(first));
}

std::uint32_t CdbAttributes::part(const CdbElement& element)
{
    const Key key(element.type, element.real, element.material, element.section);
    if (lastPart != noPart && key == lastKey) {
        return lastPart;
    }
    const auto known = parts.emplace(key, static_cast<std::uint32_t>(mesh.parts.size()));
    if (known.second) {
        mesh.parts.emplace_back();
    }
    lastKey = key;
    lastPart = known.first->second;
    return lastPart;
}

void CdbAttributes::describe(const Key& key, MeshPart& part)
{
    const auto [typeNumber, real, material, sectionNumber] = key;
    const CdbType& elementType = type(typeNumber);
    const auto section = sections.find(sectionNumber);
    const auto constants = reals.find(real);
    const auto constant = [&](std::size_t k) {
        return constants != reals.end() && k < constants->second.size() ? constants->second[k] : 0.0;
    };
    part.name = elementType.name + " type " + std::to_string(typeNumber) + " real " + std::to_string(real) + " mat " +
                std::to_string(material) + " sec " + std::to_string(sectionNumber);
    part.section = elementType.name;
    part.materialId = material;
    part.propertyId = usesReals(elementType) ? real : sectionNumber;
    if (usesReals(elementType)) {
        part.data.stiffness = elementType.name == "COMBIN14" || elementType.name == "COMBIN40" ? constant(0) : 0.0;
        part.data.damping = elementType.name == "COMBIN14" ? constant(1) : 0.0;
        return;
    }
    const bool isShell = elementType.layout == CdbLayout::Face && startsWithIgnoringCase(elementType.name, "SHELL");
    const bool isBeam = elementType.layout == CdbLayout::Line || elementType.layout == CdbLayout::BeamThird ||
                        elementType.layout == CdbLayout::BeamMid;
    if (section != sections.end()) {
        const CdbSection& source = section->second;
        part.name = source.name.empty() ? part.name : source.name;
        part.data.thickness = isShell ? source.thickness : 0.0;
        part.data.shape = isBeam ? source.subtype : "";
        part.data.sizes = isBeam ? source.data : std::vector<double>();
        part.data.area = isBeam && source.type == "LINK" && !source.data.empty() ? source.data[0] : 0.0;
    }
    part.data.thickness = isShell && part.data.thickness == 0.0 ? constant(0) : part.data.thickness;
    part.data.area = isBeam && part.data.area == 0.0 && part.data.sizes.empty() ? constant(0) : part.data.area;
}

// A part is four numbers, but has one id: that of its section, or of its real constants where those tell more, if no
// other part has it. The rest get ids from the writer.
void CdbAttributes::describeParts()
{
    std::map<std::uint32_t, Key> byIndex;
    for (const auto& entry : parts) {
        byIndex[entry.second] = entry.first;
    }
    std::set<std::int64_t> taken;
    for (const auto& entry : byIndex) {
        MeshPart& part = mesh.parts[entry.first];
        describe(entry.second, part);
        part.id = part.propertyId > 0 && taken.insert(part.propertyId).second ? part.propertyId : 0;
    }
}

} // namespace kvo
