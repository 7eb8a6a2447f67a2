// Construction, loading, set-up with OpenGL and destruction of a model environment, watched together with the calls
// that it makes of the model-reading library.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>

#include <unistd.h>

#include "boundbox.h"
#include "gentime.h"
#include "modelbuilder.h"
#include "mtrans.h"
#include "mview.h"
#include "pickrect.h"
#include "readerstub.h"
#include "readids.h"
#include "readnodes.h"
#include "recordedtest.h"

namespace {
// The bytes of a part_start file.
class PartStart
{
public:
    explicit PartStart(const Floats& extents) { append(extents.data(), extents.size() * sizeof(float)); }
    PartStart& number(unsigned int value) { return append(&value, sizeof value); }
    PartStart& text(const std::string& bytes) { return append(bytes.data(), bytes.size()); }
    PartStart& name(const std::string& file) { return number(static_cast<unsigned int>(file.size())).text(file); }
    const std::string& bytes() const { return content; }

private:
    PartStart& append(const void* data, std::size_t size)
    {
        content.append(static_cast<const char*>(data), size);
        return *this;
    }
    std::string content;
};

const Floats unitBox = {0, 1, 0, 1, 0, 1};

class Loading : public RecordedTest
{
protected:
    void SetUp() override
    {
        RecordedTest::SetUp();
        char path[] = "/tmp/kvo-load-XXXXXX";
        dir = mkdtemp(path);
        readerstub::reset();
        readerstub::watched = true;
        CAEEnv::setPtr(nullptr);
    }

    void TearDown() override
    {
        env.reset();
        // The environment leaves these two behind.
        delete[] parts;
        delete[] boxes;
        std::filesystem::remove_all(dir);
        readerstub::reset();
        RecordedTest::TearDown();
    }

    void writePartStart(const std::string& bytes)
    {
        std::filesystem::create_directories(dir + "/model");
        std::ofstream(dir + "/model/part_start", std::ios::binary) << bytes;
    }

    CAEEnv& create(int shadeModel = GL_FLAT)
    {
        env.reset(new CAEEnv(dir.c_str(), "model", shadeModel));
        return *env;
    }

    int load(Indices* ids = nullptr)
    {
        const int result = env->getAll(ids);
        parts = env->partsInfoList;
        return result;
    }

    void loadAndInit(unsigned int fontBase = 0, bool threadStatus = false, Indices* ids = nullptr)
    {
        env->loadAndInitGL(fontBase, threadStatus, ids);
        parts = env->partsInfoList;
        boxes = env->boxList;
    }

    // Loads and gives the file list that resulted.
    std::vector<std::string> filesOf(const PartStart& partStart)
    {
        writePartStart(partStart.bytes());
        readerstub::watched = false;
        create();
        EXPECT_EQ(load(), 0);
        return env->fileList;
    }

    std::string dir;
    std::unique_ptr<CAEEnv> env;
    PartInfoStr* parts = nullptr;
    BoundBox** boxes = nullptr;
};

using Names = std::vector<std::string>;

readerstub::File fileWith(std::initializer_list<unsigned int> pids)
{
    readerstub::File file;
    file.nodeIds = {1, 2, 3, 4};
    file.nodeValues = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    for (unsigned int pid : pids) {
        file.parts.push_back({pid, [] { return quadPart(); }});
    }
    return file;
}
} // namespace

// --- Construction ---

TEST_F(Loading, ANewEnvironmentHasItsDefaults)
{
    const CAEEnv& e = create(GL_SMOOTH);
    EXPECT_EQ(e.numParts, 0u);
    EXPECT_EQ(e.compFlag, 0u);
    EXPECT_EQ(e.pickType, 1024u);
    EXPECT_EQ(e.numNodes, 0u);
    EXPECT_EQ(e.shadeModel, GL_SMOOTH);
    EXPECT_EQ(e.segmentPart, nullptr);
    EXPECT_EQ(e.dirName, dir);
    EXPECT_EQ(e.modelName, "model");
    const float blue[4] = {0, 0, 1, 1}, green[4] = {0, 1, 0, 1};
    for (int k = 0; k < 4; ++k) {
        EXPECT_EQ(e.colorBlue[k], blue[k]);
        EXPECT_EQ(e.colorGreen[k], green[k]);
    }
    for (int k = 0; k < 6; ++k) {
        EXPECT_EQ(e.modelExtents[k], k % 2 ? 2000 : -2000);
        EXPECT_EQ(e.orgModelExtents[k], k % 2 ? 2000 : -2000);
    }
    EXPECT_EQ(printed(), "");
}

