// part_start, the index of a model directory. Private to readgen/.
#ifndef PARTSTART_H
#define PARTSTART_H

#include <cstdint>
#include <string>
#include <vector>

namespace readgen {

struct PartStart
{
    float extents[6] = {0, 0, 0, 0, 0, 0};
    std::vector<std::string> files; // relative to the model's dirName; the model's name for a model of one file
    std::uint64_t stamp = 0;        // FileHeader::stamp of all its files; 0 where it was written without one
    bool whole = true;              // nothing follows that is not ours
};

// Throws BadFile.
PartStart readPartStart(const std::string& path, const std::string& modelName);

std::string partStartBytes(const PartStart& start);

} // namespace readgen

#endif
