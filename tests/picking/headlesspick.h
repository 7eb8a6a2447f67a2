// The fixture of picks in real selection mode: a software context without a display, models built in memory, and their
// places in the window worked out independently of the picking code.
#ifndef HEADLESSPICK_H
#define HEADLESSPICK_H

#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <set>

#include <gtest/gtest.h>

#include "headless_context.h"
#include "modelbuilder.h"
#include "mtrans.h"
#include "mview.h"
#include "offscreen.h"
#include "outputcapture.h"
#include "pickrect.h"

struct WindowPoint
{
    double x, y, depth;
};

// A pick region: centre and size in window pixels, y upwards, as PickRect takes it.
struct Region
{
    float x, y, width, height;

    static Region around(const WindowPoint& point, float size = 3)
    {
        return {static_cast<float>(point.x), static_cast<float>(point.y), size, size};
    }
    Region grown(float pixels) const { return {x, y, width + 2 * pixels, height + 2 * pixels}; }
    bool holds(const WindowPoint& point) const
    {
        return std::abs(point.x - x) <= width / 2 && std::abs(point.y - y) <= height / 2;
    }
};

class HeadlessPick : public testing::Test
{
protected:
    static constexpr int windowWidth = 400, windowHeight = 300;

    void SetUp() override
    {
        output.emplace(1);
        errors.emplace(2);
        context.emplace("software");
        target.emplace(windowWidth, windowHeight);
    }

    void TearDown() override
    {
        model.reset();
        target.reset();
        context.reset();
        errors->stop();
        output->stop();
        if (HasFailure()) {
            std::fputs(output->all().c_str(), stdout);
        }
    }

    // Everything up to the first frame; lights off, so that pixels have the parts' own colours.
    void load(const std::vector<PartInfoStr>& parts, int viewType = TOP_VIEW, int shadeModel = GL_FLAT)
    {
        model.reset(new TestModel(shadeModel));
        for (const PartInfoStr& part : parts) {
            model->add(part);
        }
        model->install();
        env = &**model;
        glShadeModel(static_cast<GLenum>(shadeModel));
        env->computeNormals();
        env->setHideMode(1);
        env->mView->mViewType = viewType;
        env->resizeModel(windowWidth, windowHeight);
    }

    // A model with one frame drawn, as hosts pick.
    void show(const std::vector<PartInfoStr>& parts, int viewType = TOP_VIEW, int shadeModel = GL_FLAT)
    {
        load(parts, viewType, shadeModel);
        draw();
    }

    void draw()
    {
        env->renderModel();
        std::copy_n(env->mTrans->mvMatrix, 16, modelview);
        std::copy_n(env->mTrans->projMatrix, 16, projection);
    }

    int process(unsigned int type, unsigned int method, const Region& region)
    {
        float values[] = {region.x, region.y, region.width, region.height};
        output->take();
        return pick.process(static_cast<int>(type), static_cast<int>(method), values);
    }

    int click(unsigned int type, const WindowPoint& point) { return process(type, SELECT_PICK, Region::around(point)); }

    static Region wholeWindow() { return {windowWidth / 2.0f, windowHeight / 2.0f, windowWidth, windowHeight}; }

    // Where a point of the model is in the frame drawn last.
    WindowPoint project(const float* xyz) const
    {
        const GLint viewport[] = {0, 0, windowWidth, windowHeight};
        WindowPoint point = {0, 0, 0};
        gluProject(xyz[0], xyz[1], xyz[2], modelview, projection, viewport, &point.x, &point.y, &point.depth);
        return point;
    }
    WindowPoint project(float x, float y, float z) const
    {
        const float xyz[] = {x, y, z};
        return project(xyz);
    }
    WindowPoint node(unsigned int part, unsigned int index) const
    {
        return project(model->part(part).partNodes.nodeValues + 3 * index);
    }

    // The middle of an element's corners.
    WindowPoint middle(unsigned int part, unsigned int element) const
    {
        const std::vector<WindowPoint> points = corners(part, element);
        WindowPoint sum = {0, 0, 0};
        for (const WindowPoint& p : points) {
            sum = {sum.x + p.x, sum.y + p.y, sum.depth + p.depth};
        }
        const double n = static_cast<double>(points.size());
        return {sum.x / n, sum.y / n, sum.depth / n};
    }

    std::vector<WindowPoint> corners(unsigned int part, unsigned int element) const
    {
        const PartElementsStr& e = model->part(part).partElements;
        std::vector<WindowPoint> points;
        for (unsigned int k = 0; k < (e.nodesPerElement == 3 ? 2 : e.nodesPerElement); ++k) {
            points.push_back(node(part, e.elmIndices[e.nodesPerElement * element + k]));
        }
        return points;
    }

    unsigned int elementsOf(unsigned int part) const
    {
        const PartElementsStr& e = model->part(part).partElements;
        return e.numElements / e.nodesPerElement;
    }

    // 1-based numbers of the parts with a flag.
    Indices partsWith(unsigned int flag) const
    {
        Indices numbers;
        for (unsigned int k = 0; k < env->numParts; ++k) {
            if (model->flags(k) & flag) {
                numbers.push_back(k + 1);
            }
        }
        return numbers;
    }
    Indices selectedParts() const { return partsWith(PART_SELECTED); }
    bool nothingSelected() const
    {
        return partsWith(PART_SELECTED | PART_ELEMENTS_SELECTED | PART_NODES_SELECTED).empty();
    }

    // Flag characters of a part; empty while it has no array.
    std::string elementMarks(unsigned int part) const
    {
        const char* marks = model->part(part).partElements.selectedList;
        return marks ? std::string(marks, elementsOf(part)) : "";
    }
    std::string nodeMarks(unsigned int part) const
    {
        const PartNodesStr& n = model->part(part).partNodes;
        return n.selectedNodes ? std::string(n.selectedNodes, n.numNodes) : "";
    }

    // '0' but for the given 0-based positions.
    static std::string marksOf(unsigned int count, const std::set<unsigned int>& marked)
    {
        std::string marks(count, NOT_SELECTED_CHAR);
        for (unsigned int k : marked) {
            marks[k] = SELECTED_CHAR;
        }
        return marks;
    }

    void clearSelection()
    {
        env->clearSelectedParts();
        env->clearSelectedElements();
        env->clearSelectedNodes();
    }

    std::string printed() { return output->take(); }

    kvo::Color pixelAt(const WindowPoint& point)
    {
        return target->read().at(static_cast<int>(point.x), windowHeight - 1 - static_cast<int>(point.y));
    }

    static PartInfoStr colored(PartInfoStr part, float r, float g, float b)
    {
        const float color[4] = {r, g, b, 1};
        std::copy(color, color + 4, part.partColor);
        return part;
    }
    static PartInfoStr hidden(PartInfoStr part)
    {
        part.partFlag = PART_HIDDEN;
        return part;
    }

    // A square of side 2 about (x, y) at height z.
    static PartInfoStr square(float x, float y, float z)
    {
        return makePart(SHELL, 4, {x - 1, y - 1, z, x + 1, y - 1, z, x + 1, y + 1, z, x - 1, y + 1, z}, {0, 1, 2, 3});
    }

    std::optional<OutputCapture> output, errors;
    std::optional<kvo::HeadlessContext> context;
    std::optional<kvo::Offscreen> target;
    std::unique_ptr<TestModel> model;
    CAEEnv* env = nullptr;
    PickRect pick;
    double modelview[16], projection[16]; // of the frame drawn last; a pick overwrites the environment's
};

#endif