TEST_F(Loading, PointersOfANewEnvironmentAreNull)
{
    const CAEEnv& e = create();
    EXPECT_EQ(e.mView, nullptr);
    EXPECT_EQ(e.mTrans, nullptr);
    EXPECT_EQ(e.boxList, nullptr);
    EXPECT_EQ(e.partsInfoList, nullptr);
    EXPECT_EQ(e.readIDS, nullptr);
    EXPECT_EQ(e.readNodes, nullptr);
}

TEST_F(Loading, TheNamesAreCopied)
{
    char dirName[] = "some/dir", modelName[] = "engine";
    CAEEnv e(dirName, modelName, GL_FLAT);
    dirName[0] = modelName[0] = '?';
    EXPECT_EQ(e.dirName, "some/dir");
    EXPECT_STREQ(e.getModelName(), "engine");
}

TEST_F(Loading, TheLatestEnvironmentIsTheCurrentOne)
{
    CAEEnv first("d", "a", GL_FLAT);
    EXPECT_EQ(CAEEnv::getPtr(), &first);
    CAEEnv second("d", "b", GL_FLAT);
    EXPECT_EQ(CAEEnv::getPtr(), &second);
    CAEEnv::setPtr(&first);
    EXPECT_EQ(CAEEnv::cae_Env, &first);
}

TEST_F(Loading, DestructionDoesNotClearTheCurrentEnvironment)
{
    const CAEEnv* const gone = &create();
    env.reset();
    EXPECT_EQ(CAEEnv::getPtr(), gone);
}

// --- part_start ---

TEST_F(Loading, AMissingPartStartIsReportedAndChangesNothing)
{
    CAEEnv& e = create();
    EXPECT_EQ(load(), 1);
    const std::string path = dir + "/model/part_start";
    EXPECT_EQ(printedLines(), (Lines{path, "Unable to open part_start binary file" + path}));
    EXPECT_EQ(e.modelExtents[0], -2000);
    EXPECT_TRUE(e.fileList.empty());
    EXPECT_EQ(e.numParts, 0u);
    EXPECT_STREQ(e.charBuff, path.c_str());
}

TEST_F(Loading, ThePrimitiveTypeIsSetBeforeTheFileIsKnownToOpen)
{
    CAEEnv& e = create();
    load();
    EXPECT_EQ(e.primitiveType, static_cast<unsigned int>(GL_QUADS));
}

TEST_F(Loading, OneFileOrNoneIsNamedLikeTheModel)
{
    EXPECT_EQ(filesOf(PartStart(unitBox).number(0)), Names{"model"});
    EXPECT_EQ(filesOf(PartStart(unitBox).number(1)), Names{"model"});
}

TEST_F(Loading, ASingleFilesNameRecordIsNotRead)
{
    EXPECT_EQ(filesOf(PartStart(unitBox).number(1).name("other")), Names{"model"});
}

TEST_F(Loading, SeveralFilesAreNamedByTheirRecords)
{
    EXPECT_EQ(filesOf(PartStart(unitBox).number(3).name("a").name("sub/file_b").name("c")),
              (Names{"a", "sub/file_b", "c"}));
}

TEST_F(Loading, TheExtentsAreThoseOfPartStart)
{
    filesOf(PartStart({-1, 2, -3, 4, -5, 6}).number(0));
    const float expected[6] = {-1, 2, -3, 4, -5, 6};
    for (int k = 0; k < 6; ++k) {
        EXPECT_EQ(env->modelExtents[k], expected[k]);
        EXPECT_EQ(env->orgModelExtents[k], expected[k]);
    }
}

TEST_F(Loading, OnlyEqualXExtentsAreMirrored)
{
    filesOf(PartStart({5, 5, 6, 6, 7, 7}).number(0));
    const float expected[6] = {5, -5, 6, 6, 7, 7};
    for (int k = 0; k < 6; ++k) {
        EXPECT_EQ(env->modelExtents[k], expected[k]);
        EXPECT_EQ(env->orgModelExtents[k], expected[k]);
    }
}

