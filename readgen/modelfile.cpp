// Mapping and checking model files.
#include "modelfile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "readstamps.h"

namespace readgen {

void badFile(const std::string& path, std::uint64_t offset, const std::string& what)
{
    throw BadFile(path + ": offset " + std::to_string(offset) + ": " + what);
}

void report(const std::string& line)
{
    std::fprintf(stderr, "kvoread: %s\n", line.c_str());
}

bool fileExists(const std::string& path)
{
    struct stat info;
    return ::stat(path.c_str(), &info) == 0;
}

bool isLink(const std::string& path)
{
    struct stat info;
    return ::lstat(path.c_str(), &info) == 0 && S_ISLNK(info.st_mode);
}

// --- Places ---

namespace {

bool hasParentStep(const std::string& name)
{
    return ("/" + name + "/").find("/../") != std::string::npos;
}

// With its links resolved; "" if it is not there.
std::string realPath(const std::string& path)
{
    const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), std::free);
    return real ? real.get() : "";
}

// "a/b" lies in the folder "a", "a" in that of all models.
bool linksOut(const std::string& dirName, const std::string& fileName)
{
    const std::size_t slash = fileName.find('/');
    if (slash == std::string::npos) {
        return false;
    }
    const std::string whole = realPath(dirName + "/" + fileName);
    const std::string owner = realPath(dirName + "/" + fileName.substr(0, slash));
    return !whole.empty() && whole != owner && whole.compare(0, owner.size() + 1, owner + "/") != 0;
}

} // namespace

void checkInside(const std::string& dirName, const std::string& fileName)
{
    if (hasParentStep(fileName) || fileName.compare(0, 1, "/") == 0 || linksOut(dirName, fileName)) {
        throw BadFile(dirName + "/" + fileName + ": lies outside of the model");
    }
}

// --- Mapping ---

namespace {

struct Descriptor
{
    explicit Descriptor(const std::string& path) : number(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    ~Descriptor()
    {
        if (number >= 0) {
            ::close(number);
        }
    }
    const int number;
};

[[noreturn]] void badSystemCall(const std::string& path, const char* what)
{
    badFile(path, 0, std::string(what) + ": " + std::strerror(errno));
}

} // namespace

MappedFile::MappedFile(const std::string& path) : path(path)
{
    const Descriptor file(path);
    struct stat info;
    if (file.number < 0 || ::fstat(file.number, &info) != 0) {
        badSystemCall(path, "cannot be opened");
    }
    if (!S_ISREG(info.st_mode)) {
        badFile(path, 0, "is not a regular file");
    }
    size = static_cast<std::uint64_t>(info.st_size);
    if (size == 0) {
        return;
    }
    void* start = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.number, 0);
    if (start == MAP_FAILED) {
        badSystemCall(path, "cannot be mapped");
    }
    bytes = static_cast<const char*>(start);
}

MappedFile::~MappedFile()
{
    if (bytes) {
        ::munmap(const_cast<char*>(bytes), size);
    }
}

// --- Header and payload ---

ModelFile::ModelFile(const std::string& path, const char* magic) : MappedFile(path)
{
    if (size < sizeof(FileHeader)) {
        badFile(path, size, "the file ends inside its header of " + std::to_string(sizeof(FileHeader)) + " bytes");
    }
    const FileHeader& h = header();
    if (std::memcmp(h.magic, magic, sizeof h.magic) != 0) {
        badFile(path, offsetof(FileHeader, magic), std::string("does not start with ") + magic);
    }
    if (h.version != formatVersion) {
        badFile(path, offsetof(FileHeader, version),
                "format version " + std::to_string(h.version) + "; this library reads version " +
                    std::to_string(formatVersion));
    }
    if (h.headerChecksum != headerChecksum(h)) {
        badFile(path, offsetof(FileHeader, headerChecksum), "the header does not match its checksum");
    }
    if (h.headerSize != sizeof(FileHeader)) {
        badFile(path, offsetof(FileHeader, headerSize), "the header is not one of this version");
    }
    if (h.payloadSize != size - sizeof(FileHeader)) {
        badFile(path, offsetof(FileHeader, payloadSize),
                "announces " + std::to_string(h.payloadSize) + " bytes after the header, the file has " +
                    std::to_string(size - sizeof(FileHeader)));
    }
}

