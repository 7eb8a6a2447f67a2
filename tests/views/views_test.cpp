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
const Extents xPosZPos = {1, 3, -2, 5, 2, 8};         // Sx 4, Sz 10, Dz -3
const Extents xPosZPosYPos = {1, 3, 2, 6, 2, 8};      // the same
const Extents xPosZPosYNeg = {1, 3, -7, -3, 2, 8};    // the same
const Extents xPosZMixed = {1, 3, -2, 5, -6, 2};      // Sx 4, Sz -4, Dz -4
const Extents xPosZNegYPos = {1, 3, 2, 6, -7, -1};    // Sx 4, Sz -8, Dz -3
const Extents xPosZMixedYNeg = {1, 3, -7, -3, -6, 2}; // Sx 4, Sz -4, Dz -4
const Extents yPos = {-1, 3, 2, 6, -6, 2};            // Sx 2, Sy 8, Sz -4, Dz -4, cy 4
const Extents yPosXNegZPos = {-5, -3, 2, 6, 1, 3};    // Sx -8, Sy 8, Sz 4, Dz -1, cy 4
const Extents yNeg = {-1, 3, -7, -3, -6, 2};          // Sx 2, Sy -10, Sz -4, Dz -4, t 5
const Extents yNegXNegZPos = {-5, -3, -7, -3, 1, 3};  // Sx -8, Dz -1, t 5
const Extents mixedSigns = {-1, 3, -2, 5, -6, 2};     // Sx 2, Sy 3, Sz -4, Dz -4
const Extents mixedXNegZPos = {-5, -3, -2, 5, 1, 3};  // Sx -8, Dz -1

const std::string UP = "glRotatef(90,1,0,0)", downTurn = "glRotatef(-90,1,0,0)", flip = "glRotatef(180,1,0,0)";
const std::string leftTurn = "glRotatef(90,0,0,1)", rightTurn = "glRotatef(-90,0,0,1)";
const std::string half = "glRotatef(180,0,0,1)", halfBack = "glRotatef(-180,0,0,1)";

const std::vector<Row> rightViewRows = {
    {"x pos, z pos", xPosZPos, {downTurn, "glTranslatef(0,0,-5)"}},
    {"x pos, z pos, y pos", xPosZPosYPos, {downTurn, "glTranslatef(0,0,-5)"}},
    {"x pos, z pos, y neg", xPosZPosYNeg, {downTurn, "glTranslatef(0,0,-5)"}},
    {"x pos, z mixed", xPosZMixed, {downTurn, half, "glTranslatef(-4,0,2)"}},
    {"x pos, z neg, y pos", xPosZNegYPos, {downTurn, half, "glTranslatef(-4,0,4)"}},
    {"x pos, z mixed, y neg", xPosZMixedYNeg, {downTurn, half, "glTranslatef(-4,0,2)"}},
    {"y pos", yPos, {UP}},
    {"y pos, x neg, z pos", yPosXNegZPos, {UP}},
    {"y neg", yNeg, {"glTranslatef(0,-5,0)", downTurn, "glTranslatef(0,0,-4)"}},
    {"y neg, x neg, z pos", yNegXNegZPos, {"glTranslatef(0,-5,0)", downTurn, "glTranslatef(0,0,-1)"}},
    {"mixed", mixedSigns, {downTurn, "glTranslatef(0,0,-4)"}},
    {"y mixed, x neg, z pos", mixedXNegZPos, {downTurn, "glTranslatef(0,0,-1)"}},
};

const std::vector<Row> leftViewRows = {
    {"x pos, z pos", xPosZPos, {downTurn, half, "glTranslatef(-4,0,-5)"}},
    {"x pos, z pos, y pos", xPosZPosYPos, {downTurn, half, "glTranslatef(-4,0,-5)"}},
    {"x pos, z pos, y neg", xPosZPosYNeg, {downTurn, half, "glTranslatef(-4,0,-5)"}},
    {"x pos, z mixed", xPosZMixed, {downTurn, "glTranslatef(0,0,2)"}},
    {"x pos, z neg, y pos", xPosZNegYPos, {downTurn, "glTranslatef(0,0,4)"}},
    {"x pos, z mixed, y neg", xPosZMixedYNeg, {downTurn, "glTranslatef(0,0,2)"}},
    {"y pos", yPos, {UP, halfBack, "glTranslatef(-2,0,0)"}},
    {"y pos, x neg, z pos", yPosXNegZPos, {UP, halfBack, "glTranslatef(8,0,0)"}},
    {"y neg", yNeg, {"glTranslatef(0,-5,0)", downTurn, halfBack, "glTranslatef(-2,0,-4)"}},
    {"y neg, x neg, z pos", yNegXNegZPos, {"glTranslatef(0,-5,0)", downTurn, halfBack, "glTranslatef(8,0,-1)"}},
    {"mixed", mixedSigns, {downTurn, halfBack, "glTranslatef(-2,0,-4)"}},
    {"y mixed, x neg, z pos", mixedXNegZPos, {downTurn, halfBack, "glTranslatef(8,0,-1)"}},
};

