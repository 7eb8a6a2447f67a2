// Drawing in selection mode: which names stand on the stack for which primitives, by pick type, draw type and shading.
#include <algorithm>

#include "modelbuilder.h"
#include "mtrans.h"
#include "recordedtest.h"

namespace {
const int unnormalised = 0x1D02; // neither GL_FLAT nor GL_SMOOTH

class PickNames : public RecordedTest
{
protected:
    // Installs the parts with their normals and draws them for picking.
    void draw(unsigned int type, const std::vector<PartInfoStr>& parts, int shadeModel = GL_FLAT)
    {
        install(parts, shadeModel);
        drawAgain(type);
    }

    void install(const std::vector<PartInfoStr>& parts, int shadeModel = GL_FLAT)
    {
        model.reset(new TestModel(shadeModel));
        for (const PartInfoStr& part : parts) {
            model->add(part);
        }
        model->install();
        (*model)->computeNormals();
    }

    void drawAgain(unsigned int type)
    {
        (*model)->setPickType(type);
        glSelectBuffer(4, buffer);
        glRenderMode(GL_SELECT);
        glInitNames();
        glPushName(0xFFFFFFFF);
        forget();
        (*model)->displayPartsByElement();
        depthLeft = glrecord::state().names.size();
        glRenderMode(GL_RENDER);
    }

    // What was drawn, as lines "names: primitive vertices": "2 3: GL_QUADS 4". Blocks without vertices have a 0.
    static Lines named()
    {
        Lines drawn, names = {"none"};
        std::string primitive;
        int vertices = 0;
        for (const std::string& line : glrecord::lines()) {
            const std::string argument = line.substr(line.find('(') + 1, line.find_first_of(",)") - line.find('(') - 1);
            if (line.find("glLoadName") == 0) {
                names.back() = argument;
            } else if (line.find("glPushName") == 0) {
                names.push_back(argument);
            } else if (line.find("glPopName") == 0) {
                names.pop_back();
            } else if (line.find("glBegin") == 0) {
                primitive = argument, vertices = 0;
            } else if (line.find("glVertex") == 0 && line.find("glVertexPointer") != 0) {
                ++vertices;
            } else if (line.find("glEnd()") == 0) {
                drawn.push_back(joined(names) + ": " + primitive + " " + std::to_string(vertices));
            } else if (line.find("glDrawElements") == 0) {
                drawn.push_back(joined(names) + ": array");
            }
        }
        return drawn;
    }

    static std::string joined(const Lines& names)
    {
        std::string text;
        for (const std::string& name : names) {
            text += (text.empty() ? "" : " ") + name;
        }
        return text;
    }

    static PartInfoStr withFlag(PartInfoStr part, unsigned int flag)
    {
        part.partFlag = flag;
        return part;
    }

    static int position(const std::string& line, int from = 0) { return glrecord::find(line, from); }

    std::unique_ptr<TestModel> model;
    std::size_t depthLeft = 0; // names on the stack after the drawing
    GLuint buffer[4];
};
} // namespace

// --- The layout of names ---

TEST_F(PickNames, ThirdElementOfTheSecondPartIsTwoThree)
{
    draw(PICK_TYPE_ELEMENT, {quadPart(), quadStripPart(3)});
    EXPECT_EQ(named(), (Lines{"1 1: GL_QUADS 4", "2 1: GL_QUADS 4", "2 2: GL_QUADS 4", "2 3: GL_QUADS 4"}));
    const Lines third = glrecord::between("glPushName(3)", "glPopName");
    EXPECT_EQ(glrecord::plain(third)[3], glrecord::plain({vertexLine(model->part(1), 2)})[0]);
}

TEST_F(PickNames, HiddenPartsProduceNoNamesAndTheOthersKeepTheirNumbers)
{
    draw(PICK_TYPE_ELEMENT, {withFlag(quadPart(), PART_HIDDEN), quadPart()});
    EXPECT_EQ(named(), Lines{"2 1: GL_QUADS 4"});
    EXPECT_EQ(glrecord::matching("glLoadName"), Lines{"glLoadName(2)"});
}

