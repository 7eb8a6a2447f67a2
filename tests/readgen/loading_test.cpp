// What is written is what is loaded: every element id, every corner, every count.
#include <algorithm>
#include <numeric>

#include "modelfixture.h"
#include "outputcapture.h"
#include "readelements.h"

using readgen::noNode;

namespace {

bool ascending(const PartNodesStr& nodes)
{
    return std::adjacent_find(nodes.idList, nodes.idList + nodes.numNodes, std::greater_equal<unsigned int>()) ==
           nodes.idList + nodes.numNodes;
}

Ids idsOf(const PartInfoStr& part)
{
    return Ids(part.partNodes.idList, part.partNodes.idList + part.partNodes.numNodes);
}

} // namespace

TEST(Loading, OfTheTinyModelCountsEverything)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    OutputCapture errors(2);
    const LoadedModel model(folder.path, "tiny");
    errors.stop();
    EXPECT_EQ(errors.all(), "");
    EXPECT_EQ(model.idCounts, std::vector<int>{12});
    EXPECT_EQ(model.nodeCounts, std::vector<int>{12});
    EXPECT_EQ(model.elementCounts, std::vector<int>{8});
    EXPECT_EQ(model.numParts, 4u);
    EXPECT_EQ(model.pidMap, (UIUIMap{{10, 0}, {20, 1}, {30, 2}, {40, 3}}));
}

TEST(Loading, GivesEveryCornerOfEveryElement)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    const LoadedModel model(folder.path, "tiny");
    EXPECT_EQ(cornersOf(model.part(10), 101), (Ids{11, 12, 13, 14, 15, 16, 17, 18}));
    EXPECT_EQ(cornersOf(model.part(10), 102), (Ids{11, 12, 13, 15, 15, 15, 15, 15}));
    EXPECT_EQ(cornersOf(model.part(10), 103), (Ids{11, 14, 13, 12, 15, 15, 16, 16}));
    EXPECT_EQ(cornersOf(model.part(20), 201), (Ids{15, 16, 17, 18}));
    EXPECT_EQ(cornersOf(model.part(20), 202), (Ids{18, 19, 20, 20}));
}

TEST(Loading, FillsEveryFieldOfARecord)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    const LoadedModel model(folder.path, "tiny");
    const PartInfoStr& part = model.part(20);
    EXPECT_EQ(part.partDrawType, unsigned(SHELL));
    EXPECT_EQ(part.partFlag, PART_SHOWN);
    EXPECT_EQ(part.partFileIndex, 0);
    EXPECT_EQ(part.partElements.numElements, 8u); // slots, not elements
    EXPECT_EQ(part.partElements.nodesPerElement, 4u);
    EXPECT_EQ(idsOf(part), (Ids{15, 16, 17, 18, 19, 20}));
    EXPECT_EQ(*part.partElements.eidMap, (UIUIMap{{201, 0}, {202, 1}}));
    EXPECT_EQ(part.partNodes.selectedNodes, nullptr);
    EXPECT_EQ(part.partNodes.nodeNormals, nullptr);
    EXPECT_EQ(part.partElements.selectedList, nullptr);
    EXPECT_EQ(part.partElements.elmNormals, nullptr);
    EXPECT_EQ(part.partElements.NPE, nullptr);
}

TEST(Loading, MeasuresEachPartOverItsOwnNodes)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    const LoadedModel model(folder.path, "tiny");
    for (unsigned int id : {10u, 20u, 30u, 40u}) {
        const PartInfoStr& part = model.part(id);
        for (int axis = 0; axis < 3; ++axis) {
            float lowest = part.partNodes.nodeValues[axis], highest = lowest;
            for (unsigned int k = 0; k < part.partNodes.numNodes; ++k) {
                lowest = std::min(lowest, part.partNodes.nodeValues[3 * k + axis]);
                highest = std::max(highest, part.partNodes.nodeValues[3 * k + axis]);
            }
            EXPECT_EQ(part.partExtents[2 * axis], lowest);
            EXPECT_EQ(part.partExtents[2 * axis + 1], highest);
        }
    }
}

