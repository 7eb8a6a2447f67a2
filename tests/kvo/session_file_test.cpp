// The session format: what parses, what does not, and that written lines read back.
#include "session_file.h"

#include <sstream>

#include <gtest/gtest.h>

#include "caeenv.h"
#include "mtrans.h"
#include "mview.h"
#include "program_error.h"
#include "transformations.h"

using kvo::Operation;
using kvo::Session;
using kvo::Verb;

namespace {

Session parse(const std::string& text)
{
    std::istringstream in(text);
    return kvo::parseSession(in, "s.session");
}

Operation parseOne(const std::string& line)
{
    const Session session = parse(line + "\n");
    EXPECT_EQ(session.operations.size(), 1u) << line;
    return session.operations.empty() ? Operation() : session.operations[0];
}

std::string errorOf(const std::string& text)
{
    try {
        parse(text);
    } catch (const kvo::ProgramError& error) {
        return error.what();
    }
    return "no error";
}

// One line for every verb and every way of writing it, in the form that is written.
const char* const lines[] = {
    "VIEW left",
    "PICK part at 10 20",
    "PICK element at 10.5 20 3",
    "PICK node rect 1 2 30 40",
    "PICK node polygon 1 2 30 40 5 60",
    "PICK element through at 10 20",
    "PICK element through rect 1 2 30 40",
    "PICK part through polygon 1 2 30 40 5 60 7.5 80",
    "SELECT parts 1,3-5",
    "SELECT elements 1-100,205",
    "SELECT elements 7,3:17,20-30,4:1",
    "SELECT nodes 5",
    "CLEAR",
    "CLEAR parts",
    "CLEAR elements",
    "CLEAR nodes",
    "CLEAR highlight",
    "HIGHLIGHT 2",
    "SHOW all",
    "SHOW 1-3",
    "HIDE 4",
    "HIDE all",
    "SHADE flat",
    "SHADE smooth",
    "MODE fill",
    "MODE line",
    "MODE point",
    "SAVE a.state",
    "RESTORE \"with blank.state\"",
    "PICTURE \"#1 \\\"quoted\\\" back\\\\slash.png\"",
};

} // namespace

TEST(SessionFile, EveryLineIsWrittenAsItWasRead)
{
    for (const char* line : lines) {
        EXPECT_EQ(kvo::formatOperation(parseOne(line)), line);
    }
}

TEST(SessionFile, EveryTransformationReadsBackAsWritten)
{
    for (int type = NO_TRANSFORM; type <= TRANS_MAX; ++type) {
        Operation operation;
        operation.code = type;
        const kvo::TransformationName* named = kvo::findTransformation(type);
        ASSERT_NE(named, nullptr) << type;
        for (int k = 0; k < named->count; ++k) {
            operation.values[k] = -0.1f * static_cast<float>(k + 1);
        }
        EXPECT_TRUE(parseOne(kvo::formatOperation(operation)) == operation) << named->name;
    }
}

TEST(SessionFile, NumbersReadBackExactly)
{
    for (float value : {0.1f, 1.0f / 3, 123456.789f, 1e-30f, -3.4e38f, 16777217.0f}) {
        Operation operation;
        operation.code = GLOBAL_SCALE;
        operation.values[0] = value;
        EXPECT_EQ(parseOne(kvo::formatOperation(operation)).values[0], value);
    }
}

TEST(SessionFile, FileNamesOfAnyBytesReadBack)
{
    for (const char* name :
         {"plain", "two words", "tab\tinside", "#hash", "a\"b", "a\\b", "a \\ b", "line\nend", "\""}) {
        Operation operation;
        operation.verb = Verb::Save;
        operation.file = name;
        EXPECT_TRUE(parseOne(kvo::formatOperation(operation)) == operation) << name;
    }
}

TEST(SessionFile, WholeSessionsReadBack)
{
    Session session;
    session.model = "a model";
    session.width = 640;
    session.height = 480;
    for (const char* line : lines) {
        session.operations.push_back(parseOne(line));
    }
    const Session again = parse(kvo::formatSession(session));
    EXPECT_EQ(again.model, session.model);
    EXPECT_EQ(again.width, 640);
    EXPECT_EQ(again.height, 480);
    EXPECT_TRUE(again.operations == session.operations);
}

TEST(SessionFile, FieldsAreWhatTheWordsSay)
{
    const Operation at = parseOne("PICK element at 10 20");
    EXPECT_EQ(at.code, static_cast<int>(PICK_TYPE_ELEMENT));
    EXPECT_EQ(at.shape, kvo::PickShape::Place);
    EXPECT_FALSE(at.through);
    const Operation polygon = parseOne("PICK node through polygon 1 2 30 40 5 60");
    EXPECT_EQ(polygon.shape, kvo::PickShape::Polygon);
    EXPECT_TRUE(polygon.through);
    EXPECT_EQ(polygon.outline, (std::vector<float>{1, 2, 30, 40, 5, 60}));
    EXPECT_EQ(at.values[2], kvo::defaultPickSize);
    const Operation select = parseOne("SELECT elements 7,3:17,20-30");
    ASSERT_EQ(select.ids.size(), 3u);
    EXPECT_FALSE(select.ids[0].ofPart);
    EXPECT_TRUE(select.ids[1].ofPart);
    EXPECT_EQ(select.ids[2].part, 3u); // up to the next part
    EXPECT_EQ(select.ids[2].last, 30u);
    EXPECT_EQ(parseOne("VIEW back").code, BACK_VIEW);
    EXPECT_EQ(parseOne("CLEAR").code, 0);
}

