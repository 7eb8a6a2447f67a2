// One function for each kind of operation.
#include "session_player.h"

#include "caeenv.h"
#include "mtrans.h"
#include "mview.h"
#include "picker.h"
#include "program_error.h"
#include "selection.h"
#include "session_camera.h"
#include "state_camera.h"
#include "transformations.h"
#include "view_state.h"

namespace kvo {

namespace {

// The surface that the picture shows at a pixel.
std::optional<Point3> surfaceAt(SessionTarget& target, Picker& picker, Pixel pixel)
{
    const double fromTop = target.height() - pixel.y;
    if (!(pixel.x >= 0 && pixel.x < target.width() && fromTop >= 0 && fromTop < target.height())) {
        return std::nullopt;
    }
    PickRequest request;
    request.type = PICK_TYPE_PART;
    request.nearestOnly = true;
    request.region =
        regionAt(static_cast<float>(pixel.x), static_cast<float>(fromTop), 1, target.width(), target.height());
    const std::vector<PickHit> hits = picker.pick(target.env(), request, target.height());
    return hits.empty() ? std::nullopt : std::optional<Point3>({hits[0].point[0], hits[0].point[1], hits[0].point[2]});
}

void moveCamera(SessionTarget& target, Picker& picker, const Operation& operation)
{
    if (!target.camera()) {
        throw ProgramError(formatOperation(operation) + " moves the scene's camera, which --contract does without");
    }
    target.camera()->move(operation, [&](Pixel pixel) { return surfaceAt(target, picker, pixel); });
}

void transform(SessionTarget& target, Picker& picker, const Operation& operation)
{
    if (target.camera()) {
        return moveCamera(target, picker, operation);
    }
    if (operation.code == RESET_TRANSFORM) {
        return target.resetView();
    }
    float values[4];
    windowValues(operation.code, operation.values, target.height(), values);
    target.env().getMTransformPtr()->updateValues(operation.code, values);
}

void pickAndSelect(SessionTarget& target, Picker& picker, const Operation& operation)
{
    const unsigned int type = static_cast<unsigned int>(operation.code);
    const std::vector<PickHit> hits = pickHits(target, picker, operation);
    std::string text = formatOperation(operation) + "\n";
    for (const Picked& picked : describeHits(target.model(), target.labels(), type, hits)) {
        text += "  " + formatPicked(picked, type) + "\n";
    }
    if (hits.empty()) {
        text += "  nothing\n";
    }
    target.print(text);
    for (const PickHit& hit : hits) {
        select(target.env(), type, hit.part, hit.member);
    }
}

void carryOut(SessionTarget& target, Picker& picker, const Operation& operation)
{
    CAEEnv& env = target.env();
    switch (operation.verb) {
    case Verb::Transform:
        return transform(target, picker, operation);
    case Verb::View:
        return target.setView(operation.view);
    case Verb::Orbit:
    case Verb::Pan:
    case Verb::Zoom:
    case Verb::BoxZoom:
    case Verb::Fit:
    case Verb::Perspective:
        return moveCamera(target, picker, operation);
    case Verb::Pick:
        return pickAndSelect(target, picker, operation);
    case Verb::Select:
        return selectIds(target.model(), static_cast<unsigned int>(operation.code), operation.ids);
    case Verb::Clear:
        return clearSelection(env, operation.code);
    case Verb::Highlight:
        return highlightIds(env, operation.ids);
    case Verb::Show:
    case Verb::Hide:
        return setVisible(env, operation.ids, operation.verb == Verb::Show);
    case Verb::Shade:
        return target.setShade(operation.code);
    case Verb::Mode:
        return env.setPolygonMode(operation.code);
    case Verb::Save:
        return saveState(target, operation.file);
    case Verb::Restore:
        return restoreState(target, operation.file);
    case Verb::Picture:
        return writePng(target.picture(), operation.file);
    }
}

} // namespace

void saveState(SessionTarget& target, const std::string& file)
{
    if (const SessionCamera* camera = target.camera()) {
        cameraIntoState(target.env(), camera->camera(), camera->size(), file);
    }
    saveViewState(target.env(), target.labels(), file);
}

void restoreState(SessionTarget& target, const std::string& file)
{
    restoreViewState(target.env(), target.labels(), file);
    if (SessionCamera* camera = target.camera()) {
        camera->take(cameraOfState(target.env(), camera->size(), file));
    }
}

PictureRegion regionOf(const Operation& pick, int pictureWidth, int pictureHeight)
{
    const float* values = pick.values;
    switch (pick.shape) {
    case PickShape::Rectangle:
        return regionBetween(values, pictureWidth, pictureHeight);
    case PickShape::Polygon:
        return regionInside(pick.outline, pictureWidth, pictureHeight);
    case PickShape::Place:
        break;
    }
    return regionAt(values[0], values[1], values[2], pictureWidth, pictureHeight);
}

std::vector<PickHit> pickHits(SessionTarget& target, Picker& picker, const Operation& pick)
{
    PickRequest request;
    request.type = static_cast<unsigned int>(pick.code);
    request.nearestOnly = pick.shape == PickShape::Place;
    request.through = pick.through;
    request.region = regionOf(pick, target.width(), target.height());
    return picker.pick(target.env(), request, target.height());
}

void playOperation(SessionTarget& target, Picker& picker, const Operation& operation)
{
    carryOut(target, picker, operation);
    target.drawFrame();
}

void playSession(SessionTarget& target, Picker& picker, const Session& session)
{
    for (const Operation& operation : session.operations) {
        try {
            playOperation(target, picker, operation);
        } catch (const std::exception& error) {
            throw ProgramError(session.file, operation.line, error.what());
        }
    }
}

} // namespace kvo
