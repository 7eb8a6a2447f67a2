// What the tests of the model-reading library share: a folder of their own, a tiny model with one element of every
// kind, loading as the environment does it, and files changed on purpose.
#ifndef MODELFIXTURE_H
#define MODELFIXTURE_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mantypes.h"
#include "modelformat.h"
#include "modelwriter.h"
#include "partstr.h"

typedef std::vector<unsigned int> Ids;

// A fresh folder, removed at the end.
class TempFolder
{
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    std::string path;
};

std::string readBytes(const std::string& path);
void writeBytes(const std::string& path, const std::string& bytes);
// Everything below a folder, relative, sorted; folders end in "/".
std::vector<std::string> listTree(const std::string& folder);

// The stamp near the end of a part_start, and what stands before it and its checksum.
std::uint64_t stampIn(const std::string& partStart);
std::string withoutStamp(const std::string& partStart);

// A node's coordinates follow from its id, so that any test can tell where a node must lie.
std::vector<float> coordinatesOf(const Ids& nodeIds);

ModelPart makePart(unsigned int id, unsigned int drawType, unsigned int stride, const std::string& name = "");
void addNodes(ModelWriter& writer, const Ids& nodeIds);
void addPart(ModelWriter& writer, const ModelPart& part, const Ids& elementIds, const Ids& nodeRefs,
             NodeReference reference = NodeReference::ById);
void writeOrFail(ModelWriter& writer);

// Four parts in one file: 10 solids (hexahedron 101, tetrahedron 102, wedge 103), 20 shells (quadrilateral 201,
// triangle 202), 30 beams (301 with third node, 302 without), 40 discretes (401). Node ids 11 ... 22.
void writeTinyModel(const std::string& dir, const std::string& name = "tiny");
extern const Ids tinyNodes;

// A model loaded by the calls of the environment, with the counts that they returned.
struct LoadedModel
{
    LoadedModel(const std::string& dir, const std::string& modelName, Ids* partIds = nullptr);
    ~LoadedModel();
    LoadedModel(const LoadedModel&) = delete;
    LoadedModel& operator=(const LoadedModel&) = delete;

    const PartInfoStr& part(unsigned int id) const; // fails the test when absent

    std::vector<int> idCounts;   // per file
    std::vector<int> nodeCounts; // per file, -1 where not asked for
    std::vector<int> elementCounts;
    unsigned int numParts = 0;
    PartInfoStr* parts = nullptr;
    UIUIMap pidMap;
};

// Files of a model: its name, or what part_start lists.
std::vector<std::string> filesOf(const std::string& dir, const std::string& modelName);

void releasePart(PartInfoStr& part);

// The external node ids of an element, by its id; noNode for an empty slot. Also checks the coordinates of each.
Ids cornersOf(const PartInfoStr& part, unsigned int elementId);

// Counts and what the readers print on standard error for a possibly damaged model.
struct LoadReport
{
    int ids;
    int nodes;
    int elements;
    unsigned int numParts;
    std::vector<std::string> lines;
};
LoadReport loadAndReport(const std::string& dir, const std::string& name = "tiny");

// One file of a model as bytes, to be changed and sealed again with right checksums.
struct EditedFolder
{
    explicit EditedFolder(const std::string& folder);

    readgen::FileHeader& header(std::string& file) { return *reinterpret_cast<readgen::FileHeader*>(&file[0]); }
    template <class T> T* payload(std::string& file)
    {
        return reinterpret_cast<T*>(&file[sizeof(readgen::FileHeader)]);
    }
    readgen::PartRecord& record(std::size_t k) { return payload<readgen::PartRecord>(parts)[k]; }

    // Makes every checksum and partner fit what the files now hold; sizes and counts stay as they are.
    void seal();
    void save() const;
    void sealAndSave();

    std::string folder;
    std::string nodeIds, nodeCoords, parts, elements;
};

#endif
