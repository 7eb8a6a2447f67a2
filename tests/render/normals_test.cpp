// Normals for flat shading (per face) and smooth shading (per node), of shells and solids.
#include <cmath>

#include "modelbuilder.h"
#include "recordedtest.h"

namespace {
const unsigned int noCorner = 0x80000000u;

class Normals : public RecordedTest
{
protected:
    // The part's normals under a shade model, computed by an environment made for it.
    PartInfoStr& compute(const PartInfoStr& part, int shadeModel)
    {
        model.reset(new TestModel(shadeModel));
        model->add(part).install();
        forget();
        (*model)->computeNormals();
        return model->part(0);
    }

    Floats flat(const PartInfoStr& part, std::size_t count)
    {
        const float* n = compute(part, GL_FLAT).partElements.elmNormals;
        return Floats(n, n + count);
    }

    // Per node; sums not yet of unit length under a shade model that is neither flat nor smooth.
    Floats perNode(const PartInfoStr& part, int shadeModel = GL_SMOOTH)
    {
        const PartNodesStr& nodes = compute(part, shadeModel).partNodes;
        return Floats(nodes.nodeNormals, nodes.nodeNormals + 3 * nodes.numNodes);
    }

    std::string shapes(const PartInfoStr& part, unsigned int count, int shadeModel = GL_FLAT)
    {
        return std::string(compute(part, shadeModel).partElements.NPE, count);
    }

    std::unique_ptr<TestModel> model;
};

void expectFace(const Floats& normals, int face, float x, float y, float z)
{
    EXPECT_FLOAT_EQ(normals[3 * face], x) << "face " << face;
    EXPECT_FLOAT_EQ(normals[3 * face + 1], y) << "face " << face;
    EXPECT_FLOAT_EQ(normals[3 * face + 2], z) << "face " << face;
}

void expectNode(const Floats& normals, int node, float x, float y, float z)
{
    expectFace(normals, node, x, y, z);
}

const int unnormalised = 0x1D02; // neither GL_FLAT nor GL_SMOOTH

PartInfoStr withNPE(PartInfoStr part, const std::string& npe)
{
    part.partElements.NPE = newChars(npe);
    return part;
}
} // namespace

// --- One face ---

TEST_F(Normals, AnyNegativeCornerMeansNothingIsComputed)
{
    CAEEnv env("d", "m", GL_FLAT);
    float nodes[12] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}, sums[12] = {}, face[3] = {7, 7, 7};
    for (int corner = 0; corner < 4; ++corner) {
        unsigned int corners[4] = {0, 3, 6, 9};
        corners[corner] = noCorner;
        for (int shade : {GL_FLAT, GL_SMOOTH}) {
            env.shadeModel = shade;
            env.computeElementNormal(corners, nodes, sums, face);
        }
        EXPECT_EQ(face[0], 7) << "corner " << corner;
    }
    for (float sum : sums) {
        EXPECT_EQ(sum, 0);
    }
}

TEST_F(Normals, TheFourthCornerDoesNotShapeTheNormal)
{
    CAEEnv env("d", "m", GL_FLAT);
    float nodes[12] = {0, 0, 0, 2, 0, 0, 2, 3, 0, 50, -9, 4}, face[3];
    unsigned int corners[4] = {0, 3, 6, 9};
    env.computeElementNormal(corners, nodes, nullptr, face);
    EXPECT_EQ(face[0], 0);
    EXPECT_EQ(face[1], 0);
    EXPECT_EQ(face[2], 1);
}

TEST_F(Normals, AFaceFollowsTheRightHandRuleOnEveryAxis)
{
    CAEEnv env("d", "m", GL_FLAT);
    float nodes[12] = {0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 2}, face[3];
    unsigned int yz[4] = {0, 6, 9, 0}, zx[4] = {0, 9, 3, 0}, yx[4] = {0, 6, 3, 0};
    env.computeElementNormal(yz, nodes, nullptr, face);
    EXPECT_EQ(face[0], 1);
    env.computeElementNormal(zx, nodes, nullptr, face);
    EXPECT_EQ(face[1], 1);
    env.computeElementNormal(yx, nodes, nullptr, face);
    EXPECT_EQ(face[2], -1);
}

