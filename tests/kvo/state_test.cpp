// View states: saving, restoring, and what is refused.
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "mview.h"
#include "partstr.h"
#include "picture.h"
#include "program_error.h"
#include "run_kvo.h"
#include "sample_deck.h"
#include "small_decks.h"
#include "state_bytes.h"

namespace {

class State : public testing::Test
{
protected:
    State() { writeText(deck(), sampleDeck()); }

    std::string deck() const { return folder.file("sample.inp"); }
    std::string state() const { return folder.file("a.state"); }
    std::string picture() const { return folder.file("a.png"); }

    KvoRun render(std::vector<std::string> more, const std::string& model = "")
    {
        more.insert(more.begin(), {"render", model.empty() ? deck() : model, "-o", picture(), "--size", "120x90",
                                   "--samples", "1", "--device", "software"});
        return runKvo(more);
    }

    kvo::Picture draw(const std::vector<std::string>& more, const std::string& model = "")
    {
        const KvoRun done = render(more, model);
        EXPECT_EQ(done.status, 0) << done.err;
        return kvo::readPng(picture());
    }

    // The message after the file's name.
    std::string refusal(const std::string& bytes, const std::string& model = "")
    {
        writeText(state(), bytes);
        std::filesystem::remove(picture());
        const KvoRun done = render({"--state", state()}, model);
        EXPECT_EQ(done.status, 1);
        EXPECT_EQ(done.out, "");
        EXPECT_FALSE(std::filesystem::exists(picture()));
        const std::string place = "kvo: " + state() + ": ";
        EXPECT_EQ(done.err.rfind(place, 0), 0u) << done.err;
        return done.err.substr(std::min(place.size(), done.err.size()));
    }

    std::string savedBytes()
    {
        draw({"--save-state", state()});
        return readText(state());
    }

    TemporaryFolder folder;
};

std::size_t differing(const kvo::Picture& a, const kvo::Picture& b)
{
    return kvo::compare(a, b).differing;
}

template <class Number> void put(std::string& bytes, std::size_t offset, Number value)
{
    ASSERT_LE(offset + sizeof value, bytes.size());
    std::memcpy(&bytes[offset], &value, sizeof value);
}

const char* const elaborate = "VIEW left\nGLOBAL_ROTATION 40 40 70 55\nSCALE_INCR\nGLOBAL_TRANSLATION 9 5 120 90\n"
                              "ROTATE_Z_CW\nHIDE 2\nSELECT parts 3\nHIGHLIGHT 4\nMODE line\nSHADE flat\nNO_TRANSFORM\n";

} // namespace

// --- Saving and restoring ---

TEST_F(State, AViewThatCouldNotBeRestoredIsNotSaved)
{
    writeText(folder.file("ops"), "GLOBAL_ROTATION 3e38 0 1 1\nNO_TRANSFORM\n");
    writeText(state(), "what was there");
    const KvoRun done = render({"--contract", "--ops", folder.file("ops"), "--save-state", state()});
    EXPECT_EQ(done.status, 1);
    EXPECT_TRUE(contains(done.err, state() + ": cannot be written (this view could not be restored: byte "))
        << done.err;
    EXPECT_EQ(readText(state()), "what was there");
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.state", "ops", "sample.inp"}));
}

TEST_F(State, ARestoredStateDrawsTheSavedPicture)
{
    writeText(folder.file("ops"), elaborate);
    const kvo::Picture saved = draw({"--ops", folder.file("ops"), "--save-state", state()});
    EXPECT_GT(differing(saved, draw({})), 500u);
    EXPECT_LT(differing(saved, draw({"--state", state()})), 100u); // lines may move by a pixel: a state has floats
}

TEST_F(State, NormalsOfTheOtherShadingAreComputedAnew)
{
    // A state has floats, and the vault has normals across the iso view's line of sight, whose lit side they decide.
    const auto same = [](const kvo::Picture& a, const kvo::Picture& b) { return differing(a, b) < 200; };
    for (const std::vector<std::string>& way : {std::vector<std::string>{}, {"--contract"}, {"--light", "contract"}}) {
        const auto picture = [&](std::vector<std::string> options) {
            options.insert(options.end(), way.begin(), way.end());
            return draw(options);
        };
        for (const char* shade : {"flat", "smooth"}) {
            const kvo::Picture saved = picture({"--shade", shade, "--save-state", state()});
            for (const char* now : {"flat", "smooth"}) {
                EXPECT_TRUE(same(picture({"--state", state(), "--shade", now}), picture({"--shade", now})))
                    << shade << " " << now;
            }
            EXPECT_TRUE(same(picture({"--state", state()}), saved)) << shade;
        }
    }
}