void ModelFile::checkStamp(std::uint64_t stamp, const std::string& other) const
{
    if (!sameWriting(header().stamp, stamp)) {
        badFile(path, offsetof(FileHeader, stamp),
                "was written with another model than " + other + "; was the model replaced while it was read?");
    }
}

void ModelFile::checkItems(std::size_t itemSize) const
{
    const FileHeader& h = header();
    if (h.payloadSize % itemSize != 0 || h.payloadSize / itemSize != h.count) {
        badFile(path, offsetof(FileHeader, count),
                "a count of " + std::to_string(h.count) + " does not fit " + std::to_string(h.payloadSize) +
                    " bytes of " + std::to_string(itemSize) + " each");
    }
}

void ModelFile::checkPayload() const
{
    if (checksum(payload(), header().payloadSize) != header().payloadChecksum) {
        badFile(path, sizeof(FileHeader), "the contents do not match their checksum");
    }
}

// --- Nodes ---

namespace {

void checkNodeCount(const ModelFile& file, std::size_t itemSize)
{
    file.checkItems(itemSize);
    if (file.header().count > maxNodes) {
        badFile(file.path, offsetof(FileHeader, count),
                std::to_string(file.header().count) + " nodes are more than one file may have");
    }
}

} // namespace

NodeIdFile::NodeIdFile(const std::string& path) : file(path, nodeIdsMagic)
{
    checkNodeCount(file, sizeof(std::uint32_t));
    file.checkPayload();
    std::uint32_t previous = 0;
    for (std::uint32_t k = 0; k < count(); ++k) {
        const std::uint32_t id = ids()[k];
        if (id <= previous) {
            badFile(path, sizeof(FileHeader) + std::uint64_t{k} * sizeof id,
                    k == 0 ? "node id 0"
                    : id == previous
                        ? "node id " + std::to_string(id) + " occurs twice"
                        : "node ids are not ascending: " + std::to_string(id) + " after " + std::to_string(previous));
        }
        previous = id;
    }
}

NodeCoordFile::NodeCoordFile(const std::string& folder) : file(folder + "/" + nodeCoordsFile, nodeCoordsMagic)
{
    checkNodeCount(file, 3 * sizeof(float));
    checkPartner(folder);
    file.checkPayload();
    checkFinite();
}

void NodeCoordFile::checkPartner(const std::string& folder) const
{
    const ModelFile ids(folder + "/" + nodeIdsFile, nodeIdsMagic);
    if (ids.header().count != file.header().count) {
        badFile(file.path, offsetof(FileHeader, count),
                std::to_string(file.header().count) + " nodes, but " + std::to_string(ids.header().count) + " in " +
                    nodeIdsFile);
    }
    if (ids.header().payloadChecksum != file.header().partner) {
        badFile(file.path, offsetof(FileHeader, partner),
                std::string("was not written together with its ") + nodeIdsFile);
    }
    file.checkStamp(ids.header().stamp, std::string("its ") + nodeIdsFile);
}

void NodeCoordFile::checkFinite() const
{
    const std::uint64_t length = std::uint64_t{3} * count();
    // All exponent bits set: infinite or not a number. Chunks without a branch inside, so that they vectorise.
    constexpr std::uint64_t chunkSize = 3072;
    for (std::uint64_t start = 0; start < length; start += chunkSize) {
        const std::uint64_t end = start + chunkSize < length ? start + chunkSize : length;
        std::uint32_t infinite = 0;
        for (std::uint64_t k = start; k < end; ++k) {
            std::uint32_t bits;
            std::memcpy(&bits, values() + k, sizeof bits);
            infinite |= (bits & 0x7F800000u) == 0x7F800000u;
        }
        if (infinite) {
            badFile(file.path, sizeof(FileHeader) + start * sizeof(float),
                    "a coordinate from here on is not a finite number");
        }
    }
}

} // namespace readgen
