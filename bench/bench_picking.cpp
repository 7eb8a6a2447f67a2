// What a pick costs against the number of elements: one click, and a rectangle over the whole window.
//
//   bench_picking [--benchmark_...]
// Rows: SHAPE/TYPE/METHOD/N with SHAPE quads or hexahedra, TYPE part, element or node, METHOD click or window, for N
// elements in one part; and SHAPE/frame/N, a frame of the same model to compare with. Columns: hits, what the pick
// returned, 0 where the selection buffer overflowed; ns_per_element; kept_MiB, the memory that the driver held on to
// after the passes. Everything that the library prints is written, to /dev/null. Exit code 1 when a pick is wrong.
//
// Mesa keeps memory for every vertex of every pass in selection mode, so each row has few passes.
#include <GL/gl.h>
#include <GL/glu.h>
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench_model.h"
#include "boundbox.h"
#include "caeenv.h"
#include "headless_context.h"
#include "model_generator.h"
#include "mtrans.h"
#include "mview.h"
#include "offscreen.h"
#include "output_redirect.h"
#include "pickrect.h"

namespace {

constexpr int windowWidth = 1280, windowHeight = 960;

// A model of one part in a context of its own, one frame drawn. Nothing is printed while it lives.
class Scene
{
public:
    Scene(bool solids, std::size_t numElements)
        : quiet(""), context("software"), target(windowWidth, windowHeight),
          record(partOf(solids ? generateHexahedra(numElements, 1, 1) : generateQuadrilaterals(numElements, 1, 1))),
          box(new BoundBox(record.partExtents)), env("", "", GL_FLAT)
    {
        env.numParts = 1;
        env.partsInfoList = &record; // an environment releases what is in these two arrays, not the arrays
        env.boxList = &box;
        std::copy_n(record.partExtents, 6, env.modelExtents);
        env.mView = new MView(env.modelExtents);
        env.mTrans = new MTransform(env.modelExtents);
        env.mView->mViewType = solids ? ISO_VIEW : TOP_VIEW;
        env.setShadeModel(GL_FLAT);
        env.switchOnLights();
        env.resizeModel(windowWidth, windowHeight);
        env.renderModel();
        std::copy_n(env.mTrans->mvMatrix, 16, modelview);
        std::copy_n(env.mTrans->projMatrix, 16, projection);
    }

    std::size_t numElements() const { return record.partElements.numElements / record.partElements.nodesPerElement; }
    std::size_t numNodes() const { return record.partNodes.numNodes; }

    // A region of 3 x 3 pixels on a node, or on the middle of a face, of the element in the middle of the mesh.
    std::array<float, 4> click(bool onNode) const
    {
        const PartElementsStr& e = record.partElements;
        const unsigned int* corners = e.elmIndices + numElements() / 2 * e.nodesPerElement;
        const unsigned int numPoints = onNode ? 1 : 4;
        const int viewport[4] = {0, 0, windowWidth, windowHeight};
        double middle[2] = {0, 0}, at[3];
        for (unsigned int k = 0; k < numPoints; ++k) {
            const float* n = record.partNodes.nodeValues + 3 * std::size_t{corners[k]};
            gluProject(n[0], n[1], n[2], modelview, projection, viewport, &at[0], &at[1], &at[2]);
            middle[0] += at[0] / numPoints;
            middle[1] += at[1] / numPoints;
        }
        return {static_cast<float>(middle[0]), static_cast<float>(middle[1]), 3, 3};
    }

private:
    kvo::OutputRedirect quiet;
    kvo::HeadlessContext context;
    kvo::Offscreen target;
    PartInfoStr record;
    BoundBox* box;
    double modelview[16], projection[16];

public:
    CAEEnv env;
};

struct PickType
{
    const char* name;
    unsigned int type;
};
const PickType pickTypes[] = {{"part", PICK_TYPE_PART}, {"element", PICK_TYPE_ELEMENT}, {"node", PICK_TYPE_NODE}};

double residentMiB()
{
    long pages = 0, resident = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2) {
            resident = 0;
        }
        std::fclose(file);
    }
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024 * 1024);
}

// Runs the work once per iteration, timed by itself. The driver compiles its own code in the first pass of a context;
// where there are several passes, one goes before.
template <class Work> void measure(benchmark::State& state, std::size_t numElements, Work work)
{
    if (state.max_iterations > 1) {
        work();
    }
    const double before = residentMiB();
    double total = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(elapsed.count());
        total += elapsed.count();
    }
    state.counters["ns_per_element"] =
        1e9 * total / static_cast<double>(state.iterations()) / static_cast<double>(numElements);
    state.counters["kept_MiB"] = residentMiB() - before;
}

// What a rectangle over the window must return: every part, element (and the axis triad, a record of four words) or
// node, or nothing where the records of five words do not fit.
std::size_t expectedInWindow(const Scene& scene, unsigned int type)
{
    if (type == PICK_TYPE_PART) {
        return 1;
    }
    const std::size_t records = type == PICK_TYPE_ELEMENT ? scene.numElements() : scene.numNodes();
    if (5 * records + 4 > SELECT_BUFFER_SIZE) {
        return 0;
    }
    return records + (type == PICK_TYPE_ELEMENT ? 1 : 0);
}

void runPick(benchmark::State& state, bool solids, unsigned int type, bool window)
{
    std::size_t hits = 0;
    bool right = true;
    {
        Scene scene(solids, static_cast<std::size_t>(state.range(0)));
        PickRect pick;
        std::array<float, 4> region = {windowWidth / 2, windowHeight / 2, windowWidth, windowHeight};
        if (!window) {
            region = scene.click(type == PICK_TYPE_NODE);
        }
        measure(state, scene.numElements(), [&] {
            hits = static_cast<std::size_t>(
                pick.process(static_cast<int>(type), window ? RECT_PICK : SELECT_PICK, region.data()));
            right = right && (window ? hits == expectedInWindow(scene, type) : hits > 0);
        });
    }
    state.counters["hits"] = static_cast<double>(hits);
    if (!right) {
        std::fprintf(stderr, "bench_picking: wrong number of hits: %zu\n", hits);
        std::exit(1);
    }
}

void runFrame(benchmark::State& state, bool solids)
{
    Scene scene(solids, static_cast<std::size_t>(state.range(0)));
    measure(state, scene.numElements(), [&] {
        scene.env.renderModel();
        glFinish();
    });
}

template <class Run> void addRows(const std::string& name, Run run)
{
    for (int numElements : {10000, 100000, 1000000}) {
        benchmark::RegisterBenchmark(name.c_str(), run)
            ->Arg(numElements)
            ->Iterations(numElements > 100000 ? 1 : 3)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    for (bool solids : {false, true}) {
        const std::string shape = solids ? "hexahedra" : "quads";
        addRows(shape + "/frame", [=](benchmark::State& state) { runFrame(state, solids); });
        for (const PickType& type : pickTypes) {
            for (bool window : {false, true}) {
                addRows(shape + "/" + type.name + (window ? "/window" : "/click"),
                        [=](benchmark::State& state) { runPick(state, solids, type.type, window); });
            }
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
