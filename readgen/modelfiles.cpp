// The bytes of a model's files.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "modeldata.h"
#include "modelfolders.h"
#include "modelformat.h"
#include "partstart.h"

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

// What a header says that its payload does not: count, checksum, partner and stamp.
FileHeader headerFor(std::uint64_t count, std::uint64_t payloadChecksum, std::uint64_t partner, std::uint64_t stamp)
{
    FileHeader header = {};
    header.count = count;
    header.payloadChecksum = payloadChecksum;
    header.partner = partner;
    header.stamp = stamp;
    return header;
}

void writeFile(const std::string& path, const char* magic, FileHeader header, const std::vector<Block>& payload)
{
    std::memcpy(header.magic, magic, sizeof header.magic);
    header.version = formatVersion;
    header.headerSize = sizeof header;
    for (const Block& block : payload) {
        header.payloadSize += block.size;
    }
    header.headerChecksum = headerChecksum(header);

    NewFile file(path);
    file.write({&header, sizeof header});
    for (const Block& block : payload) {
        file.write(block);
    }
    file.finish();
}

// --- Nodes ---

// The nodes of one folder. The arrays stay the caller's.
struct NodeFiles
{
    NodeFiles(const std::vector<std::uint32_t>& idList, const std::vector<float>& coordinates)
        : ids(blockOf(idList)), xyz(blockOf(coordinates)), count(idList.size()), idSum(checksum(ids.bytes, ids.size)),
          xyzSum(checksum(xyz.bytes, xyz.size))
    {
    }
    Block ids;
    Block xyz;
    std::uint64_t count;
    std::uint64_t idSum;
    std::uint64_t xyzSum;
};

void writeNodes(const std::string& folder, const NodeFiles& nodes, std::uint64_t stamp)
{
    writeFile(folder + "/" + nodeIdsFile, nodeIdsMagic, headerFor(nodes.count, nodes.idSum, 0, stamp), {nodes.ids});
    writeFile(folder + "/" + nodeCoordsFile, nodeCoordsMagic, headerFor(nodes.count, nodes.xyzSum, nodes.idSum, stamp),
              {nodes.xyz});
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

// The payload of `parts` and its checksum, which covers those of all blocks.
struct PartPayloads
{
    PartPayloads(const std::vector<PartData>& parts, std::uint32_t firstOrdinal)
    {
        for (const PartData& data : parts) {
            files.add(data, firstOrdinal++);
        }
        const Block records = blockOf(files.records);
        table.assign(static_cast<const char*>(records.bytes), records.size);
        table += files.texts;
        tableSum = checksum(table.data(), table.size());
    }
    PartFiles files;
    std::string table;
    std::uint64_t tableSum;
};

void writeParts(const std::string& folder, const PartPayloads& parts, std::uint64_t stamp)
{
    writeFile(folder + "/" + partsFile, partsMagic, headerFor(parts.files.records.size(), parts.tableSum, 0, stamp),
              {{parts.table.data(), parts.table.size()}});
    writeFile(folder + "/" + elementsFile, elementsMagic, headerFor(parts.files.numElements, 0, parts.tableSum, stamp),
              parts.files.blocks);
}

// --- The model as a whole ---

struct FilePlan
{
    FilePlan(const FileData& file, std::uint32_t firstOrdinal)
        : nodes(file.ids, file.xyz), parts(file.parts, firstOrdinal)
    {
    }
    NodeFiles nodes;
    PartPayloads parts;
};

std::vector<FilePlan> planFiles(const ModelData& model)
{
    std::vector<FilePlan> plans;
    std::uint32_t ordinal = 0;
    for (const FileData& file : model.files) {
        plans.emplace_back(file, ordinal);
        ordinal += static_cast<std::uint32_t>(file.parts.size());
    }
    return plans;
}

PartStart startOf(const ModelData& model)
{
    PartStart start;
    std::copy_n(model.extents, 6, start.extents);
    for (const FileData& file : model.files) {
        start.files.push_back(file.name);
    }
    return start;
}

// The checksum of all that the model consists of. Never 0, which stands for files without a stamp.
std::uint64_t stampFor(const ModelData& model, const std::vector<FilePlan>& plans)
{
    std::vector<std::uint64_t> sums;
    for (const FilePlan& plan : plans) {
        sums.insert(sums.end(), {plan.nodes.idSum, plan.nodes.xyzSum, plan.parts.tableSum});
    }
    const std::string index = partStartBytes(startOf(model));
    sums.push_back(checksum(index.data(), index.size()));
    sums.push_back(checksum(model.deckText.data(), model.deckText.size()));
    const Block all = blockOf(sums);
    return std::max<std::uint64_t>(checksum(all.bytes, all.size), 1);
}

// --- The model's own folder ---

void writeText(const std::string& path, const std::string& text)
{
    NewFile file(path);
    file.write({text.data(), text.size()});
    file.finish();
}

// The nodes of all files in one list, for look-ups of nodes in the model as a whole. Where files repeat an id the first
// one counts, as it does for references between files.
void writeModelNodes(const ModelData& model, const std::string& folder, std::uint64_t stamp)
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
        writeNodes(folder, NodeFiles(ids, xyz), stamp);
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
    const std::vector<FilePlan> plans = planFiles(model);
    PartStart start = startOf(model);
    start.stamp = stampFor(model, plans);
    for (std::size_t k = 0; k < plans.size(); ++k) {
        const std::string folder = makeFolders(root, model.files[k].name);
        if (plans[k].nodes.count > 0) {
            writeNodes(folder, plans[k].nodes, start.stamp);
        }
        writeParts(folder, plans[k].parts, start.stamp);
    }
    if (!hasFileNamed(model, model.modelName)) {
        writeModelNodes(model, modelFolder, start.stamp);
    }
    if (!model.deckText.empty()) {
        writeText(modelFolder + "/" + deckFile, model.deckText);
    }
    writeText(modelFolder + "/" + partStartFile, partStartBytes(start));
}

} // namespace readgen
