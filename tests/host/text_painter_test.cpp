// Text in pictures.
#include "host_fixture.h"
#include "text_painter.h"

using kvo::Color;
using kvo::Picture;
using kvo::TextPainter;

namespace {

const Color black{0, 0, 0, 255};
const Color yellow{255, 255, 0, 255};

Blob inkOf(const Picture& picture)
{
    Blob out;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (picture.at(x, y) == black) {
                continue;
            }
            ++out.count;
            out.left = std::min(out.left, x);
            out.right = std::max(out.right, x);
            out.top = std::min(out.top, y);
            out.bottom = std::max(out.bottom, y);
        }
    }
    return out;
}

} // namespace

TEST(TextPainter, DrawsInsideItsLineAndWidth)
{
    TextPainter painter(16);
    Picture picture(120, 60);
    painter.draw(picture, 10, 20, "Front", yellow);
    const Blob ink = inkOf(picture);
    EXPECT_GT(ink.count, 50);
    EXPECT_GE(ink.left, 10);
    EXPECT_LE(ink.right, 10 + painter.width("Front"));
    EXPECT_GE(ink.top, 20);
    EXPECT_LE(ink.bottom, 20 + painter.lineHeight());
}

TEST(TextPainter, EdgesAreSmooth)
{
    TextPainter painter(24);
    Picture picture(60, 40);
    painter.draw(picture, 5, 5, "SO", yellow);
    EXPECT_GT(findColor(picture, yellow).count, 20);
    EXPECT_GT(inkOf(picture).count, findColor(picture, yellow).count + 20);
}

TEST(TextPainter, CutsWhatHangsOverEveryEdge)
{
    TextPainter painter(20);
    Picture picture(20, 12);
    painter.draw(picture, -30, -6, "WWWWWWWWWWWW", yellow);
    EXPECT_GT(inkOf(picture).count, 10);
}

TEST(TextPainter, ReadsUtf8)
{
    TextPainter painter(16);
    EXPECT_EQ(painter.width("\xC3\xA4\xE2\x80\xA6"), painter.width("ab"));
}

TEST(TextPainter, BrokenUtf8CountsAsSingleCharacters)
{
    TextPainter painter(16);
    EXPECT_EQ(painter.width("\xFF\xC3"), painter.width("ab"));
    EXPECT_EQ(painter.width("\xE2\x80"), painter.width("ab"));
}

TEST(TextPainter, ShortensWithAnEllipsis)
{
    TextPainter painter(16);
    const int room = painter.width("abcde");
    EXPECT_EQ(painter.shorten("abcde", room), "abcde");
    EXPECT_EQ(painter.shorten("abcdef", room), "abcd\xE2\x80\xA6");
}
