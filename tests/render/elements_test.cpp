// The element renderers: which primitives, vertices, normals, colours and widths each kind of part is drawn with.
#include "modelbuilder.h"
#include "recordedtest.h"

namespace {
float RED[4] = {1, 0, 0, 1};
const std::string redLine = "glColor4fv(1,0,0,1)";
const std::string blueLine = "glColor4fv(0,0,1,1)";
const int otherShade = 0x1D02;

using Renderer = void (CAEEnv::*)(PartInfoPtr, float*);

class Elements : public RecordedTest
{
protected:
    void TearDown() override
    {
        releasePart(part);
        RecordedTest::TearDown();
    }

    // Draws a part with normals for the shade model.
    Lines draw(const PartInfoStr& drawn, Renderer renderer, int shadeModel)
    {
        releasePart(part);
        part = drawn;
        env.shadeModel = shadeModel;
        if (part.partDrawType == SHELL) {
            env.computeShellNormals(&part);
        }
        if (part.partDrawType == SOLID) {
            env.computeSolidNormals(&part);
        }
        return redraw(renderer);
    }

    Lines redraw(Renderer renderer)
    {
        forget();
        (env.*renderer)(&part, RED);
        EXPECT_EQ(printed(), "");
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        Lines lines = glrecord::lines();
        lines.pop_back(); // the test's own glGetError
        return lines;
    }

    std::string v(unsigned int node) { return vertexLine(part, node); }
    std::string n(unsigned int node) { return normalLine(part.partNodes.nodeNormals + 3 * node); }

    CAEEnv env{"dir", "model", GL_FLAT};
    PartInfoStr part = {};
};

PartInfoStr selected(PartInfoStr part, const std::string& flags)
{
    part.partElements.selectedList = newChars(flags);
    return part;
}

// Eight nodes whose node k lies at (k, 10 k, 100 k), so that every vertex line tells its node.
Floats tellingNodes(int count = 8)
{
    Floats nodes;
    for (int k = 0; k < count; ++k) {
        nodes.insert(nodes.end(), {float(k), 10.0f * k, 100.0f * k});
    }
    return nodes;
}

// A solid part with telling nodes whose face normals tell their place: face k of element e is (e, k, 0).
PartInfoStr tellingSolid(const Indices& indices, const std::string& npe, unsigned int stride = 8)
{
    PartInfoStr part = makePart(SOLID, stride, tellingNodes(), indices);
    part.partElements.NPE = newChars(npe);
    Floats faces, corners;
    for (std::size_t e = 0; e < npe.size(); ++e) {
        for (int k = 0; k < 6; ++k) {
            faces.insert(faces.end(), {float(e), float(k), 0});
        }
    }
    for (int k = 0; k < 8; ++k) {
        corners.insert(corners.end(), {0, 0, float(k)});
    }
    part.partElements.elmNormals = newFloats(faces);
    part.partNodes.nodeNormals = newFloats(corners);
    part.partFlag |= PART_ELEMENT_NORMALS_DONE | PART_NODE_NORMALS_DONE;
    return part;
}

std::string at(int node)
{
    return "glVertex3fv(" + std::to_string(node) + "," + std::to_string(10 * node) + "," + std::to_string(100 * node) +
           ")";
}

std::string face(int element, int k)
{
    return "glNormal3fv(" + std::to_string(element) + "," + std::to_string(k) + ",0)";
}

using Faces = std::vector<std::vector<int>>; // node slots
const Faces tetra = {{0, 1, 2, 2}, {0, 1, 3, 3}, {0, 3, 2, 2}, {1, 2, 3, 3}};
const Faces penta = {{0, 1, 2, 3}, {1, 2, 6, 4}, {3, 0, 4, 6}, {0, 1, 4, 4}, {2, 3, 6, 6}};
const Faces hexa = {{0, 1, 2, 3}, {1, 2, 6, 5}, {4, 5, 6, 7}, {3, 0, 4, 7}, {2, 3, 7, 6}, {0, 1, 5, 4}};

// The lines of one element drawn with its face normals; slot s is node s.
Lines byFaceNormals(const Faces& faces, int element)
{
    Lines lines;
    for (std::size_t k = 0; k < faces.size(); ++k) {
        lines.push_back(face(element, static_cast<int>(k)));
        for (int slot : faces[k]) {
            lines.push_back(at(slot));
        }
    }
    return lines;
}

Lines byNodeNormals(const Faces& faces)
{
    Lines lines;
    for (const std::vector<int>& corners : faces) {
        for (int slot : corners) {
            lines.push_back("glNormal3fv(0,0," + std::to_string(slot) + ")");
            lines.push_back(at(slot));
        }
    }
    return lines;
}

Lines joined(std::initializer_list<Lines> blocks)
{
    Lines all;
    for (const Lines& block : blocks) {
        all.insert(all.end(), block.begin(), block.end());
    }
    return all;
}

const Lines quadsOpen = {redLine, "glBegin(GL_QUADS)"};
const Lines endLine = {"glEnd()"};
const Indices eight = {0, 1, 2, 3, 4, 5, 6, 7};
} // namespace

