// One frame and the display modes: what renderModel does in which order, which parts are drawn, in which colour and by
// which renderer, and the calls that switch parts and render state.
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "boundbox.h"
#include "framefixture.h"
#include "glfuncs.h"
#include "mtrans.h"
#include "mview.h"

namespace {
void selectNodes(PartInfoStr& part, const std::string& flags)
{
    part.partFlag |= PART_NODES_SELECTED;
    part.partNodes.selectedNodes = newChars(flags);
}

void selectElements(PartInfoStr& part, const std::string& flags)
{
    part.partFlag |= PART_ELEMENTS_SELECTED;
    part.partElements.selectedList = newChars(flags);
}

PartInfoStr withFile(PartInfoStr part, int fileIndex)
{
    part.partFileIndex = fileIndex;
    return part;
}

// Compares with tests/render/golden/NAME. To renew it, run with KVO_UPDATE_GOLDEN=1 and read every changed line.
void expectGolden(const std::string& text, const std::string& name)
{
    const std::string path = std::string(KVO_GOLDEN_DIR "/") + name;
    if (std::getenv("KVO_UPDATE_GOLDEN")) {
        std::ofstream(path) << text;
    }
    std::ifstream in(path);
    ASSERT_TRUE(in.is_open()) << path << " is missing";
    std::stringstream expected;
    expected << in.rdbuf();
    EXPECT_EQ(text, expected.str());
}

// Milliseconds differ from run to run: "TIME FOR ...=12" becomes "TIME FOR ...=T".
std::string withoutTimes(const std::string& text)
{
    const std::string digits = "0123456789";
    std::string out;
    for (const std::string& line : splitLines(text)) {
        const std::size_t number = line.find('=') + 1;
        const bool timing = line.compare(0, 9, "TIME FOR ") == 0 && number != 0 && number < line.size() &&
                            line.find_first_not_of(digits, number) == std::string::npos;
        out += timing ? line.substr(0, number) + "T\n" : line + "\n";
    }
    return out;
}
} // namespace

// --- renderModel ---

// A square of side 4 and a cube of side 2, both about the origin: the numbers of the stream stay round.
PartInfoStr bigQuad()
{
    return makePart(SHELL, 4, {-2, -2, 0, 2, -2, 0, 2, 2, 0, -2, 2, 0}, {0, 1, 2, 3});
}

PartInfoStr cube()
{
    return makePart(SOLID, 8, {-1, -1, -1, 1, -1, -1, 1, 1, -1, -1, 1, -1, -1, -1, 1, 1, -1, 1, 1, 1, 1, -1, 1, 1},
                    {0, 1, 2, 3, 4, 5, 6, 7});
}

TEST_F(Frame, ASmoothFrameOfASelectedShellAndABoxedSolidIsThisStream)
{
    install({bigQuad(), cube()}, GL_SMOOTH);
    part(0).partFlag |= PART_SELECTED;
    part(1).partFlag |= PART_BOX_SHOWN;
    BoundBox::setFontBase(1000);
    env->mView->mViewType = TOP_VIEW;
    env->setHideMode(1);
    env->resizeModel(800, 800);
    env->renderModel(); // the first frame finds the centre of the window
    forget();
    OutputCapture errors(2);
    env->renderModel();
    expectGolden(glrecord::text(), "frame_smooth.calls.txt");
    expectGolden(withoutTimes(printed()), "frame_smooth.output.txt");
    EXPECT_EQ(errors.all(), "GTRAN=0.000000 0.000000 0.000000\nGTRAN=0.000000 0.000000 0.000000\n");
}

TEST_F(Frame, AFlatPassOverEveryKindOfPartWithSelectionsIsThisStream)
{
    install({quadStripPart(2), hexaPart(), beamPart(2), discretePart(), beamPart()});
    selectElements(part(0), "01");
    selectElements(part(1), "1");
    selectElements(part(2), "0");
    selectNodes(part(3), "100");
    part(3).partFlag |= PART_HIGHLIGHTED;
    PartInfoStr segment = trianglePart();
    env->setSegmentPart(&segment);
    Floats nodes = {7, 8, 9, 1, 2, 3};
    char flags[] = {'0', '1'};
    env->setComputeFlag(NODE_LIST_SELECTED);
    env->numNodes = 2;
    env->nodeValues = nodes.data();
    env->selectedNodes = flags;
    display();
    expectGolden(glrecord::text(), "pass_flat.calls.txt");
    expectGolden(withoutTimes(printed()), "pass_flat.output.txt");
    env->numNodes = 0;
    releasePart(segment);
}

