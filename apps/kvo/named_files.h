// The files that a command line names.
#ifndef KVO_NAMED_FILES_H
#define KVO_NAMED_FILES_H

#include <string>
#include <vector>

namespace kvo {

struct NamedFile
{
    std::string option; // "--log"; "the model" and the like for what has no option
    std::string file;   // "" for none
};

// Throws UsageError when a file that is to be written is one that is read, or one that is written otherwise. Devices
// may be named as often as one likes.
void checkWrittenFiles(const std::vector<NamedFile>& written, const std::vector<NamedFile>& read);

// Throws UsageError for a picture whose name ends as pictures of another format do.
void checkPictureName(const std::string& file, const std::string& option);

} // namespace kvo

#endif
