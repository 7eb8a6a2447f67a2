// Usage: exit statuses, messages, manuals.
#include <cctype>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

#include "run_kvo.h"
#include "sample_deck.h"

namespace {

// Every wrong command line says why on standard error, in one line that begins "kvo: ", and exits with 2.
void expectUsageError(const std::vector<std::string>& arguments, const std::string& part)
{
    const KvoRun run = runKvo(arguments);
    EXPECT_EQ(run.status, 2) << run.err;
    EXPECT_EQ(run.err.rfind("kvo: ", 0), 0u) << run.err;
    EXPECT_TRUE(contains(run.err, part)) << run.err;
    EXPECT_EQ(run.out, "");
}

} // namespace

TEST(CommandLine, NeedsACommand)
{
    expectUsageError({}, "subcommand");
    expectUsageError({"paint"}, "unknown command paint; see kvo --help");
    expectUsageError({""}, "unknown command \"\"");
}

TEST(CommandLine, MistypedWordsAreToldWithWhatWasMeant)
{
    const struct
    {
        std::vector<std::string> words;
        const char* message;
    } rows[] = {
        {{"rendr"}, "unknown command rendr; did you mean render?"},
        {{"pcik", "model"}, "unknown command pcik; did you mean pick?"},
        {{"render", "a", "-o", "b", "--sectoin", "x=..1"}, "unknown option --sectoin; did you mean --section?"},
        {{"render", "a", "--siez=80x60"}, "unknown option --siez; did you mean --size?"},
        {{"render", "a", "-size", "80x60"}, "unknown option -size; did you mean --size?"},
        {{"render", "a", "--ghost"}, "unknown option --ghost; did you mean --ghosts?"},
        {{"render", "a", "--select", "3"},
         "unknown option --select; did you mean --select-elements, --select-nodes or --select-parts?"},
        {{"import", "a", "--fromat", "stl"}, "unknown option --fromat; did you mean --format?"},
        {{"--versoin"}, "unknown option --versoin; did you mean --version?"},
        {{"render", "a", "--xyzzy"}, "unknown option --xyzzy; see kvo render --help"},
        {{"render", "a", "-z"}, "unknown option -z; see kvo render --help"},
        {{"-z"}, "unknown option -z; see kvo --help"},
        {{"render", "a", "-o=b.png"}, "-o=b.png: write -o b.png"},
    };
    for (const auto& row : rows) {
        const KvoRun run = runKvo(row.words);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err, std::string("kvo: ") + row.message + "\n");
        EXPECT_EQ(run.out, "");
    }
}

// What looks like an option but is the value of one, or stands behind "--", is not looked at.
TEST(CommandLine, NumbersAndFileNamesAreNoOptions)
{
    const TemporaryFolder folder;
    writeText(folder.file("a.inp"), sampleDeck());
    const KvoRun outside = runKvo({"pick", folder.file("a.inp"), "--type", "part", "--at", "-5,3"});
    EXPECT_TRUE(contains(outside.err, "the place -5,3 is outside the picture")) << outside.err;
    EXPECT_TRUE(contains(runKvo({"info", "--", "--sectoin"}).err, "--sectoin: No such file or directory"));
}

TEST(CommandLine, UnknownOptionsAreUsageErrors)
{
    expectUsageError({"info", "model", "--colour"}, "--colour");
    expectUsageError({"import", "a.inp", "b.inp", "-o", "x"}, "b.inp");
}

TEST(CommandLine, MissingArgumentsAreUsageErrors)
{
    expectUsageError({"import", "a.inp"}, "--output");
    expectUsageError({"render", "a.inp"}, "--output");
    expectUsageError({"info"}, "model");
}

