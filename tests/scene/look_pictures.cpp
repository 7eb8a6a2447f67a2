#include "look_pictures.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "mtrans.h"

bool agree(const kvo::Picture& a, const kvo::Picture& b)
{
    const int levelTolerance = 8;
    const double pixelTolerance = 1.0 / 200;
    const kvo::PictureDifference difference = kvo::compare(a, b, levelTolerance);
    return difference.sameSize && double(difference.differing) <= pixelTolerance * double(a.width) * double(a.height);
}

bool matchesGolden(const LookPicture& drawn)
{
    const std::string reference = std::string(KVO_SCENE_GOLDEN_DIR) + "/" + drawn.name + ".png";
    if (std::getenv("KVO_UPDATE_GOLDEN")) {
        kvo::writePng(drawn.picture, reference);
        return true;
    }
    if (!std::filesystem::exists(reference)) {
        std::cerr << "no reference picture " << reference << "\n";
        return false;
    }
    const kvo::Picture wanted = kvo::readPng(reference);
    if (agree(wanted, drawn.picture)) {
        return true;
    }
    std::filesystem::create_directories(KVO_SCENE_DIFFERENCE_DIR);
    const std::string stem = std::string(KVO_SCENE_DIFFERENCE_DIR) + "/" + drawn.name;
    kvo::writePng(drawn.picture, stem + ".drawn.png");
    const kvo::PictureDifference difference = kvo::compare(wanted, drawn.picture, 8);
    if (difference.sameSize) {
        kvo::writePng(difference.picture, stem + ".difference.png");
    }
    std::cerr << drawn.name << ": " << difference.differing << " pixels differ, see " << stem << ".*.png\n";
    return false;
}

void turn(CAEEnv& env, float aboutX, float aboutY)
{
    MTransform& transform = *env.getMTransformPtr();
    transform.globalRot[0] += aboutX;
    transform.globalRot[1] += aboutY;
}

// About the pivot of the rotations, which the first frame puts into the middle.
void shrink(CAEEnv& env)
{
    MTransform& transform = *env.getMTransformPtr();
    const float scale = 0.7f;
    for (int axis = 0; axis < 3; ++axis) {
        const float middle = (env.getExtents()[2 * axis] + env.getExtents()[2 * axis + 1]) / 2;
        transform.localScale[axis] = scale;
        transform.localTrans[axis] = middle * (1 - scale);
    }
}