TEST_F(Normals, ASmoothFaceAddsItsAreaVectorToAllFourCorners)
{
    CAEEnv env("d", "m", GL_SMOOTH);
    float nodes[12] = {0, 0, 0, 2, 0, 0, 2, 3, 0, 0, 3, 0}, sums[12] = {0, 0, 1}, face[3] = {7, 7, 7};
    unsigned int corners[4] = {0, 3, 6, 9};
    env.computeElementNormal(corners, nodes, sums, face);
    EXPECT_EQ(sums[2], 7) << "added, not set";
    EXPECT_EQ(sums[5], 6);
    EXPECT_EQ(sums[8], 6);
    EXPECT_EQ(sums[11], 6) << "the fourth corner too, although it does not shape the normal";
    EXPECT_EQ(face[0], 7) << "no element normal";
}

TEST_F(Normals, ACornerThatOccursTwiceReceivesTheNormalTwice)
{
    CAEEnv env("d", "m", GL_SMOOTH);
    float nodes[9] = {0, 0, 0, 1, 0, 0, 0, 1, 0}, sums[9] = {};
    unsigned int corners[4] = {0, 3, 6, 6};
    env.computeElementNormal(corners, nodes, sums, nullptr);
    EXPECT_EQ(sums[2], 1);
    EXPECT_EQ(sums[8], 2);
}

TEST_F(Normals, ADegenerateFlatFaceIsNotANumber)
{
    CAEEnv env("d", "m", GL_FLAT);
    float nodes[12] = {0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 1, 0}, face[3];
    unsigned int corners[4] = {0, 3, 6, 9};
    env.computeElementNormal(corners, nodes, nullptr, face);
    EXPECT_TRUE(std::isnan(face[0]));
    EXPECT_TRUE(std::isnan(face[2]));
}

// --- Shells ---

TEST_F(Normals, AQuadCounterClockwiseFromAboveLooksUp)
{
    expectFace(flat(quadPart(), 3), 0, 0, 0, 1);
    const unsigned int flags = model->flags(0);
    EXPECT_TRUE(flags & PART_ELEMENT_NORMALS_DONE);
    EXPECT_FALSE(flags & PART_NODE_NORMALS_DONE);
    EXPECT_EQ(model->part(0).partNodes.nodeNormals, nullptr);
}

TEST_F(Normals, AFlatTriangleHasAZeroNormal)
{
    expectFace(flat(trianglePart(), 3), 0, 0, 0, 0);
}

TEST_F(Normals, FlatShellsFollowElementByElement)
{
    PartInfoStr part =
        makePart(SHELL, 4, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1}, {0, 1, 2, 3, 0, 1, 2, 2, 3, 2, 1, 0});
    const Floats normals = flat(part, 9);
    expectFace(normals, 0, 0, 0, 1);
    expectFace(normals, 1, 0, 0, 0);
    expectFace(normals, 2, 0, 0, -1);
}

TEST_F(Normals, SmoothTrianglesSumToZeroAndEndAsNotANumber)
{
    for (float sum : perNode(trianglePart(), unnormalised)) {
        EXPECT_EQ(sum, 0);
    }
    for (float value : perNode(trianglePart())) {
        EXPECT_TRUE(std::isnan(value));
    }
}

