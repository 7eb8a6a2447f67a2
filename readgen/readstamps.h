// Which writing of a model a reader object has read from. Its class's layout is fixed and has no room for it, so it is
// kept here, by the object's address. Private to readgen/.
#ifndef READSTAMPS_H
#define READSTAMPS_H

#include <cstdint>

namespace readgen {

// 0 forgets the reader: it holds nothing, or what no stamp says anything about. From any thread.
void setStamp(const void* reader, std::uint64_t stamp);
std::uint64_t stampOf(const void* reader); // 0 when nothing is known

// Can two things with these stamps (FileHeader::stamp) be of one model?
inline bool sameWriting(std::uint64_t a, std::uint64_t b)
{
    return a == 0 || b == 0 || a == b;
}

} // namespace readgen

#endif
