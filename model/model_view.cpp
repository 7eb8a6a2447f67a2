#include "kvo/model_view.h"

#include <algorithm>
#include <cmath>

namespace kvo {

Marks marksOf(const IdTable& table, const std::vector<std::uint32_t>& ids)
{
    std::shared_ptr<std::vector<std::uint8_t>> marks;
    for (const std::uint32_t id : ids) {
        const std::uint32_t position = table.find(id);
        if (position == IdTable::notFound) {
            continue;
        }
        if (!marks) {
            marks = std::make_shared<std::vector<std::uint8_t>>(table.size(), std::uint8_t{0});
        }
        (*marks)[position] = 1;
    }
    return marks;
}

ModelView::ModelView(const Model& shownModel) : model(shownModel)
{
    parts.resize(model.parts().size());
    for (std::size_t k = 0; k < parts.size(); ++k) {
        parts[k].color = model.parts()[k].color;
    }
}

Box ModelView::visibleBox() const
{
    const Span<Part> records = model.parts();
    const auto isHidden = [this](std::size_t k) { return k < parts.size() && parts[k].hidden; };
    for (const bool withHidden : {false, true}) {
        Box box;
        bool any = false;
        for (std::size_t k = 0; k < records.size(); ++k) {
            const Part& part = records[k];
            if ((isHidden(k) && !withHidden) || part.nodeCount() == 0) {
                continue;
            }
            for (unsigned int axis = 0; axis < 3; ++axis) {
                const double low = part.extents[2 * axis], high = part.extents[2 * axis + 1];
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

} // namespace kvo
