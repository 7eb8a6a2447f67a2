#include "scene_state.h"

#include <algorithm>
#include <cstring>

#include "surface_program.h"

namespace kvo {

namespace {

constexpr std::size_t floatsPerPart = 8;

// The colour that marks a part, or null.
const float* markOf(const ShownModel::Impl& model, const ShownPart& part)
{
    if (part.selected) {
        return model.selectionColor.data();
    }
    return part.highlighted ? model.highlightColor.data() : nullptr;
}

const Category* categoryOf(const Coloring& coloring, std::size_t part)
{
    const int category = part < coloring.categoryOfPart.size() ? coloring.categoryOfPart[part] : -1;
    const bool known = category >= 0 && static_cast<std::size_t>(category) < coloring.categories.size();
    return known ? &coloring.categories[static_cast<std::size_t>(category)] : nullptr;
}

} // namespace

void SceneState::forget()
{
    partTexels.clear();
    vertexTexels.clear();
    asSeen.clear();
}

void SceneState::updateParts(const ShownModel::Impl& model, const Coloring& coloring)
{
    std::vector<float> texels;
    texels.reserve(floatsPerPart * model.parts.size());
    for (const ShownPart& part : model.parts) {
        const float* const mark = markOf(model, part);
        const float* color = mark ? mark : part.color.data();
        texels.insert(texels.end(), color, color + 4);
        const Category* category = categoryOf(coloring, texels.size() / floatsPerPart);
        if (category && !mark) {
            std::copy_n(&category->color.r, 3, texels.end() - 4);
        }
        const float marked = mark ? 1.0f : 0.0f;
        const float byElement = part.selectedElements.bytes ? 1.0f : 0.0f;
        texels.insert(texels.end(), {marked, byElement, 0.0f, 0.0f});
    }
    if (texels == partTexels) {
        return;
    }
    partTexture.fill(GL_RGBA32F, texels.data(), texels.size() * sizeof(float));
    partTexels.swap(texels);
}

// Neighbouring parts that changed are written together; all of them when the buffer is made.
void SceneState::updateVertexColors(const SceneGeometry& geometry)
{
    const std::vector<std::uint32_t>& starts = geometry.vertexStarts();
    const std::size_t parts = starts.size() - 1;
    const bool all = vertexTexels.size() != partTexels.size();
    const auto changed = [&](std::size_t part) {
        const float* now = &partTexels[floatsPerPart * part];
        return all || !std::equal(now, now + 4, &vertexTexels[floatsPerPart * part]);
    };
    RawVector<std::uint16_t> colors;
    colors.reserve(all ? 4 * std::size_t(starts.back()) : 0);
    for (std::size_t part = 0; part < parts; ++part) {
        const std::size_t first = part;
        colors.clear();
        for (; part < parts && changed(part); ++part) {
            std::uint16_t color[4];
            for (int k = 0; k < 4; ++k) {
                const float value = std::min(std::max(partTexels[floatsPerPart * part + k], 0.0f), 1.0f);
                color[k] = static_cast<std::uint16_t>(value * 65535 + 0.5f);
            }
            for (std::uint32_t vertex = starts[part]; vertex < starts[part + 1]; ++vertex) {
                colors.insert(colors.end(), color, color + 4);
            }
        }
        if (all) {
            vertexColors.fill(GL_ARRAY_BUFFER, colors, GL_DYNAMIC_DRAW);
        } else if (!colors.empty()) {
            vertexColors.change(GL_ARRAY_BUFFER, std::size_t(8) * starts[first], colors.data(), 2 * colors.size());
        }
    }
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    vertexTexels = partTexels;
}

void SceneState::bindVertexColors() const
{
    vertexColors.bind(GL_ARRAY_BUFFER);
    glEnableVertexAttribArray(colorAttribute);
    glVertexAttribPointer(colorAttribute, 4, GL_UNSIGNED_SHORT, GL_TRUE, 0, nullptr);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void SceneState::unbindVertexColors()
{
    glDisableVertexAttribArray(colorAttribute);
}

// True when the part's bits changed.
bool SceneState::updateElements(const MarkBytes& now, std::uint32_t first, std::uint32_t count)
{
    const std::size_t known = std::min<std::size_t>(count, now.count);
    if (std::memcmp(now.bytes, &asSeen[first], known) == 0) {
        return false;
    }
    std::memcpy(&asSeen[first], now.bytes, known);
    now.states(count, &bits[first]);
    return true;
}

void SceneState::update(const ShownModel::Impl& model, const SceneGeometry& geometry, const Coloring& coloring)
{
    updateParts(model, coloring);
    const auto isSelected = [](const ShownPart& part) { return part.selectedElements.bytes != nullptr; };
    elementsSelected = std::any_of(model.parts.begin(), model.parts.end(), isSelected);
    if (!elementsSelected) {
        updateVertexColors(geometry);
        return;
    }
    const bool all = asSeen.size() != geometry.elementCount();
    if (all) {
        asSeen.assign(geometry.elementCount(), 0);
        bits.assign(geometry.elementCount(), 0);
    }
    const std::vector<std::uint32_t>& starts = geometry.elementStarts();
    for (std::size_t k = 0; k < model.parts.size() && k + 1 < starts.size(); ++k) {
        const std::uint32_t first = starts[k], count = std::min(starts[k + 1] - first, model.meshes[k].elementCount);
        if (isSelected(model.parts[k]) && updateElements(model.parts[k].selectedElements, first, count) && !all) {
            stateTexture.change(first, &bits[first], count);
        }
    }
    if (all) {
        stateTexture.fill(GL_R8UI, bits.data(), bits.size());
    }
}

void SceneState::bind() const
{
    partTexture.bind(partsUnit);
    stateTexture.bind(statesUnit);
}

} // namespace kvo
