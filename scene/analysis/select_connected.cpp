// Growing over joints: layers and everything attached.
#include <atomic>

#include "model_joints.h"
#include <kvo/select_more.h>

namespace kvo {

namespace {

ElementSet fitted(const ShownModel& model, const ElementSet& set)
{
    ElementSet none(model);
    return set.fits(none) ? set : none;
}

// The joints of the elements whose mark is `mark`.
std::vector<std::uint8_t> touchedJoints(const ModelJoints& j, const ElementSet& set, std::uint8_t mark)
{
    std::vector<std::uint8_t> touched(j.numJoints, 0);
    forElements(j.firstElement, j.inScope, [&](unsigned int, std::uint32_t, std::size_t number) {
        if (set.marks[number] == mark) {
            for (std::size_t c = j.firstCorner[number]; c < j.firstCorner[number + 1]; ++c) {
                markShared(touched[j.corners[c]]);
            }
        }
    });
    return touched;
}

// Elements that touch a neighbour of the other mark take `mark`. Growing and shrinking are this with 1 and 0. False
// when nothing changed.
bool spread(const ModelJoints& j, ElementSet& set, std::uint8_t mark)
{
    const std::vector<std::uint8_t> touched = touchedJoints(j, set, mark);
    std::atomic<bool> changed{false};
    forElements(j.firstElement, j.inScope, [&](unsigned int, std::uint32_t, std::size_t number) {
        if (set.marks[number] == mark) {
            return;
        }
        for (std::size_t c = j.firstCorner[number]; c < j.firstCorner[number + 1]; ++c) {
            if (touched[j.corners[c]] != 0) {
                set.marks[number] = mark;
                changed.store(true, std::memory_order_relaxed);
                return;
            }
        }
    });
    return changed;
}

} // namespace

ElementSet Selector::growByLayers(const ElementSet& set, unsigned int layers)
{
    ElementSet result = fitted(model, set);
    const ModelJoints& j = joints();
    for (unsigned int layer = 0; layer < layers && spread(j, result, 1); ++layer) {
    }
    return result;
}

ElementSet Selector::shrinkByLayers(const ElementSet& set, unsigned int layers)
{
    ElementSet result = fitted(model, set);
    const ModelJoints& j = joints();
    for (unsigned int layer = 0; layer < layers && spread(j, result, 0); ++layer) {
    }
    return result;
}

// A flood: every joint is opened once, every element enters the queue once.
ElementSet Selector::attached(const ElementSet& set)
{
    ElementSet result = fitted(model, set);
    const ModelJoints& j = joints();
    const Buckets<std::uint32_t>& elementsAt = j.elementsAt();
    std::vector<std::uint32_t> queue;
    for (std::size_t e = 0; e < result.marks.size(); ++e) {
        if (result.marks[e] != 0) {
            queue.push_back(static_cast<std::uint32_t>(e));
        }
    }
    std::vector<std::uint8_t> opened(j.numJoints, 0);
    for (std::size_t next = 0; next < queue.size(); ++next) {
        for (std::size_t c = j.firstCorner[queue[next]]; c < j.firstCorner[queue[next] + 1]; ++c) {
            const std::uint32_t joint = j.corners[c];
            if (opened[joint] != 0) {
                continue;
            }
            opened[joint] = 1;
            for (const std::uint32_t* e = elementsAt.begin(joint); e != elementsAt.end(joint); ++e) {
                if (result.marks[*e] == 0) {
                    result.marks[*e] = 1;
                    queue.push_back(*e);
                }
            }
        }
    }
    return result;
}

} // namespace kvo
