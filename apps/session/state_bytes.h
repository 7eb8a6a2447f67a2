// The bytes of a view state file: reading its fields and checking them. Private to view_state.
#ifndef KVO_STATE_BYTES_H
#define KVO_STATE_BYTES_H

#include <cstddef>
#include <string>

#include "picked.h"

namespace kvo {

// Bytes of a file for names of these lengths and this many parts.
std::size_t stateSize(std::size_t directoryLength, std::size_t modelLength, std::size_t numParts);

class StateBytes
{
public:
    // Reads the file. Throws ProgramError when it cannot be read or is larger than any state of that many parts.
    StateBytes(const std::string& path, std::size_t numParts);

    // Throws ProgramError, "FILE: byte N: what", for the first thing that does not fit the model.
    void check(const ModelLabels& labels) const;

    std::size_t numParts() const { return parts; }
    unsigned int partFlag(std::size_t part) const;
    void setPartFlag(std::size_t part, unsigned int flag);

    // What follows the two names.
    char* body() { return &bytes[bodyOffset()]; }
    std::size_t bodySize() const { return bytes.size() - bodyOffset(); }

private:
    std::size_t bodyOffset() const;
    void checkNames(const ModelLabels& labels) const;
    void checkSize() const;
    void checkParts() const;
    void checkDrawing() const;
    void checkTransformation() const;
    std::string nameAt(std::size_t offset) const;
    template <class Number> Number at(std::size_t offset) const;
    template <class Number> void checkNumbers(std::size_t& offset, std::size_t count, const char* what) const;
    [[noreturn]] void fail(std::size_t offset, const std::string& what) const;

    std::string file;
    std::string bytes;
    std::size_t parts;
};

} // namespace kvo

#endif
