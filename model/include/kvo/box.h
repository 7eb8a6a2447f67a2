// A box along the model's axes.
#ifndef KVO_BOX_H
#define KVO_BOX_H

namespace kvo {

struct Box
{
    double low[3] = {0, 0, 0};
    double high[3] = {0, 0, 0};
    double size(int axis) const { return high[axis] - low[axis]; }
    double center(int axis) const { return (low[axis] + high[axis]) / 2; }
};

} // namespace kvo

#endif
