// The drawing library's numbers of element kinds (mantypes.h). Private to the libraries.
#ifndef KVO_DRAW_TYPES_H
#define KVO_DRAW_TYPES_H

#include <kvo/model.h>

#include "mantypes.h"

namespace kvo {

inline ElementKind elementKindOf(unsigned int drawType)
{
    switch (drawType) {
    case SHELL:
        return ElementKind::Shell;
    case SOLID:
        return ElementKind::Solid;
    case BEAM:
        return ElementKind::Beam;
    case DISCRETE:
        return ElementKind::Discrete;
    default:
        return ElementKind::Other;
    }
}

} // namespace kvo

#endif
