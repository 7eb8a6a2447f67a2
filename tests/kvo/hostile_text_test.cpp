// Names, titles and file names that a terminal would obey.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

#include "mantypes.h"
#include "modelwriter.h"
#include "run_kvo.h"

namespace {

// Sets the title of a window, rings, begins a new line, and moves the cursor in C1's way.
const std::string hostile = "A\x1B]0;owned\a\nB\xC2\x9B"
                            "2JC\x7F";
const std::string shown = "A\\x1B]0;owned\\x07\\x0AB\\xC2\\x9B2JC\\x7F";

bool isHarmless(const std::string& text)
{
    return std::none_of(text.begin(), text.end(), [](unsigned char c) { return (c < 32 && c != '\n') || c == 127; }) &&
           !contains(text, "\xC2\x9B");
}

class HostileText : public testing::Test
{
protected:
    // One square whose part, property and material have that name.
    std::string writeModel() const
    {
        ModelWriter writer(folder.path.string(), "model");
        const unsigned int ids[] = {1, 2, 3, 4};
        const float xyz[] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
        writer.addNodes(4, ids, xyz);
        ModelPart part;
        part.id = 1;
        part.name = part.propertyName = part.materialName = hostile;
        part.drawType = SHELL;
        part.stride = 4;
        const unsigned int element = 7;
        writer.addPart(part, 1, &element, ids, NodeReference::ById);
        std::string error;
        EXPECT_TRUE(writer.write(&error)) << error;
        return folder.file("model");
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(HostileText, TablesShowEscapes)
{
    const std::string model = writeModel();
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"info", model}, {"pick", model, "--at", "640,480", "--type", "element"}}) {
        const KvoRun run = runKvo(words);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_TRUE(contains(run.out, shown)) << run.out;
        EXPECT_TRUE(isHarmless(run.out)) << run.out;
    }
}

TEST_F(HostileText, SessionsPrintEscapes)
{
    const std::string model = writeModel();
    writeText(folder.file("a.session"), "PICK part at 640 480\n");
    const KvoRun run = runKvo({"play", folder.file("a.session"), model});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(contains(run.out, "part 1 " + shown)) << run.out;
    EXPECT_TRUE(isHarmless(run.out));
}

TEST_F(HostileText, JsonKeepsTheNameAndStaysHarmless)
{
    const KvoRun run = runKvo({"info", writeModel(), "--json"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(nlohmann::json::parse(run.out).at("parts").at(0).at("name"), hostile);
    EXPECT_TRUE(isHarmless(run.out)) << run.out;
}

TEST_F(HostileText, DecksAndTheirNamesAreReportedWithEscapes)
{
    const std::string deck = folder.file("d\x1B[2J.inp");
    const std::string out = folder.file("m\x1B[2J");
    writeText(deck,
              "*HEADING\nt\x1B]0;x\a\n*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n*ELEMENT,TYPE=S3,ELSET=E\x1B[2J\n1,1,2,3\n"
              "*ELEMENT,TYPE=W\x1B[2J\n2,1,2,3\n*FROB\x1B[2J\n*SHELL SECTION,ELSET=NONE\x1B[2J\n1\n");
    const std::string log = folder.file("log");
    for (const std::vector<std::string>& words : {std::vector<std::string>{"import", deck, "-o", out},
                                                  {"import", deck, "-o", out, "--log", log},
                                                  {"info", deck, "--sets"},
                                                  {"info", deck + "x"},
                                                  {"info", deck, "--fr\x1B[2J"}}) {
        const KvoRun run = runKvo(words);
        EXPECT_TRUE(isHarmless(run.out)) << words[0] << ": " << run.out;
        EXPECT_TRUE(isHarmless(run.err)) << words[0] << ": " << run.err;
        EXPECT_TRUE(contains(run.out + run.err, "\\x1B[2J")) << words[0];
    }
    EXPECT_TRUE(contains(readText(log), "W\\x1B[2J"));
    EXPECT_TRUE(isHarmless(readText(log)));
}
