// The table of transformations.
#include "transformations.h"

#include <algorithm>
#include <iterator>

#include "mtrans.h"

namespace kvo {

namespace {

// What the library's y of an operation is, seen from y downwards.
enum class Flip
{
    None,     // y downwards, as given
    Position, // height - y at values 1 and 3
    Step      // -y at value 1
};

struct Row
{
    TransformationName named;
    Flip flip;
};

const Row rows[] = {
    {{"NO_TRANSFORM", NO_TRANSFORM, 0, ""}, Flip::None},
    {{"RESET_TRANSFORM", RESET_TRANSFORM, 0, ""}, Flip::None},
    {{"ROTATE_X_CCW", ROTATE_X_CCW, 0, ""}, Flip::None},
    {{"ROTATE_X_CW", ROTATE_X_CW, 0, ""}, Flip::None},
    {{"ROTATE_Y_CCW", ROTATE_Y_CCW, 0, ""}, Flip::None},
    {{"ROTATE_Y_CW", ROTATE_Y_CW, 0, ""}, Flip::None},
    {{"ROTATE_Z_CCW", ROTATE_Z_CCW, 0, ""}, Flip::None},
    {{"ROTATE_Z_CW", ROTATE_Z_CW, 0, ""}, Flip::None},
    {{"TRANS_LEFT", TRANS_LEFT, 0, ""}, Flip::None},
    {{"TRANS_RIGHT", TRANS_RIGHT, 0, ""}, Flip::None},
    {{"TRANS_UP", TRANS_UP, 0, ""}, Flip::None},
    {{"TRANS_DOWN", TRANS_DOWN, 0, ""}, Flip::None},
    {{"SCALE_INCR", SCALE_INCR, 0, ""}, Flip::None},
    {{"SCALE_DECR", SCALE_DECR, 0, ""}, Flip::None},
    {{"GLOBAL_TRANSLATION", GLOBAL_TRANSLATION, 4, "DX DY WIDTH HEIGHT"}, Flip::Step},
    {{"GLOBAL_SCALE", GLOBAL_SCALE, 1, "STEP"}, Flip::None},
    {{"GLOBAL_ROTATION", GLOBAL_ROTATION, 4, "X0 Y0 X1 Y1"}, Flip::None},
    {{"START_RUBBER_BAND", START_RUBBER_BAND, 4, "X0 Y0 X1 Y1"}, Flip::Position},
    {{"START_POLYLINE", START_POLYLINE, 2, "X Y"}, Flip::Position},
    {{"END_RUBBER_BAND", END_RUBBER_BAND, 0, ""}, Flip::None},
    {{"RECT_SCALE", RECT_SCALE, 0, ""}, Flip::None},
    {{"RECT_PICK", RECT_PICK, 0, ""}, Flip::None},
    {{"SELECT_PICK", SELECT_PICK, 0, ""}, Flip::None},
    {{"POLYLINE_PICK", POLYLINE_PICK, 0, ""}, Flip::None},
    {{"TRANS_MAX", TRANS_MAX, 0, ""}, Flip::None},
};

template <class Matches> const Row* findRow(Matches matches)
{
    const auto found = std::find_if(std::begin(rows), std::end(rows), matches);
    return found == std::end(rows) ? nullptr : found;
}

const TransformationName* nameOf(const Row* row)
{
    return row ? &row->named : nullptr;
}

} // namespace

const TransformationName* findTransformation(const std::string& name)
{
    return nameOf(findRow([&](const Row& row) { return name == row.named.name; }));
}

const TransformationName* findTransformation(int type)
{
    return nameOf(findRow([&](const Row& row) { return type == row.named.type; }));
}

void windowValues(int type, const float values[4], int height, float out[4])
{
    std::copy(values, values + 4, out);
    const Row* row = findRow([&](const Row& r) { return type == r.named.type; });
    if (!row) {
        return;
    }
    if (row->flip == Flip::Step) {
        out[1] = -out[1];
    }
    if (row->flip == Flip::Position) {
        out[1] = static_cast<float>(height) - out[1];
        out[3] = static_cast<float>(height) - out[3];
    }
}

std::string describeTransformations()
{
    std::string out;
    for (const Row& row : rows) {
        out += std::string("  ") + row.named.name + (row.named.count ? " " : "") + row.named.values + "\n";
    }
    return out;
}

} // namespace kvo
