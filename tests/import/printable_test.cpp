// What of a deck's or model's text may reach a terminal.
#include <gtest/gtest.h>

#include "import_log.h"
#include "text/printable.h"

namespace {

struct Row
{
    std::string text;
    std::string shown;
};

using namespace std::string_literals;

} // namespace

TEST(Printable, WellFormedTextStaysAsItIs)
{
    for (const char* text : {"", "RIB 3 [mm] \\ \"x\"", "Träger €", "梁 板", "\U0001F600", "~"}) {
        EXPECT_EQ(kvo::printable(text), text);
        EXPECT_EQ(kvo::printableJson(text), text);
    }
}

TEST(Printable, ControlsAndWhatIsNoUtf8BecomeEscapes)
{
    const Row rows[] = {
        {"\x1B]0;owned\a", "\\x1B]0;owned\\x07"},   // sets a terminal's title
        {"a\0b"s, "a\\x00b"},                       //
        {"a\r\n\tb\x7F", "a\\x0D\\x0A\\x09b\\x7F"}, //
        {"\xC2\x9B"
         "31m",
         "\\xC2\\x9B31m"}, // C1: begins a sequence as ESC [ does
        {"\x9B"
         "31m",
         "\\x9B31m"},                                          // the same as a byte
        {"Tr\xE4ger", "Tr\\xE4ger"},                           // Latin-1
        {"\xC0\xAF\xE0\x80\xAF", "\\xC0\\xAF\\xE0\\x80\\xAF"}, // longer than need be
        {"\xED\xA0\x80", "\\xED\\xA0\\x80"},                   // half of a pair
        {"\xF4\x90\x80\x80", "\\xF4\\x90\\x80\\x80"},          // beyond the last character
        {"\xE2\x82", "\\xE2\\x82"},                            // cut off
        {"\xE2\x80\xAE"
         "gnp.exe",
         "\\xE2\\x80\\xAEgnp.exe"}, // written from right to left
    };
    for (const Row& row : rows) {
        EXPECT_EQ(kvo::printable(row.text), row.shown);
        EXPECT_EQ(kvo::printable(row.shown), row.shown) << "twice is as good as once";
    }
}

TEST(Printable, LineEndsStayInLinesAndJson)
{
    EXPECT_EQ(kvo::printableLines("a\n\x1B[2J\tb\n"), "a\n\\x1B[2J\\x09b\n");
    EXPECT_EQ(kvo::printableJson("{\n\"\x7F\xC2\x9B\xF3\xA0\x80\x81\"}"), "{\n\"\\u007f\\u009b\\udb40\\udc01\"}");
}

TEST(Printable, LogLinesAreLines)
{
    kvo::ImportLog log;
    log.warn("kind\a", {"a\nwarning: forged", 3}, "text\x1B");
    log.warnMore("kind\a", 1);
    log.note("part \"A\nB\"");
    log.count("types", "T\x1B[2J", 2, {"d\rk", 1});
    const std::vector<std::string> shown = {"warning: a\\x0Awarning: forged:3: text\\x1B",
                                            "warning: kind\\x07: 2 in all", "note: part \"A\\x0AB\"",
                                            "types:", "  T\\x1B[2J  2  (first at d\\x0Dk:1)"};
    EXPECT_EQ(log.lines(), shown);
}
