// The files of a model folder as structures: what docs/model-directory.md describes byte by byte. Private to readgen/.
#ifndef MODELFORMAT_H
#define MODELFORMAT_H

#include <cstddef>
#include <cstdint>

#if !defined(__BYTE_ORDER__) || __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "model files are little-endian and are mapped as they are"
#endif

namespace readgen {

constexpr const char nodeIdsFile[] = "node_ids";
constexpr const char nodeCoordsFile[] = "node_coords";
constexpr const char partsFile[] = "parts";
constexpr const char elementsFile[] = "elements";
constexpr const char partStartFile[] = "part_start";
constexpr const char deckFile[] = "deck.json"; // what the deck has beyond the model; not read by the readers

// Eight characters each, no terminator.
constexpr const char nodeIdsMagic[] = "KVO_NIDS";
constexpr const char nodeCoordsMagic[] = "KVO_NXYZ";
constexpr const char partsMagic[] = "KVO_PART";
constexpr const char elementsMagic[] = "KVO_ELEM";

constexpr std::uint32_t formatVersion = 1;

// The first bytes of every file but part_start. The payload follows and ends the file.
struct FileHeader
{
    char magic[8];
    std::uint32_t version;
    std::uint32_t headerSize;      // 64
    std::uint64_t count;           // ids, nodes, parts or elements
    std::uint64_t payloadSize;     // bytes after the header
    std::uint64_t payloadChecksum; // of the payload; 0 in `elements`, whose blocks have their own
    std::uint64_t partner;         // payloadChecksum of the file that this one was written with (docs); else 0
    std::uint64_t stamp;           // equal in all files of one writing of a model (docs); 0 in older files
    std::uint64_t headerChecksum;  // of the 56 bytes before it
};
static_assert(sizeof(FileHeader) == 64 && offsetof(FileHeader, headerChecksum) == 56, "the file's layout");

// PartRecord::flags
constexpr std::uint32_t partHasColor = 1;
constexpr std::uint32_t partRefsByIndex = 2;

// One part in the payload of `parts`: all records first, then the text area.
struct PartRecord
{
    std::uint32_t id;
    std::uint32_t drawType;
    std::uint32_t stride;
    std::uint32_t flags;
    float color[4];
    std::uint32_t propertyId;
    std::uint32_t materialId;
    std::uint32_t ordinal;    // position among all parts of the model: its place in the palette
    std::uint32_t nameLength; // bytes, as the two below
    std::uint32_t propertyNameLength;
    std::uint32_t materialNameLength;
    std::uint64_t textOffset;  // in the text area: name, property name, material name, one after another
    std::uint64_t numElements; // elements, not slots
    std::uint64_t idsOffset;   // in the payload of `elements`: numElements ids
    std::uint64_t idsChecksum;
    std::uint64_t refsOffset; // in the payload of `elements`: numElements x stride node references
    std::uint64_t refsChecksum;
    std::uint64_t numNodes; // nodes that the part uses; for information
    float extents[6];       // of those nodes; of the whole model when there are none
};
static_assert(sizeof(PartRecord) == 136 && offsetof(PartRecord, textOffset) == 56 &&
                  offsetof(PartRecord, extents) == 112,
              "the file's layout");

// A node reference that stands for "none", where a slot may be empty.
constexpr std::uint32_t noNode = 0xFFFFFFFFu;
// Node counts stay below this: positions with the top bit set mean "not found".
constexpr std::uint64_t maxNodes = 0x7FFFFFFFu;
// Lengths that a record in memory can hold.
constexpr std::uint64_t maxSlots = 0xFFFFFFFFu;
constexpr std::uint32_t maxStride = 64;

std::uint64_t checksum(const void* data, std::size_t size); // XXH3, 64 bits
std::uint64_t headerChecksum(const FileHeader& header);

// Element families ("shell", ...) and what their strides may be.
unsigned int drawTypeOf(const char* family);                 // 0 for an unknown one, any case
const char* familyOf(unsigned int drawType);                 // "other" for an unknown one
bool strideFits(unsigned int drawType, unsigned int stride); // false also for 0 and absurd ones
bool thirdSlotMayBeEmpty(unsigned int drawType);             // beams and discretes

// Colour number `ordinal` of the palette as RGBA.
void paletteColor(unsigned int ordinal, float* color);

} // namespace readgen

#endif