TEST_F(Normals, SmoothShellsAverageByArea)
{
    // Two squares that share the edge 1-2: one of area 1 facing +z, one of area 3 facing -x (upwards behind the edge).
    const PartInfoStr part =
        makePart(SHELL, 4, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 1, 0, 3, 1, 1, 3}, {0, 1, 2, 3, 1, 4, 5, 2});
    const Floats sums = perNode(part, unnormalised);
    expectNode(sums, 0, 0, 0, 1);
    expectNode(sums, 1, -3, 0, 1);
    expectNode(sums, 5, -3, 0, 0);
    releasePart(model->part(0));
    model->part(0) =
        makePart(SHELL, 4, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 1, 0, 3, 1, 1, 3}, {0, 1, 2, 3, 1, 4, 5, 2});
    (*model)->shadeModel = GL_SMOOTH;
    (*model)->computeNormals();
    const float* unit = model->part(0).partNodes.nodeNormals;
    EXPECT_FLOAT_EQ(unit[3], -3 / std::sqrt(10.0f));
    EXPECT_FLOAT_EQ(unit[5], 1 / std::sqrt(10.0f));
}

TEST_F(Normals, AnyModelButFlatGathersNodeNormalsAndOnlySmoothNormalisesThem)
{
    PartInfoStr part = makePart(SHELL, 4, {0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0}, {0, 1, 2, 3});
    expectNode(perNode(part, unnormalised), 0, 0, 0, 4);
    EXPECT_TRUE(model->flags(0) & PART_NODE_NORMALS_DONE);
    expectNode(perNode(makePart(SHELL, 4, {0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0}, {0, 1, 2, 3})), 0, 0, 0, 1);
}

TEST_F(Normals, ARemainderOfIndicesIsDropped)
{
    const PartInfoStr part = makePart(SHELL, 4, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}, {0, 1, 2, 3, 3, 2});
    expectFace(flat(part, 3), 0, 0, 0, 1);
    const PartInfoStr again = makePart(SHELL, 4, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}, {0, 1, 2, 3, 3, 2});
    expectNode(perNode(again, unnormalised), 3, 0, 0, 1);
}

TEST_F(Normals, AStrideOfZeroMeansNoElements)
{
    for (unsigned int kind : {SHELL, SOLID}) {
        PartInfoStr part = makePart(kind, 0, {0, 0, 0}, {});
        EXPECT_TRUE(compute(part, GL_FLAT).partFlag & PART_ELEMENT_NORMALS_DONE);
    }
}

// --- Solids ---

TEST_F(Normals, AHexahedronHasSixFaceNormals)
{
    const Floats n = flat(hexaPart(), 18);
    expectFace(n, 0, 0, 0, 1);  // c1 c2 c3 c4
    expectFace(n, 1, 1, 0, 0);  // c2 c3 c7 c6
    expectFace(n, 2, 0, 0, 1);  // c5 c6 c7 c8
    expectFace(n, 3, -1, 0, 0); // c4 c1 c5 c8
    expectFace(n, 4, 0, 1, 0);  // c3 c4 c8 c7
    expectFace(n, 5, 0, -1, 0); // c1 c2 c6 c5
    EXPECT_EQ(model->part(0).partElements.NPE[0], '8');
}

TEST_F(Normals, EveryFaceOfASmoothHexahedronCounts)
{
    const Floats sums = perNode(hexaPart(), unnormalised);
    expectNode(sums, 0, -1, -1, 1); // faces 1, 4, 6
    expectNode(sums, 6, 1, 1, 1);   // faces 2, 3, 5
    expectNode(sums, 1, 1, -1, 1);  // faces 1, 2, 6
}

TEST_F(Normals, ATetrahedronHasOnlyZeroFaceNormals)
{
    for (float value : flat(tetraPart(), 18)) {
        EXPECT_EQ(value, 0);
    }
    EXPECT_EQ(model->part(0).partElements.NPE[0], '4');
}

TEST_F(Normals, ASmoothTetrahedronEndsAsNotANumber)
{
    for (float value : perNode(tetraPart())) {
        EXPECT_TRUE(std::isnan(value));
    }
}

