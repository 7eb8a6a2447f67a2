// The text layer: numbers, fields, lines, includes.
#include "import_fixture.h"

#include <cfloat>
#include <cmath>
#include <limits>
#include <random>

#include "id_index.h"
#include "text/deck_lines.h"
#include "text/fields.h"
#include "text/numbers.h"

namespace {

double real(const std::string& text)
{
    double value = NAN;
    EXPECT_TRUE(kvo::parseReal(text, value)) << text;
    return value;
}

bool isReal(const std::string& text)
{
    double value = 0;
    return kvo::parseReal(text, value);
}

std::int64_t integer(const std::string& text)
{
    std::int64_t value = -999;
    EXPECT_TRUE(kvo::parseInteger(text, value)) << text;
    return value;
}

bool isInteger(const std::string& text)
{
    std::int64_t value = 0;
    return kvo::parseInteger(text, value);
}

} // namespace

TEST(Numbers, RealsAsDecksWriteThem)
{
    EXPECT_EQ(real("1."), 1.0);
    EXPECT_EQ(real("-.11"), -0.11);
    EXPECT_EQ(real("+3"), 3.0);
    EXPECT_EQ(real(" 2.5\t"), 2.5);
    EXPECT_EQ(real("1.5-3"), 1.5e-3);
    EXPECT_EQ(real("7+2"), 700.0);
    EXPECT_EQ(real(".5D0"), 0.5);
    EXPECT_EQ(real("1d-2"), 0.01);
    EXPECT_EQ(real("6.02E+23"), 6.02e23);
    EXPECT_EQ(real("-0"), 0.0);
    EXPECT_EQ(real("0.1"), 0.1);
}

TEST(Numbers, WhatIsNoReal)
{
    for (const char* text : {"", " ", ".", "-", "e5", "1.2.3", "x", "1,2", "--1", "1e", "1e+", "nan", "inf", "0x10"}) {
        EXPECT_FALSE(isReal(text)) << text;
    }
}

TEST(Numbers, RealsAtTheEdgesOfDouble)
{
    EXPECT_EQ(real("1.7976931348623157e308"), DBL_MAX);
    EXPECT_EQ(real("2.2250738585072014E-308"), DBL_MIN);
    EXPECT_EQ(real("1e-400"), 0.0);
    EXPECT_EQ(real("-1e-99999999999999"), 0.0);
    EXPECT_EQ(real("0e999999"), 0.0);
    EXPECT_FALSE(isReal("1e400"));
    EXPECT_FALSE(isReal("1e99999999999999"));
    EXPECT_EQ(real("100000000000000000000000000000000000000e-38"), 1.0);
    EXPECT_EQ(real("0." + std::string(400, '0') + "1e401"), 1.0);
    EXPECT_EQ(real(std::string(400, '9') + "e-400"), 1.0);
}

TEST(Numbers, RealsAreRoundedAsTheCompilerDoes)
{
    EXPECT_EQ(real("9007199254740993"), 9007199254740993.0);
    EXPECT_EQ(real("0.30000000000000004"), 0.30000000000000004);
    EXPECT_EQ(real("123456789012345678901234567890"), 123456789012345678901234567890.0);
    std::mt19937_64 random(1);
    for (int k = 0; k < 20000; ++k) {
        const double value = std::ldexp(static_cast<double>(random() >> 11), static_cast<int>(random() % 200) - 150);
        char text[64];
        std::snprintf(text, sizeof text, "%.*e", static_cast<int>(random() % 20), value);
        ASSERT_EQ(real(text), std::strtod(text, nullptr)) << text;
    }
}

TEST(Numbers, Integers)
{
    EXPECT_EQ(integer("12"), 12);
    EXPECT_EQ(integer(" -7 "), -7);
    EXPECT_EQ(integer("+5"), 5);
    EXPECT_EQ(integer("3."), 3);
    EXPECT_EQ(integer("1e3"), 1000);
    EXPECT_EQ(integer("9223372036854775807"), INT64_MAX);
    for (const char* text : {"", "x", "1.5", "9223372036854775808", "12a", "1e40"}) {
        EXPECT_FALSE(isInteger(text)) << text;
    }
}

TEST(Fields, CommasBlanksAndTheEndOfALine)
{
    kvo::CommaFields fields("1 , ,\t2.5,3,");
    std::int64_t id = 0;
    double x = -1;
    EXPECT_EQ(fields.nextInteger(id), kvo::Field::Value);
    EXPECT_EQ(id, 1);
    EXPECT_EQ(fields.nextReal(x), kvo::Field::Blank);
    EXPECT_EQ(x, -1);
    EXPECT_EQ(fields.nextReal(x), kvo::Field::Value);
    EXPECT_EQ(x, 2.5);
    EXPECT_FALSE(fields.nextReal(x) == kvo::Field::End);
    EXPECT_TRUE(fields.endedWithComma());
    EXPECT_EQ(fields.nextReal(x), kvo::Field::End);
}

