// Standard views: axis classes, the orientation tables and the fit to the viewport.
#include "mview.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <GL/glu.h>

#include "recordedtest.h"

namespace {
using Extents = std::array<float, 6>;

class View : public RecordedTest
{
protected:
    void useModel(const Extents& values)
    {
        extents = values;
        view.xAxisType = view.yAxisType = view.zAxisType = AXIS_OTHER_TYPE;
        view.setExtents(extents.data());
    }

    Extents extents = {-1, 1, -1, 1, -1, 1};
    MView view{extents.data()};
};

typedef void (MView::*Orientation)();

// One row of a view's table. The calls follow glMatrixMode and glLoadIdentity.
struct Row
{
    const char* name;
    Extents extents;
    Lines calls;
};

Lines withIdentity(const Lines& calls)
{
    Lines lines = {"glMatrixMode(GL_MODELVIEW)", "glLoadIdentity()"};
    lines.insert(lines.end(), calls.begin(), calls.end());
    return lines;
}

// The sign cases. The x test comes first, so the first two hold whatever y is.
const Extents X_POS_Z_POS = {1, 3, -2, 5, 2, 8};           // Sx 4, Sz 10, Dz -3
const Extents X_POS_Z_POS_Y_POS = {1, 3, 2, 6, 2, 8};      // the same
const Extents X_POS_Z_POS_Y_NEG = {1, 3, -7, -3, 2, 8};    // the same
const Extents X_POS_Z_MIXED = {1, 3, -2, 5, -6, 2};        // Sx 4, Sz -4, Dz -4
const Extents X_POS_Z_NEG_Y_POS = {1, 3, 2, 6, -7, -1};    // Sx 4, Sz -8, Dz -3
const Extents X_POS_Z_MIXED_Y_NEG = {1, 3, -7, -3, -6, 2}; // Sx 4, Sz -4, Dz -4
const Extents Y_POS = {-1, 3, 2, 6, -6, 2};                // Sx 2, Sy 8, Sz -4, Dz -4, cy 4
const Extents Y_POS_X_NEG_Z_POS = {-5, -3, 2, 6, 1, 3};    // Sx -8, Sy 8, Sz 4, Dz -1, cy 4
const Extents Y_NEG = {-1, 3, -7, -3, -6, 2};              // Sx 2, Sy -10, Sz -4, Dz -4, t 5
const Extents Y_NEG_X_NEG_Z_POS = {-5, -3, -7, -3, 1, 3};  // Sx -8, Dz -1, t 5
const Extents MIXED = {-1, 3, -2, 5, -6, 2};               // Sx 2, Sy 3, Sz -4, Dz -4
const Extents MIXED_X_NEG_Z_POS = {-5, -3, -2, 5, 1, 3};   // Sx -8, Dz -1

const std::string UP = "glRotatef(90,1,0,0)", DOWN = "glRotatef(-90,1,0,0)", FLIP = "glRotatef(180,1,0,0)";
const std::string LEFT = "glRotatef(90,0,0,1)", RIGHT = "glRotatef(-90,0,0,1)";
const std::string HALF = "glRotatef(180,0,0,1)", HALF_BACK = "glRotatef(-180,0,0,1)";

const std::vector<Row> RIGHT_VIEW_ROWS = {
    {"x pos, z pos", X_POS_Z_POS, {DOWN, "glTranslatef(0,0,-5)"}},
    {"x pos, z pos, y pos", X_POS_Z_POS_Y_POS, {DOWN, "glTranslatef(0,0,-5)"}},
    {"x pos, z pos, y neg", X_POS_Z_POS_Y_NEG, {DOWN, "glTranslatef(0,0,-5)"}},
    {"x pos, z mixed", X_POS_Z_MIXED, {DOWN, HALF, "glTranslatef(-4,0,2)"}},
    {"x pos, z neg, y pos", X_POS_Z_NEG_Y_POS, {DOWN, HALF, "glTranslatef(-4,0,4)"}},
    {"x pos, z mixed, y neg", X_POS_Z_MIXED_Y_NEG, {DOWN, HALF, "glTranslatef(-4,0,2)"}},
    {"y pos", Y_POS, {UP}},
    {"y pos, x neg, z pos", Y_POS_X_NEG_Z_POS, {UP}},
    {"y neg", Y_NEG, {"glTranslatef(0,-5,0)", DOWN, "glTranslatef(0,0,-4)"}},
    {"y neg, x neg, z pos", Y_NEG_X_NEG_Z_POS, {"glTranslatef(0,-5,0)", DOWN, "glTranslatef(0,0,-1)"}},
    {"mixed", MIXED, {DOWN, "glTranslatef(0,0,-4)"}},
    {"y mixed, x neg, z pos", MIXED_X_NEG_Z_POS, {DOWN, "glTranslatef(0,0,-1)"}},
};

const std::vector<Row> LEFT_VIEW_ROWS = {
    {"x pos, z pos", X_POS_Z_POS, {DOWN, HALF, "glTranslatef(-4,0,-5)"}},
    {"x pos, z pos, y pos", X_POS_Z_POS_Y_POS, {DOWN, HALF, "glTranslatef(-4,0,-5)"}},
    {"x pos, z pos, y neg", X_POS_Z_POS_Y_NEG, {DOWN, HALF, "glTranslatef(-4,0,-5)"}},
    {"x pos, z mixed", X_POS_Z_MIXED, {DOWN, "glTranslatef(0,0,2)"}},
    {"x pos, z neg, y pos", X_POS_Z_NEG_Y_POS, {DOWN, "glTranslatef(0,0,4)"}},
    {"x pos, z mixed, y neg", X_POS_Z_MIXED_Y_NEG, {DOWN, "glTranslatef(0,0,2)"}},
    {"y pos", Y_POS, {UP, HALF_BACK, "glTranslatef(-2,0,0)"}},
    {"y pos, x neg, z pos", Y_POS_X_NEG_Z_POS, {UP, HALF_BACK, "glTranslatef(8,0,0)"}},
    {"y neg", Y_NEG, {"glTranslatef(0,-5,0)", DOWN, HALF_BACK, "glTranslatef(-2,0,-4)"}},
    {"y neg, x neg, z pos", Y_NEG_X_NEG_Z_POS, {"glTranslatef(0,-5,0)", DOWN, HALF_BACK, "glTranslatef(8,0,-1)"}},
    {"mixed", MIXED, {DOWN, HALF_BACK, "glTranslatef(-2,0,-4)"}},
    {"y mixed, x neg, z pos", MIXED_X_NEG_Z_POS, {DOWN, HALF_BACK, "glTranslatef(8,0,-1)"}},
};

const std::vector<Row> BACK_VIEW_ROWS = {
    {"x pos, z pos", X_POS_Z_POS, {DOWN, RIGHT, "glTranslatef(0,2,-3)"}},
    {"x pos, z pos, y pos", X_POS_Z_POS_Y_POS, {DOWN, RIGHT, "glTranslatef(0,2,-3)"}},
    {"x pos, z pos, y neg", X_POS_Z_POS_Y_NEG, {DOWN, RIGHT, "glTranslatef(0,2,-3)"}},
    {"x pos, z mixed", X_POS_Z_MIXED, {DOWN, LEFT, "glTranslatef(0,-2,-4)"}},
    {"x pos, z neg, y pos", X_POS_Z_NEG_Y_POS, {DOWN, LEFT, "glTranslatef(0,-2,-3)"}},
    {"x pos, z mixed, y neg", X_POS_Z_MIXED_Y_NEG, {DOWN, LEFT, "glTranslatef(0,-2,-4)"}},
    {"y pos", Y_POS, {UP, LEFT, "glTranslatef(0,-4,-2)"}},
    {"y pos, x neg, z pos", Y_POS_X_NEG_Z_POS, {UP, LEFT, "glTranslatef(0,-4,-6)"}},
    {"y neg", Y_NEG, {"glTranslatef(0,-5,0)", DOWN, RIGHT, "glTranslatef(0,6,-4)"}},
    {"y neg, x neg, z pos", Y_NEG_X_NEG_Z_POS, {"glTranslatef(0,-5,0)", DOWN, RIGHT, "glTranslatef(0,1,-1)"}},
    {"mixed", MIXED, {DOWN, RIGHT, "glTranslatef(0,1,-4)"}},
    {"y mixed, x neg, z pos", MIXED_X_NEG_Z_POS, {DOWN, RIGHT, "glTranslatef(0,-4,-1)"}},
};

const std::vector<Row> FRONT_VIEW_ROWS = {
    {"x pos, z pos", X_POS_Z_POS, {DOWN, LEFT, "glTranslatef(0,-2,-3)"}},
    {"x pos, z pos, y pos", X_POS_Z_POS_Y_POS, {DOWN, LEFT, "glTranslatef(0,-2,-3)"}},
    {"x pos, z pos, y neg", X_POS_Z_POS_Y_NEG, {DOWN, LEFT, "glTranslatef(0,-2,-3)"}},
    {"x pos, z mixed", X_POS_Z_MIXED, {DOWN, RIGHT, "glTranslatef(0,2,-4)"}},
    {"x pos, z neg, y pos", X_POS_Z_NEG_Y_POS, {DOWN, RIGHT, "glTranslatef(0,2,-3)"}},
    {"x pos, z mixed, y neg", X_POS_Z_MIXED_Y_NEG, {DOWN, RIGHT, "glTranslatef(0,2,-4)"}},
    {"y pos", Y_POS, {UP, RIGHT, "glTranslatef(0,-4,-2)"}},
    {"y pos, x neg, z pos", Y_POS_X_NEG_Z_POS, {UP, RIGHT, "glTranslatef(0,-4,-6)"}},
    {"y neg", Y_NEG, {"glTranslatef(0,-5,0)", DOWN, LEFT, "glTranslatef(0,4,-4)"}},
    {"y neg, x neg, z pos", Y_NEG_X_NEG_Z_POS, {"glTranslatef(0,-5,0)", DOWN, LEFT, "glTranslatef(0,9,-1)"}},
    {"mixed", MIXED, {DOWN, LEFT, "glTranslatef(0,-1,-4)"}},
    {"y mixed, x neg, z pos", MIXED_X_NEG_Z_POS, {DOWN, LEFT, "glTranslatef(0,4,-1)"}},
};

const std::vector<Row> TOP_VIEW_ROWS = {
    {"y pos", Y_POS, {}},
    {"y pos, x pos, z pos", X_POS_Z_POS_Y_POS, {}},
    {"y neg", Y_NEG, {"glTranslatef(0,-5,0)", FLIP, "glTranslatef(0,5,0)"}},
    {"y neg, x pos, z pos", X_POS_Z_POS_Y_NEG, {"glTranslatef(0,-5,0)", FLIP, "glTranslatef(0,5,0)"}},
    {"y mixed", MIXED, {FLIP}},
    {"y mixed, x pos, z pos", X_POS_Z_POS, {FLIP}},
};

const std::vector<Row> BOTTOM_VIEW_ROWS = {
    {"y pos", Y_POS, {"glTranslatef(0,4,0)", FLIP, "glTranslatef(0,-4,0)"}},
    {"y pos, x pos, z pos", X_POS_Z_POS_Y_POS, {"glTranslatef(0,4,0)", FLIP, "glTranslatef(0,-4,0)"}},
    {"y neg", Y_NEG, {}},
    {"y mixed", MIXED, {}},
    {"y mixed, x pos, z pos", X_POS_Z_POS, {}},
};

class Orientations : public View
{
protected:
    void expectRows(Orientation orientation, const std::vector<Row>& rows)
    {
        for (const Row& row : rows) {
            useModel(row.extents);
            glMatrixMode(GL_PROJECTION);
            forget();
            (view.*orientation)();
            EXPECT_EQ(glrecord::lines(), withIdentity(row.calls)) << row.name;
            EXPECT_EQ(printed(), "");
        }
    }
};

// A viewport of 800 by 600 at 40 pixels a unit.
class Fit : public View
{
protected:
    void SetUp() override
    {
        View::SetUp();
        glViewport(0, 0, 800, 600);
        glMatrixMode(GL_PROJECTION);
        glOrtho(-10, 10, -7.5, 7.5, 9999, -9999);
        glMatrixMode(GL_MODELVIEW);
        useModel(MIXED);
        forget();
    }