TEST(Loading, KeepsAnEmptyThirdSlotOfABeamNegative)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    const LoadedModel model(folder.path, "tiny");
    EXPECT_EQ(cornersOf(model.part(30), 301), (Ids{19, 20, 21}));
    EXPECT_EQ(cornersOf(model.part(30), 302), (Ids{20, 21, noNode}));
    EXPECT_LT(static_cast<int>(model.part(30).partElements.elmIndices[5]), 0);
    EXPECT_EQ(cornersOf(model.part(40), 401), (Ids{11, 22, noNode})); // id 0 means none as well
}

TEST(Loading, OfEveryStride)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    addNodes(writer, tinyNodes);
    addPart(writer, makePart(1, SOLID, 10), {5}, {11, 12, 13, 14, 15, 16, 17, 18, 19, 20});
    addPart(writer, makePart(2, 77, 1), {6, 7}, {22, 11}); // a draw type that is kept but not drawn
    addPart(writer, makePart(3, 78, 6), {8}, {11, 12, 13, 14, 15, 16});
    writeOrFail(writer);
    const LoadedModel model(folder.path, "m");
    EXPECT_EQ(cornersOf(model.part(1), 5), (Ids{11, 12, 13, 14, 15, 16, 17, 18, 19, 20}));
    EXPECT_EQ(cornersOf(model.part(2), 7), Ids{11});
    EXPECT_EQ(cornersOf(model.part(3), 8), (Ids{11, 12, 13, 14, 15, 16}));
    EXPECT_EQ(model.part(2).partDrawType, 77u);
}

TEST(Loading, OfNodesAndElementsGivenInNoOrder)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    addNodes(writer, {50, 7, 4000000000u, 3});
    addNodes(writer, {1, 2000});
    addPart(writer, makePart(9, SHELL, 4), {30, 10, 20}, {50, 7, 3, 1, 4000000000u, 7, 3, 3, 2000, 1, 3, 7});
    writeOrFail(writer);
    const LoadedModel model(folder.path, "m");
    const PartInfoStr& part = model.part(9);
    EXPECT_EQ(idsOf(part), (Ids{1, 3, 7, 50, 2000, 4000000000u}));
    EXPECT_EQ(*part.partElements.eidMap, (UIUIMap{{10, 1}, {20, 2}, {30, 0}}));
    EXPECT_EQ(cornersOf(part, 30), (Ids{50, 7, 3, 1}));
    EXPECT_EQ(cornersOf(part, 10), (Ids{4000000000u, 7, 3, 3}));
    EXPECT_EQ(cornersOf(part, 20), (Ids{2000, 1, 3, 7}));
}

TEST(Loading, OfReferencesByIndex)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    addNodes(writer, {50, 7, 9, 3}); // sorted: 3, 7, 9, 50
    addPart(writer, makePart(1, SHELL, 4), {1}, {0, 1, 2, 3}, NodeReference::ByIndex);
    addPart(writer, makePart(2, BEAM, 3), {2, 3}, {3, 2, noNode, 1, 0, 0}, NodeReference::ByIndex);
    writeOrFail(writer);
    const LoadedModel model(folder.path, "m");
    EXPECT_EQ(cornersOf(model.part(1), 1), (Ids{3, 7, 9, 50}));
    EXPECT_EQ(cornersOf(model.part(2), 2), (Ids{50, 9, noNode}));
    EXPECT_EQ(cornersOf(model.part(2), 3), (Ids{7, 3, 3})); // index 0 is a node
}

// --- Several files ---

