// Finding what of the model is at a place of the picture. The programs ask a Picker; which way it looks is its own
// business: scene_picker.h asks the scene, contract_picker.h the drawing library's selection mode.
#ifndef KVO_PICKER_H
#define KVO_PICKER_H

#include <vector>

class CAEEnv;

namespace kvo {

// A rectangle of the picture, in pixels from its top left corner, y downwards, or a polygon and the rectangle around
// it.
struct PictureRegion
{
    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;
    std::vector<float> outline; // x y of the polygon's corners; empty for a rectangle
};

// The square of size x size pixels about the middle of the pixel at x, y. It may hang over the picture's edge. Throws
// ProgramError when the pixel is not in the picture or the size is not positive.
PictureRegion regionAt(float x, float y, float size, int pictureWidth, int pictureHeight);

// From one corner to the opposite one, in any order. Throws ProgramError for a rectangle without area or one that
// reaches out of the picture.
PictureRegion regionBetween(const float corners[4], int pictureWidth, int pictureHeight);

// Inside a closed outline, x y of three corners or more. Throws ProgramError as regionBetween.
PictureRegion regionInside(const std::vector<float>& outline, int pictureWidth, int pictureHeight);

// One thing that was hit, by positions in the model's arrays.
struct PickHit
{
    unsigned int part = 0;       // index in the environment's list of parts
    unsigned int member = 0;     // index of the element or node in its part; 0 for a part
    unsigned int id = 0;         // the element's own, where the picker knows it; else 0
    float depth = 0;             // window depth of its nearest point in the region: 0 nearest to 1 farthest
    bool located = false;        // is the rest known?
    double pixel[2] = {0, 0};    // where it was hit, in the picture, from the top left corner
    double point[3] = {0, 0, 0}; // and on the model
};

struct PickRequest
{
    unsigned int type = 0;    // PICK_TYPE_...
    bool nearestOnly = false; // the one in front, else all, in the order of the model
    bool through = false;     // what is covered counts, too
    PictureRegion region;
};

class Picker
{
public:
    virtual ~Picker() = default;

    // Between frames, with the context current and the environment's last frame as it is on the screen, in a picture
    // of that height. Selects nothing. Throws ProgramError when it cannot say what was hit.
    virtual std::vector<PickHit> pick(CAEEnv& env, const PickRequest& request, int pictureHeight) = 0;
};

} // namespace kvo

#endif