    void draw(int viewType)
    {
        view.mViewType = viewType;
        forget();
        view.update();
    }

    std::array<double, 3> inWindow(double x, double y, double z)
    {
        std::array<double, 3> window;
        gluProject(x, y, z, glrecord::modelview().data(), glrecord::projection().data(), glrecord::state().viewport,
                   &window[0], &window[1], &window[2]);
        return window;
    }

    // How much of the viewport lies between the projections of the box's two corners, in the tighter direction.
    double filled()
    {
        const auto low = inWindow(extents[0], extents[2], extents[4]);
        const auto high = inWindow(extents[1], extents[3], extents[5]);
        return std::max(std::fabs(high[0] - low[0]) / 800, std::fabs(high[1] - low[1]) / 600);
    }

    std::string printedScale()
    {
        for (const std::string& line : printedLines()) {
            if (line.rfind("SCALE=", 0) == 0)
                return line;
        }
        return "no scale printed";
    }
};
} // namespace

// --- Axis classes
TEST_F(View, startsAsIsoViewOfTheGivenExtents)
{
    Extents negative = {-3, -1, -3, -1, -3, -1};
    const MView fresh(negative.data());
    EXPECT_EQ(fresh.mViewType, ISO_VIEW);
    EXPECT_EQ(fresh.modelExtents, negative.data());
    EXPECT_EQ(fresh.xAxisType, X_BOTH_NEGATIVE);
    EXPECT_EQ(fresh.yAxisType, Y_BOTH_NEGATIVE);
    EXPECT_EQ(fresh.zAxisType, Z_BOTH_NEGATIVE);
}