namespace {

// File 0 has even ids, file 1 odd ones and elements that use both; file 2 has elements only.
void writeThreeFiles(const std::string& dir, const std::string& prefix)
{
    ModelWriter writer(dir, "m");
    writer.beginFile(prefix + "even");
    addNodes(writer, {2, 4, 6, 8});
    addPart(writer, makePart(1, SHELL, 4), {1}, {2, 4, 6, 8});
    writer.beginFile(prefix + "odd");
    addNodes(writer, {1, 3, 5, 7});
    addPart(writer, makePart(2, SHELL, 4), {2, 3}, {1, 2, 3, 4, 8, 7, 6, 5});
    addPart(writer, makePart(3, SHELL, 4), {4}, {0, 1, 2, 3}, NodeReference::ByIndex);
    writer.beginFile(prefix + "none");
    addPart(writer, makePart(4, BEAM, 3), {5}, {8, 1, 5});
    writeOrFail(writer);
}

void expectThreeFiles(const std::string& dir)
{
    OutputCapture errors(2);
    const LoadedModel model(dir, "m");
    errors.stop();
    EXPECT_EQ(errors.all(), "");
    EXPECT_EQ(model.idCounts, (std::vector<int>{4, 4, 0}));
    EXPECT_EQ(model.elementCounts, (std::vector<int>{1, 3, 1}));
    EXPECT_EQ(model.pidMap, (UIUIMap{{1, 0}, {2, 1}, {3, 2}, {4, 3}}));
    EXPECT_EQ(model.part(1).partFileIndex, 0);
    EXPECT_EQ(model.part(2).partFileIndex, 1);
    EXPECT_EQ(model.part(4).partFileIndex, 2);
    EXPECT_EQ(cornersOf(model.part(1), 1), (Ids{2, 4, 6, 8}));
    EXPECT_EQ(cornersOf(model.part(2), 2), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(cornersOf(model.part(2), 3), (Ids{8, 7, 6, 5}));
    EXPECT_EQ(cornersOf(model.part(3), 4), (Ids{1, 3, 5, 7}));
    EXPECT_EQ(cornersOf(model.part(4), 5), (Ids{8, 1, 5}));
    for (unsigned int id : {1u, 2u, 3u, 4u}) {
        EXPECT_TRUE(ascending(model.part(id).partNodes)) << id;
    }
}

} // namespace

TEST(LoadingFiles, ThatUseEachOthersNodes)
{
    TempFolder folder;
    writeThreeFiles(folder.path, "");
    EXPECT_EQ(filesOf(folder.path, "m"), (std::vector<std::string>{"even", "odd", "none"}));
    expectThreeFiles(folder.path);
}

TEST(LoadingFiles, ThatLieInTheModelsFolder)
{
    TempFolder folder;
    writeThreeFiles(folder.path, "m/");
    EXPECT_EQ(filesOf(folder.path, "m"), (std::vector<std::string>{"m/even", "m/odd", "m/none"}));
    expectThreeFiles(folder.path);
}

TEST(LoadingFiles, GivesTheNodesOfAllFilesUnderTheModelsName)
{
    TempFolder folder;
    writeThreeFiles(folder.path, "m/");
    ReadIDS ids(folder.path.c_str(), "m");
    ReadNodes nodes(folder.path.c_str(), "m");
    ASSERT_EQ(ids.get("node_ids"), 8);
    ASSERT_EQ(nodes.getValues(), 8);
    const Ids all = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(Ids(ids.idList, ids.idList + 8), all);
    EXPECT_EQ(std::vector<float>(nodes.nodeValues, nodes.nodeValues + 24), coordinatesOf(all));
}

TEST(LoadingFiles, ThatNumberTheirNodesAlikeKeepsThemApart)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    for (unsigned int instance = 0; instance < 2; ++instance) {
        writer.beginFile("m/inst" + std::to_string(instance));
        const Ids ids = {1, 2, 3};
        const float x = 10.0f * static_cast<float>(instance);
        const float xyz[9] = {x, 0, 0, x + 1, 0, 0, x, 1, 0};
        writer.addNodes(3, ids.data(), xyz);
        addPart(writer, makePart(instance + 1, SHELL, 4), {1}, {1, 2, 3, 3});
    }
    writeOrFail(writer);
    const LoadedModel model(folder.path, "m");
    EXPECT_EQ(model.part(1).partExtents[0], 0);
    EXPECT_EQ(model.part(2).partExtents[0], 10);
    EXPECT_EQ(model.part(2).partExtents[1], 11);
}

// --- Some parts only ---

TEST(LoadingByIds, GivesTheListedPartsInTheModelsOrder)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    Ids wanted = {40, 20, 40, 999};
    OutputCapture errors(2);
    const LoadedModel model(folder.path, "tiny", &wanted);
    errors.stop();
    EXPECT_EQ(errors.all(), "");
    EXPECT_EQ(model.elementCounts, std::vector<int>{3});
    EXPECT_EQ(model.pidMap, (UIUIMap{{20, 0}, {40, 1}}));
    EXPECT_EQ(cornersOf(model.part(20), 201), (Ids{15, 16, 17, 18}));
}

