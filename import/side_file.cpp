// Writing of deck.json.
#include "side_file.h"

#include <utility>

#include <nlohmann/json.hpp>

#include "model_pieces.h"

namespace kvo {

namespace {

using Json = nlohmann::ordered_json;

constexpr int formatVersion = 1;

// A lone id as a number, a run as [first, last].
Json idsJson(const IdSet& set)
{
    Json list = Json::array();
    for (const IdRange& range : set.ranges) {
        if (range.first == range.last) {
            list.push_back(range.first);
        } else if (range.step == 1) {
            list.push_back({range.first, range.last});
        } else {
            list.push_back({range.first, range.last, range.step});
        }
    }
    return list;
}

// Where there is a choice. A model of one file can so be renamed.
void putFile(Json& object, const SideData& model, std::size_t file)
{
    if (model.fileNames.size() > 1) {
        object["file"] = model.fileNames[file];
    }
}

// --- parts ---

void putNumber(Json& object, const char* key, double value)
{
    if (value != 0.0) {
        object[key] = value;
    }
}

Json sectionJson(const MeshPart& part)
{
    const SectionData& data = part.data;
    Json section = Json::object();
    if (!part.section.empty()) {
        section["kind"] = part.section;
    }
    putNumber(section, "thickness", data.thickness);
    if (!data.shape.empty()) {
        section["shape"] = data.shape;
    }
    if (!data.sizes.empty()) {
        section["sizes"] = data.sizes;
    }
    putNumber(section, "area", data.area);
    putNumber(section, "stiffness", data.stiffness);
    putNumber(section, "damping", data.damping);
    return section;
}

// Which elements have which type is said where there is a choice.
Json typesJson(const Mesh& mesh, const TypeElements& types)
{
    Json list = Json::array();
    for (const auto& entry : types) {
        Json type = {{"name", mesh.types[entry.first].name}, {"count", entry.second.size()}};
        if (types.size() > 1) {
            type["elements"] = idsJson(entry.second);
        }
        list.push_back(std::move(type));
    }
    return list;
}

Json partsJson(const Mesh& mesh, const SideData& model)
{
    std::vector<PieceTypes> types;
    for (const MeshFile& file : mesh.files) {
        types.push_back(typesOfPieces(mesh, file));
    }
    Json list = Json::array();
    for (const SidePart& part : model.parts) {
        const MeshPart& source = mesh.parts[part.source];
        Json object = {{"id", part.id}, {"source_id", source.id}};
        putFile(object, model, part.file);
        object["section"] = sectionJson(source);
        object["types"] = typesJson(mesh, types[part.file].at({part.source, part.family}));
        list.push_back(std::move(object));
    }
    return list;
}

// --- sets, orientations, what is not drawn ---

Json setsJson(const Mesh& mesh, const SideData& model)
{
    static const char* const kinds[] = {"nodes", "elements", "parts"};
    Json list = Json::array();
    for (const MeshSet& set : mesh.sets) {
        Json object = {{"name", set.name}, {"of", kinds[static_cast<int>(set.of)]}};
        if (set.id != 0) {
            object["id"] = set.id;
        }
        if (set.family != MeshSet::anyFamily) {
            object["kind"] = familyName(static_cast<Family>(set.family));
        }
        if (set.file != MeshSet::wholeMesh) {
            putFile(object, model, set.file);
        }
        object["count"] = set.ids.size();
        object["ids"] = idsJson(set.ids);
        list.push_back(std::move(object));
    }
    return list;
}

Json orientationsJson(const Mesh& mesh, const SideData& model)
{
    Json list = Json::array();
    for (std::size_t f = 0; f < mesh.files.size(); ++f) {
        for (const Orientation& row : mesh.files[f].orientations) {
            Json object = {{"vector", row.vector}};
            if (row.family != Orientation::anyFamily) {
                object["kind"] = familyName(static_cast<Family>(row.family));
            }
            putFile(object, model, f);
            object["elements"] = idsJson(row.elements);
            list.push_back(std::move(object));
        }
    }
    return list;
}

// [id, node, node, ...] per element.
Json undrawnElementsJson(const UndrawnElements& undrawn)
{
    Json list = Json::array();
    for (std::size_t e = 0; e < undrawn.ids.size(); ++e) {
        const std::size_t stop = e + 1 < undrawn.starts.size() ? undrawn.starts[e + 1] : undrawn.nodes.size();
        Json row = Json::array({undrawn.ids[e]});
        for (std::size_t k = undrawn.starts[e]; k < stop; ++k) {
            row.push_back(undrawn.nodes[k]);
        }
        list.push_back(std::move(row));
    }
    return list;
}

Json undrawnJson(const Mesh& mesh, const SideData& model)
{
    Json list = Json::array();
    for (std::size_t f = 0; f < mesh.files.size(); ++f) {
        for (const UndrawnElements& undrawn : mesh.files[f].undrawn) {
            Json object = {{"type", undrawn.type}};
            putFile(object, model, f);
            object["count"] = undrawn.ids.size();
            object["elements"] = undrawnElementsJson(undrawn);
            list.push_back(std::move(object));
        }
    }
    return list;
}

} // namespace

std::string sideFileText(const Mesh& mesh, const SideData& model)
{
    Json facts = Json::object();
    for (const auto& fact : mesh.facts) {
        facts[fact.first] = fact.second;
    }
    Json all = {{"version", formatVersion}, {"format", mesh.formatName}, {"sources", mesh.sourceFiles}};
    all["origin"] = model.origin;
    all["facts"] = std::move(facts);
    all["parts"] = partsJson(mesh, model);
    all["sets"] = setsJson(mesh, model);
    all["orientations"] = orientationsJson(mesh, model);
    all["undrawn"] = undrawnJson(mesh, model);
    // Names of decks may be in any encoding; what is no UTF-8 is replaced.
    return all.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace kvo
