#include <kvo/shown_model.h>

#include <algorithm>
#include <cmath>

#include "shown_parts.h"

namespace kvo {

namespace {

MarkBytes bytesOf(const Marks& marks)
{
    return marks ? MarkBytes{marks->data(), marks->size(), false} : MarkBytes();
}

struct ModelParts : ShownModel::Impl
{
    explicit ModelParts(const ModelView& modelView) : view(modelView) {}

    void refresh() override;
    std::array<const void*, 3> identity() const override { return {records.data(), records.end(), nullptr}; }
    std::uint32_t partId(std::size_t part) const override { return records[part].id; }
    const IdTable* elementIds(std::size_t part) override { return &records[part].elementIds; }
    const IdTable* nodeIds(std::size_t part) override { return &records[part].nodeIds; }

    const ModelView& view;
    Model model; // keeps what was read last
    Span<Part> records;
};

void ModelParts::refresh()
{
    if (view.model.parts().data() != records.data() || parts.size() != view.model.parts().size()) {
        model = view.model;
        records = model.parts();
        meshes.assign(records.begin(), records.end());
        parts.resize(meshes.size());
        partCount = parts.size();
    }
    for (std::size_t k = 0; k < parts.size(); ++k) {
        static const PartLook unknown;
        const PartLook& look = k < view.parts.size() ? view.parts[k] : unknown;
        ShownPart& part = parts[k];
        part.hidden = look.hidden;
        part.selected = look.selected;
        part.highlighted = look.highlighted;
        part.boxShown = look.boxShown;
        part.color = k < view.parts.size() ? look.color : records[k].color;
        part.selectedElements = bytesOf(look.selectedElements);
        part.selectedNodes = bytesOf(look.selectedNodes);
        part.hiddenElements = bytesOf(look.hiddenElements);
    }
    selectionColor = view.selectionColor;
    highlightColor = view.highlightColor;
}

bool isFinite(const std::array<float, 6>& extents)
{
    return std::all_of(extents.begin(), extents.end(), [](float v) { return std::isfinite(v); });
}

} // namespace

void MarkBytes::states(std::size_t wanted, std::uint8_t* out) const
{
    const std::size_t known = bytes ? std::min(count, wanted) : 0;
    std::uint8_t state = 0;
    for (std::size_t k = 0; k < known; ++k) {
        state = !characters ? bytes[k] != 0 : bytes[k] == '1' ? 1 : bytes[k] == '0' ? 0 : state;
        out[k] = state;
    }
    std::fill(out + known, out + wanted, std::uint8_t{0});
}

Box ShownModel::Impl::visibleBox() const
{
    for (const bool withHidden : {false, true}) {
        Box box;
        bool any = false;
        for (std::size_t k = 0; k < partCount; ++k) {
            const PartMesh& mesh = meshes[k];
            if ((parts[k].hidden && !withHidden) || !isFinite(mesh.extents)) {
                continue;
            }
            for (unsigned int axis = 0; axis < 3; ++axis) {
                const double low = mesh.extents[2 * axis], high = mesh.extents[2 * axis + 1];
                box.low[axis] = any ? std::min(box.low[axis], low) : low;
                box.high[axis] = any ? std::max(box.high[axis], high) : high;
            }
            any = true;
        }
        if (any) {
            return box;
        }
    }
    return {{-1, -1, -1}, {1, 1, 1}};
}

ShownModel::ShownModel(const ModelView& view) : impl(std::make_shared<ModelParts>(view)) {}

ShownModel::Impl& ShownModel::read() const
{
    impl->refresh();
    return *impl;
}

} // namespace kvo
