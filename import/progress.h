// How an import says how far it is.
#ifndef KVO_IMPORT_PROGRESS_H
#define KVO_IMPORT_PROGRESS_H

#include <cstdint>
#include <functional>

namespace kvo {

// Called now and then while a deck is read, with the bytes done and the bytes known so far; the total grows when a deck
// includes further files. May be empty.
using Progress = std::function<void(std::uint64_t done, std::uint64_t total)>;

} // namespace kvo

#endif