TEST(LoadingByIds, OfNoneGivesNothing)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    Ids none;
    const LoadedModel model(folder.path, "tiny", &none);
    EXPECT_EQ(model.numParts, 0u);
    EXPECT_EQ(model.parts, nullptr);
    EXPECT_TRUE(model.pidMap.empty());
}

TEST(LoadingByIds, LeavesDamageInOtherPartsAlone)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    EditedFolder edited(folder.path + "/tiny");
    edited.elements[sizeof(readgen::FileHeader)] ^= 1; // part 10's first element id
    edited.save();
    Ids wanted = {20};
    const LoadedModel model(folder.path, "tiny", &wanted);
    EXPECT_EQ(model.numParts, 1u);
}

TEST(LoadingByName, GivesThePartsOfExactlyThatName)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    UIUIMap pidMap;
    ReadElements reader(folder.path.c_str(), "tiny", 0, &pidMap);
    unsigned int numParts = 0;
    PartInfoStr* parts = nullptr;
    EXPECT_EQ(reader.get("Beams", &numParts, &parts), 0);
    EXPECT_EQ(reader.get("beams", &numParts, &parts), 2);
    ASSERT_EQ(numParts, 1u);
    EXPECT_EQ(pidMap, (UIUIMap{{30, 0}}));
    EXPECT_EQ(reader.get("shells", &numParts, &parts), 2); // appended
    ASSERT_EQ(numParts, 2u);
    EXPECT_EQ(pidMap, (UIUIMap{{20, 1}, {30, 0}}));
    EXPECT_EQ(cornersOf(parts[0], 301), (Ids{19, 20, 21}));
    EXPECT_EQ(cornersOf(parts[1], 201), (Ids{15, 16, 17, 18}));
    for (unsigned int k = 0; k < numParts; ++k) {
        releasePart(parts[k]);
    }
    delete[] parts;
}

TEST(Loading, AppendsToACountWithoutAnArray)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    UIUIMap pidMap;
    ReadElements reader(folder.path.c_str(), "tiny", 0, &pidMap);
    unsigned int numParts = 2; // what a second load of an environment hands over
    PartInfoStr* parts = nullptr;
    EXPECT_EQ(reader.getAll(&numParts, &parts), 8);
    ASSERT_EQ(numParts, 6u);
    EXPECT_EQ(parts[1].partFlag, 0u);
    EXPECT_EQ(parts[1].partNodes.idList, nullptr);
    EXPECT_EQ(pidMap[10], 2u);
    for (unsigned int k = 0; k < numParts; ++k) {
        releasePart(parts[k]);
    }
    delete[] parts;
}

TEST(Loading, OfAPartWithoutElementsKeepsItAndTheModelsBox)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    addNodes(writer, tinyNodes);
    addPart(writer, makePart(1, SHELL, 4), {}, {});
    addPart(writer, makePart(2, SHELL, 4), {1}, {11, 12, 13, 14});
    writeOrFail(writer);
    const LoadedModel model(folder.path, "m");
    ASSERT_EQ(model.numParts, 2u);
    const PartInfoStr& empty = model.part(1);
    EXPECT_EQ(empty.partElements.numElements, 0u);
    EXPECT_EQ(empty.partElements.nodesPerElement, 4u);
    EXPECT_EQ(empty.partNodes.numNodes, 0u);
    EXPECT_TRUE(empty.partElements.eidMap->empty());
    EXPECT_TRUE(std::equal(empty.partExtents, empty.partExtents + 6, model.part(2).partExtents));
}

