// Tables of words.
#include "names.h"

#include "mantypes.h"
#include "mview.h"

namespace kvo {

const std::vector<NamedView>& standardViews()
{
    static const std::vector<NamedView> views = {
        {"iso", "Iso", ISO_VIEW},    {"top", "Top", TOP_VIEW},       {"bottom", "Bottom", BOTTOM_VIEW},
        {"left", "Left", LEFT_VIEW}, {"right", "Right", RIGHT_VIEW}, {"front", "Front", FRONT_VIEW},
        {"back", "Back", BACK_VIEW},
    };
    return views;
}

const NamedView* findView(const std::string& name)
{
    for (const NamedView& view : standardViews()) {
        if (name == view.name)
            return &view;
    }
    return nullptr;
}

std::string kindName(unsigned int drawType)
{
    switch (drawType) {
    case SHELL:
        return "shell";
    case SOLID:
        return "solid";
    case BEAM:
        return "beam";
    case DISCRETE:
        return "discrete";
    default:
        return "type " + std::to_string(drawType);
    }
}

} // namespace kvo