// --- Whole shell parts ---

TEST_F(Elements, AFlatShellPartHasOneNormalPerElement)
{
    const Lines lines = draw(quadStripPart(2), &CAEEnv::renderShellPart, GL_FLAT);
    EXPECT_EQ(lines, (Lines{redLine, "glBegin(GL_QUADS)", "glNormal3fv(0,0,1)", v(0), v(1), v(4), v(3),
                            "glNormal3fv(0,0,1)", v(1), v(2), v(5), v(4), "glEnd()"}));
}

TEST_F(Elements, ASmoothShellPartIsOneIndexedDrawFromItsOwnArrays)
{
    const Lines lines = draw(quadStripPart(2), &CAEEnv::renderShellPart, GL_SMOOTH);
    EXPECT_EQ(lines, (Lines{"glVertexPointer(3,GL_FLOAT,0,data)", "glNormalPointer(GL_FLOAT,0,data)", redLine,
                            "glDrawElements(GL_QUADS,8,GL_UNSIGNED_INT,[0,1,4,3,1,2,5,4])"}));
    EXPECT_EQ(glrecord::vertexPointer(), part.partNodes.nodeValues);
    EXPECT_EQ(glrecord::normalPointer(), part.partNodes.nodeNormals);
}

TEST_F(Elements, ATriangularShellIsADegenerateQuad)
{
    const Lines lines = draw(trianglePart(), &CAEEnv::renderShellPart, GL_FLAT);
    EXPECT_EQ(lines, (Lines{redLine, "glBegin(GL_QUADS)", "glNormal3fv(0,0,0)", v(0), v(1), v(2), v(2), "glEnd()"}));
}

TEST_F(Elements, AShellPartUnderAnotherShadeModelIsNotTouchedAtAll)
{
    draw(quadPart(), &CAEEnv::renderShellPart, GL_FLAT);
    env.shadeModel = otherShade;
    EXPECT_EQ(redraw(&CAEEnv::renderShellPart), Lines{});
}

// --- Shells element by element ---

TEST_F(Elements, FlatShellsTakeEachElementsColour)
{
    const Lines lines = draw(selected(quadStripPart(3), "01?"), &CAEEnv::renderShells, GL_FLAT);
    const std::string up = "glNormal3fv(0,0,1)";
    EXPECT_EQ(lines, (Lines{redLine,  "glBegin(GL_QUADS)", //
                            redLine,  up,
                            v(0),     v(1),
                            v(5),     v(4), //
                            blueLine, up,
                            v(1),     v(2),
                            v(6),     v(5), //
                            up,       v(2),
                            v(3),     v(7),
                            v(6),     "glEnd()"}))
        << "a flag that is neither 0 nor 1 leaves the colour as it is";
}

TEST_F(Elements, SmoothShellsHaveANormalBeforeEveryVertex)
{
    const Lines lines = draw(selected(quadPart(), "1"), &CAEEnv::renderShells, GL_SMOOTH);
    EXPECT_EQ(lines, (Lines{redLine, "glBegin(GL_QUADS)", blueLine, n(0), v(0), n(1), v(1), n(2), v(2), n(3), v(3),
                            "glEnd()"}));
    EXPECT_EQ(n(2), "glNormal3fv(0,0,1)");
}

