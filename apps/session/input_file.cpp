// Opening without waiting, and reading to a limit.
#include "input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "program_error.h"

namespace kvo {

namespace {

class Descriptor
{
public:
    // Opening a pipe without a writer would wait for one.
    explicit Descriptor(const std::string& path)
        : number(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK))
    {
    }
    ~Descriptor()
    {
        if (number >= 0) {
            close(number);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    const int number;
};

void checkRegular(const Descriptor& file, const std::string& path, const std::string& what)
{
    struct stat info = {};
    if (file.number < 0 || fstat(file.number, &info) != 0) {
        throw ProgramError(path, std::string("cannot be opened (") + std::strerror(errno) + ")");
    }
    if (S_ISDIR(info.st_mode)) {
        throw ProgramError(path, "is a directory, not " + what);
    }
    if (!S_ISREG(info.st_mode)) {
        throw ProgramError(path, "is a pipe or device; " + what + " must be a regular file");
    }
}

} // namespace

std::string readInputFile(const std::string& path, const std::string& what, std::size_t most)
{
    const Descriptor file(path);
    checkRegular(file, path, what);
    std::string text;
    char buffer[65536];
    while (text.size() <= most) {
        const ssize_t got = read(file.number, buffer, std::min(sizeof buffer, most + 1 - text.size()));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            throw ProgramError(path, std::string("cannot be read (") + std::strerror(errno) + ")");
        }
        if (got == 0) {
            break;
        }
        text.append(buffer, static_cast<std::size_t>(got));
    }
    return text;
}

} // namespace kvo
