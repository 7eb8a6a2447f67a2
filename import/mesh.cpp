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

ElementBlock& MeshFile::blockFor(std::uint32_t type, std::uint32_t sourceFile)
{
    if (!blocks.empty()) {
        ElementBlock& last = blocks.back();
        if (last.type == type && last.sourceFile == sourceFile && last.size() < ElementBlock::maxElements) {
            return last;
        }
    }
    ElementBlock& block = blocks.emplace_back();
    block.type = type;
    block.sourceFile = sourceFile;
    return block;
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

} // namespace kvo
