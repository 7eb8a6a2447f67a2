#include <kvo/model_directory.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <numeric>

#include "draw_types.h"
#include "modelfile.h"
#include "modelnodes.h"
#include "partstart.h"
#include "readstamps.h"

namespace fs = std::filesystem;

namespace kvo {

namespace {

// --- Nodes of all files ---

struct NodeFiles
{
    std::deque<readgen::NodeIdFile> ids; // kept: they hold the arrays
    std::deque<readgen::NodeCoordFile> coordinates;
    readgen::ModelNodes all;
};

void addNodes(const std::string& folder, const readgen::PartStart& start, NodeFiles& nodes)
{
    const std::string idPath = folder + "/" + readgen::nodeIdsFile;
    if (!readgen::fileExists(idPath) && !readgen::fileExists(folder + "/" + readgen::nodeCoordsFile)) {
        nodes.all.addFile(nullptr, nullptr, 0);
        return;
    }
    const readgen::NodeIdFile& ids = nodes.ids.emplace_back(idPath);
    const readgen::NodeCoordFile& coordinates = nodes.coordinates.emplace_back(folder);
    if (!readgen::sameWriting(ids.stamp(), start.stamp) || ids.count() != coordinates.count()) {
        readgen::badFile(idPath, 0, "was written with another model than its part_start");
    }
    nodes.all.addFile(ids.ids(), coordinates.values(), ids.count());
}

// --- One part ---

struct PartNodes
{
    std::vector<std::uint32_t> ids;
    std::vector<float> positions;
};

// Ids of several files may interleave: a part's nodes are then sorted, and slots follow.
void sortNodes(PartNodes& nodes, std::vector<std::uint32_t>& slots)
{
    std::vector<std::uint32_t> order(nodes.ids.size());
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return nodes.ids[a] < nodes.ids[b]; });
    PartNodes sorted;
    std::vector<std::uint32_t> placeOf(order.size());
    for (std::uint32_t k = 0; k < order.size(); ++k) {
        placeOf[order[k]] = k;
        sorted.ids.push_back(nodes.ids[order[k]]);
        const float* position = &nodes.positions[3 * std::size_t(order[k])];
        sorted.positions.insert(sorted.positions.end(), position, position + 3);
    }
    for (std::uint32_t& slot : slots) {
        slot = slot == emptySlot ? emptySlot : placeOf[slot];
    }
    nodes = std::move(sorted);
}

// slots: positions among all nodes, on return among the part's own.
PartNodes takeNodes(const readgen::ModelNodes& all, std::vector<std::uint32_t>& slots)
{
    const readgen::UsedNodes used(slots.data(), slots.size());
    PartNodes out;
    out.ids.reserve(used.count());
    out.positions.reserve(3 * std::size_t(used.count()));
    all.visit(used, [&](std::uint32_t, std::uint32_t id, const float* position) {
        out.ids.push_back(id);
        out.positions.insert(out.positions.end(), position, position + 3);
    });
    for (std::uint32_t& slot : slots) {
        slot = readgen::isPosition(slot) ? used.rank(slot) : emptySlot;
    }
    if (!std::is_sorted(out.ids.begin(), out.ids.end())) {
        sortNodes(out, slots);
    }
    return out;
}

std::vector<std::uint32_t> slotsOf(const readgen::PartTable& table, std::size_t k, const readgen::ModelNodes& nodes,
                                   std::size_t file)
{
    const readgen::PartRecord& r = table.record(k);
    const bool byIndex = r.flags & readgen::partRefsByIndex;
    const readgen::PartReferences refs = {table.nodeReferences(k),
                                          static_cast<std::size_t>(r.numElements) * r.stride,
                                          r.stride,
                                          byIndex,
                                          readgen::thirdSlotMayBeEmpty(r.drawType),
                                          file};
    std::vector<std::uint32_t> slots(refs.count);
    const std::size_t done = resolveReferences(nodes, refs, slots.data());
    if (done < refs.count) {
        table.badReference(k, done,
                           (byIndex ? "node index " : "node ") + std::to_string(refs.refs[done]) +
                               (byIndex ? " is past the nodes of its file" : " is in no file of the model"));
    }
    return slots;
}

Part headOf(const readgen::PartTable& table, std::size_t k, std::size_t file)
{
    const readgen::PartRecord& r = table.record(k);
    Part part;
    part.id = r.id;
    part.name = table.name(k);
    part.kind = elementKindOf(r.drawType);
    part.file = static_cast<std::uint32_t>(file);
    part.propertyId = r.propertyId;
    part.propertyName = table.propertyName(k);
    part.materialId = r.materialId;
    part.materialName = table.materialName(k);
    if (r.flags & readgen::partHasColor) {
        std::copy_n(r.color, 4, part.color.begin());
    } else {
        readgen::paletteColor(r.ordinal, part.color.data());
    }
    return part;
}

// --- The model ---

class Loader
{
public:
    Loader(const std::string& modelFolder, const ModelProgress& progressFunction)
        : parent(modelFolder.substr(0, modelFolder.rfind('/'))), progress(progressFunction),
          start(readgen::readPartStart(modelFolder + "/" + readgen::partStartFile,
                                       modelFolder.substr(modelFolder.rfind('/') + 1)))
    {
    }
    Model load()
    {
        for (const std::string& file : start.files) {
            addNodes(parent + "/" + file, start, nodes);
            readgen::PartTable& table = tables.emplace_back(parent + "/" + file);
            table.checkStamp(start.stamp, std::string("its ") + readgen::partStartFile);
            for (std::size_t k = 0; k < table.size(); ++k) {
                total += table.record(k).numElements;
            }
        }
        for (std::size_t file = 0; file < tables.size(); ++file) {
            builder.addFile(start.files.size() > 1 ? start.files[file] : "");
            for (std::size_t k = 0; k < tables[file].size(); ++k) {
                addPart(tables[file], k, file);
            }
        }
        return builder.build();
    }

private:
    void addPart(const readgen::PartTable& table, std::size_t k, std::size_t file)
    {
        if (progress && !progress(done, total)) {
            throw ModelCancelled();
        }
        const readgen::PartRecord& r = table.record(k);
        std::vector<std::uint32_t> slots = slotsOf(table, k, nodes.all, file);
        PartNodes own = takeNodes(nodes.all, slots);
        const std::uint32_t* ids = table.elementIds(k);
        builder.addPart(headOf(table, k, file), true, std::move(own.ids), std::move(own.positions),
                        std::vector<std::uint32_t>(ids, ids + r.numElements), r.stride, std::move(slots));
        done += r.numElements;
    }

    const std::string parent;
    const ModelProgress& progress;
    const readgen::PartStart start;
    NodeFiles nodes;
    std::deque<readgen::PartTable> tables;
    ModelBuilder builder;
    std::uint64_t done = 0;
    std::uint64_t total = 0; // elements
};

} // namespace

ModelError::ModelError(const std::string& what) : std::runtime_error(what) {}
ModelError::~ModelError() = default;

ModelCancelled::ModelCancelled() : std::runtime_error("reading was stopped") {}
ModelCancelled::~ModelCancelled() = default;

Model readModelDirectory(const std::string& path, const ModelProgress& progress)
{
    std::error_code problem;
    const fs::path folder = fs::canonical(path, problem);
    if (problem) {
        throw ModelError(path + ": " + problem.message());
    }
    try {
        return Loader(folder.string(), progress).load();
    } catch (const readgen::BadFile& error) {
        throw ModelError(error.what());
    } catch (const std::invalid_argument& error) {
        throw ModelError(path + ": " + error.what());
    }
}

} // namespace kvo
