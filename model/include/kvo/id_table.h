// The ids of numbered things, from position to id and from id to position.
//
// Decks number nodes and elements in long runs, so ids are kept as runs of consecutive numbers where that is shorter,
// else as an array: 0 to 4 bytes an id, and 4 more where an array is not ascending. No look-up takes more than
// O(log n), and of ids in one run it is O(1).
//
//   const kvo::IdTable ids(elementIds);
//   ids[0];          // the id of the first element
//   ids.find(10001); // its position, or IdTable::notFound
//
// A value that never changes; copies share what they hold. Look-ups may come from several threads at once.
#ifndef KVO_ID_TABLE_H
#define KVO_ID_TABLE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <kvo/span.h>
#include <kvoexport.h>

namespace kvo {

class KVO_EXPORT IdTable
{
public:
    static constexpr std::uint32_t notFound = 0xFFFFFFFF;

    IdTable(); // of nothing
    // ids in order of position; fewer than notFound, else std::length_error. O(n) when ascending, else O(n log n).
    explicit IdTable(Span<std::uint32_t> ids);
    explicit IdTable(std::vector<std::uint32_t>&& ids); // keeps the array where that is the way to keep the ids

    std::uint32_t size() const;
    bool empty() const { return size() == 0; }
    // The id at a position below size().
    std::uint32_t operator[](std::uint32_t position) const;
    // The position of an id; of ids that occur more than once the lowest; notFound where there is none.
    std::uint32_t find(std::uint32_t id) const;
    bool contains(std::uint32_t id) const { return find(id) != notFound; }
    // Ids grow with their positions, and so none occurs twice.
    bool ascending() const;
    // Whether an id occurs more than once. O(n) where ids are not ascending.
    bool repeats() const;
    // The lowest and the highest id; 0 of an empty table.
    std::uint32_t lowest() const;
    std::uint32_t highest() const;
    // Writes the ids of [first, first + number) to out, which has room for them.
    void copy(std::uint32_t first, std::uint32_t number, std::uint32_t* out) const;
    std::vector<std::uint32_t> toVector() const;
    // Bytes on the heap; copies share them.
    std::size_t bytes() const;

private:
    struct Impl;
    std::shared_ptr<const Impl> impl;
};

} // namespace kvo

#endif