const std::vector<Row> backViewRows = {
    {"x pos, z pos", xPosZPos, {downTurn, rightTurn, "glTranslatef(0,2,-3)"}},
    {"x pos, z pos, y pos", xPosZPosYPos, {downTurn, rightTurn, "glTranslatef(0,2,-3)"}},
    {"x pos, z pos, y neg", xPosZPosYNeg, {downTurn, rightTurn, "glTranslatef(0,2,-3)"}},
    {"x pos, z mixed", xPosZMixed, {downTurn, leftTurn, "glTranslatef(0,-2,-4)"}},
    {"x pos, z neg, y pos", xPosZNegYPos, {downTurn, leftTurn, "glTranslatef(0,-2,-3)"}},
    {"x pos, z mixed, y neg", xPosZMixedYNeg, {downTurn, leftTurn, "glTranslatef(0,-2,-4)"}},
    {"y pos", yPos, {UP, leftTurn, "glTranslatef(0,-4,-2)"}},
    {"y pos, x neg, z pos", yPosXNegZPos, {UP, leftTurn, "glTranslatef(0,-4,-6)"}},
    {"y neg", yNeg, {"glTranslatef(0,-5,0)", downTurn, rightTurn, "glTranslatef(0,6,-4)"}},
    {"y neg, x neg, z pos", yNegXNegZPos, {"glTranslatef(0,-5,0)", downTurn, rightTurn, "glTranslatef(0,1,-1)"}},
    {"mixed", mixedSigns, {downTurn, rightTurn, "glTranslatef(0,1,-4)"}},
    {"y mixed, x neg, z pos", mixedXNegZPos, {downTurn, rightTurn, "glTranslatef(0,-4,-1)"}},
};

const std::vector<Row> frontViewRows = {
    {"x pos, z pos", xPosZPos, {downTurn, leftTurn, "glTranslatef(0,-2,-3)"}},
    {"x pos, z pos, y pos", xPosZPosYPos, {downTurn, leftTurn, "glTranslatef(0,-2,-3)"}},
    {"x pos, z pos, y neg", xPosZPosYNeg, {downTurn, leftTurn, "glTranslatef(0,-2,-3)"}},
    {"x pos, z mixed", xPosZMixed, {downTurn, rightTurn, "glTranslatef(0,2,-4)"}},
    {"x pos, z neg, y pos", xPosZNegYPos, {downTurn, rightTurn, "glTranslatef(0,2,-3)"}},
    {"x pos, z mixed, y neg", xPosZMixedYNeg, {downTurn, rightTurn, "glTranslatef(0,2,-4)"}},
    {"y pos", yPos, {UP, rightTurn, "glTranslatef(0,-4,-2)"}},
    {"y pos, x neg, z pos", yPosXNegZPos, {UP, rightTurn, "glTranslatef(0,-4,-6)"}},
    {"y neg", yNeg, {"glTranslatef(0,-5,0)", downTurn, leftTurn, "glTranslatef(0,4,-4)"}},
    {"y neg, x neg, z pos", yNegXNegZPos, {"glTranslatef(0,-5,0)", downTurn, leftTurn, "glTranslatef(0,9,-1)"}},
    {"mixed", mixedSigns, {downTurn, leftTurn, "glTranslatef(0,-1,-4)"}},
    {"y mixed, x neg, z pos", mixedXNegZPos, {downTurn, leftTurn, "glTranslatef(0,4,-1)"}},
};

const std::vector<Row> topViewRows = {
    {"y pos", yPos, {}},
    {"y pos, x pos, z pos", xPosZPosYPos, {}},
    {"y neg", yNeg, {"glTranslatef(0,-5,0)", flip, "glTranslatef(0,5,0)"}},
    {"y neg, x pos, z pos", xPosZPosYNeg, {"glTranslatef(0,-5,0)", flip, "glTranslatef(0,5,0)"}},
    {"y mixed", mixedSigns, {flip}},
    {"y mixed, x pos, z pos", xPosZPos, {flip}},
};

