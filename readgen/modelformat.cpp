// Checksums and element families of the model files.
#include "modelformat.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <strings.h>

#include "mantypes.h"

namespace readgen {

namespace {

struct Family
{
    const char* name;
    unsigned int drawType;
    unsigned int strides[2];
    bool thirdSlotMayBeEmpty;
};

const Family families[] = {
    {"shell", SHELL, {4, 4}, false},
    {"solid", SOLID, {8, 10}, false},
    {"beam", BEAM, {3, 3}, true},
    {"discrete", DISCRETE, {3, 3}, true},
};

const Family* findFamily(unsigned int drawType)
{
    for (const Family& family : families) {
        if (family.drawType == drawType) {
            return &family;
        }
    }
    return nullptr;
}

} // namespace

std::uint64_t checksum(const void* data, std::size_t size)
{
    return XXH3_64bits(data, size);
}

std::uint64_t headerChecksum(const FileHeader& header)
{
    return checksum(&header, offsetof(FileHeader, headerChecksum));
}

unsigned int drawTypeOf(const char* familyName)
{
    for (const Family& family : families) {
        if (strcasecmp(familyName, family.name) == 0) {
            return family.drawType;
        }
    }
    return 0;
}

const char* familyOf(unsigned int drawType)
{
    const Family* family = findFamily(drawType);
    return family ? family->name : "other";
}

bool strideFits(unsigned int drawType, unsigned int stride)
{
    const Family* family = findFamily(drawType);
    if (family) {
        return stride == family->strides[0] || stride == family->strides[1];
    }
    return stride > 0 && stride <= maxStride;
}

bool thirdSlotMayBeEmpty(unsigned int drawType)
{
    const Family* family = findFamily(drawType);
    return family && family->thirdSlotMayBeEmpty;
}

} // namespace readgen
