// The bytes of a model's files.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "modeldata.h"
#include "modelfolders.h"
#include "modelformat.h"

namespace readgen {

namespace {

struct Block
{
    const void* bytes;
    std::size_t size;
};

template <class T> Block blockOf(const std::vector<T>& values)
{
    return {values.data(), values.size() * sizeof(T)};
}

// --- Files ---

// A new file that is closed without a word when something goes wrong, and with a check when it is finished.
class NewFile
{
public:
    explicit NewFile(const std::string& path)
        : path(path), number(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666))
    {
        if (number < 0) {
            fail("created");
        }
    }
    ~NewFile()
    {
        if (number >= 0) {
            ::close(number);
        }
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    void write(Block block)
    {
        const char* bytes = static_cast<const char*>(block.bytes);
        while (block.size > 0) {
            const ssize_t written = ::write(number, bytes, block.size);
            if (written < 0 && errno == EINTR) {
                continue;
            }
            if (written < 0) {
                fail("written");
            }
            bytes += written;
            block.size -= static_cast<std::size_t>(written);
        }
    }
    void finish()
    {
        const int closing = number;
        number = -1;
        if (::close(closing) != 0) {
            fail("written");
        }
    }

private:
    [[noreturn]] void fail(const char* what) const
    {
        throw CannotWrite(path + ": cannot be " + what + ": " + std::strerror(errno));
    }

    const std::string path;
    int number;
};

void writeFile(const std::string& path, const char* magic, std::uint64_t count, std::uint64_t payloadChecksum,
               std::uint64_t partner, const std::vector<Block>& payload)
{
    FileHeader header = {};
    std::memcpy(header.magic, magic, sizeof header.magic);
    header.version = formatVersion;
    header.headerSize = sizeof header;
    header.count = count;
    for (const Block& block : payload) {
        header.payloadSize += block.size;
    }
    header.payloadChecksum = payloadChecksum;
    header.partner = partner;
    header.headerChecksum = headerChecksum(header);

    NewFile file(path);
    file.write({&header, sizeof header});
    for (const Block& block : payload) {
        file.write(block);
    }
    file.finish();
}

// --- Nodes ---

void writeNodes(const std::string& folder, const std::vector<std::uint32_t>& ids, const std::vector<float>& xyz)
{
    const Block idBlock = blockOf(ids);
    const Block xyzBlock = blockOf(xyz);
    const std::uint64_t idSum = checksum(idBlock.bytes, idBlock.size);
    const std::uint64_t xyzSum = checksum(xyzBlock.bytes, xyzBlock.size);
    writeFile(folder + "/" + nodeIdsFile, nodeIdsMagic, ids.size(), idSum, 0, {idBlock});
    writeFile(folder + "/" + nodeCoordsFile, nodeCoordsMagic, ids.size(), xyzSum, idSum, {xyzBlock});
}

// --- Parts ---

PartRecord headOf(const PartData& data, std::uint32_t ordinal)
{
    const ModelPart& part = data.part;
    PartRecord r = {};
    r.id = part.id;
    r.drawType = part.drawType;
    r.stride = part.stride;
    r.flags = (part.hasColor ? partHasColor : 0) | (data.byIndex ? partRefsByIndex : 0);
    if (part.hasColor) {
        std::copy_n(part.color, 4, r.color);
    }
    r.propertyId = part.propertyId;
    r.materialId = part.materialId;
    r.ordinal = ordinal;
    r.nameLength = static_cast<std::uint32_t>(part.name.size());
    r.propertyNameLength = static_cast<std::uint32_t>(part.propertyName.size());
    r.materialNameLength = static_cast<std::uint32_t>(part.materialName.size());
    r.numNodes = data.numNodes;
    std::copy_n(data.extents, 6, r.extents);
    return r;
}

// What goes into `parts` and `elements`, piece by piece.
struct PartFiles
{
    std::vector<PartRecord> records;
    std::string texts;
    std::vector<Block> blocks;
    std::uint64_t numElements = 0;
    std::uint64_t numBytes = 0;

