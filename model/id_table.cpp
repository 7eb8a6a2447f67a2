#include <kvo/id_table.h>

#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace kvo {

namespace {

bool continues(std::uint32_t before, std::uint32_t id)
{
    return id != 0 && id - 1 == before;
}

std::size_t countRuns(Span<std::uint32_t> ids)
{
    std::size_t runs = ids.empty() ? 0 : 1;
    for (std::size_t k = 1; k < ids.size(); ++k) {
        runs += continues(ids[k - 1], ids[k]) ? 0 : 1;
    }
    return runs;
}

// Of `count` things, in the order of their ids; equal ids in the order of position.
template <class IdOf> std::vector<std::uint32_t> orderById(std::size_t count, IdOf idOf)
{
    std::vector<std::uint32_t> order(count);
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) { return idOf(a) < idOf(b); });
    return order;
}

bool strictlyAscending(Span<std::uint32_t> ids)
{
    return std::adjacent_find(ids.begin(), ids.end(), [](std::uint32_t a, std::uint32_t b) { return a >= b; }) ==
           ids.end();
}

} // namespace

struct [[gnu::visibility("hidden")]] IdTable::Impl
{
    struct Run
    {
        std::uint32_t position; // of its first id
        std::uint32_t id;       // consecutive from here on, to the next run
    };

    // The array itself is the caller's to keep where there are no runs.
    void setUp(Span<std::uint32_t> ids);
    std::uint32_t runLength(std::size_t run) const;
    std::uint32_t findInRuns(std::uint32_t id) const;
    std::uint32_t findInArray(std::uint32_t id) const;

    std::uint32_t count = 0;
    std::vector<Run> runs;            // by position; empty where the array is kept
    std::vector<std::uint32_t> array; // by position; empty where runs are kept
    std::vector<std::uint32_t> byId;  // runs or positions in the order of their ids, where that is another
};

// A run costs two numbers, and a third where runs are not in the order of their ids. Runs that overlap could not be
// searched: then the array is kept.
void IdTable::Impl::setUp(Span<std::uint32_t> ids)
{
    if (ids.size() >= notFound) {
        throw std::length_error("more ids than one table can hold");
    }
    count = static_cast<std::uint32_t>(ids.size());
    const bool inOrder = strictlyAscending(ids);
    const std::size_t runCount = countRuns(ids);
    if (3 * runCount <= ids.size()) {
        runs.reserve(runCount);
        for (std::uint32_t k = 0; k < count; ++k) {
            if (k == 0 || !continues(ids[k - 1], ids[k])) {
                runs.push_back({k, ids[k]});
            }
        }
        if (inOrder) {
            return;
        }
        byId = orderById(runs.size(), [this](std::uint32_t run) { return runs[run].id; });
        const auto overlap = [this](std::uint32_t a, std::uint32_t b) {
            return runs[b].id - runs[a].id < runLength(a);
        };
        if (std::adjacent_find(byId.begin(), byId.end(), overlap) == byId.end()) {
            return;
        }
        runs = {};
    }
    if (!inOrder) {
        byId = orderById(ids.size(), [ids](std::uint32_t position) { return ids[position]; });
    }
}

std::uint32_t IdTable::Impl::runLength(std::size_t run) const
{
    return (run + 1 < runs.size() ? runs[run + 1].position : count) - runs[run].position;
}

std::uint32_t IdTable::Impl::findInRuns(std::uint32_t id) const
{
    // How many runs begin at or below the id.
    std::size_t low = 0, high = runs.size();
    const auto runAt = [this](std::size_t k) { return byId.empty() ? k : byId[k]; };
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (runs[runAt(middle)].id <= id) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    if (low == 0) {
        return notFound;
    }
    const std::size_t run = runAt(low - 1);
    const std::uint32_t offset = id - runs[run].id;
    return offset < runLength(run) ? runs[run].position + offset : notFound;
}