TEST_F(Loading, ZeroXExtentsBecomeZeroAndMinusZero)
{
    filesOf(PartStart({0, 0, 0, 1, 0, 1}).number(0));
    EXPECT_EQ(env->modelExtents[1], 0);
    EXPECT_TRUE(std::signbit(env->modelExtents[1]));
}

TEST_F(Loading, AShortPartStartKeepsWhatCouldNotBeRead)
{
    writePartStart("");
    readerstub::watched = false;
    create();
    EXPECT_EQ(load(), 0);
    EXPECT_EQ(env->modelExtents[0], -2000);
    EXPECT_EQ(env->modelExtents[5], 2000);
    EXPECT_EQ(env->fileList, Names{"model"});
    EXPECT_EQ(filesOf(PartStart(unitBox)), Names{"model"}) << "extents, but no number of files";
}

TEST_F(Loading, AMissingNameRecordGivesAnEmptyName)
{
    EXPECT_EQ(filesOf(PartStart(unitBox).number(3).name("abc")), (Names{"abc", "", ""}));
}

TEST_F(Loading, ANameReadShortKeepsTheBytesOfTheNameBefore)
{
    EXPECT_EQ(filesOf(PartStart(unitBox).number(2).name("abcdef").number(6).text("XY")), (Names{"abcdef", "XYcdef"}));
}

TEST_F(Loading, AnOverlongNameIsCutAndTheNextOneReadRight)
{
    const std::string longName(300, 'n');
    EXPECT_EQ(filesOf(PartStart(unitBox).number(2).name(longName).name("next")),
              (Names{longName.substr(0, 255), "next"}));
}

TEST_F(Loading, NamesOf255BytesAreWhole)
{
    const std::string name(255, 'n');
    EXPECT_EQ(filesOf(PartStart(unitBox).number(2).name(name).name("b")), (Names{name, "b"}));
}

TEST_F(Loading, AnAbsurdNumberOfFilesInAShortFileStopsEarly)
{
    EXPECT_EQ(filesOf(PartStart(unitBox).number(0xFFFFFFFFu)).size(), 100001u);
}

TEST_F(Loading, AnOverlongPathIsCutTo127Characters)
{
    const std::string longDir = "/tmp/" + std::string(200, 'd');
    CAEEnv e(longDir.c_str(), "model", GL_FLAT);
    EXPECT_EQ(e.getAll(nullptr), 1);
    EXPECT_EQ(printedLines()[0], longDir.substr(0, 127));
    EXPECT_EQ(std::strlen(e.charBuff), 127u);
}

// --- Loading through the reader ---

TEST_F(Loading, LoadsOneFileInTheFixedOrderOfCallsAndPrints)
{
    readerstub::files["model"] = fileWith({7});
    writePartStart(PartStart(unitBox).number(1).bytes());
    create();
    EXPECT_EQ(load(), 0);
    Lines lines = printedLines();
    ASSERT_FALSE(lines.empty());
    EXPECT_TRUE(isTiming(lines[lines.size() - 2], "TIME FOR ALL=", " msec")) << lines[lines.size() - 2];
    lines.erase(lines.end() - 2);
    EXPECT_EQ(lines, (Lines{dir + "/model/part_start", "NUM FILES in CAE=1", "NUM FILES FORM LIST=1",
                            "reader: ReadIDS(" + dir + ",model)", "reader: ReadIDS::get(node_ids) of model",
                            "NUM NODES FROM READ IDS=4", "reader: ReadNodes(" + dir + ",model)",
                            "reader: ReadNodes::getValues of model", "NUM NODES FROM READ NODES=4",
                            "reader: ReadElements(1 ids,1 nodes)", "reader: setValues(" + dir + ",model,0,own readers)",
                            "reader: getAll(0,null)", "reader: ~ReadIDS model", "reader: ~ReadNodes model",
                            "TOTAL PARTS=1", "reader: ~ReadElements"}));
    EXPECT_TRUE(glrecord::lines().empty()) << "loading touches no OpenGL state";
}

TEST_F(Loading, ReadersAreReleasedBeforeTheTotalsAndTheElementsReaderAfterThem)
{
    readerstub::files["a"] = fileWith({1});
    readerstub::files["b"] = fileWith({2});
    writePartStart(PartStart(unitBox).number(2).name("a").name("b").bytes());
    create();
    load();
    std::string order;
    for (const std::string& line : printedLines()) {
        if (line.find("~Read") != std::string::npos) {
            order += line.find("~ReadElements") == std::string::npos ? 'r' : 'E';
        }
        if (line.find("TOTAL PARTS=") == 0 || line.find("TIME FOR ALL=") == 0) {
            order += 'p';
        }
    }
    EXPECT_EQ(order, "rrrrppE");
}

