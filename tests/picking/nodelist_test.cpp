// The model-wide node selection, through the model-reading library.
#include <set>

#include "readerstub.h"
#include "readids.h"
#include "readnodes.h"
#include "selectiontest.h"

namespace {
class NodeList : public Selection
{
protected:
    void SetUp() override
    {
        Selection::SetUp();
        readerstub::reset();
        readerstub::files["model"].nodeIds = {10, 20, 30};
        readerstub::files["model"].nodeValues = {3, 5, 7, -1, 8, -4, 2, -6, 2};
    }

    // Earlier readers are nobody's, and the environment keeps those that found no nodes.
    void TearDown() override
    {
        if (model->numNodes != 0) {
            nodeReaders.erase(model->readNodes);
            idReaders.erase(model->readIDS);
        }
        for (ReadNodes* reader : nodeReaders) {
            delete reader;
        }
        for (ReadIDS* reader : idReaders) {
            delete reader;
        }
        readerstub::reset();
        Selection::TearDown();
    }

    void selectNodeList(Indices ids)
    {
        model->selectNodeList(ids);
        nodeReaders.insert(model->readNodes);
        idReaders.insert(model->readIDS);
    }

    std::set<ReadNodes*> nodeReaders;
    std::set<ReadIDS*> idReaders;
    std::string marks() { return std::string(model->selectedNodes, model->numNodes); }

    std::string extentsLine()
    {
        for (const std::string& line : printedLines()) {
            if (line.find("EXTENTS=") == 0) {
                return line;
            }
        }
        return "none";
    }
};
} // namespace

TEST_F(NodeList, NodesAreMarkedInTheModelWideList)
{
    selectNodeList({10, 30});
    EXPECT_TRUE(model->compFlag & NODE_LIST_SELECTED);
    EXPECT_EQ(model->numNodes, 3u);
    EXPECT_EQ(marks(), "101");
    EXPECT_EQ(model->nodeValues[3], -1);
    EXPECT_EQ(allFlags(), (Indices{S, S, S})) << "independent of the parts' own marks";
    EXPECT_EQ(nodeMarks(0), "none");
}

TEST_F(NodeList, OneNodePrintsNegatedMaximaButForTheYMinimum)
{
    selectNodeList({10}); // (3, 5, 7): the y minimum takes x, so it differs from the maximum and is not negated
    EXPECT_EQ(extentsLine(), "EXTENTS=-3,3,3,5,-7,7");
}

TEST_F(NodeList, OneNodeWithEqualXAndYPrintsNegatedMaximaOnEveryAxis)
{
    readerstub::files["model"].nodeValues = {5, 5, 7, -1, 8, -4, 2, -6, 2};
    selectNodeList({10});
    EXPECT_EQ(extentsLine(), "EXTENTS=-5,5,-5,5,-7,7");
}

TEST_F(NodeList, LowerYStoresX)
{
    selectNodeList({10, 20, 30}); // y: 5 stores x 3, 8 is above it, -6 stores x 2
    EXPECT_EQ(extentsLine(), "EXTENTS=-1,3,2,8,-4,7");
}

TEST_F(NodeList, NoNodeFoundPrintsTheStartingBox)
{
    selectNodeList({});
    EXPECT_EQ(extentsLine(), "EXTENTS=1e+06,-1e+06,1e+06,-1e+06,1e+06,-1e+06");
}

TEST_F(NodeList, BoxIsPrintedOnly)
{
    const Floats before(model->modelExtents, model->modelExtents + 6);
    selectNodeList({10});
    EXPECT_EQ(Floats(model->modelExtents, model->modelExtents + 6), before);
    EXPECT_EQ(Floats(model->orgModelExtents, model->orgModelExtents + 6), before);
}

TEST_F(NodeList, UnknownNodeIsReportedByTheReaderAndByTheEnvironment)
{
    selectNodeList({99, 20, 0});
    const Lines lines = printedLines();
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[0], "Node ID <99> not found");
    EXPECT_EQ(lines[1], "NODE NOT FOUND=99");
    EXPECT_EQ(lines[2], "NODE NOT FOUND=0") << "the reader says nothing of id 0";
    EXPECT_EQ(lines[3].find("EXTENTS="), 0u);
    EXPECT_EQ(marks(), "010");
}

TEST_F(NodeList, IdsBeyondTheNodesMarkNothing)
{
    readerstub::files["model"].nodeIds = {10, 20, 30, 40}; // more ids than nodes
    selectNodeList({40, 20});
    EXPECT_EQ(marks(), "010");
    EXPECT_EQ(extentsLine().find("EXTENTS="), 0u);
}

