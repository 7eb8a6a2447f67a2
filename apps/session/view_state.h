// View state files: the drawing library's own, checked before it reads them and written whole or not at all.
//
// The file keeps the view and the transformation, shading, drawing mode and blending, and of every part its flags
// (shown, selected, highlighted, box) and colour. Which elements and nodes are selected is not in it.
#ifndef KVO_VIEW_STATE_H
#define KVO_VIEW_STATE_H

#include <string>

#include "picked.h"

class CAEEnv;

namespace kvo {

// Takes the state over; the next frame shows it. Throws ProgramError, naming the file and the place in it, when the
// file cannot be read, belongs to another model, is too short or too long for the model's parts, or holds what no
// saved state holds; the environment is then as it was.
void restoreViewState(CAEEnv& env, const ModelLabels& labels, const std::string& path);

// With the context current. As an OutputFile (output_file.h): whole, or what was there before. Throws HostError and
// ProgramError.
void saveViewState(CAEEnv& env, const ModelLabels& labels, const std::string& path);

} // namespace kvo

#endif
