#include "element_colors.h"

#include <algorithm>

#include "parallel.h"

namespace kvo {

namespace {

std::uint8_t byteOf(float channel)
{
    return static_cast<std::uint8_t>(std::min(std::max(channel, 0.0f), 1.0f) * 255 + 0.5f);
}

} // namespace

void ElementColorTexture::update(const Coloring& coloring, const SceneGeometry& geometry)
{
    if (known) {
        return;
    }
    known = true;
    used = coloring.byValue() && geometry.elementCount() > 0;
    if (!used) {
        return;
    }
    std::vector<std::uint8_t> texels(4 * static_cast<std::size_t>(geometry.elementCount()), 0); // alpha 0: no value
    const std::vector<std::uint32_t>& starts = geometry.elementStarts();
    for (std::size_t part = 0; part < geometry.partCount() && part < coloring.values.size(); ++part) {
        const std::vector<float>& values = coloring.values[part];
        std::uint8_t* const out = &texels[4 * static_cast<std::size_t>(starts[part])];
        parallelFor(std::min<std::size_t>(values.size(), starts[part + 1] - starts[part]), 16384,
                    [&](std::size_t begin, std::size_t end) {
                        for (std::size_t k = begin; k < end; ++k) {
                            const Rgb color = coloring.colorOf(values[k]);
                            out[4 * k] = byteOf(color.r);
                            out[4 * k + 1] = byteOf(color.g);
                            out[4 * k + 2] = byteOf(color.b);
                            out[4 * k + 3] = 255;
                        }
                    });
    }
    texture.fill(GL_RGBA8, texels.data(), texels.size());
}

} // namespace kvo
