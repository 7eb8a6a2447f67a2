// The lines of a deck that its nodes are from.
#ifndef KVO_IMPORT_NODE_LINES_H
#define KVO_IMPORT_NODE_LINES_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kvo {

// Kept in runs of nodes whose lines are equally far apart: most decks are one run, which costs nothing to keep.
class NodeLines
{
public:
    struct Line
    {
        std::uint32_t sourceFile = 0; // index into Mesh::sourceFiles
        std::uint32_t number = 0;     // 1-based; 0: not known
    };

    // node: its position, above those of all that were added before.
    void add(std::size_t node, Line line);
    // Those of others, whose positions begin at firstNode here.
    void append(const NodeLines& others, std::size_t firstNode);
    Line at(std::size_t node) const;

private:
    struct Run
    {
        std::size_t node;
        std::size_t count;
        Line line;
        std::uint32_t step;

        bool takes(std::size_t next, Line nextLine) const;
    };

    std::vector<Run> runs;
};

} // namespace kvo

#endif
