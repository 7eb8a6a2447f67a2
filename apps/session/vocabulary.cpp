// Tables of words.
#include "vocabulary.h"

#include <GL/gl.h>

#include "caeenv.h"
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
        if (name == view.name) {
            return &view;
        }
    }
    return nullptr;
}

const std::vector<NamedCode>& pickTypes()
{
    static const std::vector<NamedCode> codes = {
        {"part", PICK_TYPE_PART}, {"element", PICK_TYPE_ELEMENT}, {"node", PICK_TYPE_NODE}};
    return codes;
}

const std::vector<NamedCode>& shadeModels()
{
    static const std::vector<NamedCode> codes = {{"flat", GL_FLAT}, {"smooth", GL_SMOOTH}};
    return codes;
}

const std::vector<NamedCode>& polygonModes()
{
    static const std::vector<NamedCode> codes = {{"fill", GL_FILL}, {"line", GL_LINE}, {"point", GL_POINT}};
    return codes;
}

const NamedCode* findCode(const std::vector<NamedCode>& codes, const std::string& name)
{
    for (const NamedCode& named : codes) {
        if (name == named.name) {
            return &named;
        }
    }
    return nullptr;
}

std::vector<std::string> namesOf(const std::vector<NamedCode>& codes)
{
    std::vector<std::string> out;
    for (const NamedCode& named : codes) {
        out.push_back(named.name);
    }
    return out;
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
