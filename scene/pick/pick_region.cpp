#include <kvo/pick.h>

#include <algorithm>
#include <cmath>

namespace kvo {

PickRegion PickRegion::click(double x, double y, double size)
{
    PickRegion region;
    region.x = static_cast<float>(x);
    region.y = static_cast<float>(y);
    region.width = region.height = static_cast<float>(size);
    return region;
}

PickRegion PickRegion::rectangle(double x0, double y0, double x1, double y1)
{
    PickRegion region;
    region.x = static_cast<float>((x0 + x1) / 2);
    region.y = static_cast<float>((y0 + y1) / 2);
    region.width = static_cast<float>(std::fabs(x1 - x0));
    region.height = static_cast<float>(std::fabs(y1 - y0));
    return region;
}

PickRegion PickRegion::polygon(std::vector<WindowPosition> outline)
{
    PickRegion region;
    if (!outline.empty()) {
        const auto [left, right] = std::minmax_element(
            outline.begin(), outline.end(), [](const WindowPosition& a, const WindowPosition& b) { return a.x < b.x; });
        const auto [bottom, top] = std::minmax_element(
            outline.begin(), outline.end(), [](const WindowPosition& a, const WindowPosition& b) { return a.y < b.y; });
        region = rectangle(left->x, bottom->y, right->x, top->y);
    }
    region.outline = std::move(outline);
    region.outlined = true;
    return region;
}

} // namespace kvo
