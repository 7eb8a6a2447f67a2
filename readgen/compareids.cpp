// The order of id lists.
#include "readids.h"

int compareIDs(const void* a, const void* b)
{
    const unsigned int left = *static_cast<const unsigned int*>(a);
    const unsigned int right = *static_cast<const unsigned int*>(b);
    return left < right ? -1 : left > right;
}
