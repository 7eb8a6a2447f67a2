// Bounding boxes, the axis triad and the toggles of render state.
#include <algorithm>

#include "boundbox.h"
#include "glfuncs.h"
#include "modelbuilder.h"
#include "recordedtest.h"
#include "unit_axis.h"

// --- BoundBox ---

namespace {
class Box : public RecordedTest
{
protected:
    float extents[6] = {0, 1, 0, 2, 0, 3};
    BoundBox box{extents};
};
} // namespace

TEST_F(Box, CornersAreNumberedLikeAHexahedron)
{
    const Floats expected = {0, 0, 0, 1, 0, 0, 1, 2, 0, 0, 2, 0, 0, 0, 3, 1, 0, 3, 1, 2, 3, 0, 2, 3};
    EXPECT_EQ(Floats(box.boxVertices, box.boxVertices + 24), expected);
    extents[1] = 99;
    EXPECT_EQ(box.boxVertices[3], 1) << "the extents are copied";
}

TEST_F(Box, FacesAreAHexahedronsFaces)
{
    const Indices expected = {0, 1, 2, 3, 1, 2, 6, 5, 4, 5, 6, 7, 3, 0, 4, 7, 2, 3, 7, 6, 0, 1, 5, 4};
    EXPECT_EQ(Indices(BoundBox::boxIndices, BoundBox::boxIndices + 24), expected);
}

