// Pictures in memory and in files.
#include <sys/stat.h>
#include <unistd.h>

#include "host_fixture.h"
#include "picture.h"

using kvo::Color;
using kvo::Picture;

namespace {

// Every pixel different, every channel used.
Picture gradient(int width, int height)
{
    Picture out(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            out.set(x, y,
                    {static_cast<std::uint8_t>(x * 5), static_cast<std::uint8_t>(y * 7),
                     static_cast<std::uint8_t>(x * y), static_cast<std::uint8_t>(255 - x - y)});
        }
    }
    return out;
}

} // namespace

TEST(Picture, FlipRowsTurnsItUpsideDown)
{
    Picture picture = gradient(5, 3);
    picture.flipRows();
    EXPECT_EQ(picture.at(4, 0), gradient(5, 3).at(4, 2));
    EXPECT_EQ(picture.at(2, 1), gradient(5, 3).at(2, 1));
}

TEST(Picture, CutCropsAndPads)
{
    const Picture picture = gradient(10, 8);
    const Color fill{1, 2, 3, 4};
    EXPECT_EQ(picture.cut(2, 3, 4, 4, fill).at(0, 0), picture.at(2, 3));
    const Picture padded = picture.cut(-2, -1, 14, 10, fill);
    EXPECT_EQ(padded.at(1, 0), fill);
    EXPECT_EQ(padded.at(2, 1), picture.at(0, 0));
    EXPECT_EQ(padded.at(11, 8), picture.at(9, 7));
    EXPECT_EQ(padded.at(13, 9), fill);
    EXPECT_EQ(findColor(picture.cut(50, 50, 3, 3, fill), fill).count, 9);
}

TEST(Picture, PasteDropsWhatHangsOver)
{
    Picture picture(4, 4);
    picture.paste(Picture(3, 3, {9, 9, 9, 255}), 2, -1);
    const Blob pasted = findColor(picture, {9, 9, 9, 255});
    EXPECT_EQ(pasted.count, 4);
    EXPECT_EQ(pasted.left, 2);
    EXPECT_EQ(pasted.bottom, 1);
}

TEST(PicturePng, RoundTripKeepsEveryPixel)
{
    Folder folder;
    const Picture picture = gradient(37, 21);
    kvo::writePng(picture, folder.file("a.png"));
    const Picture back = kvo::readPng(folder.file("a.png"));
    EXPECT_EQ(back.width, 37);
    EXPECT_EQ(back.height, 21);
    EXPECT_EQ(back.rgba, picture.rgba);
}

TEST(PicturePng, WritingLeavesNothingElseBehind)
{
    Folder folder;
    kvo::writePng(gradient(3, 3), folder.file("a.png"));
    EXPECT_EQ(folder.count(), 1u);
}

TEST(PicturePng, FailedWriteNamesTheFileAndKeepsTheOldOne)
{
    Folder folder;
    const std::string error = hostError([&] { kvo::writePng(gradient(3, 3), folder.file("no/such/a.png")); });
    EXPECT_TRUE(contains(error, folder.file("no/such/a.png"))) << error;

    // A folder of that name cannot be replaced by a file; the temporary file must not stay.
    std::filesystem::create_directory(folder.path / "taken.png");
    EXPECT_TRUE(contains(hostError([&] { kvo::writePng(gradient(3, 3), folder.file("taken.png")); }), "taken.png"));
    EXPECT_EQ(folder.count(), 1u);

    kvo::writePng(gradient(3, 3), folder.file("old.png"));
    const std::string before = readText(folder.file("old.png"));
    EXPECT_TRUE(contains(hostError([&] { kvo::writePng(Picture(), folder.file("old.png")); }), "old.png"));
    EXPECT_EQ(readText(folder.file("old.png")), before);
    EXPECT_EQ(folder.count(), 2u);
}

TEST(PicturePng, UnreadableFilesAreErrorsThatNameThem)
{
    Folder folder;
    EXPECT_TRUE(contains(hostError([&] { kvo::readPng(folder.file("none.png")); }), "none.png"));
    writeText(folder.file("text.png"), "not a picture at all, only text");
    EXPECT_TRUE(contains(hostError([&] { kvo::readPng(folder.file("text.png")); }), "text.png"));
    kvo::writePng(gradient(64, 64), folder.file("cut.png"));
    const std::string whole = readText(folder.file("cut.png"));
    for (std::size_t size : {std::size_t(0), std::size_t(20), whole.size() / 2}) {
        writeText(folder.file("cut.png"), whole.substr(0, size));
        EXPECT_TRUE(contains(hostError([&] { kvo::readPng(folder.file("cut.png")); }), "cut.png")) << size;
    }
}

TEST(ComparePictures, EqualPicturesHaveNoDifference)
{
    const auto difference = kvo::compare(gradient(9, 9), gradient(9, 9));
    EXPECT_TRUE(difference.sameSize);
    EXPECT_EQ(difference.largest, 0);
    EXPECT_EQ(difference.differing, 0u);
}

TEST(ComparePictures, CountsAndMarksPixelsBeyondTheTolerance)
{
    const Picture a = gradient(9, 9);
    Picture b = a;
    b.set(4, 5, {static_cast<std::uint8_t>(a.at(4, 5).r + 3), a.at(4, 5).g, a.at(4, 5).b, a.at(4, 5).a});
    b.set(1, 1, {a.at(1, 1).r, a.at(1, 1).g, static_cast<std::uint8_t>(a.at(1, 1).b + 40), a.at(1, 1).a});
    EXPECT_EQ(kvo::compare(a, b).differing, 2u);
    const auto tolerant = kvo::compare(a, b, 3);
    EXPECT_EQ(tolerant.differing, 1u);
    EXPECT_EQ(tolerant.largest, 40);
    EXPECT_EQ(tolerant.picture.at(1, 1), (Color{220, 0, 0, 255}));
    EXPECT_NE(tolerant.picture.at(4, 5), (Color{220, 0, 0, 255}));
}

TEST(ComparePictures, DifferentSizesAreSaid)
{
    EXPECT_FALSE(kvo::compare(gradient(9, 9), gradient(9, 8)).sameSize);
}
