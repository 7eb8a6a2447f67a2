// Opening the files of a model folder: mapped into memory and checked before anything in them is believed.
// Private to readgen/.
#ifndef MODELFILE_H
#define MODELFILE_H

#include <stdexcept>
#include <string>
#include <vector>

#include "modelformat.h"

namespace readgen {

// What is wrong with a file: one line that names it, the offset and the fault. Thrown inside this library, caught at
// its public operations.
class BadFile : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

[[noreturn]] void badFile(const std::string& path, std::uint64_t offset, const std::string& what);

// One line on standard error.
void report(const std::string& line);

// Runs a public operation's work; whatever goes wrong becomes one line and the result 0.
template <class Work> int countOrReport(const std::string& path, Work work)
{
    try {
        return work();
    } catch (const std::bad_alloc&) {
        report(path + ": not enough memory");
    } catch (const std::exception& problem) {
        report(problem.what());
    }
    return 0;
}

bool fileExists(const std::string& path);
bool isLink(const std::string& path);

// Throws BadFile for a model file that lies outside of the model: a name with "..", an absolute one, a name "a/b" whose
// folder is a link out of "a". The folder "a" itself may be a link to wherever its user keeps it.
void checkInside(const std::string& dirName, const std::string& fileName);

// A whole regular file, mapped read-only. The mapping lives as long as the object.
class MappedFile
{
public:
    explicit MappedFile(const std::string& path); // throws BadFile
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    const std::string path;
    const char* bytes = nullptr;
    std::uint64_t size = 0;
};

// One of our own files: header and size checked, payload not yet.
class ModelFile : public MappedFile
{
public:
    ModelFile(const std::string& path, const char* magic);

    const FileHeader& header() const { return *reinterpret_cast<const FileHeader*>(bytes); }
    const char* payload() const { return bytes + sizeof(FileHeader); }
    // The payload must be count items of that many bytes.
    void checkItems(std::size_t itemSize) const;
    // The other thing of the model, with that stamp, must be of the same writing of it.
    void checkStamp(std::uint64_t stamp, const std::string& other) const;
    // Compares the payload with header().payloadChecksum.
    void checkPayload() const;
};

// The parts of one model file and where their elements lie. The table is checked whole when it is opened; an element
// block when it is asked for.
class PartTable
{
public:
    explicit PartTable(const std::string& folder);

    std::size_t size() const { return static_cast<std::size_t>(table.header().count); }
    // As ModelFile's: nodes that the parts refer to, or the model's index.
    void checkStamp(std::uint64_t stamp, const std::string& other) const { table.checkStamp(stamp, other); }
    const PartRecord& record(std::size_t k) const { return reinterpret_cast<const PartRecord*>(table.payload())[k]; }
    std::string name(std::size_t k) const;
    std::string propertyName(std::size_t k) const;
    std::string materialName(std::size_t k) const;

    const std::uint32_t* elementIds(std::size_t k) const;     // record(k).numElements
    const std::uint32_t* nodeReferences(std::size_t k) const; // record(k).numElements x stride
    // Throws BadFile for the id or reference at that position of the block.
    [[noreturn]] void badElementId(std::size_t k, std::uint64_t position, const std::string& what) const;
    [[noreturn]] void badReference(std::size_t k, std::uint64_t position, const std::string& what) const;

private:
    void checkRecords() const;
    void checkRecord(std::size_t k) const;
    void checkPartIds() const;
    std::string text(std::size_t k, std::uint64_t skip, std::uint32_t length) const;
    const std::uint32_t* block(std::size_t k, std::uint64_t offset, std::uint64_t count, std::uint64_t sum,
                               const char* what) const;
    std::uint64_t offsetOf(std::size_t k, std::size_t field) const;

    ModelFile table;
    ModelFile elements;
};

// Checked node files. The arrays live in the mapping.
class NodeIdFile
{
public:
    explicit NodeIdFile(const std::string& path);
    std::uint32_t count() const { return static_cast<std::uint32_t>(file.header().count); }
    std::uint64_t stamp() const { return file.header().stamp; }
    const std::uint32_t* ids() const { return reinterpret_cast<const std::uint32_t*>(file.payload()); }

private:
    ModelFile file;
};

class NodeCoordFile
{
public:
    explicit NodeCoordFile(const std::string& folder); // also checks that its node_ids is the one it was written with
    std::uint32_t count() const { return static_cast<std::uint32_t>(file.header().count); }
    std::uint64_t stamp() const { return file.header().stamp; }
    const float* values() const { return reinterpret_cast<const float*>(file.payload()); }

private:
    void checkPartner(const std::string& folder) const;
    void checkFinite() const;
    ModelFile file;
};

} // namespace readgen

#endif
