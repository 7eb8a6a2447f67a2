// Mapping of input files.
#include "mapped_file.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "place.h"

namespace kvo {

namespace {

class Descriptor
{
public:
    explicit Descriptor(const std::string& path) : fd(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~Descriptor()
    {
        if (fd >= 0) {
            close(fd);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    const int fd;
};

[[noreturn]] void fail(const std::string& path, const char* what)
{
    throw ImportError({path, 0}, std::string(what) + ": " + std::strerror(errno));
}

} // namespace

MappedFile::MappedFile(const std::string& path) : name(path)
{
    const Descriptor file(path);
    struct stat info = {};
    if (file.fd < 0 || fstat(file.fd, &info) != 0) {
        fail(path, "cannot open");
    }
    if (S_ISDIR(info.st_mode)) {
        throw ImportError({path, 0}, "is a directory, not a deck");
    }
    if (!S_ISREG(info.st_mode)) {
        readAll(file.fd);
        passMark();
        return;
    }
    length = static_cast<std::size_t>(info.st_size);
    if (length == 0) {
        return; // nothing to map
    }
    void* address = mmap(nullptr, length, PROT_READ, MAP_PRIVATE, file.fd, 0);
    if (address == MAP_FAILED) {
        length = 0;
        fail(path, "cannot map");
    }
    madvise(address, length, MADV_SEQUENTIAL);
    data = static_cast<const char*>(address);
    mapped = true;
    passMark();
}

void MappedFile::passMark()
{
    static const char utf8[] = {'\xEF', '\xBB', '\xBF'};
    mark = length >= sizeof utf8 && std::memcmp(data, utf8, sizeof utf8) == 0 ? sizeof utf8 : 0;
}

void MappedFile::readAll(int descriptor)
{
    char chunk[65536];
    ssize_t got = 0;
    while ((got = read(descriptor, chunk, sizeof chunk)) != 0) {
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            fail(name, "cannot read");
        }
        copy.insert(copy.end(), chunk, chunk + got);
    }
    data = copy.data();
    length = copy.size();
}

MappedFile::~MappedFile()
{
    if (mapped) {
        munmap(const_cast<char*>(data), length);
    }
}

} // namespace kvo