TEST(CommandLine, BadValuesAreUsageErrors)
{
    const TemporaryFolder folder;
    writeText(folder.file("a.inp"), sampleDeck());
    const std::string deck = folder.file("a.inp"), picture = folder.file("a.png");
    expectUsageError({"render", deck, "-o", picture, "--view", "side"}, "--view");
    expectUsageError({"render", deck, "-o", picture, "--shade", "matt"}, "--shade");
    expectUsageError({"render", deck, "-o", picture, "--mode", "cube"}, "--mode");
    for (const char* size : {"640", "640x", "x480", "0x10", "640x480x2", "-5x5", "640x480 "}) {
        expectUsageError({"render", deck, "-o", picture, "--size", size}, size);
    }
    for (const char* color : {"red", "#12345", "#12345g", "123456", "#1234567"}) {
        expectUsageError({"render", deck, "-o", picture, "--background", color}, color);
    }
    for (const char* ids : {"a", "1,", ",1", "5-2", "1-", "-3", "1 2", "4294967296", "1--2"}) {
        expectUsageError({"render", deck, "-o", picture, std::string("--parts=") + ids}, "--parts");
    }
    for (const char* samples : {"0", "3", "5", "32", "64", "-1", "4.5", "many"}) {
        expectUsageError({"render", deck, "-o", picture, "--samples", samples}, "--samples");
    }
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.inp"});
}

namespace {

// The options of a command that take a value, from its manual.
std::vector<std::string> valuedOptions(const std::string& command)
{
    std::vector<std::string> out;
    std::istringstream manual(runKvo({command, "--help"}).out);
    for (std::string line; std::getline(manual, line);) {
        if (line.size() > 1 && std::isupper(line[0]) && std::isupper(line[1])) {
            break; // the first heading of the text below
        }
        const std::size_t at = line.find("--"), blank = line.find(' ', at);
        // "  -o,--output OUT.png REQUIRED" and "    --style TEXT:{...}" against "  --ghosts      Hidden parts stay"
        if (at < 8 && line.find_first_not_of(" -,o") >= at + 2 && blank != std::string::npos &&
            line[blank + 1] != ' ') {
            out.push_back(line.substr(at, blank - at));
        }
    }
    return out;
}

} // namespace

TEST(CommandLine, NoOptionTakesAnEmptyValue)
{
    const std::map<std::string, std::size_t> least = {{"import", 3}, {"render", 30}, {"pick", 24}, {"play", 19}};
    for (const auto& entry : least) {
        const std::vector<std::string> options = valuedOptions(entry.first);
        EXPECT_GE(options.size(), entry.second) << entry.first;
        for (const std::string& option : options) {
            EXPECT_EQ(runKvo({entry.first, "model", option, ""}).err, "kvo: " + option + ": the value is empty\n");
            EXPECT_EQ(runKvo({entry.first, "model", option + "="}).err, "kvo: " + option + ": the value is empty\n");
            EXPECT_EQ(runKvo({entry.first, "model", option}).err, "kvo: " + option + " needs a value\n");
        }
    }
    expectUsageError({"render", "", "-o", "a.png"}, "a word of the command line is empty");
    expectUsageError({"pick", "a", "--type", "part", "--polygon", "1,1", "", "5,5"}, "is empty");
}