TEST_F(Box, IsDrawnInTheFixedOrder)
{
    BoundBox::setFontBase(1000);
    box.render();
    Lines expected = {"glColor4f(1,1,1,0.600000024)"};
    const char* const corners[] = {"0,0,0", "1,0,0", "1,2,0", "0,2,0", "0,0,3", "1,0,3", "1,2,3", "0,2,3"};
    for (int k = 0; k < 8; ++k) {
        expected.push_back(std::string("glRasterPos3fv(") + corners[k] + ")");
        expected.push_back("glListBase(1000)");
        expected.push_back("glCallLists(1,GL_UNSIGNED_BYTE,\"" + std::to_string(k) + "\")");
    }
    const Lines rest = {"glPointSize(5)",
                        "glBegin(GL_POINTS)",
                        "glColor3f(0,1,0)",
                        "glVertex3fv(0,0,0)",
                        "glColor3f(1,0,0)",
                        "glVertex3fv(1,2,3)",
                        "glEnd()",
                        "glPointSize(1)",
                        "glColor4f(1,1,1,0.600000024)",
                        "glGetIntegerv(GL_POLYGON_MODE)",
                        "glPolygonMode(GL_FRONT_AND_BACK,GL_LINE)",
                        "glEnableClientState(GL_VERTEX_ARRAY)",
                        "glVertexPointer(3,GL_FLOAT,0,data)",
                        "glDrawElements(GL_QUADS,24,GL_UNSIGNED_INT,[0,1,2,3,1,2,6,5,4,5,6,7,3,0,4,7,2,3,7,6,0,1,5,4])",
                        "glPolygonMode(GL_FRONT_AND_BACK,GL_FILL)"};
    expected.insert(expected.end(), rest.begin(), rest.end());
    EXPECT_EQ(glrecord::plain(glrecord::lines()), glrecord::plain(expected));
    EXPECT_EQ(glrecord::lines()[1], "glRasterPos3fv(0,0,0)");
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(Box, LeavesTheVertexArrayOnAndPointingAtItself)
{
    box.render();
    EXPECT_TRUE(glrecord::state().clientEnabled.count(GL_VERTEX_ARRAY));
    EXPECT_EQ(glrecord::vertexPointer(), box.boxVertices);
    EXPECT_EQ(glrecord::count("glDisableClientState"), 0);
}

TEST_F(Box, LeavesTheListBaseOnTheFont)
{
    glListBase(5);
    BoundBox::setFontBase(1000);
    box.render();
    EXPECT_EQ(glrecord::state().listBase, 1000u);
    EXPECT_EQ(glrecord::count("glListBase"), 9) << "once per label, never put back";
}

TEST_F(Box, PutsThePolygonModeBack)
{
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    box.render();
    EXPECT_EQ(glrecord::state().polygonMode[0], GL_FILL);
    EXPECT_EQ(glrecord::state().polygonMode[1], GL_FILL);
}

TEST_F(Box, PutsTheFrontModeBackForBothFaces)
{
    glPolygonMode(GL_FRONT, GL_POINT);
    glPolygonMode(GL_BACK, GL_FILL);
    box.render();
    EXPECT_EQ(glrecord::state().polygonMode[0], GL_POINT);
    EXPECT_EQ(glrecord::state().polygonMode[1], GL_POINT);
}

TEST_F(Box, SharesOneFontAmongAllBoxes)
{
    BoundBox other(extents);
    BoundBox::setFontBase(300);
    other.render();
    EXPECT_EQ(glrecord::matching("glListBase").at(0), "glListBase(300)");
    EXPECT_EQ(BoundBox::fontBase, 300u);
}

// --- UnitAxis ---

class Triad : public RecordedTest
{
protected:
    float lengths[3] = {2, 4, 6};
};

TEST_F(Triad, IsDrawnInTheFixedOrder)
{
    UnitAxis::render(lengths, 0.5f);
    const Lines expected = {"glLineWidth(4)",
                            "glMatrixMode(GL_MODELVIEW)",
                            "glPushMatrix()",
                            "glBegin(GL_LINES)", //
                            "glColor(1,0,0)",
                            "glVertex(0,0,0)",
                            "glVertex(2,0,0)", //
                            "glColor(0,1,0)",
                            "glVertex(0,0,0)",
                            "glVertex(0,-4,0)", // the y arm points down
                            "glColor(0,0,1)",
                            "glVertex(0,0,0)",
                            "glVertex(0,0,6)",       //
                            "glEnd()",               //
                            "glBegin(GL_TRIANGLES)", //
                            "glColor(1,1,0)",
                            "glVertex(1,0,0)",
                            "glVertex(0,-2,0)",
                            "glVertex(0,0,3)",
                            "glEnd()",
                            "glColor(1,0,0)",
                            "glRasterPos(2.5,0,0)",
                            "glBitmap(16,16,8,8,0,0,data)",
                            "glColor(0,1,0)",
                            "glRasterPos(0,-4.5,0)",
                            "glBitmap(16,16,8,8,0,0,data)",
                            "glColor(0,0,1)",
                            "glRasterPos(0,0,6.5)",
                            "glBitmap(16,16,8,8,0,0,data)",
                            "glPopMatrix()",
                            "glLineWidth(1)"};
    EXPECT_EQ(glrecord::plain(glrecord::lines()), expected);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(Triad, LettersAreXYZInOrder)
{
    UnitAxis::render(lengths, 0);
    EXPECT_EQ(glrecord::bitmaps(),
              (std::vector<const unsigned char*>{UnitAxis::xbitmap, UnitAxis::ybitmap, UnitAxis::zbitmap}));
}

TEST_F(Triad, TheYArmPointsDownWithItsLetter)
{
    UnitAxis::render(lengths, 0.5f);
    const Lines plain = glrecord::plain(glrecord::lines());
    EXPECT_EQ(std::count(plain.begin(), plain.end(), "glVertex(0,-4,0)"), 1);
    EXPECT_EQ(std::count(plain.begin(), plain.end(), "glRasterPos(0,-4.5,0)"), 1);
}

TEST_F(Triad, IsBracketedByAMatrixPushAlthoughNothingNeedsIt)
{
    UnitAxis::render(lengths, 0);
    EXPECT_LT(glrecord::find("glPushMatrix"), glrecord::find("glBegin"));
    EXPECT_GT(glrecord::find("glPopMatrix"), glrecord::find("glBitmap"));
    EXPECT_EQ(glrecord::state().stacks[GL_MODELVIEW].size(), 1u);
}

TEST_F(Triad, LettersAreSixteenRowsOfTwoBytesAndTwoOfPadding)
{
    for (const unsigned char* letter : {UnitAxis::xbitmap, UnitAxis::ybitmap, UnitAxis::zbitmap}) {
        int ink = 0;
        for (int row = 0; row < 16; ++row) {
            ink += letter[4 * row] || letter[4 * row + 1];
            EXPECT_EQ(letter[4 * row + 2] | letter[4 * row + 3], 0) << "row " << row;
        }
        EXPECT_GE(ink, 8) << "rows with pixels";
    }
}

TEST_F(Triad, LettersStandUpright)
{
    const auto row = [](const unsigned char* letter, int k) { return letter[4 * k] << 8 | letter[4 * k + 1]; };
    const auto inkedRows = [&](const unsigned char* letter) {
        std::vector<int> rows;
        for (int k = 0; k < 16; ++k) {
            if (row(letter, k)) {
                rows.push_back(row(letter, k));
            }
        }
        return rows;
    };
    const auto pixels = [](int bits) { return __builtin_popcount(bits); };
    const auto span = [](int bits) { return 32 - __builtin_clz(bits) - __builtin_ctz(bits); };
    // Bottom row first: the fork of the Y is at the end, its stem at the beginning.
    const std::vector<int> y = inkedRows(UnitAxis::ybitmap);
    EXPECT_LT(span(y.front()), span(y.back()));
    // The bars of the Z are its first and last row; a Z upside down would have the diagonal the other way.
    const std::vector<int> z = inkedRows(UnitAxis::zbitmap);
    EXPECT_GT(pixels(z.front()), pixels(z[z.size() / 2]));
    EXPECT_GT(pixels(z.back()), pixels(z[z.size() / 2]));
    EXPECT_GT(z[z.size() / 3], z[2 * z.size() / 3]) << "the diagonal rises to the right";
}

// --- GLFuncs ---

using Toggles = RecordedTest;

TEST_F(Toggles, LinesAndFillChangePlaces)
{
    GLFuncs::process(GL_POLYGON_MODE);
    EXPECT_EQ(glrecord::lines(), (Lines{"glGetIntegerv(GL_POLYGON_MODE)", "glPolygonMode(GL_FRONT_AND_BACK,GL_LINE)"}));
    GLFuncs::process(GL_POLYGON_MODE);
    EXPECT_EQ(glrecord::lines().back(), "glPolygonMode(GL_FRONT_AND_BACK,GL_FILL)");
}

TEST_F(Toggles, PointModeIsLeftAsItIs)
{
    glPolygonMode(GL_FRONT_AND_BACK, GL_POINT);
    forget();
    GLFuncs::process(GL_POLYGON_MODE);
    EXPECT_EQ(glrecord::count("glPolygonMode"), 0);
}

TEST_F(Toggles, TheFrontModeDecidesForBothFaces)
{
    glPolygonMode(GL_FRONT, GL_LINE);
    GLFuncs::process(GL_POLYGON_MODE);
    EXPECT_EQ(glrecord::state().polygonMode[0], GL_FILL);
    EXPECT_EQ(glrecord::state().polygonMode[1], GL_FILL);
    glPolygonMode(GL_BACK, GL_LINE); // front: fill
    GLFuncs::process(GL_POLYGON_MODE);
    EXPECT_EQ(glrecord::state().polygonMode[0], GL_LINE);
}

TEST_F(Toggles, FlatAndSmoothChangePlaces)
{
    GLFuncs::process(GL_SHADE_MODEL);
    EXPECT_EQ(glrecord::state().shadeModel, GL_FLAT);
    GLFuncs::process(GL_SHADE_MODEL);
    EXPECT_EQ(glrecord::state().shadeModel, GL_SMOOTH);
}

TEST_F(Toggles, TheDepthTestComesWithItsFunctionAndRange)
{
    GLFuncs::process(GL_DEPTH_TEST);
    EXPECT_EQ(glrecord::matchingAny({"glEnable", "glDepth"}),
              (Lines{"glEnable(GL_DEPTH_TEST)", "glDepthFunc(GL_LESS)", "glDepthRange(0,1)"}));
    forget();
    GLFuncs::process(GL_DEPTH_TEST);
    EXPECT_EQ(glrecord::matchingAny({"glEnable", "glDisable", "glDepth"}), Lines{"glDisable(GL_DEPTH_TEST)"});
}

TEST_F(Toggles, BlendingTwiceIsAsBefore)
{
    GLFuncs::process(GL_BLEND);
    EXPECT_EQ(glrecord::matchingAny({"glEnable", "glBlendFunc"}),
              (Lines{"glEnable(GL_BLEND)", "glBlendFunc(GL_SRC_ALPHA,GL_ONE_MINUS_SRC_ALPHA)"}));
    GLFuncs::process(GL_BLEND);
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_EQ(glrecord::count("glBlendFunc"), 1);
}

TEST_F(Toggles, AnythingElseDoesNothing)
{
    for (int type : {GL_LIGHTING, 0, -1}) {
        GLFuncs::process(type);
        EXPECT_TRUE(glrecord::lines().empty()) << type;
    }
}

TEST_F(Toggles, NothingIsPrinted)
{
    for (int type : {GL_POLYGON_MODE, GL_SHADE_MODEL, GL_DEPTH_TEST, GL_BLEND}) {
        GLFuncs::process(type);
    }
    EXPECT_EQ(printed(), "");
}
