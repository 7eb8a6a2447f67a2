// What was picked, in the model's own words.
#ifndef KVO_PICKED_H
#define KVO_PICKED_H

#include <string>
#include <vector>

#include "picker.h"

class CAEEnv;

namespace kvo {

class SessionModel;

struct PartLabel
{
    unsigned int id = 0;
    std::string name;
};

// What the environment does not know about its model.
struct ModelLabels
{
    std::string directory;        // where the model is, without symbolic links: of the model directory, or of the deck
    std::string model;            // its name there
    std::vector<PartLabel> parts; // by part index
};

struct Picked
{
    PartLabel part;
    unsigned int number = 0; // the part's, from 1
    unsigned int id = 0;     // the element's or node's own; the part's id for a part
    // A node's own coordinates; the mean of an element's corners; the middle of a part's extents.
    double at[3] = {0, 0, 0};
    PickHit hit; // where it was hit
};

std::vector<Picked> describeHits(const SessionModel& model, const ModelLabels& labels, unsigned int type,
                                 const std::vector<PickHit>& hits);

// "part 2 BOSS, element 40012, at 12.5 0 -3, depth 0.4981": one line without its end.
std::string formatPicked(const Picked& picked, unsigned int type);

// Six significant digits, as tables and lines show coordinates; -0 is 0.
std::string formatCoordinate(double value);
std::string formatDepth(float depth); // four decimals

} // namespace kvo

#endif
