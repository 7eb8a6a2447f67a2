// Output files: whole or not at all, and never in place of what is no file. For pictures, logs and view states alike.
//
//   const kvo::OutputFile picture("a.png"); // told at once: a folder, a device, a folder that may not be written
//   ...                                     // the work
//   picture.write(bytes);                   // the new file, or what was there before
#ifndef KVO_HOST_OUTPUT_FILE_H
#define KVO_HOST_OUTPUT_FILE_H

#include <functional>
#include <string>

#include "host_error.h"

namespace kvo {

class OutputFile
{
public:
    // Looks at the place and changes nothing. Throws HostError, "PATH: what", for what is neither a file nor a new name
    // (folders, devices, pipes, sockets) and for what may not be written.
    explicit OutputFile(const std::string& path);

    // Puts a file with these bytes in place: written under a temporary name in the same folder, then renamed. A
    // symbolic link stays, its target is replaced. A file that is replaced hands on its mode, and its owner where that
    // is allowed. Throws HostError; what was there is then as it was.
    void write(const std::string& bytes) const;

    // The same with a function that writes the file under the temporary name itself; it exists already and is empty.
    // What the function throws is thrown on.
    void write(const std::function<void(const std::string& temporary)>& fill) const;

private:
    std::string shown;  // as the user wrote it
    std::string target; // behind all links
};

// Where a path leads when symbolic links are followed; the last of them may name what is not there yet. Throws
// HostError when they go in a circle or cannot be followed.
std::string behindLinks(const std::string& path);

} // namespace kvo

#endif