TEST_F(PickNames, EveryTypeNamesPartsByTheirPosition)
{
    for (unsigned int type : {PICK_TYPE_PART, PICK_TYPE_ELEMENT, PICK_TYPE_NODE, 0x2000u}) {
        draw(type, {quadPart(), withFlag(quadPart(), PART_HIDDEN), tetraPart()});
        EXPECT_EQ(glrecord::matching("glLoadName"), (Lines{"glLoadName(1)", "glLoadName(3)"}));
        EXPECT_EQ(depthLeft, 1u) << "type " << type;
    }
}

TEST_F(PickNames, NodesAreNamedByTheirPositionInThePart)
{
    draw(PICK_TYPE_NODE, {withFlag(quadPart(), PART_HIDDEN), trianglePart()});
    EXPECT_EQ(named(), (Lines{"2 1: GL_POINTS 1", "2 2: GL_POINTS 1", "2 3: GL_POINTS 1"}));
    const Lines second = glrecord::between("glPushName(2)", "glPopName");
    EXPECT_EQ(glrecord::plain(second)[2], glrecord::plain({vertexLine(model->part(1), 1)})[0]);
    EXPECT_EQ(glrecord::matching("glColor"), Lines{colorLine(model->part(1).partColor)});
}

TEST_F(PickNames, StackNeverHoldsMoreThanTwoNamesAndNoneIsZero)
{
    for (unsigned int type : {PICK_TYPE_PART, PICK_TYPE_ELEMENT, PICK_TYPE_NODE}) {
        draw(type, {quadStripPart(3), hexaPart(), beamPart(2), discretePart()});
        std::size_t names = 1;
        for (const std::string& line : glrecord::lines()) {
            names += line.find("glPushName") == 0 ? 1 : 0;
            names -= line.find("glPopName") == 0 ? 1 : 0;
            EXPECT_TRUE(names == 1 || names == 2) << line;
            EXPECT_EQ(line.find("Name(0)"), std::string::npos) << line;
        }
    }
}

TEST_F(PickNames, PartPicksCarryTheOnePartName)
{
    draw(PICK_TYPE_PART, {quadPart(), hexaPart(), discretePart()});
    EXPECT_EQ(glrecord::count("glPushName"), 0);
    const Lines drawn = named();
    for (const char* expected : {"1: GL_QUADS 4", "2: GL_QUADS 24", "3: GL_LINES 2"}) {
        EXPECT_EQ(std::count(drawn.begin(), drawn.end(), expected), 1) << expected;
    }
}

TEST_F(PickNames, UnknownTypesDrawNothing)
{
    draw(0x2000, {quadPart(), tetraPart(), beamPart(), discretePart()});
    EXPECT_EQ(named(), Lines{});
}

TEST_F(PickNames, UnknownDrawTypesDrawNothingButTheirNodes)
{
    PartInfoStr odd = quadPart();
    odd.partDrawType = 7;
    draw(PICK_TYPE_ELEMENT, {odd});
    EXPECT_EQ(named(), Lines{});
    drawAgain(PICK_TYPE_NODE);
    EXPECT_EQ(named().size(), 4u);
}

TEST_F(PickNames, NoPartsNoNames)
{
    draw(PICK_TYPE_ELEMENT, {});
    EXPECT_EQ(named(), Lines{});
    const Lines lines = printedLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(isTiming(lines[0], "TIME FOR DISPLAY PARTS=")) << lines[0];
}

// --- Beams and discrete elements ---

TEST_F(PickNames, BeamWithoutThirdNodeIsALineOnly)
{
    draw(PICK_TYPE_ELEMENT, {beamPart()});
    EXPECT_EQ(named(), Lines{"1 1: GL_LINES 2"});
}

