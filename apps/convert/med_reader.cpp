// MED: meshes with families. Every node and element has one family, a family belongs to any number of groups.
#include "container_reader.h"

#include <algorithm>
#include <map>

#include "container_elements.h"
#include "med_file.h"
#include "mesh_finish.h"
#include "numbering.h"
#include "polygon.h"
#include "solid_sense.h"

namespace kvo {

namespace {

using Ids = std::vector<std::int64_t>;

// What one mesh of the file becomes.
struct MedTarget
{
    Mesh& mesh;
    MeshRows& rows;
    ImportLog& log;
    std::size_t fileIndex;
    std::vector<MedFamily> families;
    std::map<std::int64_t, std::uint32_t> parts;         // by number of family
    std::map<std::int64_t, Ids> nodes;                   // likewise
    std::map<int, std::map<std::int64_t, Ids>> elements; // by what a set of them is for, see setKind(), and by family

    MeshFile& file() { return mesh.files[fileIndex]; }
    Place place() const { return {mesh.sourceFiles.front(), 0}; }
};

// --- ids ---

Ids positions(std::size_t count)
{
    Ids ids;
    for (std::size_t k = 0; k < count; ++k) {
        ids.push_back(static_cast<std::int64_t>(k + 1));
    }
    return ids;
}

void warnOfNumbers(MedTarget& target, const std::string& what)
{
    target.log.warn(
        "numbers that cannot be used", target.place(),
        "mesh \"" + target.file().name + "\": the numbers of the " + what +
            " repeat, are none that a model holds or are not there for all: they are numbered by their positions");
}

Ids nodeIds(MedTarget& target, const Ids& numbers, std::size_t count)
{
    if (numberingFault(numbers, count).empty()) {
        return numbers;
    }
    if (!numbers.empty()) {
        warnOfNumbers(target, "nodes");
    }
    return positions(count);
}

int familyOf(const MedElements& elements)
{
    const ContainerElement kind = containerElement(elements.type, elements.nodesEach);
    const bool polygon = elements.nodesEach == 0;
    return polygon ? static_cast<int>(Family::Shell) : kind.drawn ? static_cast<int>(kind.family) : familyCount;
}

// Are the stored numbers different among those elements that the filter takes?
template <class Filter> bool numbersUsable(const std::vector<MedElements>& all, Filter wanted)
{
    Ids numbers;
    for (const MedElements& elements : all) {
        if (wanted(elements)) {
            numbers.insert(numbers.end(), elements.numbers.begin(), elements.numbers.end());
        }
    }
    const std::size_t count = numbers.size();
    return numberingFault(std::move(numbers), count).empty();
}

bool usableByFamily(const std::vector<MedElements>& all)
{
    for (int family = 0; family <= familyCount; ++family) {
        if (!numbersUsable(all, [&](const MedElements& elements) { return familyOf(elements) == family; })) {
            return false;
        }
    }
    return true;
}

// Leaves numbers that are there for all elements. Files may number each geometry type from 1: then shells, solids and
// beams may share numbers, but two kinds of shells may not.
void settleNumbers(MedTarget& target, std::vector<MedElements>& all)
{
    bool some = false, everywhere = true;
    for (const MedElements& elements : all) {
        some = some || !elements.numbers.empty();
        everywhere = everywhere && elements.numbers.size() == elements.count;
    }
    if (everywhere && numbersUsable(all, [](const MedElements&) { return true; })) {
        return;
    }
    if (everywhere && usableByFamily(all)) {
        target.mesh.idsPerFamily = true;
        return;
    }
    if (some) {
        warnOfNumbers(target, "elements");
    }
    std::int64_t next = 0;
    for (MedElements& elements : all) {
        elements.numbers.clear();
        for (std::size_t e = 0; e < elements.count; ++e) {
            elements.numbers.push_back(++next);
        }
    }
}

// --- families ---

const MedFamily* findFamily(const MedTarget& target, std::int64_t number)
{
    for (const MedFamily& family : target.families) {
        if (family.number == number) {
            return &family;
        }
    }
    return nullptr;
}

// By its groups, else by its own name. Files may leave family 0 out, which is for all that is in none.
std::string partName(const MedTarget& target, std::int64_t number)
{
    const MedFamily* family = findFamily(target, number);
    std::string name;
    for (const std::string& group : family ? family->groups : std::vector<std::string>()) {
        name += (name.empty() ? "" : ", ") + group;
    }
    if (name.empty()) {
        name = number == 0 ? "FAMILLE_ZERO" : "family " + std::to_string(number);
        name = family && !family->name.empty() ? family->name : name;
    }
    return name;
}

// Families of elements have numbers below 0; the part's id is the number without its sign.
std::uint32_t partOf(MedTarget& target, std::int64_t number)
{
    const auto found = target.parts.find(number);
    if (found != target.parts.end()) {
        return found->second;
    }
    const std::uint32_t index = static_cast<std::uint32_t>(target.mesh.parts.size());
    MeshPart& part = target.mesh.parts.emplace_back();
    part.id = number < 0 ? -number : number;
    part.name = partName(target, number);
    part.section = "family";
    target.parts[number] = index;
    return index;
}

// Where shells, solids and bars share numbers, a set is for one of these.
int setKind(const MedTarget& target, const MedElements& elements)
{
    const int family = familyOf(elements);
    return target.mesh.idsPerFamily && family < familyCount ? family : MeshSet::anyFamily;
}

// A group has the members of all its families.
void addGroups(MedTarget& target, MeshSet::Of of, int kind, const std::map<std::int64_t, Ids>& members)
{
    std::map<std::string, Ids> groups;
    for (const MedFamily& family : target.families) {
        const auto found = members.find(family.number);
        for (const std::string& group : found == members.end() ? std::vector<std::string>() : family.groups) {
            Ids& ids = groups[group];
            ids.insert(ids.end(), found->second.begin(), found->second.end());
        }
    }
    for (const auto& group : groups) {
        MeshSet set;
        set.of = of;
        set.family = kind;
        set.name = group.first;
        set.file = static_cast<std::uint32_t>(target.fileIndex);
        set.ids = idSetOf(group.second);
        target.mesh.sets.push_back(std::move(set));
    }
}

// --- elements ---

std::int64_t familyAt(const Ids& families, std::size_t position)
{
    return families.empty() ? 0 : families[position];
}

// The corners of a polygon of second order are the first half of its nodes.
void addPolygons(MedTarget& target, const MedElements& elements, PolygonElements& polygons)
{
    for (std::size_t e = 0; e < elements.count; ++e) {
        const std::int64_t start = elements.starts[e];
        const std::int64_t nodes = elements.starts[e + 1] - start;
        std::vector<std::uint32_t> corners;
        for (std::int64_t k = 0; k < (elements.type == "POLYGON2" ? nodes / 2 : nodes); ++k) {
            const std::int64_t position = elements.nodes[static_cast<std::size_t>(start + k)];
            nodeIdAt(target.mesh, target.file(), position);
            corners.push_back(static_cast<std::uint32_t>(position - 1));
        }
        polygons.add(elements.type, elements.numbers[e], partOf(target, familyAt(elements.families, e)), 0, corners);
    }
}

// MED counts a solid's bottom clockwise as seen from its top.
void addDrawn(MedTarget& target, const MedElements& elements, const ContainerElement& kind, bool medOrder)
{
    const std::uint32_t type = target.rows.type(elements.type, kind.family, kind.shape);
    const std::size_t corners = static_cast<std::size_t>(cornerCount(kind.shape));
    for (std::size_t e = 0; e < elements.count; ++e) {
        std::int64_t nodes[8];
        std::copy_n(&elements.nodes[e * elements.nodesEach], corners, nodes);
        if (medOrder) {
            mirrorSolid(kind.shape, nodes);
        }
        addElementByPositions(target.mesh, target.file(), type, partOf(target, familyAt(elements.families, e)),
                              elements.numbers[e], nodes);
    }
}

void addElements(MedTarget& target, const MedElements& elements, bool medOrder, PolygonElements& polygons)
{
    std::map<std::int64_t, Ids>& members = target.elements[setKind(target, elements)];
    for (std::size_t e = 0; e < elements.count; ++e) {
        members[familyAt(elements.families, e)].push_back(elements.numbers[e]);
    }
    const ContainerElement kind = containerElement(elements.type, elements.nodesEach);
    if (elements.nodesEach == 0) {
        addPolygons(target, elements, polygons);
        return;
    }
    if (kind.drawn) {
        addDrawn(target, elements, kind, medOrder);
        return;
    }
    for (std::size_t e = 0; e < elements.count; ++e) {
        addUndrawnByPositions(target.mesh, target.file(), elements.type, elements.numbers[e],
                              &elements.nodes[e * elements.nodesEach], elements.nodesEach);
    }
    target.log.count(listElementsNotDrawn, elements.type, elements.count, target.place());
}

// --- meshes ---

void readNodes(const MedFile& file, const MedMesh& from, MedTarget& target)
{
    MeshFile& to = target.file();
    to.xyz = file.coordinates(from);
    to.nodeIds = nodeIds(target, file.nodeNumbers(from), to.xyz.size() / 3);
    const Ids families = file.nodeFamilies(from);
    for (std::size_t k = 0; k < families.size(); ++k) {
        target.nodes[families[k]].push_back(to.nodeIds[k]);
    }
    if (!from.cartesian) {
        target.log.warn("coordinates that are not x, y, z", target.place(),
                        "mesh \"" + from.name + "\" has cylindrical or spherical ones, which are taken as they are");
    }
}

void countIgnored(const Mesh& mesh, const std::vector<MedIgnored>& all, ImportLog& log)
{
    for (const MedIgnored& ignored : all) {
        if (ignored.count > 0) {
            log.count(listDataNotRead, ignored.what, ignored.count, {mesh.sourceFiles.front(), 0});
        }
    }
}

void readMesh(const MedFile& file, const MedMesh& from, MedTarget& target)
{
    readNodes(file, from, target);
    std::vector<MedElements> all = file.elements(from);
    settleNumbers(target, all);
    PolygonElements polygons(target.mesh, target.rows, target.log, target.fileIndex);
    for (const MedElements& elements : all) {
        addElements(target, elements, !from.structured, polygons);
    }
    polygons.finish();
    countIgnored(target.mesh, file.ignored(from), target.log);
    addGroups(target, MeshSet::Of::Nodes, MeshSet::anyFamily, target.nodes);
    for (const auto& kind : target.elements) {
        addGroups(target, MeshSet::Of::Elements, kind.first, kind.second);
    }
}

void turnSolids(Mesh& mesh, const std::vector<MedMesh>& meshes, ImportLog& log)
{
    for (std::size_t k = 0; k < meshes.size(); ++k) {
        const std::uint64_t turned = turnNegativeSolids(mesh, mesh.files[k]);
        if (turned > 0) {
            log.note("mesh \"" + meshes[k].name + "\": " + std::to_string(turned) +
                     " solids are numbered against MED's order; their corners are taken the other way round");
        }
    }
}

} // namespace

Mesh readMed(const std::string& path, ImportLog& log)
{
    const MedFile file(path);
    const std::vector<MedMesh> meshes = file.meshes();
    if (meshes.empty()) {
        throw ImportError({path, 0}, "has no mesh");
    }
    Mesh mesh;
    MeshRows rows(mesh);
    mesh.sourceFiles = {path};
    if (!meshes.front().description.empty()) {
        mesh.facts.push_back({"description", meshes.front().description});
    }
    if (!meshes.front().unit.empty()) {
        mesh.facts.push_back({"units", meshes.front().unit});
    }
    for (const MedMesh& from : meshes) {
        mesh.files.emplace_back().name = from.name;
        MedTarget target{mesh, rows, log, mesh.files.size() - 1, file.families(from), {}, {}, {}};
        readMesh(file, from, target);
    }
    countIgnored(mesh, file.ignored(), log);
    finishMesh(mesh, log);
    turnSolids(mesh, meshes, log);
    return mesh;
}

} // namespace kvo
