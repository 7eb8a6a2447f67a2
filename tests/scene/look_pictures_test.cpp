// Controls: the comparison of looks can fail.
#include <cstdlib>
#include <filesystem>
#include <vector>

#include <gtest/gtest.h>

#include "look_pictures.h"

TEST(LookPictures, NoTwoReferencesAgree)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(KVO_SCENE_GOLDEN_DIR)) {
        names.push_back(entry.path().string());
    }
    ASSERT_GE(names.size(), 7u);
    for (std::size_t a = 0; a < names.size(); ++a) {
        for (std::size_t b = 0; b < a; ++b) {
            EXPECT_FALSE(agree(kvo::readPng(names[a]), kvo::readPng(names[b]))) << names[a] << " " << names[b];
        }
    }
}

TEST(LookPictures, AMissingReferenceFails)
{
    if (std::getenv("KVO_UPDATE_GOLDEN")) {
        GTEST_SKIP() << "references are being written";
    }
    EXPECT_FALSE(matchesGolden({"no such look", kvo::Picture(320, 240)}));
}
