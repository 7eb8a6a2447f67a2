// The ordered maps that the model environment and the picking share.
#ifndef MAPTYPES_H
#define MAPTYPES_H

#include <functional>
#include <map>

// External id -> 0-based index: part id -> part (CAEEnv::pidMap), element id -> element of a part (eidMap).
typedef std::map<unsigned int, unsigned int> UIUIMap;
typedef UIUIMap::iterator UIUIIterator;

// The entity that one pick hit names. Both numbers are 1-based positions, not model ids.
struct _PidEidStr
{
    unsigned int pid; // part number: index in CAEEnv::partsInfoList + 1
    unsigned int eid; // element or node number in that part; 0 where the pick does not name one
};
typedef struct _PidEidStr PidEidStr;
typedef struct _PidEidStr* PidEidPtr;

// Normalised window depth (0..1, ascending; equal depths stay in insertion order) -> entity.
typedef std::multimap<float, PidEidStr, std::less<float>> ZPartMap;
typedef ZPartMap::iterator ZPartIterator;

#endif