TEST_F(Frame, AFrameBeginsWithTheViewportAndAClearInsideIt)
{
    install({quadPart()});
    glViewport(10, 20, 300, 200);
    forget();
    env->renderModel();
    const Lines lines = glrecord::lines();
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 5),
              (Lines{"glGetIntegerv(GL_VIEWPORT)", "glScissor(10,20,300,200)", "glEnable(GL_SCISSOR_TEST)",
                     "glClear(GL_COLOR_BUFFER_BIT|GL_DEPTH_BUFFER_BIT)", "glDisable(GL_SCISSOR_TEST)"}));
    EXPECT_EQ(printed().find("10\n20\n300\n200\n"), 0u) << "the four numbers, a line each, on every frame";
    EXPECT_EQ(env->viewPort[2], 300);
}

TEST_F(Frame, AFrameReadsTheShadeModelBetweenTheTransformationAndTheParts)
{
    install({quadPart()});
    env->renderModel();
    const int shade = glrecord::find("glGetIntegerv(GL_SHADE_MODEL)");
    EXPECT_GT(shade, glrecord::find("glMultMatrixf")) << "after processStart";
    EXPECT_EQ(glrecord::find("glEnableClientState(GL_VERTEX_ARRAY)"), shade + 1);
}

TEST_F(Frame, AFrameEndsWithOneQuestionForErrors)
{
    install({quadPart()});
    env->renderModel();
    EXPECT_EQ(glrecord::lines().back(), "glGetError()");
    EXPECT_EQ(glrecord::count("glGetError"), 1);
    EXPECT_EQ(printed().find("GL Error"), std::string::npos);
}

TEST_F(Frame, AnErrorIsPrintedWithItsText)
{
    install({quadPart()});
    glrecord::state().error = GL_STACK_OVERFLOW;
    env->renderModel();
    const std::string text = printed();
    const std::string last = "GL Error: stack overflow\n";
    EXPECT_EQ(text.substr(text.size() - last.size()), last);
    EXPECT_EQ(glrecord::count("glGetError"), 1) << "only one code a frame";
}

TEST_F(Frame, AnErrorWithoutATextDoesNotSilenceThePrints)
{
    install({quadPart()});
    glrecord::state().error = 0x0507; // libGLU has no text for it
    env->renderModel();
    EXPECT_NE(printed().find("GL Error: "), std::string::npos);
    env->renderModel();
    EXPECT_EQ(printed().find("0\n0\n800\n600\n"), 0u);
}

TEST_F(Frame, TheContextsShadeModelWins)
{
    install({quadPart()}, GL_FLAT);
    env->setShadeModel(GL_SMOOTH); // both kinds of normals exist now
    glShadeModel(GL_FLAT);
    forget();
    env->renderModel();
    EXPECT_EQ(env->shadeModel, GL_FLAT);
    EXPECT_EQ(glrecord::count("glDrawElements"), 0) << "drawn flat";
    EXPECT_GT(glrecord::count("glNormal3fv"), 0);
}

TEST_F(Frame, AShadeToggleWithoutNormalsDrawsNothingOfThePart)
{
    install({quadPart(), hexaPart()}, GL_FLAT);
    GLFuncs::process(GL_SHADE_MODEL);
    forget();
    env->renderModel();
    EXPECT_EQ(env->shadeModel, GL_SMOOTH);
    EXPECT_EQ(glrecord::count("glDrawElements"), 0);
    EXPECT_EQ(glrecord::count("glNormal3fv"), 0);
}

