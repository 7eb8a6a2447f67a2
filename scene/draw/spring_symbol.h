// How line elements are drawn.
#ifndef KVO_SCENE_SPRING_SYMBOL_H
#define KVO_SCENE_SPRING_SYMBOL_H

#include <vector>

namespace kvo {

// Appends pairs of points (x, y, z each), one pair a line: a straight line from a to b, or, for springs and dampers, a
// coil with straight ends. A spring without length gets no coil, only its point twice.
void addLineSymbol(bool spring, const float* a, const float* b, std::vector<float>& out);

} // namespace kvo

#endif