std::uint32_t IdTable::Impl::findInArray(std::uint32_t id) const
{
    if (byId.empty()) {
        const auto at = std::lower_bound(array.begin(), array.end(), id);
        return at != array.end() && *at == id ? static_cast<std::uint32_t>(at - array.begin()) : notFound;
    }
    const auto at =
        std::lower_bound(byId.begin(), byId.end(), id,
                         [this](std::uint32_t position, std::uint32_t wanted) { return array[position] < wanted; });
    return at != byId.end() && array[*at] == id ? *at : notFound;
}

// --- The public class ---

IdTable::IdTable() : impl(std::make_shared<Impl>()) {}

IdTable::IdTable(Span<std::uint32_t> ids)
{
    const auto made = std::make_shared<Impl>();
    made->setUp(ids);
    if (made->runs.empty()) {
        made->array.assign(ids.begin(), ids.end());
    }
    impl = made;
}

IdTable::IdTable(std::vector<std::uint32_t>&& ids)
{
    const auto made = std::make_shared<Impl>();
    made->setUp(ids);
    if (made->runs.empty()) {
        made->array = std::move(ids);
        made->array.shrink_to_fit();
    }
    impl = made;
}

std::uint32_t IdTable::size() const
{
    return impl->count;
}

std::uint32_t IdTable::operator[](std::uint32_t position) const
{
    if (impl->runs.empty()) {
        return impl->array[position];
    }
    const auto behind = std::upper_bound(impl->runs.begin(), impl->runs.end(), position,
                                         [](std::uint32_t p, const Impl::Run& run) { return p < run.position; });
    return behind[-1].id + (position - behind[-1].position);
}

std::uint32_t IdTable::find(std::uint32_t id) const
{
    return impl->runs.empty() ? impl->findInArray(id) : impl->findInRuns(id);
}

bool IdTable::ascending() const
{
    return impl->byId.empty();
}

// Runs do not overlap.
bool IdTable::repeats() const
{
    const std::vector<std::uint32_t>& order = impl->byId;
    return impl->runs.empty() &&
           std::adjacent_find(order.begin(), order.end(), [this](std::uint32_t a, std::uint32_t b) {
               return impl->array[a] == impl->array[b];
           }) != order.end();
}

std::uint32_t IdTable::lowest() const
{
    if (impl->count == 0) {
        return 0;
    }
    const std::uint32_t first = impl->byId.empty() ? 0 : impl->byId.front();
    return impl->runs.empty() ? impl->array[first] : impl->runs[first].id;
}

std::uint32_t IdTable::highest() const
{
    if (impl->count == 0) {
        return 0;
    }
    const std::vector<std::uint32_t>& order = impl->byId;
    if (impl->runs.empty()) {
        return impl->array[order.empty() ? impl->count - 1 : order.back()];
    }
    const std::size_t last = order.empty() ? impl->runs.size() - 1 : order.back();
    return impl->runs[last].id + impl->runLength(last) - 1;
}

void IdTable::copy(std::uint32_t first, std::uint32_t number, std::uint32_t* out) const
{
    const std::vector<Impl::Run>& runs = impl->runs;
    if (runs.empty()) {
        std::copy_n(impl->array.begin() + first, number, out);
        return;
    }
    auto next = std::upper_bound(runs.begin(), runs.end(), first,
                                 [](std::uint32_t p, const Impl::Run& run) { return p < run.position; });
    for (std::uint32_t position = first; position < first + number; ++position) {
        next += next != runs.end() && next->position == position ? 1 : 0;
        *out++ = next[-1].id + (position - next[-1].position);
    }
}

std::vector<std::uint32_t> IdTable::toVector() const
{
    std::vector<std::uint32_t> ids(impl->count);
    copy(0, impl->count, ids.data());
    return ids;
}

std::size_t IdTable::bytes() const
{
    return sizeof(Impl) + impl->runs.capacity() * sizeof(Impl::Run) +
           (impl->array.capacity() + impl->byId.capacity()) * sizeof(std::uint32_t);
}

} // namespace kvo