TEST(SessionFile, CommentsBlanksAndWindowsLineEndsCountForNothing)
{
    const Session session = parse("# first\r\n\r\n \t SCALE_INCR \t# second\r\nVIEW top#third\n\n");
    ASSERT_EQ(session.operations.size(), 2u);
    EXPECT_EQ(session.operations[0].line, 3u);
    EXPECT_EQ(session.operations[1].code, TOP_VIEW);
}

TEST(SessionFile, HeadsStandOnceAndFirst)
{
    const Session session = parse("SIZE 640x480\nMODEL ../decks/a.inp\nCLEAR\n");
    EXPECT_EQ(session.model, "../decks/a.inp");
    EXPECT_EQ(session.width, 640);
    EXPECT_EQ(errorOf("CLEAR\nSIZE 1x1\n"), "s.session:2: SIZE must stand before the first operation");
    EXPECT_EQ(errorOf("MODEL a\nMODEL b\n"), "s.session:2: MODEL stands here for the second time");
    EXPECT_EQ(errorOf("SIZE 1x1\nSIZE 1x1\n"), "s.session:2: SIZE stands here for the second time");
    EXPECT_EQ(errorOf("SIZE 640\n"), "s.session:1: \"640\" is no size such as 1280x800");
    EXPECT_EQ(errorOf("SIZE 0x5\n"), "s.session:1: \"0x5\" is no size such as 1280x800");
    EXPECT_EQ(errorOf("MODEL\n"), "s.session:1: MODEL takes one word");
}

TEST(SessionFile, ModelsCountFromTheSession)
{
    Session session;
    session.file = "some/where/a.session";
    EXPECT_EQ(session.modelPath(), "");
    session.model = "../m.inp";
    EXPECT_EQ(session.modelPath(), "some/where/../m.inp");
    session.model = "/abs/m.inp";
    EXPECT_EQ(session.modelPath(), "/abs/m.inp");
}

TEST(SessionFile, WrongWordsAreErrorsWithTheirLine)
{
    const std::string pick =
        "s.session:1: PICK takes part, element or node, [through], then at X Y [SIZE], rect X0 Y0 X1 "
        "Y1 or polygon X Y X Y X Y ...";
    for (const char* line :
         {"PICK", "PICK part", "PICK part near 1 2", "PICK part at 1", "PICK part at 1 2 3 4", "PICK part rect 1 2 3",
          "PICK node rect 1 2 3 4 5", "PICK node through", "PICK through node at 1 2", "PICK node polygon 1 2 3 4"}) {
        EXPECT_EQ(errorOf(line), pick) << line;
    }
    EXPECT_EQ(errorOf("PICK face at 1 2"), "s.session:1: \"face\" is no kind of pick (part, element, node)");
    EXPECT_EQ(errorOf("PICK node polygon 1 2 3 4 5 6 7"), "s.session:1: the last corner of the polygon has no y");
    EXPECT_EQ(errorOf("PICK part at 1 x"), "s.session:1: \"x\" is no number");
    EXPECT_EQ(errorOf("\nSELECT parts"), "s.session:2: SELECT takes parts, elements or nodes and a list of ids, not 1");
    EXPECT_EQ(errorOf("SELECT faces 1"), "s.session:1: \"faces\" is no kind of selection (parts, elements, nodes)");
    EXPECT_EQ(errorOf("SELECT nodes 5-3"), "s.session:1: SELECT: \"5-3\" is neither an id nor a range such as 5-9");
    EXPECT_EQ(errorOf("SELECT parts 1:2"), "s.session:1: SELECT: \"1:2\" is neither an id nor a range such as 5-9");
    EXPECT_EQ(errorOf("CLEAR all"), "s.session:1: \"all\" is no kind of selection (parts, elements, nodes, highlight)");
    EXPECT_EQ(errorOf("HIGHLIGHT all"), "s.session:1: HIGHLIGHT: \"all\" is neither an id nor a range such as 5-9");
    EXPECT_EQ(errorOf("SHADE round"), "s.session:1: \"round\" is no shading (flat, smooth)");
    EXPECT_EQ(errorOf("MODE dots"), "s.session:1: \"dots\" is no mode (fill, line, point)");
    EXPECT_EQ(errorOf("SAVE"), "s.session:1: SAVE takes one file name (in double quotes when it has blanks), not 0");
    EXPECT_EQ(errorOf("PICTURE a b"),
              "s.session:1: PICTURE takes one file name (in double quotes when it has blanks), not 2");
    EXPECT_EQ(errorOf("PICTURE \"\""), "s.session:1: PICTURE: the file name is empty");
    EXPECT_EQ(errorOf("PICTURE \"a b"), "s.session:1: a quotation mark is missing at the end of \"a b");
    EXPECT_EQ(errorOf("PICKS part at 1 2"), "s.session:1: \"PICKS\" is no operation");
}

TEST(SessionFile, ManualsNameEveryOperation)
{
    const std::string text = kvo::describeOperations();
    for (const char* line : lines) {
        EXPECT_NE(text.find("  " + std::string(line).substr(0, std::string(line).find(' ')) + " "), std::string::npos)
            << line;
    }
    for (int type = NO_TRANSFORM; type <= TRANS_MAX; ++type) {
        EXPECT_NE(text.find(std::string("  ") + kvo::findTransformation(type)->name), std::string::npos) << type;
    }
}