TEST_F(View, axesAreClassifiedBySign)
{
    useModel({0, 5, -5, -1, -1, 5});
    EXPECT_EQ(view.xAxisType, X_BOTH_POSITIVE) << "zero counts as positive";
    EXPECT_EQ(view.yAxisType, Y_BOTH_NEGATIVE);
    EXPECT_EQ(view.zAxisType, AXIS_OTHER_TYPE);
    useModel({-5, 0, 0, 0, 1, 2});
    EXPECT_EQ(view.xAxisType, AXIS_OTHER_TYPE) << "up to zero is mixed";
    EXPECT_EQ(view.yAxisType, Y_BOTH_POSITIVE);
    EXPECT_EQ(view.zAxisType, Z_BOTH_POSITIVE);
}

TEST_F(View, axisThatBecomesMixedKeepsItsClass)
{
    useModel({1, 5, -5, -1, -5, -1});
    Extents mixed = {-1, 5, -5, 1, -5, 0};
    view.setExtents(mixed.data());
    EXPECT_EQ(view.modelExtents, mixed.data());
    EXPECT_EQ(view.xAxisType, X_BOTH_POSITIVE);
    EXPECT_EQ(view.yAxisType, Y_BOTH_NEGATIVE);
    EXPECT_EQ(view.zAxisType, Z_BOTH_NEGATIVE);
    Extents negative = {-5, -1, 1, 2, 1, 2};
    view.setExtents(negative.data());
    EXPECT_EQ(view.xAxisType, X_BOTH_NEGATIVE);
}

