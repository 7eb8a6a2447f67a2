// Elements of a .msh file on their way into the mesh.
#ifndef KVO_IMPORT_MSH_ELEMENTS_H
#define KVO_IMPORT_MSH_ELEMENTS_H

#include <array>
#include <vector>

#include "import_log.h"
#include "msh_groups.h"
#include "msh_input.h"
#include "msh_types.h"

namespace kvo {

class MshElements
{
public:
    MshElements(Mesh& mesh, MshInput& input, MshGroups& groups, ImportLog& log)
        : mesh(mesh), rows(mesh), input(input), groups(groups), log(log)
    {
    }

    // The sections' bodies.
    void readVersion1();
    void readVersion2();
    void readVersion40();
    void readVersion41();

    // When all is read.
    void finish();

private:
    // What stands before an element's nodes.
    struct Head
    {
        std::int64_t id = 0;
        std::int64_t group = 0;
        std::int64_t entity = 0;
        std::uint32_t line = 0;
    };

    void readTags2(std::int64_t count, Head& head);
    void readTextElement2();
    void readBytes2(std::int64_t count);
    // False where the rest of the section cannot be read.
    bool readBlock4(MshGroups::Key entity, std::int64_t number, std::int64_t count, bool idsAreSizes);
    void addToGroups(const MshType& type, const std::vector<std::int64_t>& in, std::int64_t id);
    bool skipUnknown(std::int64_t number, std::int64_t count);
    void readNodes(int count, bool areSizes);
    void add(const MshType& type, const Head& head);
    void addPoint(const MshType& type, const Head& head);
    bool repeatsLast(const MshType& type, const Head& head);
    void foldCopies();
    std::uint32_t rowOf(const MshType& type);

    static constexpr std::size_t mostNodes = 125;
    static constexpr std::size_t mostTypes = 128;

    Mesh& mesh;
    MeshRows rows;
    MshInput& input;
    MshGroups& groups;
    ImportLog& log;
    std::array<std::int64_t, mostNodes> nodes = {};     // of the element that is being read
    std::array<std::uint32_t, mostTypes> typeRows = {}; // by number; row + 1, or 0
    const MshType* lastType = nullptr; // of the last element of versions 1 and 2, which may have copies
    Head last;
    std::array<std::int64_t, 8> lastCorners = {};
    bool copiesPossible = false; // versions 1 and 2 only
};

} // namespace kvo

#endif