TEST_F(Loading, NodeValuesAreReadOnlyWhereThereAreIds)
{
    readerstub::files["a"]; // no ids
    readerstub::files["b"] = fileWith({2});
    writePartStart(PartStart(unitBox).number(2).name("a").name("b").bytes());
    create();
    load();
    const std::string text = printed();
    EXPECT_EQ(text.find("getValues of a"), std::string::npos);
    EXPECT_NE(text.find("NUM NODES FROM READ IDS=0\n"), std::string::npos);
    EXPECT_NE(text.find("getValues of b\nNUM NODES FROM READ NODES=4\n"), std::string::npos);
    EXPECT_EQ(text.find("NUM NODES FROM READ NODES="), text.rfind("NUM NODES FROM READ NODES="));
}

TEST_F(Loading, AllNodesOfAllFilesAreReadBeforeTheFirstElements)
{
    readerstub::files["a"] = fileWith({1});
    readerstub::files["b"] = fileWith({2});
    writePartStart(PartStart(unitBox).number(2).name("a").name("b").bytes());
    create();
    load();
    const std::string text = printed();
    EXPECT_LT(text.find("getValues of b"), text.find("setValues("));
    EXPECT_LT(text.find("setValues(" + dir + ",a,0,own"), text.find("setValues(" + dir + ",b,1,own"));
}

TEST_F(Loading, PartsLieInFileOrder)
{
    readerstub::files["a"] = fileWith({30, 10});
    readerstub::files["b"] = fileWith({20});
    writePartStart(PartStart(unitBox).number(2).name("a").name("b").bytes());
    create();
    load();
    EXPECT_EQ(env->getNumParts(), 3);
    EXPECT_EQ(*env->getPartsMapPtr(), (UIUIMap{{30, 0}, {10, 1}, {20, 2}}));
    EXPECT_EQ(env->getPartsList()[1].partFileIndex, 0);
    EXPECT_EQ(env->getPartsList()[2].partFileIndex, 1);
}

TEST_F(Loading, APartListLoadsThosePartsOnly)
{
    readerstub::files["model"] = fileWith({10, 20, 30});
    writePartStart(PartStart(unitBox).number(0).bytes());
    create();
    Indices ids = {30, 10};
    load(&ids);
    EXPECT_NE(printed().find("reader: getPartsByID(0,null)"), std::string::npos);
    EXPECT_EQ(env->pidMap, (UIUIMap{{10, 0}, {30, 1}}));
}

TEST_F(Loading, ASecondLoadKeepsFileListAndPartCount)
{
    readerstub::files["model"] = fileWith({});
    writePartStart(PartStart(unitBox).number(0).bytes());
    create();
    load();
    forget();
    load();
    const std::string text = printed();
    EXPECT_EQ(env->fileList, (Names{"model", "model"}));
    EXPECT_NE(text.find("NUM FILES in CAE=0\nNUM FILES FORM LIST=2\n"), std::string::npos);
    EXPECT_NE(text.find("reader: ReadElements(2 ids,2 nodes)"), std::string::npos)
        << "one reader per entry of the list";
}

TEST_F(Loading, ASecondLoadDropsTheArrayButNotTheCount)
{
    writePartStart(PartStart(unitBox).number(0).bytes());
    create();
    env->numParts = 5; // as a first load would leave it; the reader has no parts now and must not touch the array
    PartInfoStr old;
    env->partsInfoList = &old;
    env->getAll(nullptr);
    EXPECT_NE(printed().find("reader: getAll(5,null)"), std::string::npos);
    EXPECT_EQ(env->partsInfoList, nullptr);
    env->numParts = 0;
}

// --- loadAndInitGL ---