// --- Orientations
TEST_F(Orientations, rightView)
{
    expectRows(&MView::rightView, RIGHT_VIEW_ROWS);
}

TEST_F(Orientations, leftView)
{
    expectRows(&MView::leftView, LEFT_VIEW_ROWS);
}

TEST_F(Orientations, backView)
{
    expectRows(&MView::backView, BACK_VIEW_ROWS);
}

TEST_F(Orientations, frontView)
{
    expectRows(&MView::frontView, FRONT_VIEW_ROWS);
}

TEST_F(Orientations, topView)
{
    expectRows(&MView::topView, TOP_VIEW_ROWS);
}

TEST_F(Orientations, bottomView)
{
    expectRows(&MView::bottomView, BOTTOM_VIEW_ROWS);
}

TEST_F(Orientations, isoViewIsTheLeftViewTilted)
{
    std::vector<Row> rows = LEFT_VIEW_ROWS;
    for (Row& row : rows)
        row.calls.push_back("glRotatef(10,1,0,0)");
    expectRows(&MView::isoView, rows);
}

TEST_F(Orientations, halvesOfTheRangesAreComputedInFloat)
{
    useModel({-1, 3, -33554432, -3, -1, 1}); // t is 16777217.5 in double
    view.topView();
    EXPECT_EQ(glrecord::matching("glTranslatef"), (Lines{"glTranslatef(0,-16777216,0)", "glTranslatef(0,16777216,0)"}));
}