const std::vector<Row> bottomViewRows = {
    {"y pos", yPos, {"glTranslatef(0,4,0)", flip, "glTranslatef(0,-4,0)"}},
    {"y pos, x pos, z pos", xPosZPosYPos, {"glTranslatef(0,4,0)", flip, "glTranslatef(0,-4,0)"}},
    {"y neg", yNeg, {}},
    {"y mixed", mixedSigns, {}},
    {"y mixed, x pos, z pos", xPosZPos, {}},
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
        useModel(mixedSigns);
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
            if (line.rfind("SCALE=", 0) == 0) {
                return line;
            }
        }
        return "no scale printed";
    }
};
} // namespace

// --- Axis classes ---
TEST_F(View, StartsAsIsoViewOfTheGivenExtents)
{
    Extents negative = {-3, -1, -3, -1, -3, -1};
    const MView fresh(negative.data());
    EXPECT_EQ(fresh.mViewType, ISO_VIEW);
    EXPECT_EQ(fresh.modelExtents, negative.data());
    EXPECT_EQ(fresh.xAxisType, X_BOTH_NEGATIVE);
    EXPECT_EQ(fresh.yAxisType, Y_BOTH_NEGATIVE);
    EXPECT_EQ(fresh.zAxisType, Z_BOTH_NEGATIVE);
}

TEST_F(View, AxesAreClassifiedBySign)
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

TEST_F(View, AxisThatBecomesMixedKeepsItsClass)
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

// --- Orientations ---
TEST_F(Orientations, RightView)
{
    expectRows(&MView::rightView, rightViewRows);
}

TEST_F(Orientations, LeftView)
{
    expectRows(&MView::leftView, leftViewRows);
}

TEST_F(Orientations, BackView)
{
    expectRows(&MView::backView, backViewRows);
}

TEST_F(Orientations, FrontView)
{
    expectRows(&MView::frontView, frontViewRows);
}

TEST_F(Orientations, TopView)
{
    expectRows(&MView::topView, topViewRows);
}

TEST_F(Orientations, BottomView)
{
    expectRows(&MView::bottomView, bottomViewRows);
}

TEST_F(Orientations, IsoViewIsTheLeftViewTilted)
{
    std::vector<Row> rows = leftViewRows;
    for (Row& row : rows) {
        row.calls.push_back("glRotatef(10,1,0,0)");
    }
    expectRows(&MView::isoView, rows);
}

TEST_F(Orientations, HalvesOfTheRangesAreComputedInFloat)
{
    useModel({-1, 3, -33554432, -3, -1, 1}); // t is 16777217.5 in double
    view.topView();
    EXPECT_EQ(glrecord::matching("glTranslatef"), (Lines{"glTranslatef(0,-16777216,0)", "glTranslatef(0,16777216,0)"}));
}

TEST_F(Orientations, BottomViewOfAPositiveModelFlipsAboutItsYCentre)
{
    useModel(yPos);
    view.bottomView();
    const glrecord::Matrix& m = glrecord::modelview();
    EXPECT_NEAR(m[5] * 4 + m[13], 4, 1e-12) << "the centre stays";
    EXPECT_NEAR(m[5] * 2 + m[13], 6, 1e-12) << "the lower edge becomes the upper one";
}

TEST_F(Orientations, HalfTurnAfterTheFullShiftMapsTheXRangeOntoItself)
{
    useModel(mixedSigns);
    view.leftView();
    const glrecord::Matrix& m = glrecord::modelview();
    EXPECT_NEAR(m[0] * -1 + m[12], 3, 1e-6);
    EXPECT_NEAR(m[0] * 3 + m[12], -1, 1e-6);
}

