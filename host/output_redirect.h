// Sends standard output and standard error elsewhere for a while, at the level of file descriptors, so that it catches
// what libraries write by streams, by printf and by write alike.
//
//   {
//       kvo::OutputRedirect quiet("");          // or a file's name
//       env.renderModel();                      // comments into the void
//       dprintf(quiet.standardError(), "...");  // the program's own messages still reach the user
//   }
#ifndef KVO_HOST_OUTPUT_REDIRECT_H
#define KVO_HOST_OUTPUT_REDIRECT_H

#include <optional>
#include <string>

#include "output_file.h"

namespace kvo {

// Both streams into one file, in the order of writing.
class OutputRedirect
{
public:
    // file: "" drops everything. Else it appears at the end, as an OutputFile (output_file.h), and takes the place of
    // an older one then. Throws HostError, with the file's name, when it cannot be written; nothing is redirected then.
    explicit OutputRedirect(const std::string& file);
    ~OutputRedirect(); // finish(), its failure ignored
    OutputRedirect(const OutputRedirect&) = delete;
    OutputRedirect& operator=(const OutputRedirect&) = delete;

    // Everything as it was, also when scopes nest, and the file in its place. Throws HostError when it could not be
    // written whole. A second call does nothing.
    void finish();

    // Descriptors of what standard output and standard error were before. Valid until finish().
    int standardOutput() const { return saved[0]; }
    int standardError() const { return saved[1]; }

private:
    std::optional<OutputFile> file;
    int target;
    int saved[2];
    bool finished = false;
};

// Standard error alone, into memory: for calls whose only report of failure is a line there.
class ErrorCapture
{
public:
    ErrorCapture(); // throws HostError when the system has no memory file
    ~ErrorCapture();
    ErrorCapture(const ErrorCapture&) = delete;
    ErrorCapture& operator=(const ErrorCapture&) = delete;

    std::string text(); // what has been written so far

private:
    int saved;
    int memory;
};

} // namespace kvo

#endif
