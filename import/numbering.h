// Ids that a file keeps in an array beside its nodes or elements, and whether they can be the ids of a model.
#ifndef KVO_IMPORT_NUMBERING_H
#define KVO_IMPORT_NUMBERING_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kvo {

constexpr std::int64_t maxModelId = 0x7FFFFFFF; // hosts hold ids as int

// Why these are no numbering of count things: "two have the id 7", "the id 0 is below 1". Empty: they are one.
std::string numberingFault(std::vector<std::int64_t> ids, std::size_t count);

} // namespace kvo

#endif