TEST_F(PickNames, BeamWithThirdNodeIsALineAndThatPointUnderOneName)
{
    draw(PICK_TYPE_ELEMENT, {beamPart(2)});
    EXPECT_EQ(named(), (Lines{"1 1: GL_LINES 2", "1 1: GL_POINTS 1"}));
    EXPECT_EQ(glrecord::count("glPushName"), 1);
    const int point = position("glBegin(GL_POINTS)");
    EXPECT_EQ(glrecord::plain({glrecord::lines()[point + 1]}), glrecord::plain({vertexLine(model->part(0), 2)}));
}

TEST_F(PickNames, BeamThirdEntryIsReadAsSigned)
{
    draw(PICK_TYPE_ELEMENT, {beamPart(0x80000000)});
    EXPECT_EQ(named(), Lines{"1 1: GL_LINES 2"});
}

TEST_F(PickNames, BeamsArePickableAsElementsThoughNotAsParts)
{
    draw(PICK_TYPE_PART, {beamPart(2)});
    EXPECT_EQ(named(), Lines{});
    EXPECT_EQ(glrecord::count("glLoadName"), 1);
    drawAgain(PICK_TYPE_ELEMENT);
    EXPECT_EQ(named().size(), 2u);
}

TEST_F(PickNames, BeamsAreWideAroundAllElements)
{
    draw(PICK_TYPE_ELEMENT, {beamPart(2)});
    const Lines lines = glrecord::between("glColor4fv", "glPointSize(1)");
    ASSERT_GE(lines.size(), 6u);
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 4),
              (Lines{colorLine(model->part(0).partColor), "glLineWidth(5)", "glPointSize(5)", "glPushName(1)"}));
    EXPECT_EQ(Lines(lines.end() - 3, lines.end()), (Lines{"glPopName()", "glLineWidth(1)", "glPointSize(1)"}));
}

TEST_F(PickNames, DiscreteElementsAreLinesOfWidthTwo)
{
    draw(PICK_TYPE_ELEMENT, {discretePart()});
    EXPECT_EQ(named(), Lines{"1 1: GL_LINES 2"});
    const PartInfoStr& part = model->part(0);
    EXPECT_EQ(glrecord::plain(glrecord::between("glColor4fv", "glLineWidth(1)")),
              glrecord::plain({colorLine(part.partColor), "glLineWidth(2)", "glPushName(1)", "glBegin(GL_LINES)",
                               vertexLine(part, 0), vertexLine(part, 1), "glEnd()", "glPopName()", "glLineWidth(1)"}));
}

TEST_F(PickNames, LinesAreDrawnUnderAnyShadeModel)
{
    draw(PICK_TYPE_ELEMENT, {beamPart(), discretePart()}, unnormalised);
    EXPECT_EQ(named(), (Lines{"1 1: GL_LINES 2", "2 1: GL_LINES 2"}));
}

// --- Shells ---

TEST_F(PickNames, FlatShellHasOneNormalAndFourCorners)
{
    draw(PICK_TYPE_ELEMENT, {quadPart()});
    const PartInfoStr& part = model->part(0);
    EXPECT_EQ(glrecord::plain(glrecord::between("glColor4fv", "glPopName")),
              glrecord::plain({colorLine(part.partColor), "glPushName(1)", "glBegin(GL_QUADS)",
                               normalLine(part.partElements.elmNormals), vertexLine(part, 0), vertexLine(part, 1),
                               vertexLine(part, 2), vertexLine(part, 3), "glEnd()", "glPopName()"}));
}

TEST_F(PickNames, SmoothShellIsDrawnCornerByCornerThoughTheFrameDrawsAnArray)
{
    draw(PICK_TYPE_ELEMENT, {quadPart()}, GL_SMOOTH);
    EXPECT_EQ(named(), Lines{"1 1: GL_QUADS 4"});
    EXPECT_EQ(glrecord::count("glDrawElements"), 0);
    const PartInfoStr& part = model->part(0);
    Lines expected = {"glBegin(GL_QUADS)"};
    for (unsigned int node = 0; node < 4; ++node) {
        expected.push_back(normalLine(part.partNodes.nodeNormals + 3 * node));
        expected.push_back(vertexLine(part, node));
    }
    expected.push_back("glEnd()");
    EXPECT_EQ(glrecord::plain(glrecord::between("glBegin", "glEnd()")), glrecord::plain(expected));
    drawAgain(PICK_TYPE_PART);
    EXPECT_EQ(named(), Lines{"1: array"});
}