TEST_F(Loading, InitPrintsItsLinesInOrder)
{
    readerstub::watched = false;
    readerstub::files["model"] = fileWith({7});
    writePartStart(PartStart({0, 3, -2, 2, 0, 0}).number(0).bytes());
    create();
    loadAndInit();
    Lines lines = printedLines();
    ASSERT_GT(lines.size(), 7u);
    lines.erase(lines.begin(), lines.begin() + 7); // the seven lines of loading itself
    ASSERT_EQ(lines.size(), 10u);
    EXPECT_EQ(lines[0], "AXIS LEN=0.2,0.4,0");
    EXPECT_TRUE(isTiming(lines[1], "TIME FOR ELM NORMALS=")) << lines[1];
    EXPECT_EQ(lines[2], "LIGHT xmin=0 xmax=3");
    EXPECT_EQ(lines[6].substr(0, 10), "Lightpos1=");
    EXPECT_EQ(lines[7], "NUM PARTS=1");
    EXPECT_EQ(lines[8], "MODEL EXTS=0,3,-2,2,0,0");
    EXPECT_TRUE(isTiming(lines[9], "TIMEFOR loadAndInitGL=")) << lines[9];
}

TEST_F(Loading, InitSetsClearColourShadeModelAndLights)
{
    writePartStart(PartStart(unitBox).number(0).bytes());
    create(GL_FLAT);
    loadAndInit();
    const Lines lines = glrecord::lines();
    ASSERT_GT(lines.size(), 3u);
    EXPECT_EQ(lines[0], "glClearColor(0,0,0,1)");
    EXPECT_EQ(lines[1], "glShadeModel(GL_FLAT)");
    EXPECT_EQ(lines[2], "glEnable(GL_COLOR_MATERIAL)");
    EXPECT_EQ(lines.back(), "glDepthRange(0,1)");
}

TEST_F(Loading, InitMakesViewTransformationAndBoxesOnTheLiveExtents)
{
    readerstub::files["model"] = fileWith({7, 8});
    writePartStart(PartStart(unitBox).number(0).bytes());
    create();
    loadAndInit(1000);
    EXPECT_EQ(env->getMViewPtr()->modelExtents, env->getExtents());
    EXPECT_EQ(env->getMTransformPtr()->modelExtents, env->getExtents());
    EXPECT_EQ(env->getExtents(), env->modelExtents);
    EXPECT_EQ(env->boxList[1]->boxVertices[3], 1) << "box of the part's own extents";
    EXPECT_EQ(BoundBox::fontBase, 1000u);
}

TEST_F(Loading, InitComputesTheNormalsOfTheShadeModel)
{
    readerstub::files["model"] = fileWith({7});
    writePartStart(PartStart(unitBox).number(0).bytes());
    create(GL_SMOOTH);
    loadAndInit();
    EXPECT_TRUE(parts[0].partFlag & PART_NODE_NORMALS_DONE);
    EXPECT_FALSE(parts[0].partFlag & PART_ELEMENT_NORMALS_DONE);
}

TEST_F(Loading, InitAfterLoadingOnAThreadDoesNotLoadAgain)
{
    readerstub::files["model"] = fileWith({7});
    writePartStart(PartStart(unitBox).number(0).bytes());
    create();
    load();
    forget();
    loadAndInit(0, true);
    EXPECT_EQ(printed().find("part_start"), std::string::npos);
    EXPECT_EQ(env->numParts, 1u);
    EXPECT_NE(env->boxList[0], nullptr);
}

TEST_F(Loading, InitWithoutAModelGoesOnEmpty)
{
    readerstub::watched = false;
    create();
    loadAndInit();
    const std::string text = printed();
    EXPECT_NE(text.find("Unable to open part_start binary file"), std::string::npos);
    EXPECT_NE(text.find("NUM PARTS=0\nMODEL EXTS=-2000,2000,-2000,2000,-2000,2000\nTIMEFOR loadAndInitGL="),
              std::string::npos);
    EXPECT_NE(env->mView, nullptr);
    EXPECT_NE(env->mTrans, nullptr);
}

TEST_F(Loading, BeforeItFramesPicksAndViewStatesDoNothing)
{
    create();
    CAEEnv::setPtr(env.get());
    forget();
    float region[4] = {1, 1, 4, 4};
    PickRect pick;
    env->renderModel();
    env->displayAllParts();
    EXPECT_EQ(pick.process(PICK_TYPE_ELEMENT, SELECT_PICK, region), 0);
    const std::string state = (std::filesystem::temp_directory_path() / "kvo-no-state").string();
    EXPECT_EQ(env->save(state.c_str()), 1);
    EXPECT_FALSE(std::filesystem::exists(state));
    env->restore(stdin);
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(glrecord::lines(), Lines());
}

