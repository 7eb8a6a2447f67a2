// What connects the elements of the parts in scope: joints, numbered from 0 over the whole model, and which elements
// meet at each.
//
// Elements and nodes are numbered through the model too, part after part (MarkSet::first): element e of part p is
// firstElement[p] + e.
#ifndef KVO_SCENE_MODEL_JOINTS_H
#define KVO_SCENE_MODEL_JOINTS_H

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "buckets.h"
#include "face_skin.h"
#include "shown_parts.h"
#include <kvo/select_more.h>

namespace kvo {

constexpr std::uint32_t noJoint = 0xFFFFFFFF;

struct ModelJoints
{
    Joint joint;
    std::vector<std::uint8_t> inScope; // per part
    std::vector<std::size_t> firstElement;
    std::vector<std::size_t> firstNode;
    std::vector<std::uint32_t> jointOf; // per node; noJoint in parts out of scope
    std::size_t numJoints = 0;
    std::vector<std::size_t> firstCorner; // per element, and the end: its joints in `corners`; none out of scope
    std::vector<std::uint32_t> corners;

    const Buckets<std::uint32_t>& elementsAt() const; // element numbers per joint; made when first asked for
    const FaceSkin& skin(const PartMesh* parts, bool solidsToo) const; // likewise

private:
    mutable std::unique_ptr<Buckets<std::uint32_t>> elementsAtJoint;
    mutable std::unique_ptr<FaceSkin> skins[2];
};

bool partInScope(const ShownPart& part, Scope scope);

// One byte per part.
std::vector<std::uint8_t> partsInScope(const ShownModel::Impl& model, Scope scope);

ModelJoints findJoints(ShownModel::Impl& model, const MarkSet& elements, const MarkSet& nodes, Joint joint,
                       const std::vector<std::uint8_t>& inScope);

// body(part, element, number) for every element of the parts in scope, on all cores; models of many small parts are cut
// as evenly as one big part.
template <class Body>
void forElements(const std::vector<std::size_t>& first, const std::vector<std::uint8_t>& inScope, const Body& body);

// Sets a byte to 1 that other threads may be setting too.
inline void markShared(std::uint8_t& mark)
{
    __atomic_store_n(&mark, std::uint8_t{1}, __ATOMIC_RELAXED);
}

} // namespace kvo

#include <algorithm>

#include "parallel.h"

namespace kvo {

template <class Body>
void forElements(const std::vector<std::size_t>& first, const std::vector<std::uint8_t>& inScope, const Body& body)
{
    parallelFor(first.back(), 4096, [&](std::size_t begin, std::size_t end) {
        std::size_t part =
            static_cast<std::size_t>(std::upper_bound(first.begin(), first.end(), begin) - first.begin()) - 1;
        while (begin < end) {
            const std::size_t stop = std::min(end, first[part + 1]);
            if (inScope[part] != 0) {
                for (std::size_t number = begin; number < stop; ++number) {
                    body(static_cast<unsigned int>(part), static_cast<std::uint32_t>(number - first[part]), number);
                }
            }
            begin = stop;
            ++part;
        }
    });
}

} // namespace kvo

#endif
