#include "block_index.h"

#include <algorithm>
#include <cmath>
#include <mutex>

#include "parallel.h"
#include "pick_elements.h"
#include "radix_sort.h"

namespace kvo {

namespace {

constexpr std::size_t blockSize = 16;
constexpr std::size_t boxesPerBox = 8;
constexpr std::size_t grain = 32768; // entities a thread takes at least
constexpr unsigned int keyBits = 22;

// Cells of a grid over a box, numbered along a curve: the longest side of a cell is halved again and again, so that
// flat and long boxes get cells as near to cubes as round ones.
struct CurveGrid
{
    explicit CurveGrid(const FloatBox& bounds);
    std::uint32_t cellOf(const float* point) const;

    float low[3];
    float cells[3];                     // a unit of length
    std::uint32_t last[3];              // largest cell number along an axis
    std::vector<std::uint32_t> bits[3]; // per axis and byte value of a cell number: its bits, spread to their places
};

CurveGrid::CurveGrid(const FloatBox& bounds)
{
    double side[3];
    unsigned int count[3] = {0, 0, 0};
    unsigned int axisOfBit[keyBits];
    for (int axis = 0; axis < 3; ++axis) {
        low[axis] = bounds.low[axis];
        side[axis] = static_cast<double>(bounds.high[axis]) - bounds.low[axis];
    }
    for (unsigned int bit = keyBits; bit-- > 0;) {
        const unsigned int axis = static_cast<unsigned int>(std::max_element(side, side + 3) - side);
        axisOfBit[bit] = axis;
        side[axis] /= 2;
        ++count[axis];
    }
    for (unsigned int axis = 0; axis < 3; ++axis) {
        last[axis] = (1u << count[axis]) - 1;
        cells[axis] = side[axis] > 0 ? static_cast<float>(1 / side[axis]) : 0;
        std::vector<std::uint32_t> places;
        for (unsigned int bit = 0; bit < keyBits; ++bit) {
            if (axisOfBit[bit] == axis) {
                places.push_back(1u << bit);
            }
        }
        for (unsigned int cell = 0; cell < 3 * 256; ++cell) {
            std::uint32_t spread = 0;
            for (unsigned int bit = 0; bit < 8 && 8 * (cell / 256) + bit < places.size(); ++bit) {
                spread |= (cell >> bit & 1) ? places[8 * (cell / 256) + bit] : 0;
            }
            bits[axis].push_back(spread);
        }
    }
}

std::uint32_t CurveGrid::cellOf(const float* point) const
{
    std::uint32_t key = 0;
    for (int axis = 0; axis < 3; ++axis) {
        const float place = (point[axis] - low[axis]) * cells[axis];
        const float limit = static_cast<float>(last[axis]);
        const std::uint32_t cell = !(place > 0) ? 0 : place < limit ? static_cast<std::uint32_t>(place) : last[axis];
        key |= bits[axis][cell & 255] | bits[axis][256 + (cell >> 8 & 255)] | bits[axis][512 + (cell >> 16)];
    }
    return key;
}

// The node by which an entity takes its place in the order, or noCorner.
std::uint32_t firstNodeOf(const PartMesh& part, PickType type, std::uint32_t entity)
{
    if (type == PickType::Node) {
        return entity;
    }
    const std::uint32_t node = slotsOf(part, entity)[0];
    return node < part.nodeCount ? node : noCorner;
}

void addEntity(const PartMesh& part, PickType type, std::uint32_t entity, FloatBox& box)
{
    if (type == PickType::Node) {
        box.add(positionOf(part, entity));
        return;
    }
    const PickForm* form = pickFormOf(part, entity);
    if (form == nullptr) {
        return;
    }
    const unsigned int* slots = slotsOf(part, entity);
    for (unsigned int k = 0; k < form->corners; ++k) {
        box.add(positionOf(part, slots[form->cornerSlots[k]]));
    }
    const std::uint32_t third = thirdNodeOf(part, entity);
    if (third != noCorner) {
        box.add(positionOf(part, third));
    }
}

// Records lie far apart in the order of the curve; their slots are fetched some elements before they are read.
constexpr std::size_t slotsAhead = 12;

void prefetch(const PartMesh& part, PickType type, std::uint32_t entity)
{
    if (type != PickType::Node) {
        __builtin_prefetch(slotsOf(part, entity));
    }
}

} // namespace

FloatBox boxOfNodes(const PartMesh& part)
{
    FloatBox whole;
    whole.clear();
    std::mutex mutex;
    parallelFor(part.nodeCount, 2 * grain, [&](std::size_t begin, std::size_t end) {
        FloatBox piece;
        piece.clear();
        for (std::size_t node = begin; node < end; ++node) {
            piece.add(positionOf(part, static_cast<std::uint32_t>(node)));
        }
        const std::lock_guard<std::mutex> lock(mutex);
        whole.add(piece);
    });
    return whole;
}

BlockIndex::BlockIndex(const PartMesh& part, PickType type, const FloatBox& bounds)
{
    const CurveGrid grid(bounds);
    std::vector<KeyedNumber> items(entityCountOf(part, type));
    parallelFor(items.size(), grain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t k = begin; k < end; ++k) {
            const std::uint32_t entity = static_cast<std::uint32_t>(k);
            const std::uint32_t node = firstNodeOf(part, type, entity);
            items[k] = {node == noCorner ? 0 : grid.cellOf(positionOf(part, node)), entity};
        }
    });
    sortByKey(items, keyBits);
    order.resize(items.size());
    std::transform(items.begin(), items.end(), order.begin(), [](const KeyedNumber& item) { return item.number; });
    buildBoxes(part, type);
}

