// Standard views show what their names say, wherever the model lies.
#include <kvo/standard_view.h>

#include <array>

#include "scene_fixture.h"

namespace {

// Directions of the model on the screen: right, up, away from the viewer.
struct OnScreen
{
    double x[3], y[3], z[3];

    explicit OnScreen(const MTransform& t)
    {
        double m[3][3] = {};
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 3; ++column) {
                for (int k = 0; k < 3; ++k) {
                    m[row][column] += t.projMatrix[4 * k + row] * t.mvMatrix[4 * column + k];
                }
            }
        }
        for (int row = 0; row < 3; ++row) {
            x[row] = m[row][0];
            y[row] = m[row][1];
            z[row] = m[row][2];
        }
    }
    // Right, up and away make a left-handed system; a picture that is no mirror image keeps x, y, z right-handed.
    bool mirrored() const
    {
        const double cross[3] = {x[1] * y[2] - x[2] * y[1], x[2] * y[0] - x[0] * y[2], x[0] * y[1] - x[1] * y[0]};
        return cross[0] * z[0] + cross[1] * z[1] + cross[2] * z[2] > 0;
    }
};

class StandardView : public SceneTest, public testing::WithParamInterface<std::array<float, 3>>
{
protected:
    OnScreen frame(kvo::SceneView& view, int viewType)
    {
        {
            const kvo::OutputRedirect quiet("");
            kvo::setStandardView(*model, viewType);
        }
        picture(view);
        return OnScreen(*model->getMTransformPtr());
    }
};

TEST_P(StandardView, ShowsWhatItsNameSays)
{
    PartInfoStr part = blockPart(2);
    movePart(part, GetParam()[0], GetParam()[1], GetParam()[2]);
    model.add(part);
    load();
    kvo::SceneView view(*model);
    for (int type = ISO_VIEW; type <= BACK_VIEW; ++type) {
        const OnScreen shown = frame(view, type);
        EXPECT_FALSE(shown.mirrored()) << type;
        if (type == TOP_VIEW || type == BOTTOM_VIEW) {
            EXPECT_GT(shown.x[0], 0) << type;
            EXPECT_GT(type == TOP_VIEW ? -shown.z[2] : shown.z[2], 0) << "the side that is seen, view " << type;
            EXPECT_GT(type == TOP_VIEW ? shown.y[1] : -shown.y[1], 0) << type;
        } else {
            EXPECT_GT(shown.z[1], 0) << "z upwards, view " << type;
        }
        if (type == ISO_VIEW) {
            EXPECT_LT(shown.z[2], 0) << "from above";
        }
    }
    // The four sides are four different ones.
    const OnScreen left = frame(view, LEFT_VIEW), right = frame(view, RIGHT_VIEW);
    EXPECT_LT(left.x[0] * right.x[0] + left.y[0] * right.y[0], 0);
    const OnScreen front = frame(view, FRONT_VIEW), back = frame(view, BACK_VIEW);
    EXPECT_LT(front.x[0] * back.x[0] + front.y[0] * back.y[0], 0);
}

INSTANTIATE_TEST_SUITE_P(EverySignClass, StandardView,
                         testing::Values(std::array<float, 3>{-1, -1, -1}, std::array<float, 3>{5, 5, 5},
                                         std::array<float, 3>{5, -1, -9}, std::array<float, 3>{-1, 5, -1},
                                         std::array<float, 3>{-1, -9, -1}, std::array<float, 3>{-9, -9, -9},
                                         std::array<float, 3>{5, -9, -1}));

TEST_F(SceneTest, AStandardViewReplacesTheUsersRotationAndKeepsTheRest)
{
    model.add(blockPart(2));
    load();
    MTransform& transform = *model->getMTransformPtr();
    float turn[4] = {0, 1, 0, 33};
    transform.setRotation(turn);
    transform.globalRot[1] = 5;
    transform.localScale[0] = 2;
    const kvo::OutputRedirect quiet("");
    kvo::setStandardView(*model, NO_VIEW);
    EXPECT_EQ(transform.curQuat[3], 1);
    EXPECT_EQ(transform.globalRot[1], 0);
    EXPECT_EQ(transform.localScale[0], 2);
}

} // namespace
