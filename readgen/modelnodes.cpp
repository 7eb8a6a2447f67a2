// Finding the nodes of a model by id and choosing those of a part.
#include "modelnodes.h"

#include <algorithm>
#include <limits>

namespace readgen {

namespace {

// A table over the range of some numbers is worth it up to this many entries per number.
constexpr std::uint64_t rangePerMember = 8;
constexpr unsigned int idsPerBucket = 4;

} // namespace

// --- RankedBits ---

#define B2(n) n, n + 1, n + 1, n + 2
#define B4(n) B2(n), B2(n + 1), B2(n + 1), B2(n + 2)
#define B6(n) B4(n), B4(n + 1), B4(n + 1), B4(n + 2)
const std::uint8_t RankedBits::bitCounts[256] = {B6(0), B6(1), B6(1), B6(2)};
#undef B6
#undef B4
#undef B2

void RankedBits::finish()
{
    before.resize(bits.size());
    total = 0;
    for (std::size_t byte = 0; byte < bits.size(); ++byte) {
        before[byte] = total;
        total += bitCounts[bits[byte]];
    }
}

// --- IdIndex ---

IdIndex::IdIndex(const std::uint32_t* idList, std::uint32_t count)
    : ids(idList), firstId(count ? idList[0] : 1), range(count ? idList[count - 1] - idList[0] : 0),
      contiguous(count && range == count - 1), dense(range / rangePerMember <= count)
{
    if (contiguous) {
        return;
    }
    if (!dense || count == 0) {
        fillBuckets(count);
        return;
    }
    present.resize(std::size_t{range} + 1);
    for (std::uint32_t k = 0; k < count; ++k) {
        present.set(ids[k] - firstId);
    }
    present.finish();
}

void IdIndex::fillBuckets(std::uint32_t count)
{
    dense = false;
    const std::uint32_t wanted = count / idsPerBucket + 1;
    while ((range >> shift) >= wanted) {
        ++shift;
    }
    bucketStart.assign((range >> shift) + 2, count);
    for (std::uint32_t k = count; k-- > 0;) {
        bucketStart[(ids[k] - firstId) >> shift] = k;
    }
    for (std::size_t bucket = bucketStart.size() - 1; bucket-- > 0;) {
        bucketStart[bucket] = std::min(bucketStart[bucket], bucketStart[bucket + 1]);
    }
}

std::uint32_t IdIndex::findInBucket(std::uint32_t id, std::uint32_t distance) const
{
    const std::uint32_t* begin = ids + bucketStart[distance >> shift];
    const std::uint32_t* end = ids + bucketStart[(distance >> shift) + 1];
    const std::uint32_t* hit = std::lower_bound(begin, end, id);
    return hit != end && *hit == id ? static_cast<std::uint32_t>(hit - ids) : notFound;
}

// --- ModelNodes ---

void ModelNodes::addFile(const std::uint32_t* ids, const float* xyz, std::uint32_t count)
{
    files.emplace_back(Span{ids, xyz, count, total});
    total += count;
}

const IdIndex& ModelNodes::indexOf(const File& file)
{
    std::call_once(file.indexed, [&file] { file.index.emplace_back(file.ids, file.count); });
    return file.index.front();
}

std::uint32_t ModelNodes::findIn(const File& file, std::uint32_t id)
{
    if (file.count == 0 || id < file.ids[0] || id > file.ids[file.count - 1]) {
        return notFound;
    }
    const std::uint32_t k = indexOf(file).find(id);
    return isPosition(k) ? file.start + k : notFound;
}

std::uint32_t ModelNodes::find(std::uint32_t id) const
{
    std::uint32_t position = notFound;
    for (std::size_t k = 0; k < files.size() && !isPosition(position); ++k) {
        position = findIn(files[k], id);
    }
    return position;
}

// --- References ---

namespace {

template <class Find>
std::size_t resolveEach(const PartReferences& part, std::uint32_t noNodeToo, Find find, std::uint32_t* positions)
{
    unsigned int slot = 0;
    for (std::size_t k = 0; k < part.count; ++k) {
        const std::uint32_t ref = part.refs[k];
        const bool mayBeEmpty = part.thirdMayBeEmpty && slot == 2;
        slot = slot + 1 == part.stride ? 0 : slot + 1;
        positions[k] = find(ref);
        if (isPosition(positions[k])) {
            continue;
        }
        if (!mayBeEmpty || (ref != noNode && ref != noNodeToo)) {
            return k;
        }
        positions[k] = noNode;
    }
    return part.count;
}

} // namespace

std::size_t resolveReferences(const ModelNodes& nodes, const PartReferences& part, std::uint32_t* positions)
{
    const std::uint32_t start = nodes.start(part.ownFile);
    const std::uint32_t count = nodes.count(part.ownFile);
    if (part.byIndex) {
        const auto find = [=](std::uint32_t index) { return index < count ? start + index : notFound; };
        return resolveEach(part, noNode, find, positions);
    }
    // The part's own file comes first, then the others in order. Id 0 stands for no node.
    const IdIndex& own = nodes.index(part.ownFile);
    const auto find = [&nodes, &own, start](std::uint32_t id) {
        const std::uint32_t k = own.find(id);
        return isPosition(k) ? start + k : nodes.find(id);
    };
    return resolveEach(part, 0, find, positions);
}

// --- UsedNodes ---

UsedNodes::UsedNodes(const std::uint32_t* positions, std::size_t count)
{
    std::uint32_t lowest = notFound;
    std::uint32_t highest = 0;
    for (std::size_t k = 0; k < count; ++k) {
        if (isPosition(positions[k])) {
            lowest = std::min(lowest, positions[k]);
            highest = std::max(highest, positions[k]);
        }
    }
    if (lowest == notFound) {
        return;
    }
    first = lowest;
    sparse = (highest - lowest) / rangePerMember > count;
    if (sparse) {
        fillList(positions, count);
        return;
    }
    marks.resize(std::size_t{highest} - lowest + 1);
    for (std::size_t k = 0; k < count; ++k) {
        if (isPosition(positions[k])) {
            marks.set(positions[k] - first);
        }
    }
    marks.finish();
}

void UsedNodes::fillList(const std::uint32_t* positions, std::size_t count)
{
    std::copy_if(positions, positions + count, std::back_inserter(sorted), isPosition);
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
}

std::uint32_t UsedNodes::rankInList(std::uint32_t position) const
{
    return static_cast<std::uint32_t>(std::lower_bound(sorted.begin(), sorted.end(), position) - sorted.begin());
}

// --- Box ---

Box::Box()
{
    for (int axis = 0; axis < 3; ++axis) {
        limits[2 * axis] = std::numeric_limits<float>::infinity();
        limits[2 * axis + 1] = -std::numeric_limits<float>::infinity();
    }
}

void Box::add(const Box& box)
{
    for (int axis = 0; axis < 3; ++axis) {
        limits[2 * axis] = std::min(limits[2 * axis], box.limits[2 * axis]);
        limits[2 * axis + 1] = std::max(limits[2 * axis + 1], box.limits[2 * axis + 1]);
    }
}

void Box::copyTo(float* extents) const
{
    for (int k = 0; k < 6; ++k) {
        extents[k] = empty() ? 0 : limits[k];
    }
}

} // namespace readgen