TEST_F(Elements, ShellsUnderAnotherShadeModelSetTheColourOnly)
{
    draw(selected(quadPart(), "1"), &CAEEnv::renderShells, GL_FLAT);
    env.shadeModel = otherShade;
    EXPECT_EQ(redraw(&CAEEnv::renderShells), Lines{redLine});
}

TEST_F(Elements, TheSelectionColourIsTheEnvironmentsOwn)
{
    env.colorBlue[0] = 0.5f;
    const Lines lines = draw(selected(quadPart(), "1"), &CAEEnv::renderShells, GL_FLAT);
    EXPECT_EQ(lines[2], "glColor4fv(0.5,0,1,1)");
}

// --- Solids ---

TEST_F(Elements, AFlatTetrahedronDrawsItsFourTriangles)
{
    EXPECT_EQ(draw(tellingSolid(eight, "4"), &CAEEnv::renderSolidPart, GL_FLAT),
              joined({quadsOpen, byFaceNormals(tetra, 0), endLine}));
}

TEST_F(Elements, AFlatPentahedronDrawsThreeQuadsAndTwoTriangles)
{
    EXPECT_EQ(draw(tellingSolid(eight, "6"), &CAEEnv::renderSolidPart, GL_FLAT),
              joined({quadsOpen, byFaceNormals(penta, 0), endLine}));
}

TEST_F(Elements, AFlatHexahedronDrawsSixQuads)
{
    EXPECT_EQ(draw(tellingSolid(eight, "8"), &CAEEnv::renderSolidPart, GL_FLAT),
              joined({quadsOpen, byFaceNormals(hexa, 0), endLine}));
}

TEST_F(Elements, SmoothSolidsDrawTheSameFacesWithNodeNormals)
{
    const std::pair<const char*, Faces> shapes[] = {{"4", tetra}, {"6", penta}, {"8", hexa}};
    for (const auto& shape : shapes) {
        EXPECT_EQ(draw(tellingSolid(eight, shape.first), &CAEEnv::renderSolidPart, GL_SMOOTH),
                  joined({quadsOpen, byNodeNormals(shape.second), endLine}))
            << shape.first;
    }
}

TEST_F(Elements, APentahedronNeverReadsSlotsFiveAndSeven)
{
    for (int shade : {GL_FLAT, GL_SMOOTH}) {
        const Lines lines = draw(tellingSolid(eight, "6"), &CAEEnv::renderSolidPart, shade);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), at(5)), 0);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), at(7)), 0);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), at(6)), 4); // two quads, twice in a triangle
    }
}

TEST_F(Elements, AnUnknownShapeIsSkippedAndTheNextOneKeepsItsNormals)
{
    Indices twice = eight;
    twice.insert(twice.end(), eight.begin(), eight.end());
    EXPECT_EQ(draw(tellingSolid(twice, "58"), &CAEEnv::renderSolidPart, GL_FLAT),
              joined({quadsOpen, byFaceNormals(hexa, 1), endLine}));
}

TEST_F(Elements, ATenSlotSolidIsReadWithAStepOfEight)
{
    Indices indices(30, 7);
    for (unsigned int k = 0; k < 4; ++k) {
        indices[k] = k;          // element 0
        indices[8 + k] = k;      // element 1, at 8 instead of 10
        indices[16 + k] = 3 - k; // element 2, at 16 instead of 20
    }
    const Lines lines = draw(tellingSolid(indices, "444", 10), &CAEEnv::renderSolidPart, GL_FLAT);
    ASSERT_EQ(lines.size(), 3u + 3 * 20) << "three elements";
    EXPECT_EQ(Lines(lines.begin() + 2, lines.begin() + 22), byFaceNormals(tetra, 0));
    EXPECT_EQ(Lines(lines.begin() + 22, lines.begin() + 42), byFaceNormals(tetra, 1));
    EXPECT_EQ(Lines(lines.begin() + 42, lines.begin() + 47), (Lines{face(2, 0), at(3), at(2), at(1), at(1)}));
}