TEST_F(State, TheCommandLineWinsOverTheState)
{
    draw({"--view", "left", "--mode", "line", "--hide", "1", "--save-state", state()});
    const kvo::Picture front = draw({"--view", "front", "--hide", "1"});
    EXPECT_EQ(differing(draw({"--state", state(), "--view", "front", "--mode", "fill"}), front), 0u);
    const kvo::Picture one = draw({"--view", "left", "--mode", "line", "--parts", "3"});
    EXPECT_LT(differing(draw({"--state", state(), "--parts", "3", "--fit", "visible"}), one), 60u);
    // --hide takes from what the state shows.
    const kvo::Picture two = draw({"--view", "left", "--mode", "line", "--hide", "1-2"});
    EXPECT_LT(differing(draw({"--state", state(), "--hide", "2", "--fit", "visible"}), two), 60u);
}

TEST_F(State, SizeIsThatOfTheFormat)
{
    const std::string bytes = savedBytes();
    const std::string directory = std::filesystem::canonical(folder.path).string();
    EXPECT_EQ(bytes.size(), 504 + directory.size() + std::string("sample.inp").size() + 20 * 6);
    EXPECT_EQ(bytes.substr(4, directory.size()), directory);
    EXPECT_EQ(bytes.substr(8 + directory.size(), 10), "sample.inp");
}

TEST_F(State, ModelDirectoriesKeepTheirOwnName)
{
    const std::string model = folder.file("model");
    ASSERT_EQ(runKvo({"import", deck(), "-o", model}).status, 0);
    const kvo::Picture saved = draw({"--view", "back", "--save-state", state()}, model);
    EXPECT_EQ(readText(state()).size(), 504 + std::filesystem::canonical(folder.path).string().size() + 5 + 20 * 6);
    EXPECT_EQ(differing(draw({"--state", state()}, model), saved), 0u);
    // The same folder by another way.
    std::filesystem::create_directory_symlink(folder.path, folder.file("link"));
    EXPECT_EQ(differing(draw({"--state", state()}, folder.file("link/model")), saved), 0u);
    // The deck is another model than its import.
    EXPECT_TRUE(contains(refusal(readText(state())), "this is a state of the model"));
}

TEST_F(State, PicksBeginWithAState)
{
    draw({"--parts", "3", "--view", "left", "--save-state", state()});
    const KvoRun done = runKvo({"pick", deck(), "--state", state(), "--size", "120x90", "--at", "60,45", "--type",
                                "part", "--device", "software"});
    EXPECT_EQ(done.status, 0) << done.err;
    EXPECT_TRUE(contains(done.out, "BLOCK")) << done.out;
}

TEST_F(State, AnUnwritableStateIsAnErrorThatNamesIt)
{
    const std::string file = folder.file("no/a.state");
    const KvoRun done = render({"--save-state", file});
    EXPECT_EQ(done.status, 1);
    EXPECT_EQ(done.err, "kvo: " + file + ": cannot be written (No such file or directory)\n");
    EXPECT_FALSE(std::filesystem::exists(picture()));
}

TEST_F(State, AnOldStateIsReplacedWholeAndNothingElseStays)
{
    savedBytes();
    draw({"--view", "top", "--save-state", state()});
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.png", "a.state", "sample.inp"}));
    std::filesystem::create_directory(folder.file("folder"));
    EXPECT_EQ(render({"--save-state", folder.file("folder")}).status, 1);
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.png", "a.state", "folder", "sample.inp"}));
}

TEST_F(State, AllViewsHaveNoState)
{
    savedBytes();
    EXPECT_EQ(render({"--view", "all", "--state", state()}).status, 2);
    EXPECT_EQ(render({"--view", "all", "--save-state", state()}).status, 2);
}

// --- What is refused ---

TEST_F(State, MissingStatesAndFoldersAreErrors)
{
    std::filesystem::remove(state());
    const KvoRun done = render({"--state", state()});
    EXPECT_EQ(done.err, "kvo: " + state() + ": cannot be opened (No such file or directory)\n");
    EXPECT_EQ(render({"--state", folder.path.string()}).err,
              "kvo: " + folder.path.string() + ": is a directory, not a view state\n");
}

TEST_F(State, AStateOfAnotherModelIsRefused)
{
    const std::string bytes = savedBytes();
    const std::string other = folder.file("other.inp");
    writeText(other, sampleDeck());
    const std::string directory = std::filesystem::canonical(folder.path).string();
    EXPECT_EQ(refusal(bytes, other), "byte 0: this is a state of the model " + directory + "/sample.inp, not of " +
                                         directory + "/other.inp\n");
    std::filesystem::create_directory(folder.file("elsewhere"));
    writeText(folder.file("elsewhere/sample.inp"), sampleDeck());
    EXPECT_TRUE(contains(refusal(bytes, folder.file("elsewhere/sample.inp")), "not of " + directory + "/elsewhere/"));
}

TEST_F(State, AStateOfMoreOrFewerPartsIsRefused)
{
    const std::string bytes = savedBytes();
    writeText(deck(), squaresDeck({{0, 0, 0}}));
    EXPECT_TRUE(contains(refusal(bytes), "the file goes on with 100 bytes; a state has")) << refusal(bytes);
    writeText(deck(), squaresDeck(std::vector<Square>(9, Square{0, 0, 0})));
    EXPECT_TRUE(contains(refusal(bytes), "byte " + std::to_string(bytes.size()) + ": the file ends here; a state has"));
    EXPECT_TRUE(contains(refusal(bytes), "for a model of 9 parts"));
}