TEST_F(PickNames, ShellsUnderAnotherShadeModelHaveNoNamesButTheirColour)
{
    draw(PICK_TYPE_ELEMENT, {quadPart()}, unnormalised);
    EXPECT_EQ(named(), Lines{});
    EXPECT_EQ(glrecord::count("glPushName"), 0);
    EXPECT_EQ(glrecord::matching("glColor"), Lines{colorLine(model->part(0).partColor)});
}

TEST_F(PickNames, ShadeModelIsTheFieldsAndNotTheContexts)
{
    install({quadPart()}, GL_FLAT);
    glShadeModel(GL_SMOOTH); // seen by the next frame only
    drawAgain(PICK_TYPE_ELEMENT);
    EXPECT_EQ(glrecord::count("glNormal3fv"), 1);
    EXPECT_EQ(glrecord::count("glGetIntegerv"), 0);
}

TEST_F(PickNames, IncompleteElementsAtTheEndAreNotDrawn)
{
    PartInfoStr part = quadStripPart(2);
    part.partElements.numElements = 7; // one entry short of two elements
    draw(PICK_TYPE_ELEMENT, {part});
    EXPECT_EQ(named(), Lines{"1 1: GL_QUADS 4"});
}

TEST_F(PickNames, PartsWithoutStrideHaveNoElements)
{
    PartInfoStr part = quadPart();
    part.partElements.nodesPerElement = 0;
    draw(PICK_TYPE_ELEMENT, {part});
    EXPECT_EQ(named(), Lines{});
}

// --- Solids ---

TEST_F(PickNames, SolidsAreNamedOneByOneWithTheFacesOfTheirShape)
{
    draw(PICK_TYPE_ELEMENT, {tetraPart(), pentaPart(), hexaPart()});
    EXPECT_EQ(named(), (Lines{"1 1: GL_QUADS 16", "2 1: GL_QUADS 20", "3 1: GL_QUADS 24"}));
}

TEST_F(PickNames, SolidsDrawTheSameFacesAsTheFrame)
{
    for (int shadeModel : {GL_FLAT, GL_SMOOTH}) {
        draw(PICK_TYPE_ELEMENT, {tetraPart(), pentaPart(), hexaPart()}, shadeModel);
        const Lines picked = glrecord::plain(glrecord::matchingAny({"glVertex3", "glNormal3"}));
        forget();
        (*model)->displayParts(-1);
        EXPECT_EQ(picked, glrecord::plain(glrecord::matchingAny({"glVertex3", "glNormal3"})));
        EXPECT_FALSE(picked.empty());
    }
}

TEST_F(PickNames, FlatSolidsTakeFaceNormalsEighteenFloatsApart)
{
    PartInfoStr two =
        makePart(SOLID, 8, {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 1, 2, 3, 3, 3, 3, 3, 0, 1, 2, 3, 3, 3, 3, 3});
    install({two});
    float* const normals = model->part(0).partElements.elmNormals;
    for (int k = 0; k < 36; ++k) {
        normals[k] = static_cast<float>(k);
    }
    drawAgain(PICK_TYPE_ELEMENT);
    Lines expected;
    for (int element : {0, 1}) {
        for (int face = 0; face < 4; ++face) {
            expected.push_back(normalLine(normals + 18 * element + 3 * face));
        }
    }
    EXPECT_EQ(glrecord::plain(glrecord::matching("glNormal")), glrecord::plain(expected));
}

TEST_F(PickNames, UnknownShapesOfSolidsAreEmptyNamedBlocks)
{
    install({tetraPart()});
    model->part(0).partElements.NPE[0] = '5';
    drawAgain(PICK_TYPE_ELEMENT);
    EXPECT_EQ(named(), Lines{"1 1: GL_QUADS 0"});
}

