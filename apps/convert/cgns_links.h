// Reading CGNS files of newer versions than the library knows: it refuses such a file by the number in it, though what
// is read here has not changed since.
#ifndef KVO_CONVERT_CGNS_LINKS_H
#define KVO_CONVERT_CGNS_LINKS_H

#include <memory>
#include <string>

#include "scratch_folder.h"

namespace kvo {

// A small temporary file of the library's own version, whose bases are links to those of another file.
class CgnsLinks
{
public:
    explicit CgnsLinks(const std::string& target);
    ~CgnsLinks();
    CgnsLinks(const CgnsLinks&) = delete;
    CgnsLinks& operator=(const CgnsLinks&) = delete;

    // Where to open it; "" if the target is no file that can be read so. Once it is open this object may go.
    const std::string& path() const { return name; }

private:
    std::unique_ptr<ScratchFolder> folder;
    std::string name;
};

} // namespace kvo

#endif
