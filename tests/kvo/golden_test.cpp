// Pictures against references.
//
// Tolerance: a channel may differ by 8 levels, and one pixel in 200 by more. Mesa's processor driver rounds lighting
// and edges differently between versions and between vector widths of processors; that moves levels by a few, and
// pixels on edges of faces by one place. Anything that a person would notice is more: the smallest part of the sample
// covers over one per cent of the picture.
#include <filesystem>
#include <fstream>

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
    if (difference.sameSize)
        kvo::writePng(difference.picture, stem + ".difference.png");
    return stem + ".*.png";
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
    if (!agree(difference))
        FAIL() << difference.differing << " pixels differ, the largest difference is " << difference.largest << ": see "
               << keepDifference(scene.name, drawn, difference);
}

INSTANTIATE_TEST_SUITE_P(Scenes, Golden, testing::ValuesIn(goldenScenes()),
                         [](const auto& instance) { return instance.param.name; });

// --- A session: what its picks print, and its last frame
// ------------------------------------------------------------------

TEST(GoldenSession, AgreesWithItsReference)
{
    const TemporaryFolder folder;
    const std::string text = playGoldenSession(goldenSessionText(), folder.file("a.png"));
    ASSERT_TRUE(std::filesystem::exists(referenceFile(goldenSessionName)));
    EXPECT_EQ(text, readText(std::string(KVO_GOLDEN_DIR) + "/" + goldenSessionName + ".txt"));
    const kvo::Picture drawn = kvo::readPng(folder.file("a.png"));
    const auto difference = kvo::compare(kvo::readPng(referenceFile(goldenSessionName)), drawn, levelTolerance);
    if (!agree(difference))
        FAIL() << difference.differing << " pixels differ: see "
               << keepDifference(goldenSessionName, drawn, difference);
}

TEST(GoldenSession, EveryVisibleLineMatters)
{
    // Without one of these the text, the picture or both are others.
    for (const std::string line : {"GLOBAL_ROTATION 320 240 430 205\nPICK part", "HIDE 1-2\n", "SCALE_INCR\n",
                                   "HIGHLIGHT 2\n", "CLEAR parts\n", "SELECT elements 1:100001-100400\n",
                                   "SELECT nodes 3:8701-8999\n", "SHADE flat\n", "SHOW all\n", "MODE fill\n"}) {
        std::string session = goldenSessionText();
        const std::size_t at = session.find(line);
        ASSERT_NE(at, std::string::npos) << line;
        session.erase(at, session.find('\n', at) + 1 - at);
        const TemporaryFolder folder;
        const std::string text = playGoldenSession(session, folder.file("a.png"));
        const auto difference = kvo::compare(kvo::readPng(referenceFile(goldenSessionName)),
                                             kvo::readPng(folder.file("a.png")), levelTolerance);
        EXPECT_TRUE(text != readText(std::string(KVO_GOLDEN_DIR) + "/" + goldenSessionName + ".txt") ||
                    !agree(difference))
            << line;
    }
}

// --- Controls: the comparison can fail
// -------------------------------------------------------------------------------------

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
    GoldenScene scene = goldenScenes().front();
    scene.operations = "ROTATE_Z_CCW\n";
    EXPECT_FALSE(agree(kvo::compare(kvo::readPng(referenceFile(scene.name)), draw(scene), levelTolerance)));
}

TEST(GoldenControl, AMissingSmallPartDoesNotAgree)
{
    GoldenScene scene = goldenScenes()[4];
    ASSERT_EQ(scene.name, "left_without_arch");
    scene.arguments = {"--view", "left", "--hide", "1,4"};
    EXPECT_FALSE(agree(kvo::compare(kvo::readPng(referenceFile(scene.name)), draw(scene), levelTolerance)));
}
