// Operations as movements of the camera.
#include "session_camera.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include <kvo/view_names.h>

#include "caeenv.h"
#include "mtrans.h"
#include "program_error.h"
#include "selection.h"
#include "session_file.h"
#include <kvo/model_frame.h>

namespace kvo {

namespace {

// --- What to fit ---

class BoxOfPoints
{
public:
    void add(const float* point)
    {
        if (!std::isfinite(point[0]) || !std::isfinite(point[1]) || !std::isfinite(point[2])) {
            return;
        }
        for (int axis = 0; axis < 3; ++axis) {
            box.low[axis] = any ? std::min<double>(box.low[axis], point[axis]) : point[axis];
            box.high[axis] = any ? std::max<double>(box.high[axis], point[axis]) : point[axis];
        }
        any = true;
    }
    void addPart(const PartInfoStr& part)
    {
        const float* e = part.partExtents;
        const float low[3] = {e[0], e[2], e[4]}, high[3] = {e[1], e[3], e[5]};
        add(low);
        add(high);
    }
    void addElement(const PartInfoStr& part, unsigned int element)
    {
        const std::size_t stride = part.partElements.nodesPerElement;
        for (std::size_t k = element * stride; k < (element + 1) * stride && k < part.partElements.numElements; ++k) {
            addNode(part, part.partElements.elmIndices[k]);
        }
    }
    void addNode(const PartInfoStr& part, unsigned int node)
    {
        if (node < part.partNodes.numNodes) {
            add(part.partNodes.nodeValues + 3 * std::size_t(node));
        }
    }
    bool empty() const { return !any; }
    const Box& found() const { return box; }

private:
    Box box;
    bool any = false;
};

void addSelection(CAEEnv& env, BoxOfPoints& box)
{
    for (const unsigned int type : {PICK_TYPE_PART, PICK_TYPE_ELEMENT, PICK_TYPE_NODE}) {
        for (const SelectedMember& selected : readSelection(env, type)) {
            const PartInfoStr& part = env.partsInfoList[selected.part];
            if (type == PICK_TYPE_PART) {
                box.addPart(part);
            } else if (type == PICK_TYPE_ELEMENT) {
                box.addElement(part, selected.member);
            } else {
                box.addNode(part, selected.member);
            }
        }
    }
}

std::set<unsigned int> partsOf(CAEEnv& env, const FitTo& wanted)
{
    std::set<unsigned int> known;
    for (const auto& entry : env.pidMap) {
        known.insert(entry.first);
    }
    return wanted.what == FitTo::All ? known : resolveIds(wanted.parts, known, "part");
}

// --- Steps ---

struct Turn
{
    int operation;
    std::size_t axis;
    double degrees;
};
const Turn turns[] = {{ROTATE_X_CCW, 0, 5}, {ROTATE_X_CW, 0, -5}, {ROTATE_Y_CCW, 1, 5},
                      {ROTATE_Y_CW, 1, -5}, {ROTATE_Z_CCW, 2, 5}, {ROTATE_Z_CW, 2, -5}};

Rotation rotationBy(const Point3& angles)
{
    return Rotation::about({1, 0, 0}, angles[0]) * Rotation::about({0, 1, 0}, angles[1]) *
           Rotation::about({0, 0, 1}, angles[2]);
}

struct Shift
{
    int operation;
    Pixel direction;
};
const Shift shifts[] = {{TRANS_LEFT, {-1, 0}}, {TRANS_RIGHT, {1, 0}}, {TRANS_UP, {0, 1}}, {TRANS_DOWN, {0, -1}}};
constexpr double shiftsPerPicture = 50;

} // namespace

FitTo parseFitTo(const std::string& text, const std::string& option)
{
    const std::pair<const char*, FitTo::What> words[] = {
        {"visible", FitTo::Visible}, {"all", FitTo::All}, {"selection", FitTo::Selection}};
    FitTo out;
    for (const auto& word : words) {
        if (text == word.first) {
            out.what = word.second;
            return out;
        }
    }
    out.what = FitTo::Parts;
    out.parts = parseIdList(text, option);
    return out;
}

std::string formatFitTo(const FitTo& wanted)
{
    const char* const words[] = {"visible", "all", "selection"};
    return wanted.what == FitTo::Parts ? formatIdList(wanted.parts) : words[wanted.what];
}

Box boxToFit(CAEEnv& env, const FitTo& wanted)
{
    if (wanted.what == FitTo::Visible) {
        return visibleBox(env);
    }
    BoxOfPoints box;
    if (wanted.what == FitTo::Selection) {
        addSelection(env, box);
    } else {
        for (const unsigned int id : partsOf(env, wanted)) {
            box.addPart(env.partsInfoList[env.pidMap.at(id)]);
        }
    }
    if (box.empty()) {
        throw ProgramError(wanted.what == FitTo::Selection ? "nothing is selected that the picture could be fitted to"
                                                           : "nothing to fit the picture to");
    }
    return box.found();
}

void SessionCamera::show(const ViewWish& wish)
{
    const std::optional<Rotation> orientation = viewOrientation(wish.view, wish.up);
    if (!orientation) {
        throw ProgramError("\"" + wish.view + "\" is no view");
    }
    const Box box = boxToFit(env, wish.fit);
    wished = wish;
    now = Camera();
    now.setOrientation(*orientation);
    now.setPerspective(wish.perspective);
    now = now.roll(wish.roll).fit(box, viewport);
    fittedScale = now.scale();
    now = now.zoom(wish.zoom);
    pivot = {box.center(0), box.center(1), box.center(2)};
    shown = now.orientation();
    angles = {0, 0, 0};
    line.clear();
}

void SessionCamera::turnTo(const std::string& view)
{
    ViewWish wish = wished;
    wish.view = view;
    show(wish);
}

void SessionCamera::fit(const FitTo& wanted)
{
    const Box box = boxToFit(env, wanted);
    now = now.fit(box, viewport);
    fittedScale = now.scale();
    pivot = {box.center(0), box.center(1), box.center(2)};
    line.clear();
}

void SessionCamera::take(const Camera& camera)
{
    now = camera;
    pivot = now.target();
    shown = now.orientation();
    angles = {0, 0, 0};
    fittedScale = now.fit(visibleBox(env), viewport).scale();
    line.clear();
}

Pixel SessionCamera::fromTop(const float* position) const
{
    return {position[0], viewport.height - double(position[1])};
}

std::optional<Point3> SessionCamera::seenAt(Pixel pixel, const Seen& seen) const
{
    return now.perspective() > 0 ? seen(pixel) : std::nullopt;
}

// Zooming in steps adds to the enlargement, which is 1 where the model is fitted.
void SessionCamera::zoomBy(double share)
{
    const double enlarged = fittedScale / now.scale();
    now = now.zoom(std::max<double>(enlarged + share, MIN_SCALE_FACTOR) / enlarged);
}

// The model turns about z, then y, then x as they lie in the view that was shown, in this order whatever the order of
// the steps: so "about z" stays about the model's own z axis, and "about x" about the picture's, where that was x.
void SessionCamera::turnBy(std::size_t axis, double degrees)
{
    const Rotation before = rotationBy(angles);
    angles[axis] += degrees;
    const Rotation step = shown.inverse() * rotationBy(angles) * before.inverse() * shown; // in eye axes
    const std::array<double, 4>& q = step.quaternion();
    const double half = std::atan2(std::hypot(q[1], q[2], q[3]), q[0]);
    now = now.turn({q[1], q[2], q[3]}, half * 360 / std::acos(-1.0), pivot);
}

void SessionCamera::step(const Operation& operation)
{
    for (const Turn& turn : turns) {
        if (turn.operation == operation.code) {
            turnBy(turn.axis, turn.degrees);
        }
    }
    const double pixels = std::min(viewport.width, viewport.height) / shiftsPerPicture;
    for (const Shift& shift : shifts) {
        if (shift.operation == operation.code) {
            now = now.pan({0, 0}, {pixels * shift.direction.x, pixels * shift.direction.y}, viewport);
        }
    }
}

void SessionCamera::zoomTo(Pixel corner, Pixel opposite, const Seen& seen)
{
    const std::optional<Point3> surface = seenAt({(corner.x + opposite.x) / 2, (corner.y + opposite.y) / 2}, seen);
    now = (surface ? now.withTargetDepthOf(*surface) : now).boxZoom(corner, opposite, viewport);
}

void SessionCamera::transform(const Operation& operation)
{
    const float* v = operation.values;
    switch (operation.code) {
    case RESET_TRANSFORM:
        return reset();
    case GLOBAL_ROTATION:
        now = now.orbit(fromTop(v), fromTop(v + 2), viewport, pivot);
        break;
    case GLOBAL_TRANSLATION: // pixels of a window of the size that is given
        now = now.pan({0, 0}, {viewport.width * double(v[0]) / v[2], -viewport.height * double(v[1]) / v[3]}, viewport);
        break;
    case SCALE_INCR:
        return zoomBy(SCALE_FACTOR);
    case SCALE_DECR:
        return zoomBy(-SCALE_FACTOR);
    case GLOBAL_SCALE:
        return zoomBy(v[0]);
    case START_RUBBER_BAND:
        band = {fromTop(v), fromTop(v + 2)};
        line = {band[0], {band[1].x, band[0].y}, band[1], {band[0].x, band[1].y}, band[0]};
        break;
    case START_POLYLINE:
        polyline.push_back(fromTop(v));
        line = polyline;
        break;
    case RECT_PICK:
    case END_RUBBER_BAND:
        band.clear();
        break;
    case POLYLINE_PICK:
        polyline.clear();
        break;
    default:
        step(operation);
    }
}

void SessionCamera::move(const Operation& operation, const Seen& seen)
{
    line.clear();
    const Pixel from = fromTop(operation.values), to = fromTop(operation.values + 2);
    switch (operation.verb) {
    case Verb::Orbit:
        now =
            operation.code ? now.turntable(from, to, viewport, pivot, wished.up) : now.orbit(from, to, viewport, pivot);
        break;
    case Verb::Pan: {
        const std::optional<Point3> grabbed = seenAt(from, seen);
        now = grabbed ? now.pan(from, to, viewport, *grabbed) : now.pan(from, to, viewport);
        break;
    }
    case Verb::Zoom: {
        const Pixel place = fromTop(operation.values + 1);
        const std::optional<Point3> grabbed = operation.code ? seenAt(place, seen) : std::nullopt;
        const double factor = operation.values[0];
        now = grabbed          ? now.zoomAbout(*grabbed, factor)
              : operation.code ? now.zoomAt(place, factor, viewport)
                               : now.zoom(factor);
        break;
    }
    case Verb::BoxZoom:
        zoomTo(from, to, seen);
        break;
    case Verb::Perspective:
        now.setPerspective(operation.values[0]);
        wished.perspective = now.perspective();
        break;
    case Verb::Fit:
        fit(operation.fit);
        break;
    default:
        if (operation.code == RECT_SCALE && !band.empty()) {
            zoomTo(band[0], band[1], seen);
            band.clear();
        }
        transform(operation);
    }
}

} // namespace kvo