TEST_F(Frame, AnEmptyModelClearsAndPrints)
{
    install({});
    env->renderModel();
    EXPECT_EQ(printed().find("0\n0\n800\n600\n"), 0u);
    EXPECT_EQ(glrecord::between("glEnableClientState", "glDisableClientState(GL_VERTEX_ARRAY)"),
              (Lines{"glEnableClientState(GL_VERTEX_ARRAY)", "glEnableClientState(GL_NORMAL_ARRAY)",
                     "glDisableClientState(GL_NORMAL_ARRAY)", "glDisableClientState(GL_VERTEX_ARRAY)"}));
    EXPECT_EQ(glrecord::count("glClear"), 1);
}

TEST_F(Frame, TwoFramesBalanceTheMatrixStacks)
{
    install({quadPart()});
    env->renderModel();
    env->renderModel();
    EXPECT_EQ(glrecord::state().stacks[GL_MODELVIEW].size(), 1u);
    EXPECT_EQ(glrecord::state().stacks[GL_PROJECTION].size(), 1u);
}

// --- displayParts: which parts ---

TEST_F(Frame, ClientStatesGoOnAndOffOncePerPass)
{
    install({quadPart(), quadPart(5)});
    const Lines lines = display();
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 2),
              (Lines{"glEnableClientState(GL_VERTEX_ARRAY)", "glEnableClientState(GL_NORMAL_ARRAY)"}));
    EXPECT_EQ(Lines(lines.end() - 2, lines.end()),
              (Lines{"glDisableClientState(GL_NORMAL_ARRAY)", "glDisableClientState(GL_VERTEX_ARRAY)"}));
    EXPECT_EQ(glrecord::count("glEnableClientState"), 2);
    EXPECT_EQ(env->i, 2u);
}

TEST_F(Frame, ThePickingPassSwitchesClientStatesOffInTheOtherOrder)
{
    install({quadPart()});
    env->displayPartsByElement();
    EXPECT_EQ(glrecord::matching("glDisableClientState"),
              (Lines{"glDisableClientState(GL_VERTEX_ARRAY)", "glDisableClientState(GL_NORMAL_ARRAY)"}));
}

TEST_F(Frame, EachPassPrintsItsTime)
{
    install({quadPart()});
    env->displayParts(-1);
    env->displayPartsByElement();
    const Lines lines = printedLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(isTiming(lines[0], "TIME FOR DISPLAY PARTS=")) << lines[0];
    EXPECT_TRUE(isTiming(lines[1], "TIME FOR DISPLAY PARTS=")) << lines[1];
}

TEST_F(Frame, AFileIndexSelectsTheFilesParts)
{
    install({withFile(quadPart(), 0), withFile(quadPart(5), 1), withFile(quadPart(9), 0)});
    display(1);
    EXPECT_EQ(glrecord::matching("glVertex").at(0), vertexLine(part(1), 0));
    EXPECT_EQ(glrecord::count("glVertex3fv"), 4);
    display(-1);
    EXPECT_EQ(glrecord::count("glVertex3fv"), 12);
}

TEST_F(Frame, AFileIndexWithoutPartsDrawsOnlySegmentAndNodeSelection)
{
    install({quadPart()});
    PartInfoStr segment = quadPart(7);
    env->setSegmentPart(&segment);
    Floats nodes = {1, 2, 3};
    char flags[] = "1";
    env->setComputeFlag(NODE_LIST_SELECTED);
    env->numNodes = 1;
    env->nodeValues = nodes.data();
    env->selectedNodes = flags;
    display(42);
    EXPECT_EQ(glrecord::matching("glVertex"),
              (Lines{vertexLine(segment, 0), vertexLine(segment, 1), vertexLine(segment, 2), vertexLine(segment, 3),
                     "glVertex3fv(1,2,3)"}));
    env->numNodes = 0;
    releasePart(segment);
}

TEST_F(Frame, HiddenPartsAreNotDrawnNorAreTheirBoxes)
{
    install({quadPart()});
    part(0).partFlag = H | PART_BOX_SHOWN;
    selectNodes(part(0), "1111");
    EXPECT_EQ(drawn(), Lines{});
}

TEST_F(Frame, PartsWithNeitherVisibilityBitAreDrawn)
{
    install({quadPart()});
    part(0).partFlag &= ~PART_SHOWN;
    display();
    EXPECT_EQ(glrecord::count("glVertex3fv"), 4);
}

