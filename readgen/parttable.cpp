// The table of parts of one model file and its element blocks.
#include <algorithm>

#include "modelfile.h"

namespace readgen {

namespace {

std::uint64_t textEnd(const PartRecord& r)
{
    return std::uint64_t{r.nameLength} + r.propertyNameLength + r.materialNameLength;
}

} // namespace

PartTable::PartTable(const std::string& folder)
    : table(folder + "/" + partsFile, partsMagic), elements(folder + "/" + elementsFile, elementsMagic)
{
    const FileHeader& h = table.header();
    if (h.count > h.payloadSize / sizeof(PartRecord)) {
        badFile(table.path, offsetof(FileHeader, count),
                "a count of " + std::to_string(h.count) + " parts does not fit " + std::to_string(h.payloadSize) +
                    " bytes");
    }
    table.checkPayload();
    if (elements.header().partner != h.payloadChecksum) {
        badFile(elements.path, offsetof(FileHeader, partner),
                std::string("was not written together with its ") + partsFile);
    }
    elements.checkStamp(table.header().stamp, std::string("its ") + partsFile);
    checkRecords();
    checkPartIds();
}

std::uint64_t PartTable::offsetOf(std::size_t k, std::size_t field) const
{
    return sizeof(FileHeader) + k * sizeof(PartRecord) + field;
}

void PartTable::checkRecord(std::size_t k) const
{
    const PartRecord& r = record(k);
    const std::string part = "part " + std::to_string(r.id) + ": ";
    if (!strideFits(r.drawType, r.stride)) {
        badFile(table.path, offsetOf(k, offsetof(PartRecord, stride)),
                part + "a stride of " + std::to_string(r.stride) + " does not fit draw type " +
                    std::to_string(r.drawType));
    }
    if (r.numElements > maxSlots / r.stride) {
        badFile(table.path, offsetOf(k, offsetof(PartRecord, numElements)),
                part + std::to_string(r.numElements) + " elements are more than one part may have");
    }
    if (r.flags & ~(partHasColor | partRefsByIndex)) {
        badFile(table.path, offsetOf(k, offsetof(PartRecord, flags)), part + "unknown flags");
    }
}

// Texts and element blocks must follow each other without gap or overlap and fill their areas: then none can lie
// outside.
void PartTable::checkRecords() const
{
    std::uint64_t text = 0;
    std::uint64_t byte = 0;
    std::uint64_t count = 0;
    for (std::size_t k = 0; k < size(); ++k) {
        checkRecord(k);
        const PartRecord& r = record(k);
        const std::uint64_t idBytes = r.numElements * sizeof(std::uint32_t);
        if (r.textOffset != text) {
            badFile(table.path, offsetOf(k, offsetof(PartRecord, textOffset)), "a text out of place");
        }
        if (r.idsOffset != byte || r.refsOffset != byte + idBytes) {
            badFile(table.path, offsetOf(k, offsetof(PartRecord, idsOffset)), "an element block out of place");
        }
        text += textEnd(r);
        byte += idBytes + idBytes * r.stride;
        count += r.numElements;
    }
    if (text != table.header().payloadSize - size() * sizeof(PartRecord)) {
        badFile(table.path, offsetof(FileHeader, payloadSize), "the texts do not fill the file");
    }
    if (byte != elements.header().payloadSize || count != elements.header().count) {
        badFile(elements.path, offsetof(FileHeader, count),
                std::to_string(elements.header().count) + " elements in " +
                    std::to_string(elements.header().payloadSize) + " bytes, but the parts need " +
                    std::to_string(count) + " in " + std::to_string(byte));
    }
}

void PartTable::checkPartIds() const
{
    std::vector<std::uint32_t> ids;
    for (std::size_t k = 0; k < size(); ++k) {
        ids.push_back(record(k).id);
    }
    std::sort(ids.begin(), ids.end());
    const auto twice = std::adjacent_find(ids.begin(), ids.end());
    if (twice != ids.end()) {
        badFile(table.path, sizeof(FileHeader), "part id " + std::to_string(*twice) + " occurs twice");
    }
}

std::string PartTable::text(std::size_t k, std::uint64_t skip, std::uint32_t length) const
{
    return std::string(table.payload() + size() * sizeof(PartRecord) + record(k).textOffset + skip, length);
}

std::string PartTable::name(std::size_t k) const
{
    return text(k, 0, record(k).nameLength);
}

std::string PartTable::propertyName(std::size_t k) const
{
    return text(k, record(k).nameLength, record(k).propertyNameLength);
}

std::string PartTable::materialName(std::size_t k) const
{
    const PartRecord& r = record(k);
    return text(k, std::uint64_t{r.nameLength} + r.propertyNameLength, r.materialNameLength);
}

const std::uint32_t* PartTable::block(std::size_t k, std::uint64_t offset, std::uint64_t count, std::uint64_t sum,
                                      const char* what) const
{
    const char* start = elements.payload() + offset;
    if (checksum(start, count * sizeof(std::uint32_t)) != sum) {
        badFile(elements.path, sizeof(FileHeader) + offset,
                std::string("the ") + what + " of part " + std::to_string(record(k).id) +
                    " do not match their checksum");
    }
    return reinterpret_cast<const std::uint32_t*>(start);
}

const std::uint32_t* PartTable::elementIds(std::size_t k) const
{
    const PartRecord& r = record(k);
    return block(k, r.idsOffset, r.numElements, r.idsChecksum, "element ids");
}

const std::uint32_t* PartTable::nodeReferences(std::size_t k) const
{
    const PartRecord& r = record(k);
    return block(k, r.refsOffset, r.numElements * r.stride, r.refsChecksum, "node references");
}

void PartTable::badElementId(std::size_t k, std::uint64_t position, const std::string& what) const
{
    const PartRecord& r = record(k);
    badFile(elements.path, sizeof(FileHeader) + r.idsOffset + position * sizeof(std::uint32_t),
            "part " + std::to_string(r.id) + ": " + what);
}

void PartTable::badReference(std::size_t k, std::uint64_t position, const std::string& what) const
{
    const PartRecord& r = record(k);
    const std::uint32_t* ids = reinterpret_cast<const std::uint32_t*>(elements.payload() + r.idsOffset);
    badFile(elements.path, sizeof(FileHeader) + r.refsOffset + position * sizeof(std::uint32_t),
            "part " + std::to_string(r.id) + ", element " + std::to_string(ids[position / r.stride]) + ": " + what);
}

} // namespace readgen
