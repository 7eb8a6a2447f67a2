// Vectors of many megabytes that several threads fill.
#ifndef KVO_SCENE_RAW_VECTOR_H
#define KVO_SCENE_RAW_VECTOR_H

#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace kvo {

// resize() leaves new elements of plain types as they are, not zero: the threads that fill them are the first to touch
// their memory, which costs more than writing it.
template <class T> struct RawAllocator : std::allocator<T>
{
    template <class Other> struct rebind
    {
        typedef RawAllocator<Other> other;
    };

    template <class Made> void construct(Made* at) { ::new (static_cast<void*>(at)) Made; }
    template <class Made, class... Values> void construct(Made* at, Values&&... values)
    {
        ::new (static_cast<void*>(at)) Made(std::forward<Values>(values)...);
    }
};

template <class T> using RawVector = std::vector<T, RawAllocator<T>>;

} // namespace kvo

#endif
