// Picking through PickRect: the drawing library's own pass in OpenGL's selection mode.
//
// What the library leaves to its hosts, or does so that hosts have to know, is dealt with here:
// - The pass also draws the axis triad, whose hits count for the last visible part, element 0. A part without elements
//   stands in as the last one during a pass and takes them, so that they can be told apart.
// - The pass projects depths of +-9999 units, whatever the frame did. Here it gets the depth range of the last frame.
// - It leaves its own projection behind as that of the last frame, from which zooming would then unproject wrongly.
// - It adds to the selection. Here the selection is afterwards what it was.
#ifndef KVO_CONTRACT_PICKER_H
#define KVO_CONTRACT_PICKER_H

#include "picker.h"

namespace kvo {

class ContractPicker : public Picker
{
public:
    // What is covered counts whether asked for or not. Throws ProgramError when there are more hits than the library's
    // selection buffer holds, and for polygons.
    std::vector<PickHit> pick(CAEEnv& env, const PickRequest& request, int pictureHeight) override;
};

} // namespace kvo

#endif