TEST_F(Orientations, bottomViewOfAPositiveModelFlipsAboutItsYCentre)
{
    useModel(Y_POS);
    view.bottomView();
    const glrecord::Matrix& m = glrecord::modelview();
    EXPECT_NEAR(m[5] * 4 + m[13], 4, 1e-12) << "the centre stays";
    EXPECT_NEAR(m[5] * 2 + m[13], 6, 1e-12) << "the lower edge becomes the upper one";
}

TEST_F(Orientations, halfTurnAfterTheFullShiftMapsTheXRangeOntoItself)
{
    useModel(MIXED);
    view.leftView();
    const glrecord::Matrix& m = glrecord::modelview();
    EXPECT_NEAR(m[0] * -1 + m[12], 3, 1e-6);
    EXPECT_NEAR(m[0] * 3 + m[12], -1, 1e-6);
}

// --- Which view is drawn
TEST_F(Fit, viewTypeChoosesTheOrientation)
{
    const std::vector<std::pair<int, Lines>> first = {
        {ISO_VIEW, {DOWN, HALF_BACK, "glTranslatef(-2,0,-4)", "glRotatef(10,1,0,0)"}},
        {TOP_VIEW, {FLIP}},
        {BOTTOM_VIEW, {}},
        {LEFT_VIEW, {DOWN, HALF_BACK, "glTranslatef(-2,0,-4)"}},
        {RIGHT_VIEW, {DOWN, "glTranslatef(0,0,-4)"}},
        {FRONT_VIEW, {DOWN, LEFT, "glTranslatef(0,-1,-4)"}},
        {BACK_VIEW, {DOWN, RIGHT, "glTranslatef(0,1,-4)"}},
    };
    for (const auto& [viewType, calls] : first) {
        draw(viewType);
        Lines expected = withIdentity(calls);
        expected.push_back("glGetIntegerv(GL_VIEWPORT)");
        Lines actual = glrecord::lines();
        actual.resize(expected.size());
        EXPECT_EQ(actual, expected) << "view " << viewType;
        EXPECT_EQ(glrecord::count("glScalef"), 1);
    }
}

TEST_F(Fit, unknownViewTypesOnlyFit)
{
    for (int viewType : {static_cast<int>(NO_VIEW), -1, 8, 99}) {
        glLoadIdentity();
        draw(viewType);
        EXPECT_EQ(glrecord::lines()[0], "glGetIntegerv(GL_VIEWPORT)") << "view " << viewType;
        EXPECT_EQ(glrecord::count("glLoadIdentity"), 0);
        EXPECT_EQ(printedScale(), "SCALE=5,2.14286,1") << "view " << viewType;
    }
}

// --- The fit
TEST_F(Fit, wholeFrameOfTheTopView)
{
    draw(TOP_VIEW);
    EXPECT_EQ(
        glrecord::lines(),
        withIdentity({FLIP, "glGetIntegerv(GL_VIEWPORT)", "glGetDoublev(GL_MODELVIEW_MATRIX)",
                      "glGetDoublev(GL_PROJECTION_MATRIX)", "gluProject(-1,-2,-6)", "gluProject(3,5,2)",
                      "glScalef(2.03571439,2.03571439,2.03571439)", "glGetDoublev(GL_MODELVIEW_MATRIX)",
                      "glGetDoublev(GL_PROJECTION_MATRIX)", "gluUnProject(400,300,0.5)", "glTranslatef(-1,-1.5,2)"}));
}

