// What ends the program with a message. main() prints it as "kvo: MESSAGE".
#ifndef KVO_PROGRAM_ERROR_H
#define KVO_PROGRAM_ERROR_H

#include <stdexcept>
#include <string>

namespace kvo {

constexpr int exitFailure = 1; // input or run error
constexpr int exitUsage = 2;   // the command line

// Something is wrong with the input or on the way.
class ProgramError : public std::runtime_error
{
public:
    explicit ProgramError(const std::string& what) : std::runtime_error(what) {}
    // "FILE: what", "FILE:LINE: what" from line 1 on.
    ProgramError(const std::string& file, const std::string& what) : std::runtime_error(file + ": " + what) {}
    ProgramError(const std::string& file, std::size_t line, const std::string& what)
        : std::runtime_error(line ? file + ":" + std::to_string(line) + ": " + what : file + ": " + what)
    {
    }
};

// The command line does not make sense.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace kvo

#endif
