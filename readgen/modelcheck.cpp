// What must hold of a model before it is written.
#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>

#include "modeldata.h"
#include "modelnodes.h"

namespace readgen {

namespace {

constexpr std::size_t longestFileName = 255;
constexpr std::size_t longestText = 65535;

[[noreturn]] void cannotWrite(const std::string& what)
{
    throw CannotWrite(what);
}

std::string inFile(const ModelData& model, const FileData& file)
{
    return model.files.size() > 1 ? "file " + file.name + ": " : "";
}

std::string inPart(const ModelData& model, const FileData& file, const PartData& part)
{
    return inFile(model, file) + "part " + std::to_string(part.part.id) + ": ";
}

// --- Names ---

bool isReserved(const std::string& component)
{
    for (const char* name : {nodeIdsFile, nodeCoordsFile, partsFile, elementsFile, partStartFile}) {
        if (component == name) {
            return true;
        }
    }
    return component.empty() || component == "." || component == "..";
}

// A relative path that stays below the directory and cannot collide with the files of a model folder.
void checkName(const std::string& name, const char* what)
{
    const std::string quoted = std::string(what) + " \"" + name + "\"";
    if (name.size() > longestFileName) {
        cannotWrite(quoted + " has " + std::to_string(name.size()) + " bytes; at most 255 are allowed");
    }
    if (name.find('\0') != std::string::npos) {
        cannotWrite(std::string(what) + " holds a NUL character");
    }
    for (std::size_t start = 0; start <= name.size();) {
        const std::size_t end = std::min(name.find('/', start), name.size());
        if (isReserved(name.substr(start, end - start))) {
            cannotWrite(quoted + " is no name that a model can have");
        }
        start = end + 1;
    }
}

void checkNames(const ModelData& model)
{
    if (model.dirName.empty()) {
        cannotWrite("no directory to write into");
    }
    checkName(model.modelName, "model name");
    std::set<std::string> seen;
    for (const FileData& file : model.files) {
        checkName(file.name, "file name");
        if (!seen.insert(file.name).second) {
            cannotWrite("file name \"" + file.name + "\" is used twice");
        }
    }
}

// --- Nodes ---

void sortNodes(FileData& file)
{
    if (std::is_sorted(file.ids.begin(), file.ids.end())) {
        return;
    }
    std::vector<std::uint32_t> order(file.ids.size());
    std::iota(order.begin(), order.end(), 0u);
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) { return file.ids[a] < file.ids[b]; });
    std::vector<std::uint32_t> ids;
    std::vector<float> xyz;
    ids.reserve(file.ids.size());
    xyz.reserve(file.xyz.size());
    for (std::uint32_t k : order) {
        ids.push_back(file.ids[k]);
        xyz.insert(xyz.end(), &file.xyz[std::size_t{3} * k], &file.xyz[std::size_t{3} * k] + 3);
    }
    file.ids.swap(ids);
    file.xyz.swap(xyz);
}

void prepareNodes(const ModelData& model, FileData& file)
{
    sortNodes(file);
    const std::string where = inFile(model, file);
    if (!file.ids.empty() && file.ids.front() == 0) {
        cannotWrite(where + "node id 0 is reserved for \"no node\"");
    }
    if (!file.ids.empty() && file.ids.back() == noNode) {
        cannotWrite(where + "node id " + std::to_string(noNode) + " is reserved for \"no node\"");
    }
    const auto twice = std::adjacent_find(file.ids.begin(), file.ids.end());
    if (twice != file.ids.end()) {
        cannotWrite(where + "node id " + std::to_string(*twice) + " occurs twice");
    }
    const auto bad = std::find_if(file.xyz.begin(), file.xyz.end(), [](float v) { return !std::isfinite(v); });
    if (bad != file.xyz.end()) {
        cannotWrite(where + "a coordinate of node " + std::to_string(file.ids[(bad - file.xyz.begin()) / 3]) +
                    " is not a finite number");
    }
}

ModelNodes prepareAllNodes(ModelData& model)
{
    std::uint64_t total = 0;
    for (FileData& file : model.files) {
        total += file.ids.size();
        if (total > maxNodes) {
            cannotWrite("more than " + std::to_string(maxNodes) + " nodes");
        }
        prepareNodes(model, file);
    }
    ModelNodes nodes;
    for (const FileData& file : model.files) {
        nodes.addFile(file.ids.data(), file.xyz.data(), static_cast<std::uint32_t>(file.ids.size()));
    }
    return nodes;
}