TEST_F(Normals, APentahedronHasNormalsOnItsQuadrilateralsOnly)
{
    // Slots a c f d b b e e: the face table takes slot 6 (b again) where drawing takes slot 7 (e).
    const Floats n = flat(pentaPart(), 18);
    expectFace(n, 0, 1, 0, 0); // a c f d: (0,1,0) x (0,1,1)
    // c2 c3 c6 c5 = c f b b: (0,0,1) x (1,-1,0) = (1,1,0)
    expectFace(n, 1, 1 / std::sqrt(2.0f), 1 / std::sqrt(2.0f), 0);
    // c4 c1 c5 c6 = d a b b: (0,0,-1) x (1,0,-1) = (0,-1,0)
    expectFace(n, 2, 0, -1, 0);
    for (int face : {3, 4, 5}) {
        expectFace(n, face, 0, 0, 0);
    }
    EXPECT_EQ(model->part(0).partElements.NPE[0], '6');
}

TEST_F(Normals, ASmoothPentahedronNeverReachesItsSlotSevenNode)
{
    const Floats sums = perNode(pentaPart(), unnormalised);
    expectNode(sums, 4, 0, 0, 0); // e stands in slots 7 and 8 only
    expectNode(sums, 1, 2, 0, 0); // b, twice in two faces: 2 (1,1,0) + 2 (0,-1,0)
    const Floats unit = perNode(pentaPart());
    EXPECT_TRUE(std::isnan(unit[12]));
    EXPECT_FALSE(std::isnan(unit[0]));
}

TEST_F(Normals, TheTetrahedronTestComesBeforeThePentahedronTest)
{
    const PartInfoStr both =
        makePart(SOLID, 8, {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 1, 2, 3, 3, 3, 0, 1}); // slots 4 = 5 = 6
    EXPECT_EQ(shapes(both, 1), "4");
}

TEST_F(Normals, EveryElementIsClassifiedByItself)
{
    const Floats nodes = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1};
    const PartInfoStr mixed = makePart(SOLID, 8, nodes, {0, 1, 2, 3, 4, 4, 6, 6, 0, 1, 2, 3, 4, 5, 6, 7, //
                                                         0, 1, 2, 3, 3, 3, 3, 3, 0, 1, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(shapes(mixed, 4), "6848");
    const float* n = model->part(0).partElements.elmNormals;
    EXPECT_EQ(n[18 + 2], 1) << "each element at its own 18 floats";
    EXPECT_EQ(n[36 + 2], 0);
    EXPECT_EQ(n[54 + 2], 1);
}

TEST_F(Normals, SmoothShadingClassifiesTooOnce)
{
    EXPECT_EQ(shapes(pentaPart(), 1, GL_SMOOTH), "6");
}

TEST_F(Normals, ATenSlotSolidIsAlwaysATetrahedron)
{
    const Floats nodes = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1};
    const PartInfoStr ten = makePart(SOLID, 10, nodes, {0, 1, 2, 3, 4, 5, 6, 7, 0, 1, 7, 6, 5, 4, 4, 4, 1, 0, 0, 1});
    EXPECT_EQ(shapes(ten, 2), "44");
    for (int k = 0; k < 36; ++k) {
        EXPECT_EQ(model->part(0).partElements.elmNormals[k], 0);
    }
}

TEST_F(Normals, AnyOtherStrideKeepsTheKindItStartedWith)
{
    const Floats nodes = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1};
    // Nine slots with slots 4 = 5: not tested for, so a hexahedron.
    const PartInfoStr nine = makePart(SOLID, 9, nodes, {0, 1, 2, 3, 3, 3, 3, 3, 0});
    EXPECT_EQ(shapes(nine, 1), "8");
    EXPECT_EQ(model->part(0).partElements.elmNormals[2], 1) << "its first face is a quadrilateral";
}

