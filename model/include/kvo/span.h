// A read-only view of an array that somebody else owns.
//
//   for (const float value : part.positions) ...
//
// Two words, passed by value. It is valid as long as the array; views of a Model's arrays, as long as the Model or a
// copy of it.
#ifndef KVO_SPAN_H
#define KVO_SPAN_H

#include <cstddef>
#include <vector>

namespace kvo {

template <class T> class Span
{
public:
    Span() = default;
    Span(const T* values, std::size_t count) : first(values), length(count) {}
    Span(const std::vector<T>& values) : first(values.data()), length(values.size()) {}
    Span(std::vector<T>&&) = delete; // it would be gone before the view is used

    const T* data() const { return first; }
    std::size_t size() const { return length; } // items, not bytes
    bool empty() const { return length == 0; }
    const T* begin() const { return first; }
    const T* end() const { return first + length; }
    const T& operator[](std::size_t k) const { return first[k]; } // k below size(), not checked
    const T& front() const { return first[0]; }
    const T& back() const { return first[length - 1]; }
    // count items from start on; both must lie within.
    Span subspan(std::size_t start, std::size_t count) const { return Span(first + start, count); }

private:
    const T* first = nullptr;
    std::size_t length = 0;
};

} // namespace kvo

#endif
