// Colours as users write them.
#ifndef KVO_COLORS_H
#define KVO_COLORS_H

#include <string>

#include "picture.h"

namespace kvo {

// "#RRGGBB", "black", "white" or "grey". Throws UsageError, naming the option, for anything else.
Color parseColor(const std::string& text, const std::string& option);

} // namespace kvo

#endif