// --- Which view is drawn ---
TEST_F(Fit, ViewTypeChoosesTheOrientation)
{
    const std::vector<std::pair<int, Lines>> first = {
        {ISO_VIEW, {downTurn, halfBack, "glTranslatef(-2,0,-4)", "glRotatef(10,1,0,0)"}},
        {TOP_VIEW, {flip}},
        {BOTTOM_VIEW, {}},
        {LEFT_VIEW, {downTurn, halfBack, "glTranslatef(-2,0,-4)"}},
        {RIGHT_VIEW, {downTurn, "glTranslatef(0,0,-4)"}},
        {FRONT_VIEW, {downTurn, leftTurn, "glTranslatef(0,-1,-4)"}},
        {BACK_VIEW, {downTurn, rightTurn, "glTranslatef(0,1,-4)"}},
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

TEST_F(Fit, UnknownViewTypesOnlyFit)
{
    for (int viewType : {static_cast<int>(NO_VIEW), -1, 8, 99}) {
        glLoadIdentity();
        draw(viewType);
        EXPECT_EQ(glrecord::lines()[0], "glGetIntegerv(GL_VIEWPORT)") << "view " << viewType;
        EXPECT_EQ(glrecord::count("glLoadIdentity"), 0);
        EXPECT_EQ(printedScale(), "SCALE=5,2.14286,1") << "view " << viewType;
    }
}

// --- The fit ---
TEST_F(Fit, WholeFrameOfTheTopView)
{
    draw(TOP_VIEW);
    EXPECT_EQ(
        glrecord::lines(),
        withIdentity({flip, "glGetIntegerv(GL_VIEWPORT)", "glGetDoublev(GL_MODELVIEW_MATRIX)",
                      "glGetDoublev(GL_PROJECTION_MATRIX)", "gluProject(-1,-2,-6)", "gluProject(3,5,2)",
                      "glScalef(2.03571439,2.03571439,2.03571439)", "glGetDoublev(GL_MODELVIEW_MATRIX)",
                      "glGetDoublev(GL_PROJECTION_MATRIX)", "gluUnProject(400,300,0.5)", "glTranslatef(-1,-1.5,2)"}));
}

TEST_F(Fit, PrintsCornersScaleAndCentres)
{
    view.mViewType = BOTTOM_VIEW;
    view.getMatrices();
    // 10 + x and 7.5 + y at 40 pixels a unit; depth 0.5 + z / 19998 (near and far are exchanged).
    EXPECT_EQ(printed(), "AFTER VIEW cow=360,220,0.4997\nAFTER VIEW com=520,500,0.5001\n"
                         "SCALE=2.03571,2.03571,2.03571\nVIEW cow=0,0,0\nVIEW COM=1,1.5,-2\n");
}

TEST_F(Fit, IsoViewFillsTheViewportEdgeToEdge)
{
    draw(ISO_VIEW);
    EXPECT_NEAR(filled(), 1, 1e-6);
}

TEST_F(Fit, TheOtherViewsLeaveFivePerCent)
{
    for (int viewType = TOP_VIEW; viewType <= BACK_VIEW; ++viewType) {
        draw(viewType);
        EXPECT_NEAR(filled(), 0.95, 1e-6) << "view " << viewType;
    }
}

TEST_F(Fit, ScaleIsTheSmallerOfBothDirections)
{
    useModel({-8, 8, -1, 1, -1, 1}); // 800 / 640 and 600 / 80
    draw(TOP_VIEW);
    EXPECT_EQ(printedScale(), "SCALE=1.1875,1.1875,1.1875");
    useModel({-1, 1, -5, 5, -1, 1}); // 800 / 80 and 600 / 400
    draw(TOP_VIEW);
    EXPECT_EQ(printedScale(), "SCALE=1.425,1.425,1.425");
}

TEST_F(Fit, CentreOfTheBoxComesToTheMiddleOfTheWindow)
{
    for (int viewType = NO_VIEW; viewType <= BACK_VIEW; ++viewType) {
        draw(viewType);
        const auto center = inWindow(1, 1.5, -2);
        EXPECT_NEAR(center[0], 400, 1e-3) << "view " << viewType;
        EXPECT_NEAR(center[1], 300, 1e-3) << "view " << viewType;
    }
}

TEST_F(Fit, FlatModelKeepsTheScaleOneWhereItHasNoWidth)
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

TEST_F(Fit, ZeroViewportScalesByOne)
{
    glViewport(0, 0, 0, 600);
    draw(ISO_VIEW);
    EXPECT_EQ(printedScale(), "SCALE=1,1,1");
}

TEST_F(Fit, MiddleOfAnOddWindowLosesItsHalfPixel)
{
    glViewport(0, 0, 801, 601);
    draw(TOP_VIEW);
    EXPECT_EQ(glrecord::matching("gluUnProject"), (Lines{"gluUnProject(400,300,0.5)"}));
}

TEST_F(Fit, OffsetOfTheViewportIsNotAdded)
{
    glViewport(100, 50, 800, 600);
    draw(TOP_VIEW);
    EXPECT_EQ(glrecord::matching("gluUnProject"), (Lines{"gluUnProject(400,300,0.5)"}));
}

TEST_F(Fit, StandardViewsAreRebuiltEveryFrame)
{
    draw(FRONT_VIEW);
    const glrecord::Matrix once = glrecord::modelview();
    draw(FRONT_VIEW);
    EXPECT_EQ(glrecord::modelview(), once);
}

TEST_F(Fit, NoViewFitsOnTopOfTheLastFrame)
{
    glLoadIdentity();
    draw(NO_VIEW);
    EXPECT_EQ(printedScale(), "SCALE=5,2.14286,1");
    draw(NO_VIEW);
    EXPECT_EQ(printedScale(), "SCALE=1,1,1") << "the box fills the viewport already";
}