TEST_F(Normals, AShapeGivenByTheReaderIsNotSetBackToHexahedron)
{
    EXPECT_EQ(shapes(withNPE(hexaPart(), "4"), 1), "4");
    EXPECT_EQ(model->part(0).partElements.elmNormals[2], 1) << "although its normals are a hexahedron's";
    EXPECT_EQ(shapes(withNPE(tetraPart(), "8"), 1), "4");
}

// --- When they are computed ---

TEST_F(Normals, OnlyShellsAndSolidsGetThem)
{
    for (PartInfoStr part : {beamPart(), discretePart(), makePart(99, 4, {0, 0, 0}, {0, 0, 0, 0})}) {
        for (int shade : {GL_FLAT, GL_SMOOTH}) {
            TestModel m(shade);
            PartInfoStr copy = makePart(part.partDrawType, part.partElements.nodesPerElement,
                                        {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2, 0, 1, 2, 0, 1, 2, 0, 1, 2});
            m.add(copy).install();
            m->computeNormals();
            EXPECT_EQ(m.part(0).partElements.elmNormals, nullptr);
            EXPECT_EQ(m.part(0).partNodes.nodeNormals, nullptr);
            EXPECT_EQ(m.flags(0), PART_SHOWN);
        }
        releasePart(part);
    }
}

TEST_F(Normals, ComputingAgainComputesNothing)
{
    for (int shade : {GL_FLAT, GL_SMOOTH}) {
        TestModel m(shade);
        m.add(quadPart()).add(hexaPart()).install();
        m->computeNormals();
        float* normals[2];
        for (int k : {0, 1}) {
            normals[k] = shade == GL_FLAT ? m.part(k).partElements.elmNormals : m.part(k).partNodes.nodeNormals;
            normals[k][0] = 42;
        }
        m->computeNormals();
        for (int k : {0, 1}) {
            EXPECT_EQ(normals[k],
                      shade == GL_FLAT ? m.part(k).partElements.elmNormals : m.part(k).partNodes.nodeNormals);
            EXPECT_EQ(normals[k][0], 42);
        }
    }
}

TEST_F(Normals, EveryRoundPrintsItsTimeAndLeavesTheCounterAtTheEnd)
{
    TestModel m(GL_FLAT);
    m.add(quadPart()).add(beamPart()).install();
    forget();
    m->i = 0;
    m->computeNormals();
    m->computeNormals();
    const Lines lines = printedLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(isTiming(lines[0], "TIME FOR ELM NORMALS=")) << lines[0];
    EXPECT_TRUE(isTiming(lines[1], "TIME FOR ELM NORMALS=")) << lines[1];
    EXPECT_EQ(m->i, 2u);
}

TEST_F(Normals, ChangingTheShadeModelFieldComputesNothingByItself)
{
    compute(quadPart(), GL_FLAT);
    (*model)->shadeModel = GL_SMOOTH;
    EXPECT_EQ(model->part(0).partNodes.nodeNormals, nullptr);
}

TEST_F(Normals, SetShadeModelComputesTheMissingKindAndNothingTwice)
{
    compute(quadPart(), GL_FLAT);
    (*model)->setShadeModel(GL_SMOOTH);
    ASSERT_NE(model->part(0).partNodes.nodeNormals, nullptr);
    EXPECT_EQ(model->part(0).partNodes.nodeNormals[2], 1);
    model->part(0).partElements.elmNormals[0] = 42;
    (*model)->setShadeModel(GL_FLAT);
    EXPECT_EQ(model->part(0).partElements.elmNormals[0], 42);
}

TEST_F(Normals, AShapeTestedSolidKeepsItsNPEForTheOtherShading)
{
    compute(pentaPart(), GL_FLAT);
    const char* npe = model->part(0).partElements.NPE;
    (*model)->setShadeModel(GL_SMOOTH);
    EXPECT_EQ(model->part(0).partElements.NPE, npe);
    EXPECT_EQ(*npe, '6');
}