TEST_F(PickNames, SolidsUnderAnotherShadeModelAreEmptyNamedBlocks)
{
    draw(PICK_TYPE_ELEMENT, {hexaPart()}, unnormalised);
    EXPECT_EQ(named(), Lines{"1 1: GL_QUADS 0"});
}

TEST_F(PickNames, PartsWhoseNormalsAreMissingDrawNothing)
{
    install({quadPart(), hexaPart()}, GL_FLAT);
    (*model)->shadeModel = GL_SMOOTH; // no node normals were computed
    for (unsigned int type : {PICK_TYPE_PART, PICK_TYPE_ELEMENT}) {
        drawAgain(type);
        EXPECT_EQ(glrecord::count("glVertex3fv"), 0);
        EXPECT_EQ(glrecord::count("glDrawElements"), 0);
    }
}

// --- Colours and client states ---

TEST_F(PickNames, PartColourIsChosenAsInAFrame)
{
    install({quadPart(), withFlag(quadPart(), PART_SHOWN | PART_SELECTED | PART_HIGHLIGHTED),
             withFlag(quadPart(), PART_SHOWN | PART_HIGHLIGHTED)});
    drawAgain(PICK_TYPE_ELEMENT);
    EXPECT_EQ(glrecord::matching("glColor"), (Lines{colorLine(model->part(0).partColor), colorLine((*model)->colorBlue),
                                                    colorLine((*model)->colorGreen)}));
}

TEST_F(PickNames, SelectedElementsAreNotDrawnDifferently)
{
    install({quadStripPart(3)});
    unsigned int part = 1, element = 2;
    (*model)->selectElement(&part, &element);
    drawAgain(PICK_TYPE_ELEMENT);
    EXPECT_EQ(named().size(), 3u);
    EXPECT_EQ(glrecord::matching("glColor"), Lines{colorLine(model->part(0).partColor)}) << "once, before the elements";
    drawAgain(PICK_TYPE_PART);
    EXPECT_EQ(glrecord::matching("glColor"), Lines{colorLine(model->part(0).partColor)});
}

TEST_F(PickNames, ClientStatesGoOffInTheReverseOrderOfAFrame)
{
    draw(PICK_TYPE_NODE, {quadPart()});
    EXPECT_EQ(glrecord::matchingAny({"glEnableClientState", "glDisableClientState"}),
              (Lines{"glEnableClientState(GL_VERTEX_ARRAY)", "glEnableClientState(GL_NORMAL_ARRAY)",
                     "glDisableClientState(GL_VERTEX_ARRAY)", "glDisableClientState(GL_NORMAL_ARRAY)"}));
    forget();
    (*model)->displayParts(-1);
    EXPECT_EQ(glrecord::matching("glDisableClientState"),
              (Lines{"glDisableClientState(GL_NORMAL_ARRAY)", "glDisableClientState(GL_VERTEX_ARRAY)"}));
}

TEST_F(PickNames, BoxesSegmentAndSelectedNodesAreNotDrawn)
{
    install({withFlag(quadPart(), PART_SHOWN | PART_BOX_SHOWN | PART_NODES_SELECTED)});
    PartInfoStr segment = quadPart(5);
    (*model)->segmentPart = &segment;
    (*model)->compFlag |= SEGMENT_PART_SET | NODE_LIST_SELECTED;
    drawAgain(PICK_TYPE_ELEMENT);
    EXPECT_EQ(named(), Lines{"1 1: GL_QUADS 4"});
    EXPECT_EQ(printed().find("SLECTION"), std::string::npos);
    releasePart(segment);
}

TEST_F(PickNames, PartsOfEveryFileAreDrawnAndTheCounterEndsAtTheirNumber)
{
    PartInfoStr other = quadPart();
    other.partFileIndex = 7;
    install({quadPart(), other});
    (*model)->i = 77;
    drawAgain(PICK_TYPE_ELEMENT);
    EXPECT_EQ(named().size(), 2u);
    EXPECT_EQ((*model)->i, 2u);
}