    void add(const PartData& data, std::uint32_t ordinal)
    {
        PartRecord r = headOf(data, ordinal);
        r.textOffset = texts.size();
        texts += data.part.name + data.part.propertyName + data.part.materialName;
        r.numElements = data.numElements;
        addBlock(blockOf(data.ids), r.idsOffset, r.idsChecksum);
        addBlock(blockOf(data.refs), r.refsOffset, r.refsChecksum);
        numElements += data.numElements;
        records.push_back(r);
    }

private:
    void addBlock(const Block& block, std::uint64_t& offset, std::uint64_t& sum)
    {
        offset = numBytes;
        sum = checksum(block.bytes, block.size);
        numBytes += block.size;
        blocks.push_back(block);
    }
};

void writeParts(const std::string& folder, const std::vector<PartData>& parts, std::uint32_t firstOrdinal)
{
    PartFiles files;
    for (const PartData& data : parts) {
        files.add(data, firstOrdinal++);
    }
    const Block records = blockOf(files.records);
    std::string table(static_cast<const char*>(records.bytes), records.size);
    table += files.texts;
    const std::uint64_t sum = checksum(table.data(), table.size());
    writeFile(folder + "/" + partsFile, partsMagic, parts.size(), sum, 0, {{table.data(), table.size()}});
    writeFile(folder + "/" + elementsFile, elementsMagic, files.numElements, 0, sum, files.blocks);
}

// --- The model's index ---

void writeText(const std::string& path, const std::string& text)
{
    NewFile file(path);
    file.write({text.data(), text.size()});
    file.finish();
}

void writePartStart(const ModelData& model, const std::string& folder)
{
    const std::uint32_t numFiles = static_cast<std::uint32_t>(model.files.size());
    std::string bytes(reinterpret_cast<const char*>(model.extents), sizeof model.extents);
    bytes.append(reinterpret_cast<const char*>(&numFiles), sizeof numFiles);
    for (const FileData& file : model.files) {
        const std::uint32_t length = static_cast<std::uint32_t>(file.name.size());
        if (numFiles > 1) {
            bytes.append(reinterpret_cast<const char*>(&length), sizeof length) += file.name;
        }
    }
    writeText(folder + "/" + partStartFile, bytes);
}

// The nodes of all files in one list, for look-ups of nodes in the model as a whole. Where files repeat an id the first
// one counts, as it does for references between files.
void writeModelNodes(const ModelData& model, const std::string& folder)
{
    struct Entry
    {
        std::uint32_t id;
        const float* xyz;
    };
    std::vector<Entry> all;
    for (const FileData& file : model.files) {
        for (std::size_t k = 0; k < file.ids.size(); ++k) {
            all.push_back({file.ids[k], &file.xyz[3 * k]});
        }
    }
    std::stable_sort(all.begin(), all.end(), [](const Entry& a, const Entry& b) { return a.id < b.id; });

    std::vector<std::uint32_t> ids;
    std::vector<float> xyz;
    for (const Entry& entry : all) {
        if (ids.empty() || ids.back() != entry.id) {
            ids.push_back(entry.id);
            xyz.insert(xyz.end(), entry.xyz, entry.xyz + 3);
        }
    }
    if (!ids.empty()) {
        writeNodes(folder, ids, xyz);
    }
}

bool hasFileNamed(const ModelData& model, const std::string& name)
{
    return std::any_of(model.files.begin(), model.files.end(), [&](const FileData& f) { return f.name == name; });
}

} // namespace

void writeModelFiles(const ModelData& model, const std::string& root)
{
    const std::string modelFolder = makeFolders(root, model.modelName);
    std::uint32_t ordinal = 0;
    for (const FileData& file : model.files) {
        const std::string folder = makeFolders(root, file.name);
        if (!file.ids.empty()) {
            writeNodes(folder, file.ids, file.xyz);
        }
        writeParts(folder, file.parts, ordinal);
        ordinal += static_cast<std::uint32_t>(file.parts.size());
    }
    if (!hasFileNamed(model, model.modelName)) {
        writeModelNodes(model, modelFolder);
    }
    if (!model.deckText.empty()) {
        writeText(modelFolder + "/" + deckFile, model.deckText);
    }
    writePartStart(model, modelFolder);
}

} // namespace readgen
