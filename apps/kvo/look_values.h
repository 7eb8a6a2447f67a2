// Values of looks as users write them.
#ifndef KVO_LOOK_VALUES_H
#define KVO_LOOK_VALUES_H

#include <string>
#include <vector>

#include "id_list.h"
#include <kvo/scene_view.h>

namespace kvo {

struct TransparentParts
{
    std::vector<IdPiece> ids;
    float alpha = 1;
};

// "IDS" or "IDS=OPACITY", of --transparent. Throws UsageError.
TransparentParts parseTransparent(const std::string& text);

// Of --section: "x=10.." keeps what has x from 10 on, "x=..10" what has x up to 10; six numbers are a point of the
// plane and the direction towards what stays. Throws UsageError.
void parseSection(const std::string& text, SceneSection& out);

} // namespace kvo

#endif
