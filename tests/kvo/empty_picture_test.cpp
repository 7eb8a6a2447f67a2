// Pictures that show nothing of the model say so; flat models are seen; pictures without a font.
#include <algorithm>

#include <gtest/gtest.h>

#include "picture.h"
#include "run_kvo.h"

using kvo::Picture;

namespace {

class EmptyPicture : public testing::Test
{
protected:
    // A square of two elements, 1 x 1, at -1 along one axis.
    void writeSquare(char axis, const std::string& one = "1", const std::string& minusOne = "-1")
    {
        const std::string corners[4][2] = {{"0", "0"}, {one, "0"}, {one, one}, {"0", one}};
        std::string text;
        for (const auto& corner : corners) {
            text += "v";
            for (int k = 0, used = 0; k < 3; ++k) {
                text += " " + (k == axis - 'x' ? minusOne : corner[used++]);
            }
            text += "\n";
        }
        writeText(model(), text + "f 1 2 3\nf 1 3 4\n");
    }

    std::string model() const { return folder.file("flat.obj"); }
    std::string picture() const { return folder.file("a.png"); }

    // Standard error of a run that works; the picture in `drawn`.
    std::string render(std::vector<std::string> more, const std::vector<std::string>& environment = {})
    {
        more.insert(more.begin(), {"render", model(), "-o", picture(), "--device", "software"});
        if (std::find(more.begin(), more.end(), "--size") == more.end()) {
            more.insert(more.end(), {"--size", "300x240"});
        }
        const KvoRun run = runKvo(more, environment);
        EXPECT_EQ(run.status, 0) << run.err;
        drawn = kvo::readPng(picture());
        return run.err;
    }

    // Pixels other than the background, without the corner of the axes.
    int marks() const
    {
        int out = 0;
        for (int y = 0; y < drawn.height - 100; ++y) {
            for (int x = 0; x < drawn.width; ++x) {
                out += drawn.at(x, y) != drawn.at(0, 0);
            }
        }
        return out;
    }

    std::string empty(const std::string& what, const std::string& why) const
    {
        return "kvo: warning: " + model() + ": " + what + " shows nothing of the model" + why + "\n";
    }

    TemporaryFolder folder;
    Picture drawn;
};

} // namespace

TEST_F(EmptyPicture, WithoutAViewAFlatModelIsSeenWhateverItsAxis)
{
    for (char axis : {'x', 'y', 'z'}) {
        writeSquare(axis);
        EXPECT_EQ(render({}), "") << axis;
        EXPECT_GT(marks(), 1000) << axis;
    }
}

TEST_F(EmptyPicture, AViewOfTheEdgeIsDrawnAndSaid)
{
    writeSquare('x');
    EXPECT_EQ(render({"--view", "front"}), empty("the picture", ": it is flat in x and may be seen from its edge"));
    EXPECT_EQ(marks(), 0);
    EXPECT_EQ(render({"--contract"}), empty("the picture", ": it is flat in x and may be seen from its edge"));
    EXPECT_EQ(render({"--contract", "--view", "front"}), "");
}

TEST_F(EmptyPicture, AContactSheetSaysWhichViews)
{
    writeSquare('x');
    std::string text;
    for (const char* view : {"top", "bottom", "front", "back"}) {
        text += empty(std::string("the ") + view + " view", ": it is flat in x and may be seen from its edge");
    }
    EXPECT_EQ(render({"--view", "all", "--size", "800x600"}), text);
}

TEST_F(EmptyPicture, SectionsHidingAndTurningAwayAreReasons)
{
    writeSquare('z');
    EXPECT_EQ(render({"--section", "z=5.."}), empty("the picture", ": the section takes all of it away"));
    writeText(folder.file("s"), "HIDE 1\nPICTURE " + picture() + "\nSHOW 1\nPICTURE " + picture() + "\n");
    const KvoRun played = runKvo({"play", folder.file("s"), model(), "--device", "software", "--size", "300x240"});
    EXPECT_EQ(played.err, empty("the picture", ": all its parts are hidden"));
}

TEST_F(EmptyPicture, CoordinatesAtTheEndsOfSinglePrecision)
{
    const std::string why = "too large or too small to be drawn";
    for (const char* size : {"3e38", "1e-40"}) {
        writeSquare('z', size, "0");
        EXPECT_EQ(render({"--view", "top"}), empty("the picture", ": its coordinates are " + why)) << size;
    }
    for (const char* size : {"1e37", "1e-33"}) {
        writeSquare('z', size, "0");
        EXPECT_EQ(render({"--view", "top"}), "") << size;
        EXPECT_GT(marks(), 1000) << size;
    }
    writeSquare('z', "9e37", "0");
    EXPECT_EQ(render({"--view", "top"}),
              "kvo: warning: " + model() + ": the picture may be wrong: the coordinates are " + why + "\n");
}

TEST_F(EmptyPicture, AColouringsLegendIsNothingOfTheModel)
{
    writeSquare('x');
    EXPECT_EQ(render({"--view", "front", "--color-by", "kind"}),
              empty("the picture", ": it is flat in x and may be seen from its edge"));
    EXPECT_EQ(render({"--color-by", "kind"}), "");
}

// --- Without the font ---

TEST_F(EmptyPicture, WithoutAFontOnlyTextIsMissing)
{
    writeSquare('z');
    const std::vector<std::string> none = {"KVO_FONT=/nonexistent.ttf"};
    const std::string warning = "kvo: warning: /nonexistent.ttf: the font cannot be opened (Debian: package "
                                "fonts-dejavu-core; the variable KVO_FONT names another); the text is left out\n";
    EXPECT_EQ(render({"--samples", "1"}), "");
    const Picture withFont = drawn;
    EXPECT_EQ(render({"--samples", "1"}, none), "");
    // The axes' letters are strokes then.
    const int corner = 100, height = withFont.height;
    const kvo::PictureDifference axes = kvo::compare(withFont, drawn);
    EXPECT_GT(axes.differing, 0u);
    EXPECT_EQ(axes.differing, kvo::compare(withFont.cut(0, height - corner, corner, corner),
                                           drawn.cut(0, height - corner, corner, corner))
                                  .differing);
    EXPECT_EQ(render({"--boxes"}, none), warning);
    EXPECT_EQ(render({"--contract", "--boxes"}, none), warning);
    EXPECT_EQ(render({"--color-by", "kind"}, none), warning);
    EXPECT_EQ(render({"--view", "all", "--size", "800x600"}, none).rfind(warning, 0), 0u);
    EXPECT_GT(marks(), 1000);
}