TEST_F(State, TruncatedAndLongerFilesAreRefused)
{
    const std::string bytes = savedBytes();
    const std::string size = std::to_string(bytes.size());
    EXPECT_EQ(refusal(""), "byte 0: the file ends here\n");
    EXPECT_TRUE(contains(refusal(bytes.substr(0, bytes.size() - 1)),
                         "the file ends here; a state has " + size + " bytes for a model of 6 parts"));
    EXPECT_TRUE(contains(refusal(bytes + "x"), "byte " + size + ": the file goes on with 1 byte; "));
    EXPECT_TRUE(contains(refusal(bytes + std::string(1000000, 'x')), "is no view state of this model"));
    EXPECT_TRUE(contains(refusal(std::string(600, '\xff')), "byte 0: a name of 4294967295 bytes"));
}

// Every length, every kind of damage: the check alone.
class StateCheck : public State
{
protected:
    StateCheck() : whole(savedBytes())
    {
        labels.directory = std::filesystem::canonical(folder.path).string();
        labels.model = "sample.inp";
        body = 8 + labels.directory.size() + labels.model.size();
    }

    std::string check(const std::string& bytes)
    {
        writeText(state(), bytes);
        try {
            kvo::StateBytes(state(), 6).check(labels);
        } catch (const kvo::ProgramError& error) {
            return std::string(error.what()).substr(state().size() + 2);
        }
        return "fits";
    }

    template <class Number> std::string checkWith(std::size_t offset, Number value)
    {
        std::string bytes = whole;
        put(bytes, offset, value);
        return check(bytes);
    }

    std::string place(std::size_t offset) const { return "byte " + std::to_string(offset) + ": "; }

    std::string whole;
    std::size_t body; // offset of the first part
    kvo::ModelLabels labels;
};

TEST_F(StateCheck, NoShorterFileFits)
{
    EXPECT_EQ(check(whole), "fits");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_TRUE(contains(check(whole.substr(0, length)), "the file ends")) << length;
    }
}

TEST_F(StateCheck, FlagsThatNoPartHasAreNamed)
{
    const std::string wrong = "the flags of part number 3 are none that a part can have";
    const std::size_t offset = body + 2 * 20;
    for (std::uint32_t flags : {0u, PART_SHOWN | PART_HIDDEN, PART_SHOWN | 1u, PART_SHOWN | 0x80000000u, 0xffffffffu}) {
        EXPECT_EQ(checkWith(offset, flags), place(offset) + wrong) << flags;
    }
    for (std::uint32_t flags : {PART_SHOWN, PART_HIDDEN, PART_SHOWN | PART_SELECTED | PART_BOX_SHOWN}) {
        EXPECT_EQ(checkWith(offset, flags), "fits") << flags;
    }
}

TEST_F(StateCheck, DamagedFieldsAreNamedWithTheirPlace)
{
    const float noNumber = std::numeric_limits<float>::quiet_NaN();
    const double noDouble = std::numeric_limits<double>::infinity();
    const std::size_t drawing = body + 6 * 20, view = drawing + 16, trans = drawing + 20;
    EXPECT_EQ(checkWith(body + 8, noNumber), place(body + 8) + "a part's colour is no number");
    EXPECT_EQ(checkWith(drawing, 7), place(drawing) + "the shading is neither flat nor smooth");
    EXPECT_EQ(checkWith(drawing + 4, 2), place(drawing + 4) + "blending is neither on nor off");
    for (std::size_t side : {8, 12}) {
        EXPECT_EQ(checkWith(drawing + side, 3),
                  place(drawing + side) + "the drawing mode is neither points, lines nor faces");
    }
    EXPECT_EQ(checkWith(view, 8), place(view) + "there is no standard view 8");
    EXPECT_EQ(checkWith(view, -1), place(view) + "there is no standard view -1");
    EXPECT_EQ(checkWith(view, static_cast<int>(NO_VIEW)), "fits");
    EXPECT_EQ(checkWith(trans, 2), place(trans) + "the depth test is neither on nor off");
    EXPECT_EQ(checkWith(trans + 4 + 8 * 4, noNumber), place(trans + 36) + "a translation or rotation is no number");
    for (float scale : {0.0f, -1.0f, noNumber}) {
        EXPECT_EQ(checkWith(trans + 40 + 4, scale), place(trans + 44) + "a scale is not more than 0");
    }
    EXPECT_EQ(checkWith(trans + 52 + 3 * 128 + 16, noDouble),
              place(trans + 452) + "a matrix or the pivot is no number");
    EXPECT_EQ(checkWith(trans + 460 + 12, 3.0f), place(trans + 460) + "the rotation is no unit quaternion");
    EXPECT_EQ(checkWith(trans + 460, noNumber), place(trans + 460) + "the rotation is no number");
}
