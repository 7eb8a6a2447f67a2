// Model directories into memory.
#ifndef KVO_MODEL_DIRECTORY_H
#define KVO_MODEL_DIRECTORY_H

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

#include <kvo/model.h>
#include <kvoexport.h>

namespace kvo {

// A model that cannot be read: what() names the file, the offset and what is wrong, in one line.
class KVO_EXPORT ModelError : public std::runtime_error
{
public:
    explicit ModelError(const std::string& what);
    ~ModelError() override;
};

// Reading was stopped by its progress function.
class KVO_EXPORT ModelCancelled : public std::runtime_error
{
public:
    ModelCancelled();
    ~ModelCancelled() override;
};

// Called between parts with the elements done and all of them; false stops reading. May be empty.
using ModelProgress = std::function<bool(std::uint64_t done, std::uint64_t total)>;

// Reads the model directory at path (the folder that holds part_start): parts, their nodes and elements, in the order
// in which they stand there. What a deck said besides, deck.json, is not read, and the origin is 0. Everything is
// checked - sizes, checksums, references, and that all files are of one writing - before the model is made. Throws
// ModelError, and ModelCancelled. May run on any thread; prints nothing.
KVO_EXPORT Model readModelDirectory(const std::string& path, const ModelProgress& progress = {});

} // namespace kvo

#endif
