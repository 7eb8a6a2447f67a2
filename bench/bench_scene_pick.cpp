// Picks without OpenGL on a sheet of quadrilaterals and a block of hexahedra, the selection-mode pick beside them.
//
//   bench_scene_pick [--no-contract] [N ...]
//
// One line per mesh of N elements (default 1000000), times in milliseconds in a window of 1280x800: building the index,
// then picks of elements (median of several; `first` the first, which looks up the deck's ids as well), each with its
// hits. "contract" is one pick in selection mode on the processor; it runs over on many hits and then finds none. A
// driver of this kind may keep memory of each such pick for good. Fails when a pick of elements or parts hits nothing
// or when the two picks of a click find different numbers of elements.
#include <GL/gl.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "boundbox.h"
#include "caeenv.h"
#include "headless_context.h"
#include "mantypes.h"
#include "model_generator.h"
#include "mtrans.h"
#include "mview.h"
#include "offscreen.h"
#include "output_redirect.h"
#include "pickrect.h"
#include <kvo/through_picker.h>

namespace {

constexpr int width = 1280, height = 800;

double millisecondsOf(const std::function<void()>& action)
{
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double medianOf(int times, const std::function<void()>& action)
{
    std::vector<double> all;
    for (int k = 0; k < times; ++k) {
        all.push_back(millisecondsOf(action));
    }
    std::nth_element(all.begin(), all.begin() + times / 2, all.end());
    return all[static_cast<std::size_t>(times / 2)];
}

// An environment with one part, as after loading.
class Model
{
public:
    explicit Model(GeneratedMesh mesh) : made(new CAEEnv("bench", "bench", GL_FLAT)), env(*made)
    {
        PartInfoStr* part = new PartInfoStr[1]();
        part->partDrawType = mesh.drawType;
        part->partFlag = PART_SHOWN;
        PartNodesStr& nodes = part->partNodes;
        nodes.numNodes = static_cast<unsigned int>(mesh.nodeIds.size());
        nodes.idList = new unsigned int[mesh.nodeIds.size()];
        nodes.nodeValues = new float[mesh.xyz.size()];
        std::copy(mesh.nodeIds.begin(), mesh.nodeIds.end(), nodes.idList);
        std::copy(mesh.xyz.begin(), mesh.xyz.end(), nodes.nodeValues);
        PartElementsStr& elements = part->partElements;
        elements.numElements = static_cast<unsigned int>(mesh.corners.size());
        elements.nodesPerElement = mesh.stride;
        elements.elmIndices = new unsigned int[mesh.corners.size()];
        for (std::size_t k = 0; k < mesh.corners.size(); ++k) {
            elements.elmIndices[k] = mesh.corners[k] - mesh.nodeIds[0];
        }
        elements.eidMap = new UIUIMap;
        for (std::size_t k = 0; k < mesh.elementIds.size(); ++k) {
            elements.eidMap->emplace_hint(elements.eidMap->end(), mesh.elementIds[k], static_cast<unsigned int>(k));
        }
        for (int axis = 0; axis < 3; ++axis) {
            const std::size_t last = mesh.xyz.size() - 3 + static_cast<std::size_t>(axis);
            env.modelExtents[2 * axis] = std::min(mesh.xyz[static_cast<std::size_t>(axis)], mesh.xyz[last]);
            env.modelExtents[2 * axis + 1] = std::max(mesh.xyz[static_cast<std::size_t>(axis)], mesh.xyz[last]);
        }
        if (mesh.drawType == SHELL) {
            env.modelExtents[4] = -3;
            env.modelExtents[5] = 3;
        }
        std::copy_n(env.modelExtents, 6, part->partExtents);
        env.partsInfoList = part;
        env.numParts = 1;
        env.boxList = new BoundBox*[1];
        env.boxList[0] = new BoundBox(part->partExtents);
        env.pidMap[1] = 0;
        env.mView = new MView(env.modelExtents);
        env.mTrans = new MTransform(env.modelExtents);
    }

    // The environment releases what the record and the boxes hold, not the two lists.
    ~Model()
    {
        const PartInfoStr* const parts = env.partsInfoList;
        BoundBox** const boxes = env.boxList;
        const kvo::OutputRedirect quiet("");
        made.reset();
        delete[] parts;
        delete[] boxes;
    }

    // The view of a frame, found by picking nothing: the matrices of the bracket, without drawing the model.
    kvo::PickView show()
    {
        env.computeNormals();
        env.setHideMode(1);
        env.mView->mViewType = ISO_VIEW;
        env.resizeModel(width, height);
        for (int k = 0; k < 2; ++k) {
            env.mView->update();
            env.mTrans->processStart();
            env.mTrans->processEnd();
        }
        return kvo::viewOf(*env.mTrans);
    }

private:
    std::unique_ptr<CAEEnv> made;

public:
    CAEEnv& env;
};

struct Row
{
    double milliseconds = 0;
    std::size_t hits = 0;
};

Row contractPick(const kvo::PickRegion& region)
{
    float values[] = {region.x, region.y, region.width, region.height};
    Row row;
    PickRect pick;
    row.milliseconds = millisecondsOf([&] {
        const kvo::OutputRedirect quiet("");
        row.hits = static_cast<std::size_t>(pick.process(PICK_TYPE_ELEMENT, SELECT_PICK, values));
    });
    return row;
}

struct Work
{
    const char* name;
    kvo::PickType type;
    kvo::PickRegion region;
    int times;
    bool contract;
};

bool run(const char* meshName, GeneratedMesh mesh, bool withContract)
{
    const std::size_t count = mesh.elementIds.size();
    std::optional<kvo::OutputRedirect> quiet(std::in_place, "");
    Model model(std::move(mesh));
    const kvo::PickView view = model.show();
    quiet.reset();
    const double x = width / 2.0, y = height / 2.0;
    std::vector<kvo::WindowPosition> lasso;
    for (int k = 0; k < 100; ++k) {
        lasso.push_back(
            {x + (k % 2 ? 200 : 300) * std::cos(k * 0.0628), y + (k % 2 ? 200 : 300) * std::sin(k * 0.0628)});
    }
    const Work works[] = {
        {"click 5x5", kvo::PickType::Element, kvo::PickRegion::click(x, y), 51, true},
        {"click node", kvo::PickType::Node, kvo::PickRegion::click(x, y), 51, false},
        {"click part", kvo::PickType::Part, kvo::PickRegion::click(x, y), 51, false},
        {"rect 200x120", kvo::PickType::Element, kvo::PickRegion::rectangle(x, y, x + 200, y + 120), 21, true},
        {"lasso", kvo::PickType::Element, kvo::PickRegion::polygon(lasso), 7, false},
        {"window", kvo::PickType::Element, kvo::PickRegion::rectangle(0, 0, width, height), 7, true},
        {"window part", kvo::PickType::Part, kvo::PickRegion::rectangle(0, 0, width, height), 7, false},
    };
    kvo::ThroughPicker picker(model.env);
    const double build = medianOf(7, [&] {
        picker.geometryChanged();
        picker.prepare(kvo::PickType::Element);
    });
    std::printf("%-6s %9zu  %-13s %10.2f ms  %.1f bytes an element\n", meshName, count, "index", build,
                static_cast<double>(picker.indexBytes()) / static_cast<double>(count));
    bool right = true;
    for (const Work& work : works) {
        std::size_t hits = 0;
        const auto pick = [&] { hits = picker.pick(work.type, work.region, view).size(); };
        const double first = millisecondsOf(pick);
        const double usual = medianOf(work.times, pick);
        const double nearest = medianOf(work.times, [&] { picker.nearest(work.type, work.region, view); });
        std::printf("%-6s %9zu  %-13s %10.3f ms  first %8.2f  nearest %8.3f  hits %8zu", meshName, count, work.name,
                    usual, first, nearest, hits);
        right = right && (hits > 0 || work.type == kvo::PickType::Node);
        if (work.contract && withContract) {
            const Row contract = contractPick(work.region);
            std::printf("  contract %8.1f ms  hits %8zu  ratio %7.0f", contract.milliseconds, contract.hits,
                        contract.milliseconds / usual);
            right = right && (contract.hits == 0 || contract.hits == hits);
        }
        std::printf("\n");
        std::fflush(stdout);
    }
    return right;
}

} // namespace

int main(int argc, char** argv)
{
    bool contract = true;
    std::vector<std::size_t> sizes;
    for (int k = 1; k < argc; ++k) {
        if (std::strcmp(argv[k], "--no-contract") == 0) {
            contract = false;
        } else {
            sizes.push_back(static_cast<std::size_t>(std::atoll(argv[k])));
        }
    }
    if (sizes.empty()) {
        sizes.push_back(1000000);
    }
    kvo::HeadlessContext context("software");
    kvo::Offscreen target(width, height);
    bool right = true;
    for (std::size_t size : sizes) {
        right = run("quads", generateQuadrilaterals(size, 1, 1), contract) && right;
        right = run("hexas", generateHexahedra(size, 1, 1), contract) && right;
    }
    if (!right) {
        std::printf("FAILED: a pick found nothing, or not what the other found\n");
    }
    return right ? 0 : 1;
}