TEST_F(Loading, MirroredZeroPrintsAsMinusZero)
{
    readerstub::watched = false;
    writePartStart(PartStart({0, 0, 0, 1, 0, 1}).number(0).bytes());
    create();
    loadAndInit();
    EXPECT_NE(printed().find("MODEL EXTS=0,-0,0,1,0,1\n"), std::string::npos);
}

TEST_F(Loading, MirroredXExtentsReachTheViewsAsMixed)
{
    writePartStart(PartStart({5, 5, 1, 2, -2, -1}).number(0).bytes());
    create();
    loadAndInit();
    EXPECT_EQ(env->mView->xAxisType, AXIS_OTHER_TYPE);
    EXPECT_EQ(env->mView->yAxisType, Y_BOTH_POSITIVE);
    EXPECT_EQ(env->mView->zAxisType, Z_BOTH_NEGATIVE);
}

TEST_F(Loading, LoadingDoesNotRecomputeTheExtents)
{
    readerstub::files["model"] = fileWith({7}); // its part spans 0..1
    writePartStart(PartStart({-9, 9, -9, 9, -9, 9}).number(0).bytes());
    create();
    loadAndInit();
    EXPECT_EQ(env->modelExtents[0], -9);
    EXPECT_EQ(printed().find("RESIZE MODEL EXTS="), std::string::npos);
}

// --- Destruction ---

TEST_F(Loading, DestructionReleasesWhatThePartsHoldAndKeepsTheRecords)
{
    readerstub::files["model"] = fileWith({7, 8});
    writePartStart(PartStart(unitBox).number(0).bytes());
    create();
    loadAndInit();
    parts[1].partElements.NPE = newChars("8");
    env.reset();
    for (int k : {0, 1}) { // readable: the array is never released
        EXPECT_EQ(parts[k].partNodes.numNodes, 0u);
        EXPECT_EQ(parts[k].partElements.numElements, 0u);
        EXPECT_EQ(parts[k].partElements.NPE, nullptr);
        EXPECT_EQ(parts[k].partDrawType, static_cast<unsigned int>(SHELL)) << "the record itself stays";
    }
}

TEST_F(Loading, DestructionReleasesEveryOptionalArray)
{
    readerstub::files["model"] = fileWith({7});
    writePartStart(PartStart(unitBox).number(0).bytes());
    create();
    loadAndInit();
    parts[0].partNodes.selectedNodes = newChars("0000"); // the leak checker says whether they go
    parts[0].partNodes.nodeNormals = newFloats(Floats(12));
    parts[0].partElements.selectedList = newChars("0");
    EXPECT_NE(parts[0].partElements.elmNormals, nullptr);
    env.reset();
    EXPECT_EQ(parts[0].partNodes.numNodes, 0u);
}

TEST_F(Loading, DestructionOfARecordWithoutAnyArray)
{
    create();
    parts = env->partsInfoList = new PartInfoStr[1]();
    parts[0].partNodes.numNodes = 3;
    parts[0].partElements.numElements = 4;
    env->numParts = 1;
    env.reset(); // never set up: there is no box list either
    EXPECT_EQ(parts[0].partNodes.numNodes, 0u);
    EXPECT_EQ(parts[0].partElements.numElements, 0u);
    EXPECT_EQ(parts[0].partElements.NPE, nullptr);
}

TEST_F(Loading, AnEnvironmentThatWasLoadedButNeverSetUpCanBeDestroyed)
{
    readerstub::files["model"] = fileWith({7});
    writePartStart(PartStart(unitBox).number(0).bytes());
    create();
    load();
    env.reset();
    EXPECT_EQ(parts[0].partNodes.numNodes, 0u);
}

TEST_F(Loading, ModelWideReadersGoOnlyWhenNodesWereLoaded)
{
    create();
    env->readIDS = new ReadIDS("d", "ids");
    env->readNodes = new ReadNodes("d", "nodes");
    env->numNodes = 4;
    forget();
    env.reset();
    EXPECT_EQ(printedLines(), (Lines{"reader: ~ReadNodes nodes", "reader: ~ReadIDS ids"}));

    create();
    ReadNodes failed("d", "failed");
    env->readNodes = &failed;
    forget();
    env.reset();
    EXPECT_EQ(printed(), "") << "no nodes: left alone";
}
