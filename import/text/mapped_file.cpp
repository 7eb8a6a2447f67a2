// Mapping of input files, and reading of pipes.
#include "mapped_file.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "confined.h"
#include "place.h"

namespace kvo {

namespace {

constexpr std::size_t firstPiece = 1 << 16; // of a pipe

// The number N of "/dev/fd/N" and the like, -1 for other paths: what the program was given open already.
int givenDescriptor(const std::string& path)
{
    if (path == "-" || path == "/dev/stdin") {
        return STDIN_FILENO;
    }
    for (const std::string folder : {"/dev/fd/", "/proc/self/fd/"}) {
        int number = -1;
        const char* end = path.data() + path.size();
        if (path.compare(0, folder.size(), folder) == 0) {
            const auto result = std::from_chars(path.data() + folder.size(), end, number);
            return result.ec == std::errc() && result.ptr == end ? number : -1;
        }
    }
    return -1;
}

class Descriptor
{
public:
    // Without waiting for the writer of a pipe.
    explicit Descriptor(const std::string& path)
        : given(givenDescriptor(path) >= 0),
          fd(given ? givenDescriptor(path) : open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK))
    {
    }
    ~Descriptor()
    {
        if (fd >= 0 && !given) {
            close(fd);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    const bool given;
    const int fd;
};

[[noreturn]] void fail(const std::string& path, const char* what)
{
    throw ImportError({path, 0}, std::string(what) + ": " + std::strerror(errno));
}

std::uint64_t defaultMost()
{
    const std::uint64_t most = std::uint64_t{16} << 30;
    const long pages = sysconf(_SC_PHYS_PAGES), size = sysconf(_SC_PAGESIZE);
    return pages > 0 && size > 0
               ? std::min(most, static_cast<std::uint64_t>(pages) / 2 * static_cast<std::uint64_t>(size))
               : most;
}

} // namespace

bool isGivenOpen(const std::string& path)
{
    return givenDescriptor(path) >= 0;
}

void MappedFile::Free::operator()(char* bytes) const
{
    std::free(bytes);
}

MappedFile::MappedFile(const std::string& path, const ReadRules& rules) : name(path), limits(rules)
{
    if (givenDescriptor(path) < 0 && !liesWithin(path, rules.root)) {
        throw ImportError({path, 0}, "lies outside of " + rules.root + ", to which reading is confined");
    }
    const Descriptor file(path);
    struct stat info = {};
    if (file.fd < 0 || fstat(file.fd, &info) != 0) {
        fail(path, "cannot open");
    }
    if (S_ISDIR(info.st_mode)) {
        throw ImportError({path, 0}, "is a directory, not a deck");
    }
    if (S_ISREG(info.st_mode)) {
        length = static_cast<std::size_t>(info.st_size);
        map(file.fd);
    } else if (file.given) {
        readAll(file.fd);
    } else {
        throw ImportError({path, 0}, "is a pipe or device; a deck is a regular file, or comes on standard input (-)");
    }
    passMark();
}

void MappedFile::map(int descriptor)
{
    if (length == 0) {
        return; // nothing to map
    }
    void* address = mmap(nullptr, length, PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (address == MAP_FAILED) {
        length = 0;
        fail(name, "cannot map");
    }
    madvise(address, length, MADV_SEQUENTIAL);
    data = static_cast<const char*>(address);
    mapped = true;
}

void MappedFile::passMark()
{
    static const char utf8[] = {'\xEF', '\xBB', '\xBF'};
    mark = length >= sizeof utf8 && std::memcmp(data, utf8, sizeof utf8) == 0 ? sizeof utf8 : 0;
}

void MappedFile::grow(std::size_t capacity)
{
    char* larger = static_cast<char*>(std::realloc(copy.get(), capacity));
    if (!larger) {
        throw std::bad_alloc();
    }
    copy.release();
    copy.reset(larger);
}

// Large memory grows in place, so that the copy exists once.
void MappedFile::readAll(int descriptor)
{
    const std::uint64_t most = limits.mostPiped ? limits.mostPiped : defaultMost();
    std::size_t capacity = 0;
    for (;;) {
        if (length == capacity) {
            capacity = std::max(firstPiece, 2 * capacity);
            grow(capacity);
        }
        const ssize_t got = read(descriptor, copy.get() + length, capacity - length);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            fail(name, "cannot read");
        }
        if (got == 0) {
            break;
        }
        length += static_cast<std::size_t>(got);
        if (length > most) {
            throw ImportError({name, 0}, "more than the " + std::to_string(most >> 20) +
                                             " MiB that are read from a pipe; write the deck to a file");
        }
        if (length == firstPiece && std::all_of(copy.get(), copy.get() + firstPiece, [](char c) { return c == 0; })) {
            throw ImportError({name, 0}, "begins with zero bytes, as no deck does"); // an endless device
        }
    }
    data = copy.get();
}

MappedFile::~MappedFile()
{
    if (mapped) {
        munmap(const_cast<char*>(data), length);
    }
}

} // namespace kvo