TEST(Fields, ABadFieldStaysForTheMessage)
{
    kvo::CommaFields fields("7, abc, 2");
    std::int64_t id = 0;
    EXPECT_EQ(fields.nextInteger(id), kvo::Field::Value);
    EXPECT_EQ(fields.nextInteger(id), kvo::Field::Bad);
    EXPECT_EQ(fields.badField(), "abc");
    std::string text;
    EXPECT_EQ(fields.nextText(text), kvo::Field::Value);
    EXPECT_EQ(text, "abc");
    EXPECT_EQ(fields.nextInteger(id), kvo::Field::Value);
    EXPECT_EQ(id, 2);
}

TEST(Fields, QuotedTextKeepsItsCommas)
{
    kvo::CommaFields fields("\"a, b\" , c");
    std::string text;
    EXPECT_EQ(fields.nextText(text), kvo::Field::Value);
    EXPECT_EQ(text, "a, b");
    EXPECT_EQ(fields.nextText(text), kvo::Field::Value);
    EXPECT_EQ(text, "c");
}

class DeckLinesTest : public ImportTest
{
protected:
    // "LINE:text" for every line, following "include X".
    std::vector<std::string> lines(const std::string& file)
    {
        kvo::DeckLines deck(file, {});
        std::vector<std::string> result;
        std::string_view line;
        while (deck.next(line)) {
            result.push_back(std::to_string(deck.lineNumber()) + ":" + std::string(line));
            if (line.rfind("include ", 0) == 0) {
                deck.include(std::string(line.substr(8)));
            }
        }
        return result;
    }
};

using Lines = std::vector<std::string>;

TEST_F(DeckLinesTest, LineEndsOfAllKinds)
{
    EXPECT_EQ(lines(write("a", "one\r\ntwo\n\nfour")), (Lines{"1:one", "2:two", "3:", "4:four"}));
    EXPECT_EQ(lines(write("a", "one\n")), (Lines{"1:one"}));
    EXPECT_EQ(lines(write("a", "\r\n")), (Lines{"1:"}));
    EXPECT_EQ(lines(write("a", "")), Lines{});
}

TEST_F(DeckLinesTest, IncludesGoOnInTheOtherFileAndComeBack)
{
    write("sub/b", "b1\ninclude c\nb3");
    write("sub/c", "c1");
    EXPECT_EQ(lines(write("a", "a1\ninclude sub/b\na3\n")),
              (Lines{"1:a1", "2:include sub/b", "1:b1", "2:include c", "1:c1", "3:b3", "3:a3"}));
}

TEST_F(DeckLinesTest, AnIncludedFileFindsFilesNextToTheTopFileToo)
{
    write("sub/b", "include other");
    write("other", "found");
    EXPECT_EQ(lines(write("a", "include sub/b\n")), (Lines{"1:include sub/b", "1:include other", "1:found"}));
}

TEST_F(DeckLinesTest, TheSameFileMayBeIncludedTwice)
{
    write("b", "b1");
    EXPECT_EQ(lines(write("a", "include b\ninclude b\n")), (Lines{"1:include b", "1:b1", "2:include b", "1:b1"}));
}

TEST_F(DeckLinesTest, AFileThatIncludesItselfIsAnError)
{
    write("b", "include sub/../a");
    write("sub/x", "");
    try {
        lines(write("a", "first\ninclude b\n"));
        FAIL() << "no error";
    } catch (const kvo::ImportError& error) {
        EXPECT_EQ(error.place.line, 1u);
        EXPECT_EQ(error.place.file, path("b"));
        EXPECT_TRUE(contains(error.message, "included by itself")) << error.message;
    }
}

TEST_F(DeckLinesTest, FilesThatIncludeEachOtherManyTimesComeToAnEnd)
{
    // 2^40 lines if nobody counted.
    for (int k = 0; k < 40; ++k) {
        const std::string next = "include f" + std::to_string(k + 1) + "\n";
        write("f" + std::to_string(k), next + next);
    }
    write("f40", "");
    EXPECT_THROW(lines(path("f0")), kvo::ImportError);
}