TEST_F(Fit, printsCornersScaleAndCentres)
{
    view.mViewType = BOTTOM_VIEW;
    view.getMatrices();
    // 10 + x and 7.5 + y at 40 pixels a unit; depth 0.5 + z / 19998 (near and far are exchanged).
    EXPECT_EQ(printed(), "AFTER VIEW cow=360,220,0.4997\nAFTER VIEW com=520,500,0.5001\n"
                         "SCALE=2.03571,2.03571,2.03571\nVIEW cow=0,0,0\nVIEW COM=1,1.5,-2\n");
}

TEST_F(Fit, isoViewFillsTheViewportEdgeToEdge)
{
    draw(ISO_VIEW);
    EXPECT_NEAR(filled(), 1, 1e-6);
}

TEST_F(Fit, theOtherViewsLeaveFivePerCent)
{
    for (int viewType = TOP_VIEW; viewType <= BACK_VIEW; ++viewType) {
        draw(viewType);
        EXPECT_NEAR(filled(), 0.95, 1e-6) << "view " << viewType;
    }
}

TEST_F(Fit, scaleIsTheSmallerOfBothDirections)
{
    useModel({-8, 8, -1, 1, -1, 1}); // 800 / 640 and 600 / 80
    draw(TOP_VIEW);
    EXPECT_EQ(printedScale(), "SCALE=1.1875,1.1875,1.1875");
    useModel({-1, 1, -5, 5, -1, 1}); // 800 / 80 and 600 / 400
    draw(TOP_VIEW);
    EXPECT_EQ(printedScale(), "SCALE=1.425,1.425,1.425");
}

TEST_F(Fit, centreOfTheBoxComesToTheMiddleOfTheWindow)
{
    for (int viewType = NO_VIEW; viewType <= BACK_VIEW; ++viewType) {
        draw(viewType);
        const auto center = inWindow(1, 1.5, -2);
        EXPECT_NEAR(center[0], 400, 1e-3) << "view " << viewType;
        EXPECT_NEAR(center[1], 300, 1e-3) << "view " << viewType;
    }
}

TEST_F(Fit, flatModelKeepsTheScaleOneWhereItHasNoWidth)
{
    useModel({2, 2, -2, 5, -6, 2});
    draw(TOP_VIEW); // 1 and 600 / 280
    EXPECT_EQ(printedScale(), "SCALE=0.95,0.95,0.95");
    useModel({-1, 3, 2, 2, -6, 2});
    draw(TOP_VIEW); // 800 / 160 and 1
    EXPECT_EQ(printedScale(), "SCALE=0.95,0.95,0.95");
    useModel({2, 2, 2, 2, 2, 2});
    draw(NO_VIEW);
    EXPECT_EQ(printedScale(), "SCALE=1,1,1");
}

TEST_F(Fit, zeroViewportScalesByOne)
{
    glViewport(0, 0, 0, 600);
    draw(ISO_VIEW);
    EXPECT_EQ(printedScale(), "SCALE=1,1,1");
}

TEST_F(Fit, middleOfAnOddWindowLosesItsHalfPixel)
{
    glViewport(0, 0, 801, 601);
    draw(TOP_VIEW);
    EXPECT_EQ(glrecord::matching("gluUnProject"), (Lines{"gluUnProject(400,300,0.5)"}));
}

TEST_F(Fit, offsetOfTheViewportIsNotAdded)
{
    glViewport(100, 50, 800, 600);
    draw(TOP_VIEW);
    EXPECT_EQ(glrecord::matching("gluUnProject"), (Lines{"gluUnProject(400,300,0.5)"}));
}

TEST_F(Fit, standardViewsAreRebuiltEveryFrame)
{
    draw(FRONT_VIEW);
    const glrecord::Matrix once = glrecord::modelview();
    draw(FRONT_VIEW);
    EXPECT_EQ(glrecord::modelview(), once);
}

TEST_F(Fit, noViewFitsOnTopOfTheLastFrame)
{
    glLoadIdentity();
    draw(NO_VIEW);
    EXPECT_EQ(printedScale(), "SCALE=5,2.14286,1");
    draw(NO_VIEW);
    EXPECT_EQ(printedScale(), "SCALE=1,1,1") << "the box fills the viewport already";
}