void BlockIndex::buildBoxes(const PartMesh& part, PickType type)
{
    levels.emplace_back((order.size() + blockSize - 1) / blockSize);
    std::vector<FloatBox>& blocks = levels.back();
    parallelFor(blocks.size(), grain / blockSize, [&](std::size_t begin, std::size_t end) {
        for (std::size_t block = begin; block < end; ++block) {
            blocks[block].clear();
            const std::size_t last = std::min(order.size(), (block + 1) * blockSize);
            for (std::size_t k = block * blockSize; k < last; ++k) {
                prefetch(part, type, order[std::min(k + slotsAhead, order.size() - 1)]);
                addEntity(part, type, order[k], blocks[block]);
            }
        }
    });
    while (levels.back().size() > 1) {
        const std::vector<FloatBox>& below = levels.back();
        std::vector<FloatBox> above((below.size() + boxesPerBox - 1) / boxesPerBox);
        for (std::size_t k = 0; k < above.size(); ++k) {
            above[k].clear();
            const std::size_t last = std::min(below.size(), (k + 1) * boxesPerBox);
            for (std::size_t child = k * boxesPerBox; child < last; ++child) {
                above[k].add(below[child]);
            }
        }
        levels.push_back(std::move(above));
    }
}

bool BlockIndex::find(const Test& test, std::size_t most, std::vector<std::uint32_t>& found) const
{
    return levels.back().empty() || descend(test, levels.size() - 1, 0, most, found);
}

bool BlockIndex::descend(const Test& test, std::size_t level, std::size_t box, std::size_t most,
                         std::vector<std::uint32_t>& found) const
{
    const FloatBox& bounds = levels[level][box];
    if (bounds.empty() || test(bounds) == Overlap::Outside) {
        return true;
    }
    if (level == 0) {
        const std::size_t last = std::min(order.size(), (box + 1) * blockSize);
        found.insert(found.end(), order.begin() + static_cast<std::ptrdiff_t>(box * blockSize),
                     order.begin() + static_cast<std::ptrdiff_t>(last));
        return found.size() <= most;
    }
    const std::size_t last = std::min(levels[level - 1].size(), (box + 1) * boxesPerBox);
    for (std::size_t child = box * boxesPerBox; child < last; ++child) {
        if (!descend(test, level - 1, child, most, found)) {
            return false;
        }
    }
    return true;
}

std::size_t BlockIndex::bytes() const
{
    std::size_t sum = order.capacity() * sizeof(order[0]);
    for (const std::vector<FloatBox>& level : levels) {
        sum += level.capacity() * sizeof(FloatBox);
    }
    return sum;
}

} // namespace kvo