TEST_F(DeckLinesTest, AMissingFileIsAnErrorThatNamesTheInclude)
{
    try {
        lines(write("a", "1\n2\ninclude nowhere.inp\n"));
        FAIL() << "no error";
    } catch (const kvo::ImportError& error) {
        EXPECT_EQ(std::string(error.what()), path("a") + ":3: included file \"nowhere.inp\" not found");
    }
}

TEST_F(DeckLinesTest, ALineGivenBackComesAgainWithItsNumber)
{
    kvo::DeckLines deck(write("a", "one\ntwo"), {});
    std::string_view line;
    deck.next(line);
    deck.next(line);
    deck.putBack();
    ASSERT_TRUE(deck.next(line));
    EXPECT_EQ(line, "two");
    EXPECT_EQ(deck.lineNumber(), 2u);
    EXPECT_FALSE(deck.next(line));
}

TEST_F(DeckLinesTest, ProgressEndsAtTheTotal)
{
    write("b", std::string(3000000, 'b') + "\n");
    std::uint64_t done = 0;
    std::uint64_t total = 0;
    int calls = 0;
    kvo::DeckLines deck(write("a", std::string(2000000, 'a') + "\ninclude b\n"), [&](std::uint64_t d, std::uint64_t t) {
        EXPECT_GE(d, done);
        done = d;
        total = t;
        ++calls;
    });
    std::string_view line;
    while (deck.next(line)) {
        if (line == "include b") {
            deck.include("b");
        }
    }
    EXPECT_EQ(done, total);
    EXPECT_EQ(total, 5000000u + 12u);
    EXPECT_GE(calls, 3);
}

TEST(IdIndex, GroupsOfIdsFarApart)
{
    std::vector<std::int64_t> ids;
    for (const std::int64_t first : {9000000, 1, 5000001, 5002049}) {
        for (std::int64_t k = 0; k < 2000; ++k) {
            ids.push_back(first + k);
        }
    }
    ids.push_back(7);
    const kvo::IdIndex index(ids);
    for (std::size_t k = 0; k + 1 < ids.size(); ++k) {
        ASSERT_EQ(index.find(ids[k]), ids[k] == 7 ? 8000u : k);
    }
    for (const std::int64_t id : {-1, 0, 2001, 5000000, 5002001, 5002048, 5004049, 8999999, 9002000}) {
        EXPECT_EQ(index.find(id), kvo::IdIndex::none) << id;
    }
}

TEST(IdIndex, IdsAtTheEndsOfTheirRange)
{
    const std::int64_t low = std::numeric_limits<std::int64_t>::min();
    const std::int64_t high = std::numeric_limits<std::int64_t>::max();
    const kvo::IdIndex index({low, high, 0});
    EXPECT_EQ(index.find(low), 0u);
    EXPECT_EQ(index.find(high), 1u);
    EXPECT_EQ(index.find(0), 2u);
    EXPECT_EQ(index.find(1), kvo::IdIndex::none);
    EXPECT_EQ(kvo::IdIndex({high - 1, high}).find(high), 1u);
}

TEST(IdIndex, CloseAndScatteredIds)
{
    const kvo::IdIndex close({5, 3, 4, 9});
    EXPECT_EQ(close.find(3), 1u);
    EXPECT_EQ(close.find(9), 3u);
    EXPECT_EQ(close.find(6), kvo::IdIndex::none);
    EXPECT_EQ(close.find(-1), kvo::IdIndex::none);
    const kvo::IdIndex scattered({1000000000000, 1, 7, 7});
    EXPECT_EQ(scattered.find(1000000000000), 0u);
    EXPECT_EQ(scattered.find(7), 3u) << "the last of equal ids counts";
    EXPECT_EQ(scattered.find(8), kvo::IdIndex::none);
    EXPECT_EQ(kvo::IdIndex().find(0), kvo::IdIndex::none);
}

TEST(ImportLog, FewPerKindInFullAndACount)
{
    kvo::ImportLog log(2);
    for (int k = 1; k <= 5; ++k) {
        log.warn("bad things", {"f.inp", static_cast<std::uint64_t>(k)}, "thing " + std::to_string(k));
    }
    log.note("split");
    log.count("unread", "*X", 2, {"f.inp", 9});
    log.count("unread", "*Y", 1, {"f.inp", 10});
    log.count("unread", "*X", 1, {"f.inp", 11});
    const std::vector<std::string> expected = {"warning: f.inp:1: thing 1",
                                               "warning: f.inp:2: thing 2",
                                               "warning: bad things: 5 in all",
                                               "note: split",
                                               "unread:",
                                               "  *X  3  (first at f.inp:9)",
                                               "  *Y  1  (first at f.inp:10)"};
    EXPECT_EQ(log.lines(), expected);
}
