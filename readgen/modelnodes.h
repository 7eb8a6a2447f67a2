// The nodes of all files of a model seen as one list, and the choice of those that a part uses. A "position" is an
// index in that list: file 0's nodes, then file 1's, and so on. Private to readgen/.
#ifndef MODELNODES_H
#define MODELNODES_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

#include "modelformat.h"

namespace readgen {

// "No such node": as positions go, negative when read as a signed number.
constexpr std::uint32_t notFound = 0x80000000u;
inline bool isPosition(std::uint32_t value)
{
    return value < notFound;
}

// A set of small numbers that tells how many of its members are below one of them. 5/8 byte per number.
class RankedBits
{
public:
    void resize(std::size_t range) { bits.assign((range + 7) / 8, 0); }
    void set(std::uint32_t k) { bits[k >> 3] |= static_cast<std::uint8_t>(1u << (k & 7)); }
    void finish(); // after the last set, before the first rank
    bool test(std::uint32_t k) const { return bits[k >> 3] >> (k & 7) & 1; }
    std::uint32_t rank(std::uint32_t k) const
    {
        return before[k >> 3] + bitCounts[bits[k >> 3] & ((1u << (k & 7)) - 1)];
    }
    std::uint32_t count() const { return total; }
    template <class Use> void forEach(Use use) const
    {
        for (std::size_t byte = 0; byte < bits.size(); ++byte) {
            for (unsigned int rest = bits[byte]; rest != 0; rest &= rest - 1) {
                use(static_cast<std::uint32_t>(byte * 8 + __builtin_ctz(rest)));
            }
        }
    }

private:
    static const std::uint8_t bitCounts[256];
    std::vector<std::uint8_t> bits;
    std::vector<std::uint32_t> before;
    std::uint32_t total = 0;
};

// From ascending node ids to their indices.
class IdIndex
{
public:
    IdIndex(const std::uint32_t* ids, std::uint32_t count);
    std::uint32_t find(std::uint32_t id) const // notFound when absent
    {
        const std::uint32_t distance = id - firstId; // huge for an id below the first
        if (distance > range) {
            return notFound;
        }
        if (contiguous) {
            return distance;
        }
        if (dense) {
            return present.test(distance) ? present.rank(distance) : notFound;
        }
        return findInBucket(id, distance);
    }

private:
    std::uint32_t findInBucket(std::uint32_t id, std::uint32_t distance) const;
    void fillBuckets(std::uint32_t count);

    const std::uint32_t* ids;
    std::uint32_t firstId;
    std::uint32_t range; // last id - first id
    bool contiguous;
    bool dense;
    RankedBits present;                     // dense ids: the distances from the first one
    unsigned int shift = 0;                 // sparse ids: distance >> shift is the bucket,
    std::vector<std::uint32_t> bucketStart; // whose ids begin here
};

// The nodes of the model files, in file order. Look-ups may come from several threads; the arrays stay the caller's.
class ModelNodes
{
public:
    void addFile(const std::uint32_t* ids, const float* xyz, std::uint32_t count);
    std::size_t numFiles() const { return files.size(); }
    std::uint32_t numNodes() const { return total; }
    std::uint32_t start(std::size_t file) const { return files[file].start; }
    std::uint32_t count(std::size_t file) const { return files[file].count; }

    // Position of the node with that id in the first file that has it.
    std::uint32_t find(std::uint32_t id) const;
    // One file's ids, found as indices in that file.
    const IdIndex& index(std::size_t file) const { return indexOf(files[file]); }
    // use(position, id, xyz) for every member of a set of positions that forEach enumerates in ascending order.
    template <class Set, class Use> void visit(const Set& set, Use use) const
    {
        auto next = files.begin();
        Span file = {nullptr, nullptr, 0, 0};
        set.forEach([&](std::uint32_t position) {
            while (position - file.start >= file.count) {
                file = *next++;
            }
            const std::size_t k = position - file.start;
            use(position, file.ids[k], file.xyz + 3 * k);
        });
    }

private:
    struct Span
    {
        const std::uint32_t* ids;
        const float* xyz;
        std::uint32_t count;
        std::uint32_t start;
    };
    struct File : Span
    {
        explicit File(const Span& span) : Span(span) {}
        mutable std::once_flag indexed; // most files of a large model are never searched
        mutable std::vector<IdIndex> index;
    };
    static const IdIndex& indexOf(const File& file);
    static std::uint32_t findIn(const File& file, std::uint32_t id);

    std::deque<File> files; // a File cannot be moved
    std::uint32_t total = 0;
};

// The node references of a part as they are stored, and whose they are.
struct PartReferences
{
    const std::uint32_t* refs;
    std::size_t count;
    unsigned int stride;
    bool byIndex;
    bool thirdMayBeEmpty;
    std::size_t ownFile;
};

// Turns references into positions (0xFFFFFFFF where a slot is empty). Returns the number of references turned: less
// than all when the one at that place names no node.
std::size_t resolveReferences(const ModelNodes& nodes, const PartReferences& part, std::uint32_t* positions);

// The distinct positions among some, ascending: a table of bits over their range, or a sorted list when they are too
// few for that.
class UsedNodes
{
public:
    UsedNodes(const std::uint32_t* positions, std::size_t count); // those that are no positions are passed over
    std::uint32_t count() const { return sparse ? static_cast<std::uint32_t>(sorted.size()) : marks.count(); }
    std::uint32_t rank(std::uint32_t position) const // of a member
    {
        return sparse ? rankInList(position) : marks.rank(position - first);
    }
    template <class Use> void forEach(Use use) const
    {
        for (std::uint32_t position : sorted) {
            use(position);
        }
        if (!sparse) {
            marks.forEach([&](std::uint32_t k) { use(first + k); });
        }
    }

private:
    void fillList(const std::uint32_t* positions, std::size_t count);
    std::uint32_t rankInList(std::uint32_t position) const;

    std::uint32_t first = 0;
    bool sparse = true;
    RankedBits marks;
    std::vector<std::uint32_t> sorted;
};

// A box that takes in points; xmin, xmax, ymin, ymax, zmin, zmax.
struct Box
{
    Box();
    void add(const float* xyz)
    {
        for (int axis = 0; axis < 3; ++axis) {
            limits[2 * axis] = xyz[axis] < limits[2 * axis] ? xyz[axis] : limits[2 * axis];
            limits[2 * axis + 1] = xyz[axis] > limits[2 * axis + 1] ? xyz[axis] : limits[2 * axis + 1];
        }
    }
    void add(const Box& box);
    bool empty() const { return limits[0] > limits[1]; }
    void copyTo(float* extents) const; // zeros when empty

    float limits[6];
};

} // namespace readgen

#endif