// --- Parts ---

void checkPartHead(const std::string& where, const PartData& data)
{
    const ModelPart& part = data.part;
    if (!strideFits(part.drawType, part.stride)) {
        cannotWrite(where + "a stride of " + std::to_string(part.stride) + " does not fit draw type " +
                    std::to_string(part.drawType) + " (" + familyOf(part.drawType) + ")");
    }
    if (data.numElements > maxSlots / part.stride) {
        cannotWrite(where + std::to_string(data.numElements) + " elements are more than one part may have");
    }
    for (const std::string* text : {&part.name, &part.propertyName, &part.materialName}) {
        if (text->size() > longestText) {
            cannotWrite(where + "a name of " + std::to_string(text->size()) + " bytes; at most " +
                        std::to_string(longestText) + " are allowed");
        }
    }
    for (float v : part.color) {
        if (part.hasColor && !(v >= 0 && v <= 1)) {
            cannotWrite(where + "a colour outside 0 to 1");
        }
    }
}

void checkElementIds(const std::string& where, const PartData& data)
{
    std::vector<std::uint32_t> ids = data.ids;
    if (!std::is_sorted(ids.begin(), ids.end())) {
        std::sort(ids.begin(), ids.end());
    }
    const auto twice = std::adjacent_find(ids.begin(), ids.end());
    if (twice != ids.end()) {
        cannotWrite(where + "element id " + std::to_string(*twice) + " occurs twice");
    }
}

void checkPartIds(const ModelData& model)
{
    std::set<unsigned int> seen;
    for (const FileData& file : model.files) {
        for (const PartData& data : file.parts) {
            if (!seen.insert(data.part.id).second) {
                cannotWrite(inFile(model, file) + "part id " + std::to_string(data.part.id) + " occurs twice");
            }
        }
    }
}

// Resolves all references, which finds the nodes that the part uses.
Box prepareElements(const std::string& where, const ModelNodes& nodes, std::size_t ownFile, PartData& data)
{
    const PartReferences refs = {
        data.refs.data(), data.refs.size(), data.part.stride, data.byIndex, thirdSlotMayBeEmpty(data.part.drawType),
        ownFile};
    std::vector<std::uint32_t> positions(refs.count);
    const std::size_t done = resolveReferences(nodes, refs, positions.data());
    if (done < refs.count) {
        cannotWrite(where + "element " + std::to_string(data.ids[done / data.part.stride]) + " uses node " +
                    (data.byIndex ? "index " : "") + std::to_string(data.refs[done]) + ", which does not exist");
    }
    const UsedNodes used(positions.data(), positions.size());
    Box box;
    nodes.visit(used, [&box](std::uint32_t, std::uint32_t, const float* xyz) { box.add(xyz); });
    data.numNodes = used.count();
    box.copyTo(data.extents);
    return box;
}

// The box of all parts; of all nodes when no part has any.
Box modelBox(const ModelData& model, const Box& parts)
{
    Box box = parts;
    if (box.empty()) {
        for (const FileData& file : model.files) {
            for (std::size_t k = 0; k < file.ids.size(); ++k) {
                box.add(&file.xyz[3 * k]);
            }
        }
    }
    return box;
}

// A part without elements gets the model's box: it must not pull the extents of what is shown to some other place.
void finishExtents(ModelData& model, const Box& box)
{
    box.copyTo(model.extents);
    for (FileData& file : model.files) {
        for (PartData& data : file.parts) {
            if (data.numNodes == 0) {
                box.copyTo(data.extents);
            }
        }
    }
}

} // namespace

void prepareModel(ModelData& model)
{
    checkNames(model);
    checkPartIds(model);
    const ModelNodes nodes = prepareAllNodes(model);
    Box box;
    for (std::size_t k = 0; k < model.files.size(); ++k) {
        for (PartData& data : model.files[k].parts) {
            const std::string where = inPart(model, model.files[k], data);
            checkPartHead(where, data);
            checkElementIds(where, data);
            box.add(prepareElements(where, nodes, k, data));
        }
    }
    finishExtents(model, modelBox(model, box));
}

} // namespace readgen
