// What a mesh can say about itself.
#include "mesh.h"

#include <algorithm>

namespace kvo {

const char* familyName(Family family)
{
    static const char* const names[familyCount] = {"shell", "solid", "beam", "discrete"};
    return names[static_cast<int>(family)];
}

int cornerCount(Shape shape)
{
    static const int counts[] = {2, 3, 4, 4, 5, 6, 8};
    return counts[static_cast<int>(shape)];
}

void MeshFile::addNode(std::int64_t id, double x, double y, double z)
{
    nodeIds.push_back(id);
    xyz.insert(xyz.end(), {x, y, z});
}

void MeshFile::addNode(std::int64_t id, double x, double y, double z, std::uint32_t sourceFile, std::uint32_t line)
{
    nodeLines.add(nodeIds.size(), {sourceFile, line});
    addNode(id, x, y, z);
}

ElementBlock& MeshFile::blockFor(std::uint32_t type, std::uint32_t sourceFile)
{
    if (lastBlock.size() <= type) {
        lastBlock.resize(type + 1, 0);
    }
    if (lastBlock[type] > 0 && lastBlock[type] <= blocks.size()) {
        ElementBlock& last = blocks[lastBlock[type] - 1];
        if (last.type == type && last.sourceFile == sourceFile && last.size() < ElementBlock::maxElements) {
            return last;
        }
    }
    lastBlock[type] = blocks.size() + 1;
    ElementBlock& block = blocks.emplace_back();
    block.type = type;
    block.sourceFile = sourceFile;
    return block;
}

void MeshFile::addElement(std::uint32_t type, std::uint32_t sourceFile, std::uint32_t line, std::int64_t id,
                          std::uint32_t part, const std::int64_t* nodes, std::size_t entries)
{
    ElementBlock& block = blockFor(type, sourceFile);
    block.ids.push_back(id);
    block.part.push_back(part);
    block.line.push_back(line);
    block.nodes.insert(block.nodes.end(), nodes, nodes + entries);
}

void MeshFile::addUndrawn(const std::string& type, std::int64_t id, const std::int64_t* nodes, std::size_t count)
{
    const auto known = undrawnIndex.emplace(type, undrawn.size());
    if (known.second) {
        undrawn.emplace_back().type = type;
    }
    UndrawnElements& list = undrawn[known.first->second];
    list.ids.push_back(id);
    list.starts.push_back(list.nodes.size());
    list.nodes.insert(list.nodes.end(), nodes, nodes + count);
}

void MeshFile::orient(std::int64_t element, const std::array<double, 3>& vector, int family)
{
    const auto known = orientationIndex.emplace(std::make_pair(vector, family), orientations.size());
    if (known.second) {
        orientations.push_back({vector, {}, family});
    }
    orientations[known.first->second].elements.add(element);
}

std::uint64_t Mesh::nodeCount() const
{
    std::uint64_t count = 0;
    for (const MeshFile& file : files) {
        count += file.nodeIds.size();
    }
    return count;
}

std::uint64_t Mesh::elementCount() const
{
    std::uint64_t count = 0;
    for (const MeshFile& file : files) {
        for (const ElementBlock& block : file.blocks) {
            count += block.size() - static_cast<std::size_t>(std::count(block.part.begin(), block.part.end(), noPart));
        }
    }
    return count;
}

Place Mesh::placeOf(const ElementBlock& block, std::size_t element) const
{
    return {block.sourceFile < sourceFiles.size() ? sourceFiles[block.sourceFile] : std::string(), block.line[element]};
}

Place Mesh::placeOfNode(const MeshFile& file, std::size_t node) const
{
    const NodeLines::Line line = file.nodeLines.at(node);
    return {line.sourceFile < sourceFiles.size() ? sourceFiles[line.sourceFile] : std::string(), line.number};
}

std::uint32_t MeshRows::type(const std::string& name, Family family, Shape shape, bool oriented)
{
    const std::uint32_t next = static_cast<std::uint32_t>(mesh.types.size());
    const auto known = types.emplace(std::make_pair(name, std::make_pair(family, shape)), next);
    if (known.second) {
        mesh.types.push_back({name, family, shape, oriented});
    }
    return known.first->second;
}

std::uint32_t MeshRows::part(std::int64_t id)
{
    if (id == lastId && lastPart != noPart) {
        return lastPart;
    }
    const auto known = partsById.emplace(id, static_cast<std::uint32_t>(mesh.parts.size()));
    if (known.second) {
        mesh.parts.emplace_back().id = id;
    }
    lastId = id;
    lastPart = known.first->second;
    return lastPart;
}

std::uint32_t MeshRows::part(const std::string& name)
{
    const auto known = partsByName.emplace(name, static_cast<std::uint32_t>(mesh.parts.size()));
    if (known.second) {
        mesh.parts.emplace_back().name = name;
    }
    return known.first->second;
}

} // namespace kvo
