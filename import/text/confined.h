// Where a path really leads, and whether that is inside of a folder.
#ifndef KVO_IMPORT_CONFINED_H
#define KVO_IMPORT_CONFINED_H

#include <string>

namespace kvo {

// The path without links and dots; of what does not exist yet, the place where it would be made. "" where nobody can
// tell: for links into the void.
std::string realPlace(const std::string& path);

// Does the path lead to the folder or to something in it, whatever links are on the way? Everything lies within "".
bool liesWithin(const std::string& path, const std::string& folder);

} // namespace kvo

#endif