TEST_F(Frame, TheBoxComesBeforeThePartWithTheNormalArrayOff)
{
    install({quadPart()}, GL_SMOOTH);
    part(0).partFlag |= PART_BOX_SHOWN;
    const Lines lines = drawn();
    EXPECT_EQ(lines.at(0), "glDisableClientState(GL_NORMAL_ARRAY)");
    EXPECT_EQ(lines.at(1), "glColor4f(1,1,1,0.600000024)");
    const int box = glrecord::find("glDrawElements(GL_QUADS,24");
    const int on = glrecord::find("glEnableClientState(GL_NORMAL_ARRAY)", box);
    EXPECT_GT(on, box);
    EXPECT_GT(glrecord::find("glVertexPointer", on), on) << "then the part, with its own pointer";
}

// --- displayParts: colour and renderer ---

TEST_F(Frame, SelectionColourBeatsHighlightColourBeatsOwnColour)
{
    const std::pair<unsigned int, std::string> cases[] = {{0, ownLine},
                                                          {PART_SELECTED, blueLine},
                                                          {PART_HIGHLIGHTED, greenLine},
                                                          {PART_SELECTED | PART_HIGHLIGHTED, blueLine}};
    install({quadPart()});
    for (const auto& row : cases) {
        part(0).partFlag &= ~(PART_SELECTED | PART_HIGHLIGHTED);
        part(0).partFlag |= row.first;
        EXPECT_EQ(drawn().at(0), row.second);
    }
}

TEST_F(Frame, EveryKindOfPartHasItsWholeRenderer)
{
    install({quadPart(), hexaPart(), beamPart(2), discretePart()}, GL_SMOOTH);
    display();
    EXPECT_EQ(glrecord::count("glDrawElements"), 1) << "the shell";
    EXPECT_EQ(glrecord::matching("glBegin"), (Lines{"glBegin(GL_QUADS)", "glBegin(GL_LINES)"})) << "solid, discrete";
    EXPECT_EQ(glrecord::matching("glLineWidth"), (Lines{"glLineWidth(2)", "glLineWidth(1)"})) << "no beam";
}

TEST_F(Frame, APartWithSelectedElementsIsDrawnElementByElement)
{
    install({quadPart(), hexaPart(), beamPart(2), discretePart()}, GL_SMOOTH);
    for (unsigned int k = 0; k < 4; ++k) {
        selectElements(part(k), "1");
    }
    display();
    EXPECT_EQ(glrecord::count("glDrawElements"), 0);
    EXPECT_EQ(glrecord::matching("glBegin"), (Lines{"glBegin(GL_QUADS)", "glBegin(GL_QUADS)", "glBegin(GL_LINES)",
                                                    "glBegin(GL_POINTS)", "glBegin(GL_LINES)"}));
    EXPECT_EQ(glrecord::matching("glLineWidth"),
              (Lines{"glLineWidth(5)", "glLineWidth(1)", "glLineWidth(2)", "glLineWidth(1)"}));
    EXPECT_EQ(glrecord::matching("glColor4fv"),
              (Lines{ownLine, blueLine, ownLine, blueLine, ownLine, blueLine, ownLine, blueLine}));
}

TEST_F(Frame, ABeamPartAppearsWithItsFirstSelectedElement)
{
    PartInfoStr beams = makePart(BEAM, 3, {0, 0, 0, 1, 0, 0, 2, 0, 0}, {0, 1, noNode, 1, 2, noNode});
    install({beams});
    EXPECT_EQ(drawn(), Lines{});
    selectElements(part(0), "00");
    EXPECT_EQ(glrecord::count("glBegin"), 0);
    display();
    EXPECT_EQ(glrecord::count("glBegin"), 2) << "all of its elements, even with none marked";
}

TEST_F(Frame, APartOfAnotherKindShowsBoxAndNodesOnly)
{
    PartInfoStr odd = quadPart();
    odd.partDrawType = 99;
    install({odd});
    EXPECT_EQ(drawn(), Lines{});
    part(0).partFlag |= PART_BOX_SHOWN;
    selectNodes(part(0), "1???");
    display();
    EXPECT_EQ(glrecord::count("glRasterPos3fv"), 8);
    EXPECT_EQ(glrecord::count("glPointSize"), 4) << "two of the box, two of the node";
}

