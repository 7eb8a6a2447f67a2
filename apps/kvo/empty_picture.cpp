// Reasons for empty pictures.
#include "empty_picture.h"

#include <algorithm>
#include <cmath>

#include "caeenv.h"
#include <kvo/model_frame.h>

namespace kvo {

namespace {

const double flatShare = 1e-3; // of the largest size; so flat a model is a pixel wide in a picture of a thousand
const int axesCorner = 100;    // pixels
const double largest = 1e37;   // of coordinates
const double smallest = 1e-34; // of models

bool allHidden(CAEEnv& env)
{
    const PartInfoStr* parts = env.getPartsList();
    return std::all_of(parts, parts + env.getNumParts(),
                       [](const PartInfoStr& part) { return (part.partFlag & PART_HIDDEN) != 0; });
}

double largestSize(const Box& box)
{
    return std::max({box.size(0), box.size(1), box.size(2)});
}

// The corner of the box that lies farthest on the side that stays.
bool isAllRemoved(const Box& box, const double plane[4])
{
    double most = plane[3];
    for (int axis = 0; axis < 3; ++axis) {
        most += std::max(plane[axis] * box.low[axis], plane[axis] * box.high[axis]);
    }
    return most < 0;
}

} // namespace

bool isBeyondDrawing(CAEEnv& env)
{
    const Box box = visibleBox(env);
    double reach = 0;
    for (int axis = 0; axis < 3; ++axis) {
        reach = std::max({reach, std::fabs(box.low[axis]), std::fabs(box.high[axis])});
    }
    const double size = largestSize(box);
    return reach > largest || (size > 0 && size < smallest);
}

bool isMarked(const Picture& picture, Color background)
{
    for (int y = 0; y < picture.height; ++y) {
        for (int x = y < picture.height - axesCorner ? 0 : std::min(axesCorner, picture.width); x < picture.width;
             ++x) {
            if (picture.at(x, y) != background) {
                return true;
            }
        }
    }
    return false;
}

std::string whyEmpty(CAEEnv& env, const SceneSection& section)
{
    if (allHidden(env)) {
        return ": all its parts are hidden";
    }
    if (isBeyondDrawing(env)) {
        return ": its coordinates are too large or too small to be drawn";
    }
    const Box box = visibleBox(env);
    if (section.cut != SceneCut::Off && isAllRemoved(box, section.plane)) {
        return ": the section takes all of it away";
    }
    for (int axis = 0; axis < 3; ++axis) {
        if (box.size(axis) < flatShare * largestSize(box)) {
            return ": it is flat in " + std::string(1, "xyz"[axis]) + " and may be seen from its edge";
        }
    }
    return "";
}

} // namespace kvo
