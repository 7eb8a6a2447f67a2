// What a view shows of a model: visible parts, colours, selections. Two views of one model may differ.
//
//   kvo::ModelView shown(model);
//   shown.parts[2].hidden = true;
//   shown.parts[0].selectedElements = kvo::marksOf(shown.model.parts()[0].elementIds, {10001, 10002});
//
// Plain values that need no OpenGL: whoever draws reads them at every frame, whoever edits them keeps copies for undo.
// Marks are shared between copies and never changed in place.
#ifndef KVO_MODEL_VIEW_H
#define KVO_MODEL_VIEW_H

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include <kvo/box.h>
#include <kvo/model.h>

namespace kvo {

// One byte an element or node of a part, in the part's order: not 0 where it is marked. Null: none is.
using Marks = std::shared_ptr<const std::vector<std::uint8_t>>;

// The marks of those with these ids; ids that the table does not have do nothing. Null where none was found.
KVO_EXPORT Marks marksOf(const IdTable& table, const std::vector<std::uint32_t>& ids);

// How one part is shown. New members come at the end.
struct PartLook
{
    bool hidden = false;
    bool selected = false;
    bool highlighted = false;                  // shows only where the part is not selected
    bool boxShown = false;                     // with a box around it
    std::array<float, 4> color = {0, 0, 0, 1}; // RGBA, 0 to 1; alpha below 1: transparent
    Marks selectedElements;                    // shorter marks leave the rest unmarked
    Marks selectedNodes;
    Marks hiddenElements; // not there: what was inside comes to light
};

struct KVO_EXPORT ModelView
{
    ModelView() = default; // of a model without parts
    // Everything visible, in the model's colours, nothing selected.
    explicit ModelView(const Model& shownModel);

    // The box of the parts that are not hidden, of all parts where all are, of +-1 where there is none; relative to
    // Model::origin(). For Camera::fit.
    Box visibleBox() const;

    Model model;
    std::vector<PartLook> parts;                        // one a part of the model, in its order
    std::array<float, 4> selectionColor = {0, 0, 1, 1}; // of selected parts, elements and nodes
    std::array<float, 4> highlightColor = {0, 1, 0, 1};
};

} // namespace kvo

#endif