TEST_F(Elements, SolidsTakeEachElementsColour)
{
    Indices three = eight;
    three.insert(three.end(), eight.begin(), eight.end());
    three.insert(three.end(), eight.begin(), eight.end());
    const Lines lines = draw(selected(tellingSolid(three, "486"), "10x"), &CAEEnv::renderSolids, GL_FLAT);
    EXPECT_EQ(lines, joined({quadsOpen,
                             {blueLine},
                             byFaceNormals(tetra, 0),
                             {redLine},
                             byFaceNormals(hexa, 1),
                             byFaceNormals(penta, 2),
                             endLine}));
}

TEST_F(Elements, AnUnknownShapeStillSetsItsColour)
{
    const Lines lines = draw(selected(tellingSolid(eight, "5"), "1"), &CAEEnv::renderSolids, GL_FLAT);
    EXPECT_EQ(lines, joined({quadsOpen, {blueLine}, endLine}));
}

TEST_F(Elements, SolidsUnderAnotherShadeModelAreAnEmptyBlock)
{
    draw(tellingSolid(eight, "8"), &CAEEnv::renderSolidPart, GL_FLAT);
    env.shadeModel = otherShade;
    EXPECT_EQ(redraw(&CAEEnv::renderSolidPart), joined({quadsOpen, endLine}));
}

TEST_F(Elements, ComputedSolidsDrawWithComputedNormals)
{
    const Lines lines = draw(hexaPart(), &CAEEnv::renderSolidPart, GL_FLAT);
    EXPECT_EQ(Lines(lines.begin() + 2, lines.begin() + 7), (Lines{"glNormal3fv(0,0,1)", v(0), v(1), v(2), v(3)}));
    EXPECT_EQ(Lines(lines.begin() + 7, lines.begin() + 12), (Lines{"glNormal3fv(1,0,0)", v(1), v(2), v(6), v(5)}));
}

// --- Beams ---

TEST_F(Elements, AWholeBeamPartIsInvisible)
{
    EXPECT_EQ(draw(beamPart(2), &CAEEnv::renderBeamPart, GL_FLAT), Lines{});
}

TEST_F(Elements, ABeamWithoutThirdNodeIsItsLine)
{
    const Lines lines = draw(selected(beamPart(), "0"), &CAEEnv::renderBeams, GL_FLAT);
    EXPECT_EQ(lines, (Lines{redLine, "glLineWidth(5)", "glPointSize(5)", redLine, "glBegin(GL_LINES)", v(0), v(1),
                            "glEnd()", "glLineWidth(1)", "glPointSize(1)"}));
}

TEST_F(Elements, ABeamWithThirdNodeAlsoHasItsPoint)
{
    const Lines lines = draw(selected(beamPart(2), "1"), &CAEEnv::renderBeams, GL_FLAT);
    EXPECT_EQ(lines, (Lines{redLine, "glLineWidth(5)", "glPointSize(5)", blueLine, "glBegin(GL_LINES)", v(0), v(1),
                            "glEnd()", "glBegin(GL_POINTS)", v(2), "glEnd()", "glLineWidth(1)", "glPointSize(1)"}));
}

TEST_F(Elements, ABeamsThirdNodeMayBeNodeZero)
{
    const Lines lines = draw(selected(beamPart(0), "0"), &CAEEnv::renderBeams, GL_FLAT);
    EXPECT_EQ(glrecord::between("glBegin(GL_POINTS)", "glEnd"), (Lines{"glBegin(GL_POINTS)", v(0), "glEnd()"}));
}

TEST_F(Elements, AnyThirdEntryNegativeAsSignedMeansNoNode)
{
    draw(selected(beamPart(0x80000000u), "0"), &CAEEnv::renderBeams, GL_FLAT);
    EXPECT_EQ(glrecord::find("glBegin(GL_POINTS)"), -1);
}

