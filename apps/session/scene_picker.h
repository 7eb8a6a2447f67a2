// Picking through the scene: what the picture shows, or, when asked for, everything that is behind it, too.
#ifndef KVO_SESSION_SCENE_PICKER_H
#define KVO_SESSION_SCENE_PICKER_H

#include <memory>

#include "picker.h"
#include <kvo/through_picker.h>
#include <kvo/visible_picker.h>

namespace kvo {

class SceneView;

class ScenePicker : public Picker
{
public:
    // On the model that the view shows. Both must outlive the picker; the context must be current in the destructor,
    // too.
    ScenePicker(SceneView& sceneView, ShownModel shownModel);

    std::vector<PickHit> pick(CAEEnv& env, const PickRequest& request, int pictureHeight) override;

private:
    SceneView& view;
    ShownModel model;
    VisiblePicker visible;
    std::unique_ptr<ThroughPicker> through; // made for the first pick that needs it
};

} // namespace kvo

#endif
