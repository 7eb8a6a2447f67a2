// A set of ids as ranges: what decks list in long runs stays short.
#ifndef KVO_IMPORT_ID_SET_H
#define KVO_IMPORT_ID_SET_H

#include <cstdint>
#include <functional>
#include <vector>

#include <kvo/id_range.h>

namespace kvo {

class IdSet
{
public:
    std::vector<IdRange> ranges; // none of them empty

    // Appends. An id that goes on where the last range ends makes that one longer.
    void add(std::int64_t id);
    void addRange(std::int64_t first, std::int64_t last, std::int64_t step = 1);

    // Ascending, each id once, and of those only the ones that known holds (ascending and unique). Returns how many ids
    // went because they are not known; each id counts once, of ranges only the first and last.
    std::uint64_t keepKnown(const std::vector<std::int64_t>& known);

    std::uint64_t size() const; // counts what ranges share more than once
    void forEach(const std::function<void(std::int64_t)>& visit) const;
};

} // namespace kvo

#endif