TEST_F(Elements, BeamsHaveABlockEachAndIgnoreTheShadeModel)
{
    PartInfoStr beams = makePart(BEAM, 3, tellingNodes(), {0, 1, noNode, 1, 2, 3, 2, 3, noNode});
    const Lines lines = draw(selected(beams, "0x1"), &CAEEnv::renderBeams, otherShade);
    EXPECT_EQ(lines, (Lines{redLine,
                            "glLineWidth(5)",
                            "glPointSize(5)", //
                            redLine,
                            "glBegin(GL_LINES)",
                            at(0),
                            at(1),
                            "glEnd()", //
                            "glBegin(GL_LINES)",
                            at(1),
                            at(2),
                            "glEnd()",
                            "glBegin(GL_POINTS)",
                            at(3),
                            "glEnd()", //
                            blueLine,
                            "glBegin(GL_LINES)",
                            at(2),
                            at(3),
                            "glEnd()",
                            "glLineWidth(1)",
                            "glPointSize(1)"}));
}

// --- Discretes ---

TEST_F(Elements, AWholeDiscretePartIsOneBlockOfLines)
{
    PartInfoStr springs = makePart(DISCRETE, 3, tellingNodes(), {0, 1, 7, 2, 3, 7});
    EXPECT_EQ(draw(springs, &CAEEnv::renderDiscretePart, otherShade),
              (Lines{redLine, "glLineWidth(2)", "glBegin(GL_LINES)", at(0), at(1), at(2), at(3), "glEnd()",
                     "glLineWidth(1)"}));
}

TEST_F(Elements, DiscretesHaveABlockEach)
{
    PartInfoStr springs = makePart(DISCRETE, 3, tellingNodes(), {0, 1, 7, 2, 3, 7});
    EXPECT_EQ(draw(selected(springs, "10"), &CAEEnv::renderDiscretes, GL_FLAT),
              (Lines{redLine, "glLineWidth(2)", blueLine, "glBegin(GL_LINES)", at(0), at(1), "glEnd()", redLine,
                     "glBegin(GL_LINES)", at(2), at(3), "glEnd()", "glLineWidth(1)"}));
}

// --- What is missing or does not fit ---

TEST_F(Elements, PartsWithoutTheNormalsOfTheShadeModelAreNotDrawn)
{
    const std::pair<PartInfoStr (*)(), std::vector<Renderer>> kinds[] = {
        {[] { return quadPart(); }, {&CAEEnv::renderShellPart, &CAEEnv::renderShells}},
        {[] { return hexaPart(); }, {&CAEEnv::renderSolidPart, &CAEEnv::renderSolids}}};
    for (const auto& kind : kinds) {
        for (Renderer renderer : kind.second) {
            for (int other : {GL_FLAT, GL_SMOOTH}) {
                draw(selected(kind.first(), "1"), renderer, other == GL_FLAT ? GL_SMOOTH : GL_FLAT);
                env.shadeModel = other; // whose normals were never computed
                redraw(renderer);
                EXPECT_EQ(glrecord::count("glVertex3fv") + glrecord::count("glDrawElements"), 0);
            }
        }
    }
}

TEST_F(Elements, WithoutSelectionFlagsTheColourDoesNotChange)
{
    const std::pair<PartInfoStr, Renderer> kinds[] = {{quadPart(), &CAEEnv::renderShells},
                                                      {hexaPart(), &CAEEnv::renderSolids},
                                                      {beamPart(), &CAEEnv::renderBeams},
                                                      {discretePart(), &CAEEnv::renderDiscretes}};
    for (const auto& kind : kinds) {
        draw(kind.first, kind.second, GL_FLAT);
        EXPECT_EQ(glrecord::count("glColor4fv"), 1);
        EXPECT_GT(glrecord::count("glVertex3fv"), 0);
    }
}

TEST_F(Elements, ARemainderOfIndicesIsNotDrawn)
{
    PartInfoStr quad = makePart(SHELL, 4, tellingNodes(), {0, 1, 2, 3, 4, 5, 6});
    draw(quad, &CAEEnv::renderShellPart, GL_FLAT);
    EXPECT_EQ(glrecord::count("glVertex3fv"), 4);
    PartInfoStr springs = makePart(DISCRETE, 3, tellingNodes(), {0, 1, 2, 3, 4});
    draw(springs, &CAEEnv::renderDiscretePart, GL_FLAT);
    EXPECT_EQ(glrecord::count("glVertex3fv"), 2);
    PartInfoStr flagged = makePart(SHELL, 4, tellingNodes(), {0, 1, 2, 3, 4, 5, 6});
    draw(selected(flagged, "11"), &CAEEnv::renderShells, GL_FLAT);
    EXPECT_EQ(glrecord::matching("glColor4fv"), (Lines{redLine, blueLine})) << "not even its colour";
}

