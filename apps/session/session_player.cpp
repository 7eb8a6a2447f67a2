// One function for each kind of operation.
#include "session_player.h"

#include "caeenv.h"
#include "mtrans.h"
#include "mview.h"
#include "picker.h"
#include "program_error.h"
#include "selection.h"
#include "transformations.h"
#include "view_state.h"

namespace kvo {

namespace {

void transform(SessionTarget& target, const Operation& operation)
{
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
    for (const Picked& picked : describeHits(target.env(), target.labels(), type, hits)) {
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
        return transform(target, operation);
    case Verb::View:
        return target.setView(operation.code);
    case Verb::Pick:
        return pickAndSelect(target, picker, operation);
    case Verb::Select:
        return selectIds(env, static_cast<unsigned int>(operation.code), operation.ids);
    case Verb::Clear:
        return clearSelection(env, operation.code);
    case Verb::Highlight:
        return highlightIds(env, operation.ids);
    case Verb::Show:
    case Verb::Hide:
        return setVisible(env, operation.ids, operation.verb == Verb::Show);
    case Verb::Shade:
        return env.setShadeModel(static_cast<unsigned int>(operation.code));
    case Verb::Mode:
        return env.setPolygonMode(operation.code);
    case Verb::Save:
        return saveViewState(env, target.labels(), operation.file);
    case Verb::Restore:
        return restoreViewState(env, target.labels(), operation.file);
    case Verb::Picture:
        return writePng(target.picture(), operation.file);
    }
}

} // namespace

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