// Options whose values make no sense, alone or together. Rows say what the message has to name.
TEST(CommandLine, ValuesThatSayNothingAreUsageErrors)
{
    const TemporaryFolder folder;
    const std::string deck = folder.file("a.inp"), picture = folder.file("a.png"), session = folder.file("s");
    writeText(deck, sampleDeck());
    writeText(session, "VIEW top\n");
    const struct
    {
        std::vector<std::string> options;
        std::vector<std::string> named;
    } rows[] = {
        // Empty entries of lists.
        {{"--edges", "feature,,free"}, {"--edges", "\"feature,,free\""}},
        {{"--edges", ","}, {"--edges", "\",\""}},
        {{"--edges", "free,"}, {"--edges", "\"free,\""}},
        {{"--labels", ",,"}, {"--labels", "\",,\""}},
        {{"--labels", ",parts"}, {"--labels", "\",parts\""}},
        {{"--parts", ","}, {"--parts"}},
        {{"--hide", "1,,2"}, {"--hide"}},
        {{"--highlight", ",,"}, {"--highlight"}},
        {{"--select-parts", "1,"}, {"--select-parts"}},
        {{"--select-elements", "3:"}, {"--select-elements", "3:"}},
        {{"--select-nodes", ":5"}, {"--select-nodes", ":5"}},
        {{"--transparent", "=0.5"}, {"--transparent"}},
        {{"--transparent", "1,=0.5"}, {"--transparent"}},
        // Numbers that are none, or too large.
        {{"--size", "0x0"}, {"--size", "0x0"}},
        {{"--size", "nanx5"}, {"--size", "nanx5"}},
        {{"--size", "999999x999999"}, {"--size", "999999x999999"}},
        {{"--size", "80x-60"}, {"--size", "80x-60"}},
        {{"--feature-angle", "inf"}, {"--feature-angle", "inf"}},
        {{"--feature-angle", "1e99"}, {"--feature-angle", "1e99"}},
        {{"--feature-angle", "30,"}, {"--feature-angle", "30,"}},
        {{"--parts", "99999999999999999999"}, {"--parts", "99999999999999999999"}},
        {{"--section", "x=inf.."}, {"--section", "x=inf.."}},
        {{"--section", "x=1e999.."}, {"--section", "x=1e999.."}},
        {{"--section", "1,2,3,,5,6"}, {"--section", "1,2,3,,5,6"}},
        {{"--section", "1,2,3,4,5,6,"}, {"--section", "1,2,3,4,5,6,"}},
        {{"--section", "nan,0,0,1,0,0"}, {"--section", "nan,0,0,1,0,0"}},
        {{"--color-by", "quality:skew", "--color-range", "nan,1"}, {"--color-range", "nan,1"}},
        {{"--color-by", "quality:skew", "--color-range", "1,inf"}, {"--color-range", "1,inf"}},
        {{"--color-by", "quality:skew", "--color-range", ","}, {"--color-range", "\",\""}},
        {{"--color-by", "quality:skew", "--color-bands", "-1"}, {"--color-bands", "-1"}},
        {{"--color-by", "quality:skew", "--color-bands", "65"}, {"--color-bands", "65"}},
        {{"--color-by", "quality:skew", "--color-bands", "2.5"}, {"--color-bands", "2.5"}},
        {{"--color-by", "quality:skew", "--color-bands", "1"}, {"--color-bands", "1 step"}},
        {{"--background", "#"}, {"--background", "\"#\""}},
        // Twice.
        {{"--size", "80x60", "--size", "80x60"}, {"--size", "more than once"}},
        {{"--view", "top", "--view=iso"}, {"--view", "more than once"}},
        {{"--hide", "1", "--hide", "2"}, {"--hide", "more than once"}},
        {{"--section", "x=..1", "--section", "y=..1"}, {"--section", "more than once"}},
        // Against each other, or without what they are about.
        {{"--section-mode", "open"}, {"--section-mode needs --section"}},
        {{"--color-bands", "4"}, {"--color-bands needs --color-by quality:NAME"}},
        {{"--color-by", "kind", "--color-bands", "4"}, {"--color-bands needs --color-by quality:NAME"}},
        {{"--color-ramp", "gray"}, {"--color-ramp needs --color-by quality:NAME"}},
        {{"--color-by", "part", "--color-range", "1,2"}, {"--color-range needs --color-by quality:NAME"}},
        {{"--mode", "line", "--style", "wire"}, {"--mode line", "--style wire"}},
        {{"--style", "edges", "--mode", "point"}, {"--mode point", "--style edges"}},
        {{"--contract", "--labels", "parts"}, {"--labels", "--contract"}},
        {{"--view", "all", "--state", "x"}, {"--view all", "--state"}},
    };
    for (const auto& row : rows) {
        std::vector<std::string> words = {"render", deck, "-o", picture};
        words.insert(words.end(), row.options.begin(), row.options.end());
        for (const std::string& named : row.named) {
            expectUsageError(words, named);
        }
    }
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.inp", "s"}));
}

TEST(CommandLine, WhatGoesTogetherIsNoError)
{
    const TemporaryFolder folder;
    const std::string deck = folder.file("a.inp"), picture = folder.file("a.png");
    writeText(deck, sampleDeck());
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{"--edges", "free", "--edges", "feature,free"},
          {"--transparent", "1", "--transparent", "2=0.5"},
          {"--mode", "fill", "--style", "wire"},
          {"--mode", "line", "--style", "shaded"},
          {"--ghosts", "--ghosts", "--no-legend"},
          {"--color-by", "quality:skew", "--color-bands", "0"},
          {"--log", folder.file("log"), "--save-state", folder.file("state")},
          {"--state", folder.file("state"), "--save-state", folder.file("state")}}) {
        std::vector<std::string> words = {"render", deck, "-o", picture, "--size", "40x30", "--device", "software"};
        words.insert(words.end(), options.begin(), options.end());
        const KvoRun run = runKvo(words);
        EXPECT_EQ(run.status, 0) << options[0] << " " << run.err;
    }
}

