// Golden pictures of the looks of a scene: tests/scene/golden/NAME.png.
//
// The tolerance is that of the program's golden pictures: a channel may differ by 8 levels, and one pixel in 200 by
// more, because drivers round light and edges differently.
#ifndef LOOK_PICTURES_H
#define LOOK_PICTURES_H

#include <string>

#include "caeenv.h"
#include "picture.h"

struct LookPicture
{
    std::string name;
    kvo::Picture picture;
};

// Compares with the reference. A missing one fails. Where they differ, NAME.drawn.png and NAME.difference.png are left
// in the build folder. With the environment variable KVO_UPDATE_GOLDEN set, writes the reference instead and passes.
bool matchesGolden(const LookPicture& drawn);

// False also for pictures of different size.
bool agree(const kvo::Picture& a, const kvo::Picture& b);

// Turns the model about the window's x and y axes, degrees, from where it is.
void turn(CAEEnv& env, float aboutX, float aboutY);

// Zooms out so far that a turned model fits into the picture.
void shrink(CAEEnv& env);

#endif
