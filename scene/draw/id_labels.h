// Where ids stand in the window: at what the picture shows, no two in each other's way.
#ifndef KVO_SCENE_ID_LABELS_H
#define KVO_SCENE_ID_LABELS_H

#include <string>
#include <vector>

#include "overlay_painter.h"

namespace kvo {

struct IdLabel
{
    int x = 0; // pixels of the viewport, y upwards: the middle of the text
    int y = 0;
    std::string text;
    int rank = 0; // lower ranks are placed first
};

// Leaves out labels that would overlap one before them, or hang over the viewport's edge. Only near labels are
// compared: a grid of cells as large as the largest label. spacing: pixels that stay free between labels.
std::vector<IdLabel> thinOut(std::vector<IdLabel> labels, const OverlayPainter& painter, int spacing);

// Each on a small plate in the colour of the background.
void drawLabels(OverlayPainter& painter, const std::vector<IdLabel>& labels);

} // namespace kvo

#endif