TEST_F(NodeList, ReadersAreAskedForTheModelItself)
{
    readerstub::watched = true;
    selectNodeList({});
    const Lines lines = printedLines();
    const Lines expected = {"reader: ReadNodes(dir,model)", "reader: ReadNodes::getValues of model",
                            "reader: ReadIDS(dir,model)", "reader: ReadIDS::get(node_ids) of model"};
    ASSERT_GE(lines.size(), expected.size());
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 4), expected);
    readerstub::watched = false;
}

TEST_F(NodeList, ViewportProjectionLightsAndWindowCentreAreSetAgain)
{
    glViewport(10, 20, 640, 480);
    forget();
    selectNodeList({10});
    EXPECT_EQ((Indices{model->viewPort[2] + 0u, model->viewPort[3] + 0u}), (Indices{640, 480}));
    EXPECT_EQ(glrecord::count("glViewport"), 1);
    EXPECT_GE(glrecord::find("glViewport(0,0,640,480)"), 0) << "the origin is lost";
    const int ortho = glrecord::find("glOrtho(0,21,0,1,9999,-9999)");
    EXPECT_GT(ortho, 0);
    EXPECT_GT(glrecord::find("glEnable(GL_LIGHTING)"), ortho);
    const std::string text = printed();
    EXPECT_LT(text.find("EXTENTS=-3"), text.find("RESIZE MODEL EXTS="));
}

TEST_F(NodeList, CounterIsLeftAlone)
{
    model->i = 77;
    selectNodeList({10, 99});
    EXPECT_EQ(model->i, 77u);
}

TEST_F(NodeList, FlagIsSetEvenIfTheNodesCannotBeRead)
{
    readerstub::files.clear();
    selectNodeList({10});
    EXPECT_TRUE(model->compFlag & NODE_LIST_SELECTED);
    EXPECT_EQ(model->numNodes, 0u);
    EXPECT_EQ(model->selectedNodes, nullptr);
    EXPECT_NE(model->readNodes, nullptr);
    EXPECT_EQ(model->readIDS, nullptr);
    EXPECT_EQ(printed(), "") << "nothing further is done";
    EXPECT_EQ(glrecord::lines(), Lines{});
}

TEST_F(NodeList, NodesStaySetIfTheIdsCannotBeRead)
{
    readerstub::files["model"].nodeIds.clear();
    selectNodeList({10});
    EXPECT_EQ(model->numNodes, 3u);
    EXPECT_EQ(marks(), "000");
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(glrecord::lines(), Lines{});
}

TEST_F(NodeList, MarksOfAnEarlierCallStayReadableAfterAFailedOne)
{
    selectNodeList({20});
    const char* const before = model->selectedNodes;
    readerstub::files["model"].nodeValues.clear();
    selectNodeList({10});
    EXPECT_EQ(model->selectedNodes, before);
    EXPECT_EQ(marks(), "010") << "the earlier reader is not released";
}

TEST_F(NodeList, SecondCallStartsWithFreshMarks)
{
    selectNodeList({20});
    selectNodeList({10});
    EXPECT_EQ(marks(), "100");
}

TEST_F(NodeList, ClearingSelectedNodesKeepsTheModelWideOnes)
{
    selectNodeList({20});
    model->clearSelectedNodes();
    EXPECT_EQ(marks(), "010");
    EXPECT_TRUE(model->compFlag & NODE_LIST_SELECTED);
}

TEST(NodeListReaders, AreReleasedWithTheEnvironmentOnlyIfNodesWereRead)
{
    for (bool readable : {true, false}) {
        readerstub::reset();
        if (readable) {
            readerstub::files["model"].nodeIds = {10};
            readerstub::files["model"].nodeValues = {3, 5, 7};
        }
        glrecord::start(glrecord::Mode::RecordOnly);
        OutputCapture output;
        ReadNodes* kept = nullptr;
        {
            TestModel model(GL_FLAT);
            model.add(quadPart()).install();
            Indices ids = {10};
            model->selectNodeList(ids);
            kept = model->readNodes;
            readerstub::watched = true;
            output.take();
        }
        const std::string expected = readable ? "reader: ~ReadNodes model\nreader: ~ReadIDS model\n" : "";
        EXPECT_EQ(output.take(), expected);
        readerstub::reset();
        if (!readable) {
            delete kept;
        }
        glrecord::stop();
    }
}