// Large enough for several threads; the order of the table's parts and the ids must not depend on them.
TEST(Loading, WithThreadsGivesEveryElementOfALargeModel)
{
    constexpr unsigned int nodeCount = 120000;
    TempFolder folder;
    Ids nodeIds(nodeCount + 3), elementIds(nodeCount), refs;
    std::iota(nodeIds.begin(), nodeIds.end(), 1000u);
    for (unsigned int e = 0; e < nodeCount; ++e) {
        elementIds[e] = (e * 7919u) % nodeCount + 1; // a permutation: not sorted
        refs.insert(refs.end(), {1000 + e, 1001 + e, 1002 + e, 1003 + e});
    }
    ModelWriter writer(folder.path, "m");
    addNodes(writer, nodeIds);
    for (unsigned int id : {3u, 1u, 2u}) {
        addPart(writer, makePart(id, SHELL, 4), elementIds, refs);
    }
    writeOrFail(writer);
    const LoadedModel model(folder.path, "m");
    EXPECT_EQ(model.elementCounts, std::vector<int>{3 * nodeCount});
    EXPECT_EQ(model.pidMap, (UIUIMap{{3, 0}, {1, 1}, {2, 2}}));
    for (unsigned int k = 0; k < 3; ++k) {
        const PartInfoStr& part = model.parts[k];
        ASSERT_EQ(part.partNodes.numNodes, nodeCount + 3);
        ASSERT_EQ(part.partElements.eidMap->size(), nodeCount);
        for (unsigned int e = 0; e < nodeCount; e += 101) {
            ASSERT_EQ(cornersOf(part, elementIds[e]), (Ids{1000 + e, 1001 + e, 1002 + e, 1003 + e}));
        }
    }
}

// --- Smaller members ---

TEST(PartType, IsTheDrawTypeOfAFamilyName)
{
    ReadElements reader(nullptr, nullptr, nullptr);
    EXPECT_EQ(reader.getPartType("shell"), SHELL);
    EXPECT_EQ(reader.getPartType("SOLID"), SOLID);
    EXPECT_EQ(reader.getPartType("Beam"), BEAM);
    EXPECT_EQ(reader.getPartType("discrete"), DISCRETE);
    EXPECT_EQ(reader.getPartType("mass"), 0);
    EXPECT_EQ(reader.getPartType(""), 0);
    EXPECT_EQ(reader.getPartType(nullptr), 0);
}

TEST(FillNodeDetails, ReplacesPositionsByThePartsOwn)
{
    TempFolder folder;
    writeThreeFiles(folder.path, "");
    ReadIDS even(folder.path.c_str(), "even"), odd(folder.path.c_str(), "odd");
    ReadNodes evenNodes(folder.path.c_str(), "even"), oddNodes(folder.path.c_str(), "odd");
    for (ReadIDS* ids : {&even, &odd}) {
        ids->get("node_ids");
    }
    for (ReadNodes* nodes : {&evenNodes, &oddNodes}) {
        nodes->getValues();
    }
    std::vector<ReadIDS*> ids = {&even, &odd};
    std::vector<ReadNodes*> nodes = {&evenNodes, &oddNodes};
    ReadElements reader(nullptr, &ids, &nodes);

    PartInfoStr part = {};
    part.partElements.elmIndices = new unsigned int[4]{7, 0, noNode, 4}; // ids 7, 2, none, 1
    reader.fillNodeDetails(4, &part);
    EXPECT_EQ(idsOf(part), (Ids{1, 2, 7}));
    EXPECT_EQ(Ids(part.partElements.elmIndices, part.partElements.elmIndices + 4), (Ids{2, 1, noNode, 0}));
    EXPECT_EQ(std::vector<float>(part.partNodes.nodeValues, part.partNodes.nodeValues + 9), coordinatesOf({1, 2, 7}));
    EXPECT_EQ(part.partExtents[0], 0.5f);
    EXPECT_EQ(part.partExtents[1], 3.5f);
    releasePart(part);
}

TEST(FillNodeDetails, RefusesAPositionPastTheNodes)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    ReadElements reader(folder.path.c_str(), "tiny", 0, nullptr);
    PartInfoStr part = {};
    part.partElements.elmIndices = new unsigned int[2]{0, 12};
    OutputCapture errors(2);
    reader.fillNodeDetails(2, &part);
    errors.stop();
    EXPECT_EQ(errors.all(), "kvoread: node position 12 in slot 1 is past the model's 12 nodes: no nodes filled in\n");
    EXPECT_EQ(part.partNodes.idList, nullptr);
    EXPECT_EQ(part.partElements.elmIndices[1], 12u);
    releasePart(part);
}