TEST_F(Elements, AStrideOfZeroDrawsNoElements)
{
    const std::pair<unsigned int, Renderer> kinds[] = {
        {SHELL, &CAEEnv::renderShellPart},      {SHELL, &CAEEnv::renderShells}, {SOLID, &CAEEnv::renderSolidPart},
        {SOLID, &CAEEnv::renderSolids},         {BEAM, &CAEEnv::renderBeams},   {DISCRETE, &CAEEnv::renderDiscretes},
        {DISCRETE, &CAEEnv::renderDiscretePart}};
    for (const auto& kind : kinds) {
        draw(makePart(kind.first, 0, tellingNodes(), {}), kind.second, GL_FLAT);
        EXPECT_EQ(glrecord::count("glVertex3fv"), 0) << kind.first;
    }
}

TEST_F(Elements, ElementsAreCountedByTheStrideButReadWithAFixedStep)
{
    // Four springs by the stride of 2; read by threes, the last two lie past the array.
    PartInfoStr springs = makePart(DISCRETE, 2, tellingNodes(), {0, 1, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(draw(springs, &CAEEnv::renderDiscretePart, GL_FLAT),
              (Lines{redLine, "glLineWidth(2)", "glBegin(GL_LINES)", at(0), at(1), at(3), at(4), "glEnd()",
                     "glLineWidth(1)"}));
}

TEST_F(Elements, AnElementPastTheArrayIsSkippedButSetsItsColour)
{
    PartInfoStr springs = makePart(DISCRETE, 2, tellingNodes(), {0, 1, 2, 3});
    const Lines lines = draw(selected(springs, "01"), &CAEEnv::renderDiscretes, GL_FLAT);
    EXPECT_EQ(lines, (Lines{redLine, "glLineWidth(2)", redLine, "glBegin(GL_LINES)", at(0), at(1), "glEnd()", blueLine,
                            "glLineWidth(1)"}));
    PartInfoStr quads = makePart(SHELL, 2, tellingNodes(), {0, 1, 2, 3});
    quads.partElements.elmNormals = newFloats({0, 0, 1, 0, 0, 2});
    quads.partFlag |= PART_ELEMENT_NORMALS_DONE;
    EXPECT_EQ(draw(selected(quads, "01"), &CAEEnv::renderShells, GL_FLAT),
              (Lines{redLine, "glBegin(GL_QUADS)", redLine, "glNormal3fv(0,0,1)", at(0), at(1), at(2), at(3), blueLine,
                     "glEnd()"}));
    PartInfoStr solids = tellingSolid(eight, "48", 4); // two elements by the stride, one by the step
    EXPECT_EQ(draw(selected(solids, "01"), &CAEEnv::renderSolids, GL_FLAT),
              joined({quadsOpen, {redLine}, byFaceNormals(tetra, 0), {blueLine}, endLine}));
}

// --- Faces of one element ---

TEST_F(Elements, ATriangleIsAQuadWhoseLastCornerRepeats)
{
    float nodes[9] = {0, 0, 0, 1, 0, 0, 0, 1, 0}, normals[9] = {0, 0, 1, 0, 0, 2, 0, 0, 3}, one[3] = {0, 0, 9};
    unsigned int offsets[3] = {0, 3, 6};
    env.renderTriaByNormal(offsets, nodes, one);
    EXPECT_EQ(glrecord::lines(), (Lines{"glNormal3fv(0,0,9)", "glVertex3fv(0,0,0)", "glVertex3fv(1,0,0)",
                                        "glVertex3fv(0,1,0)", "glVertex3fv(0,1,0)"}));
    forget();
    env.renderTriaByNodeNormal(offsets, nodes, normals);
    EXPECT_EQ(glrecord::lines(),
              (Lines{"glNormal3fv(0,0,1)", "glVertex3fv(0,0,0)", "glNormal3fv(0,0,2)", "glVertex3fv(1,0,0)",
                     "glNormal3fv(0,0,3)", "glVertex3fv(0,1,0)", "glNormal3fv(0,0,3)", "glVertex3fv(0,1,0)"}));
}

TEST_F(Elements, AQuadKeepsItsCornersInOrder)
{
    float nodes[12] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}, normals[12] = {1, 0, 0, 2, 0, 0, 3, 0, 0, 4, 0, 0};
    unsigned int offsets[4] = {9, 6, 3, 0};
    env.renderQuadByNormal(offsets, nodes, normals + 3);
    EXPECT_EQ(glrecord::lines(), (Lines{"glNormal3fv(2,0,0)", "glVertex3fv(0,1,0)", "glVertex3fv(1,1,0)",
                                        "glVertex3fv(1,0,0)", "glVertex3fv(0,0,0)"}));
    forget();
    env.renderQuadByNodeNormal(offsets, nodes, normals);
    EXPECT_EQ(glrecord::matching("glNormal3fv"),
              (Lines{"glNormal3fv(4,0,0)", "glNormal3fv(3,0,0)", "glNormal3fv(2,0,0)", "glNormal3fv(1,0,0)"}));
}

TEST_F(Elements, ShapesTakeFlatListsOfOffsets)
{
    Floats nodes, normals;
    for (int k = 0; k < 24; ++k) {
        nodes.insert(nodes.end(), {float(k), 0, 0});
        normals.insert(normals.end(), {0, float(k), 0});
    }
    Indices offsets, faces;
    for (unsigned int k = 0; k < 24; ++k) {
        offsets.push_back(3 * k);
        faces.push_back(3 * (23 - k)); // normals from the end, to see that they are looked up
    }
    const auto order = [](const std::string& kind) { // the first numbers of the lines
        std::string text;
        for (const std::string& line : glrecord::matching(kind)) {
            text += (text.empty() ? "" : " ") + (kind == "glVertex3fv" ? line.substr(12, line.find(',') - 12)
                                                                       : line.substr(14, line.rfind(',') - 14));
        }
        return text;
    };
    env.renderTetraByNormal(offsets.data(), faces.data(), normals.data(), nodes.data());
    EXPECT_EQ(order("glVertex3fv"), "0 1 2 2 3 4 5 5 6 7 8 8 9 10 11 11");
    EXPECT_EQ(order("glNormal3fv"), "23 22 21 20");
    forget();
    env.renderPentaByNormal(offsets.data(), faces.data(), normals.data(), nodes.data());
    EXPECT_EQ(order("glVertex3fv"), "0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 14 15 16 17 17");
    EXPECT_EQ(order("glNormal3fv"), "23 22 21 20 19");
    forget();
    env.renderHexaByNormal(offsets.data(), faces.data(), normals.data(), nodes.data());
    EXPECT_EQ(order("glVertex3fv"), "0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23");
    EXPECT_EQ(order("glNormal3fv"), "23 22 21 20 19 18");
    forget();
    env.renderTetraByNodeNormal(offsets.data(), nodes.data(), normals.data());
    EXPECT_EQ(order("glVertex3fv"), "0 1 2 2 3 4 5 5 6 7 8 8 9 10 11 11");
    EXPECT_EQ(order("glNormal3fv"), order("glVertex3fv"));
    forget();
    env.renderPentaByNodeNormal(offsets.data(), nodes.data(), normals.data());
    EXPECT_EQ(order("glVertex3fv"), "0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 14 15 16 17 17");
    EXPECT_EQ(order("glNormal3fv"), order("glVertex3fv"));
    forget();
    env.renderHexaByNodeNormal(offsets.data(), nodes.data(), normals.data());
    EXPECT_EQ(order("glNormal3fv"), order("glVertex3fv"));
    EXPECT_EQ(glrecord::count("glVertex3fv"), 24);
}
