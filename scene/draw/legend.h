// What the colours mean: a bar with numbers, or a list of categories, at the right edge of the window.
#ifndef KVO_SCENE_LEGEND_H
#define KVO_SCENE_LEGEND_H

#include <string>
#include <vector>

#include "overlay_painter.h"
#include <kvo/coloring.h>

namespace kvo {

// The numbers beside the bar, from its lower end to its upper: both ends and even steps between, short but different.
std::vector<std::string> legendNumbers(float low, float high, unsigned int steps);

// The painter has a font. Draws nothing for a colouring by neither value nor category. What does not fit into the
// window is left out and counted in a last line.
void drawLegend(OverlayPainter& painter, const Coloring& coloring);

} // namespace kvo

#endif
