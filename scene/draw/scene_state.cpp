#include "scene_state.h"

#include <algorithm>
#include <cstring>

#include "caeenv.h"
#include "surface_program.h"

namespace kvo {

namespace {

constexpr std::size_t floatsPerPart = 8;

// The colour that marks a part, or null.
const float* markOf(const CAEEnv& env, const PartInfoStr& part)
{
    if ((part.partFlag & PART_SELECTED) || &part == env.segmentPart) {
        return env.colorBlue;
    }
    return part.partFlag & PART_HIGHLIGHTED ? env.colorGreen : nullptr;
}

const Category* categoryOf(const Coloring& coloring, std::size_t part)
{
    const int category = part < coloring.categoryOfPart.size() ? coloring.categoryOfPart[part] : -1;
    const bool known = category >= 0 && static_cast<std::size_t>(category) < coloring.categories.size();
    return known ? &coloring.categories[static_cast<std::size_t>(category)] : nullptr;
}

bool hasSelectedElements(const PartInfoStr& part)
{
    return (part.partFlag & PART_ELEMENTS_SELECTED) && part.partElements.selectedList;
}

} // namespace

void SceneState::forget()
{
    partTexels.clear();
    vertexTexels.clear();
    characters.clear();
}

void SceneState::updateParts(const CAEEnv& env, const std::vector<const PartInfoStr*>& parts, const Coloring& coloring)
{
    std::vector<float> texels;
    texels.reserve(floatsPerPart * parts.size());
    for (const PartInfoStr* part : parts) {
        const float* const mark = markOf(env, *part);
        const float* color = mark ? mark : part->partColor;
        texels.insert(texels.end(), color, color + 4);
        const Category* category = categoryOf(coloring, texels.size() / floatsPerPart);
        if (category && !mark) {
            std::copy_n(&category->color.r, 3, texels.end() - 4);
        }
        const float marked = mark ? 1.0f : 0.0f;
        const float byElement = hasSelectedElements(*part) ? 1.0f : 0.0f;
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
bool SceneState::updateElements(const PartInfoStr& part, std::uint32_t first, std::uint32_t count)
{
    const char* now = part.partElements.selectedList;
    if (std::memcmp(now, &characters[first], count) == 0) {
        return false;
    }
    std::memcpy(&characters[first], now, count);
    std::uint8_t state = 0;
    for (std::uint32_t k = 0; k < count; ++k) {
        state = now[k] == SELECTED_CHAR ? 1 : now[k] == NOT_SELECTED_CHAR ? 0 : state;
        bits[first + k] = state;
    }
    return true;
}

void SceneState::update(const CAEEnv& env, const SceneGeometry& geometry, const Coloring& coloring)
{
    const std::vector<const PartInfoStr*> parts = sceneParts(env);
    updateParts(env, parts, coloring);
    elementsSelected =
        std::any_of(parts.begin(), parts.end(), [](const PartInfoStr* p) { return hasSelectedElements(*p); });
    if (!elementsSelected) {
        updateVertexColors(geometry);
        return;
    }
    const bool all = characters.size() != geometry.elementCount();
    if (all) {
        characters.assign(geometry.elementCount(), 0);
        bits.assign(geometry.elementCount(), 0);
    }
    const std::vector<std::uint32_t>& starts = geometry.elementStarts();
    for (std::size_t k = 0; k < parts.size() && k + 1 < starts.size(); ++k) {
        const std::uint32_t first = starts[k], count = std::min(starts[k + 1] - first, elementCountOf(*parts[k]));
        if (hasSelectedElements(*parts[k]) && updateElements(*parts[k], first, count) && !all) {
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