// --- displayParts: nodes, segment, model-wide nodes ---

TEST_F(Frame, SelectedNodesAreBluePointsAndOthersAStrayVertex)
{
    install({discretePart()});
    part(0).partDrawType = 99; // its nodes only
    selectNodes(part(0), "10x");
    EXPECT_EQ(drawn(), (Lines{"glPointSize(8)", blueLine, "glBegin(GL_POINTS)", vertexLine(part(0), 0), "glEnd()",
                              ownLine, "glPointSize(1)",
                              vertexLine(part(0), 1)})) // outside of begin and end; any other flag draws nothing
        << "one point each, then colour and size as before";
}

TEST_F(Frame, AfterASelectedNodeTheColourIsThePartsColourOfTheFrame)
{
    install({quadPart()});
    part(0).partFlag |= PART_HIGHLIGHTED;
    selectNodes(part(0), "xxx1");
    display();
    EXPECT_EQ(glrecord::state().pointSize, 1);
    EXPECT_EQ(glrecord::state().color, (std::array<float, 4>{0, 1, 0, 1}));
}

TEST_F(Frame, ANodeSelectionBitWithoutFlagsDrawsNoNodes)
{
    install({quadPart()});
    const Lines without = drawn();
    part(0).partFlag |= PART_NODES_SELECTED;
    EXPECT_EQ(drawn(), without);
}

TEST_F(Frame, TheSegmentPartIsDrawnBlueAfterAllParts)
{
    install({quadPart()});
    PartInfoStr segment = quadPart(7);
    segment.partFlag |= PART_HIGHLIGHTED;
    env->setSegmentPart(&segment);
    Lines lines = drawn();
    EXPECT_EQ(Lines(lines.end() - 8, lines.end()),
              (Lines{blueLine, "glBegin(GL_QUADS)", "glNormal3fv(0,0,1)", vertexLine(segment, 0),
                     vertexLine(segment, 1), vertexLine(segment, 2), vertexLine(segment, 3), "glEnd()"}));
    env->clearComputeFlag(SEGMENT_PART_SET);
    display();
    EXPECT_EQ(glrecord::count("glVertex3fv"), 4) << "without its flag it is not drawn";
    releasePart(segment);
}

TEST_F(Frame, TheSegmentPartDoesNotFollowAChangeOfShadeModel)
{
    install({});
    PartInfoStr segment = quadPart();
    env->setSegmentPart(&segment);
    env->setShadeModel(GL_SMOOTH); // computes the normals of the model's parts
    EXPECT_EQ(segment.partNodes.nodeNormals, nullptr);
    display();
    EXPECT_EQ(glrecord::count("glDrawElements") + glrecord::count("glVertex3fv"), 0);
    releasePart(segment);
}

TEST_F(Frame, TheModelWideNodeSelectionComesLastOfAll)
{
    install({quadPart()});
    Floats nodes = {0, 0, 0, 1, 0, 0, 2, 0, 0};
    char flags[] = {'1', '0', '1'};
    env->numNodes = 3;
    env->nodeValues = nodes.data();
    env->selectedNodes = flags;
    display();
    EXPECT_EQ(glrecord::count("glPointSize"), 0) << "not without its flag";
    env->setComputeFlag(NODE_LIST_SELECTED);
    const Lines lines = display();
    EXPECT_EQ(Lines(lines.end() - 8, lines.end()),
              (Lines{"glDisableClientState(GL_VERTEX_ARRAY)", blueLine, "glPointSize(8)", "glBegin(GL_POINTS)",
                     "glVertex3fv(0,0,0)", "glVertex3fv(2,0,0)", "glEnd()", "glPointSize(1)"}));
    const Lines prints = printedLines();
    ASSERT_EQ(prints.size(), 2u);
    EXPECT_EQ(prints[0], "INSIDE NODE SLECTION=3");
    EXPECT_TRUE(isTiming(prints[1], "TIME FOR DISPLAY PARTS="));
    env->numNodes = 0; // the arrays are the test's
}