TEST(CommandLine, PicturesArePngFiles)
{
    const TemporaryFolder folder;
    const std::string deck = folder.file("a.inp"), session = folder.file("s");
    writeText(deck, sampleDeck());
    writeText(session, "VIEW top\n");
    for (const char* ending : {".jpg", ".JPEG", ".tiff", ".svg", ".gif", ".webp", ".pdf"}) {
        const std::string file = folder.file(std::string("a") + ending);
        const std::string message = "--output: \"" + file + "\" does not end in .png, and pictures are PNG files";
        expectUsageError({"render", deck, "-o", file}, message);
        expectUsageError({"play", session, deck, "-o", file}, message);
    }
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.inp", "s"}));
    for (const char* name : {"a", "b.PNG", "c.1", "jpg"}) {
        EXPECT_EQ(runKvo({"render", deck, "-o", folder.file(name), "--size", "30x30", "--device", "software"}).status,
                  0);
        EXPECT_EQ(readText(folder.file(name)).compare(1, 3, "PNG"), 0) << name;
    }
    writeText(session, "VIEW top\nPICTURE a.jpg\n");
    const KvoRun run = runKvo({"play", session, deck});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "kvo: " + session + ":2: PICTURE: \"a.jpg\" does not end in .png, and pictures are PNG files\n");
}

TEST(CommandLine, NothingIsWrittenOverWhatIsRead)
{
    const TemporaryFolder folder;
    const std::string deck = folder.file("a.inp"), session = folder.file("s"), state = folder.file("state");
    const std::string detour = folder.file("../" + folder.path.filename().string() + "/a.inp");
    writeText(deck, sampleDeck());
    writeText(session, "VIEW top\n");
    writeText(state, "state");
    std::filesystem::create_hard_link(deck, folder.file("link"));
    const struct
    {
        std::vector<std::string> words;
        const char* message;
    } rows[] = {
        {{"import", deck, "-o", detour}, "is also the deck"},
        {{"import", deck, "-o", folder.file("m"), "--log", deck}, "is also the deck"},
        {{"import", deck, "-o", folder.file("m"), "--log", folder.file("m")}, "is also --output"},
        {{"render", deck, "-o", deck}, "--output: "},
        {{"render", deck, "-o", folder.file("link")}, "is also the model"},
        {{"render", deck, "-o", folder.file("p"), "--log", detour}, "is also the model"},
        {{"render", deck, "-o", folder.file("p"), "--save-state", folder.file("p")}, "is also --output"},
        {{"render", deck, "-o", session, "--ops", session}, "is also --ops"},
        {{"render", deck, "-o", state, "--state", state}, "is also --state"},
        {{"pick", deck, "--type", "part", "--at", "1,1", "--log", deck}, "--log: "},
        {{"play", session, deck, "-o", session}, "is also the session"},
        {{"play", session, deck, "--log", deck}, "is also the model"},
    };
    for (const auto& row : rows) {
        expectUsageError(row.words, row.message);
    }
    EXPECT_EQ(readText(deck), sampleDeck());
    EXPECT_EQ(readText(session), "VIEW top\n");
    EXPECT_EQ(readText(state), "state");
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.inp", "link", "s", "state"}));
}

TEST(CommandLine, VersionIsPrinted)
{
    const KvoRun run = runKvo({"--version"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.rfind("kvo ", 0), 0u) << run.out;
}

TEST(CommandLine, HelpIsAManual)
{
    const KvoRun all = runKvo({"--help"});
    EXPECT_EQ(all.status, 0);
    for (const char* part : {"EXAMPLES", "EXIT STATUS", "import", "info", "render"}) {
        EXPECT_TRUE(contains(all.out, part)) << part;
    }
    const KvoRun render = runKvo({"render", "--help"});
    EXPECT_EQ(render.status, 0);
    EXPECT_FALSE(contains(render.out, "EXIT STATUS")); // the program's manual, not the command's
    for (const char* part : {"--view", "--ops", "START_RUBBER_BAND X0 Y0 X1 Y1", "software", "EXAMPLES", "DEVICES"}) {
        EXPECT_TRUE(contains(render.out, part)) << part;
    }
    EXPECT_TRUE(contains(runKvo({"import", "--help"}).out, ".inp"));
    EXPECT_TRUE(contains(runKvo({"info", "--help"}).out, "elements_by_kind"));
}
