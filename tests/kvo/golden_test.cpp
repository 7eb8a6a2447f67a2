// Pictures against references.
//
// Tolerance: a channel may differ by 8 levels, and one pixel in 200 by more. Mesa's processor driver rounds lighting
// and edges differently between versions and between vector widths of processors; that moves levels by a few, and
// pixels on edges of faces by one place. Anything that a person would notice is more: the smallest part of the sample
// covers over one per cent of the picture.
#include <filesystem>
#include <stdexcept>

#include <gtest/gtest.h>

#include "golden_scenes.h"
#include "picture.h"
#include "run_kvo.h"

namespace {

const int levelTolerance = 8;
const double pixelTolerance = 1.0 / 200;

bool agree(const kvo::PictureDifference& difference)
{
    const double pixels = static_cast<double>(difference.picture.width) * difference.picture.height;
    return difference.sameSize && static_cast<double>(difference.differing) <= pixelTolerance * pixels;
}

std::string referenceFile(const std::string& name)
{
    return std::string(KVO_GOLDEN_DIR) + "/" + name + ".png";
}

kvo::Picture draw(const GoldenScene& scene)
{
    const TemporaryFolder folder;
    drawGoldenScene(scene, folder.file("picture.png"));
    return kvo::readPng(folder.file("picture.png"));
}

// What was drawn and where it differs, for people to look at.
std::string keepDifference(const std::string& name, const kvo::Picture& drawn, const kvo::PictureDifference& difference)
{
    std::filesystem::create_directories(KVO_DIFFERENCE_DIR);
    const std::string stem = std::string(KVO_DIFFERENCE_DIR) + "/" + name;
    kvo::writePng(drawn, stem + ".drawn.png");
    if (difference.sameSize) {
        kvo::writePng(difference.picture, stem + ".difference.png");
    }
    return stem + ".*.png";
}

GoldenScene sceneNamed(const std::string& name)
{
    for (const GoldenScene& scene : goldenScenes()) {
        if (scene.name == name) {
            return scene;
        }
    }
    throw std::invalid_argument("no scene " + name);
}

class Golden : public testing::TestWithParam<GoldenScene>
{
};

} // namespace

TEST_P(Golden, AgreesWithItsReference)
{
    const GoldenScene& scene = GetParam();
    ASSERT_TRUE(std::filesystem::exists(referenceFile(scene.name)))
        << "no reference picture " << referenceFile(scene.name);
    const kvo::Picture drawn = draw(scene);
    const auto difference = kvo::compare(kvo::readPng(referenceFile(scene.name)), drawn, levelTolerance);
    if (!agree(difference)) {
        FAIL() << difference.differing << " pixels differ, the largest difference is " << difference.largest << ": see "
               << keepDifference(scene.name, drawn, difference);
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, Golden, testing::ValuesIn(goldenScenes()),
                         [](const auto& instance) { return instance.param.name; });

// --- A session: what its picks print, and its last frame ---

class GoldenSession : public testing::TestWithParam<bool>
{
protected:
    std::string name() const { return goldenSessionName(GetParam()); }
    std::string referenceText() const { return readText(std::string(KVO_GOLDEN_DIR) + "/" + name() + ".txt"); }

    std::string play(const std::string& session, kvo::Picture& picture) const
    {
        const TemporaryFolder folder;
        const std::string text = playGoldenSession(session, folder.file("a.png"), GetParam());
        picture = kvo::readPng(folder.file("a.png"));
        return text;
    }
};

INSTANTIATE_TEST_SUITE_P(Paths, GoldenSession, testing::Values(false, true),
                         [](const auto& instance) { return instance.param ? "Contract" : "Scene"; });

TEST_P(GoldenSession, AgreesWithItsReference)
{
    kvo::Picture drawn;
    ASSERT_TRUE(std::filesystem::exists(referenceFile(name())));
    EXPECT_EQ(play(goldenSessionText(GetParam()), drawn), referenceText());
    const auto difference = kvo::compare(kvo::readPng(referenceFile(name())), drawn, levelTolerance);
    if (!agree(difference)) {
        FAIL() << difference.differing << " pixels differ: see " << keepDifference(name(), drawn, difference);
    }
}

TEST_P(GoldenSession, EveryVisibleLineMatters)
{
    // Without one of these the text, the picture or both are others.
    const kvo::Picture reference = kvo::readPng(referenceFile(name()));
    std::vector<std::string> lines = {std::string("GLOBAL_ROTATION 320 240 ") + (GetParam() ? "430 205" : "380 255") +
                                          "\nPICK part",
                                      "HIDE 1-2\n",
                                      "SCALE_INCR\n",
                                      "HIGHLIGHT 2\n",
                                      "CLEAR parts\n",
                                      "SELECT elements 1:100001-100400\n",
                                      "SHOW all\n",
                                      "MODE fill\n"};
    if (GetParam()) { // the scene's bracket differs in its fillets only, and shows the rib's other side
        lines.push_back("SHADE flat\n");
        lines.push_back("SELECT nodes 3:8701-8999\n");
    }
    for (const std::string& line : lines) {
        std::string session = goldenSessionText(GetParam());
        const std::size_t at = session.find(line);
        ASSERT_NE(at, std::string::npos) << line;
        session.erase(at, session.find('\n', at) + 1 - at);
        kvo::Picture drawn;
        const std::string text = play(session, drawn);
        EXPECT_TRUE(text != referenceText() || !agree(kvo::compare(reference, drawn, levelTolerance))) << line;
    }
}

// --- Controls: the comparison can fail ---

TEST(GoldenControl, NoTwoReferencesAgree)
{
    const auto& scenes = goldenScenes();
    for (std::size_t a = 0; a < scenes.size(); ++a) {
        for (std::size_t b = a + 1; b < scenes.size(); ++b) {
            const auto difference = kvo::compare(kvo::readPng(referenceFile(scenes[a].name)),
                                                 kvo::readPng(referenceFile(scenes[b].name)), levelTolerance);
            EXPECT_FALSE(agree(difference)) << scenes[a].name << " and " << scenes[b].name;
        }
    }
}

TEST(GoldenControl, ATurnByOneStepDoesNotAgree)
{
    GoldenScene scene = sceneNamed("iso_flat");
    scene.operations = "ROTATE_Z_CCW\n";
    EXPECT_FALSE(agree(kvo::compare(kvo::readPng(referenceFile(scene.name)), draw(scene), levelTolerance)));
}

TEST(GoldenControl, AMissingSmallPartDoesNotAgree)
{
    GoldenScene scene = sceneNamed("left_without_arch");
    scene.arguments = {"--view", "left", "--hide", "1,4"};
    EXPECT_FALSE(agree(kvo::compare(kvo::readPng(referenceFile(scene.name)), draw(scene), levelTolerance)));
}
