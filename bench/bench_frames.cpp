// What a frame costs: the drawing library's own, and SceneView's, on the same model in the same run.
//
//   bench_frames [--benchmark_...]
// Rows: SHAPE/PATH/N for N elements, SHAPE quads or hexahedra; quads also zoomed in 20 times; parts/N for N parts of
// 100 quadrilaterals against one part of as many. Then the ratios. Exit code 0.
#include <GL/gl.h>
#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <string>

#include "bench_model.h"
#include "mtrans.h"
#include <kvo/model_frame.h>
#include <kvo/scene_view.h>

namespace {

constexpr int windowWidth = 1280, windowHeight = 800;
std::map<std::string, double> fastest; // ms, by row

double millisecondsOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

void measure(benchmark::State& state, const std::string& row, const std::function<void()>& frame)
{
    frame();
    for (auto _ : state) {
        const double ms = millisecondsOf(frame);
        state.SetIterationTime(ms / 1000);
        const auto at = fastest.emplace(row, ms).first;
        at->second = std::min(at->second, ms);
    }
}

std::vector<PartInfoStr> oneModel(bool solids, std::size_t elements)
{
    return {partOf(solids ? generateHexahedra(elements, 1, 1) : generateQuadrilaterals(elements, 1, 1))};
}

// Small sheets side by side.
std::vector<PartInfoStr> manyParts(std::size_t parts, std::size_t elements)
{
    std::vector<PartInfoStr> out;
    const std::size_t row = static_cast<std::size_t>(std::max(1.0, std::sqrt(double(parts))));
    for (std::size_t k = 0; k < parts; ++k) {
        out.push_back(partOf(generateQuadrilaterals(elements, 1, 1)));
        PartInfoStr& part = out.back();
        const float size = part.partExtents[1] - part.partExtents[0];
        const float by[3] = {size * float(k % row), size * float(k / row), 0};
        for (std::size_t i = 0; i < 3 * std::size_t(part.partNodes.numNodes); ++i) {
            part.partNodes.nodeValues[i] += by[i % 3];
        }
        for (int i = 0; i < 6; ++i) {
            part.partExtents[i] += by[i / 2];
        }
    }
    return out;
}

void zoomIn(CAEEnv& env, float times)
{
    env.getMTransformPtr()->updateScaleForWindow(times, times, times);
}

void contractFrame(BenchModel& model)
{
    kvo::applyFrame(model.environment(), windowWidth, windowHeight);
    model.environment().renderModel();
    glFinish();
}

const char* device = "software";

void benchShape(bool solids, std::size_t elements, float zoom, int iterations)
{
    const std::string name = std::string(solids ? "hexahedra" : "quads") + (zoom > 1 ? "-zoomed" : "");
    for (const char* path : {"contract", "scene"}) {
        const std::string row = name + "/" + path + "/" + std::to_string(elements);
        benchmark::RegisterBenchmark(
            row.c_str(),
            [=](benchmark::State& state) {
                BenchModel model(oneModel(solids, elements), windowWidth, windowHeight, GL_SMOOTH, device);
                if (zoom > 1) {
                    zoomIn(model.environment(), zoom);
                }
                if (std::string(path) == "contract") {
                    measure(state, row, [&] { contractFrame(model); });
                    return;
                }
                kvo::SceneView view(model.environment());
                state.counters["first_ms"] = millisecondsOf([&] {
                    view.draw();
                    glFinish();
                });
                measure(state, row, [&] {
                    view.draw();
                    glFinish();
                });
                state.counters["buffer_bytes_per_element"] = double(view.bufferBytes()) / double(elements);
                state.counters["calls"] = double(view.lastFrame().drawCalls);
            })
            ->UseManualTime()
            ->Iterations(iterations)
            ->Unit(benchmark::kMillisecond);
    }
}

void benchParts(std::size_t parts, std::size_t elements)
{
    const std::string row = "parts/" + std::to_string(parts);
    benchmark::RegisterBenchmark(row.c_str(),
                                 [=](benchmark::State& state) {
                                     BenchModel model(manyParts(parts, elements), windowWidth, windowHeight, GL_SMOOTH,
                                                      device);
                                     kvo::SceneView view(model.environment());
                                     measure(state, row, [&] {
                                         view.draw();
                                         glFinish();
                                     });
                                     state.counters["calls"] = double(view.lastFrame().drawCalls);
                                 })
        ->UseManualTime()
        ->Iterations(10)
        ->Unit(benchmark::kMillisecond);
}

// All elements of a part change their selection between two frames; what the second costs more than one without.
void benchSelection(std::size_t elements)
{
    for (const bool changing : {false, true}) {
        const std::string row = std::string("selection/") + (changing ? "changed" : "same");
        benchmark::RegisterBenchmark(row.c_str(),
                                     [=](benchmark::State& state) {
                                         BenchModel model(oneModel(false, elements), 64, 64, GL_SMOOTH, device);
                                         CAEEnv& env = model.environment();
                                         env.createElementSelectedList();
                                         PartInfoStr& part = env.partsInfoList[0];
                                         part.partFlag |= PART_ELEMENTS_SELECTED;
                                         kvo::SceneView view(env);
                                         bool on = false;
                                         measure(state, row, [&] {
                                             view.draw();
                                             glFinish();
                                         });
                                         // Only what is picked up counts, so the characters are changed outside the
                                         // measured time.
                                         double least = 1e9;
                                         for (int k = 0; k < 10; ++k) {
                                             on = !on;
                                             if (changing) {
                                                 std::fill_n(part.partElements.selectedList, elements, on ? '1' : '0');
                                             }
                                             least = std::min(least, millisecondsOf([&] {
                                                                  view.draw();
                                                                  glFinish();
                                                              }));
                                         }
                                         fastest[row] = least;
                                         state.counters["frame_ms"] = least;
                                     })
            ->UseManualTime()
            ->Iterations(3)
            ->Unit(benchmark::kMillisecond);
    }
}

void printRatio(const char* what, const std::string& above, const std::string& below)
{
    if (fastest.count(above) && fastest.count(below)) {
        std::printf("%-48s %8.2f\n", what, fastest[above] / fastest[below]);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (const char* wanted = std::getenv("KVO_BENCH_DEVICE")) {
        device = wanted;
    }
    benchShape(false, 1000000, 1, 10);
    benchShape(true, 1000000, 1, 3);
    benchShape(false, 1000000, 20, 10);
    benchParts(1, 1000000);
    benchParts(10000, 100);
    benchSelection(1000000);
    if (std::getenv("KVO_BENCH_LARGE")) {
        benchShape(false, 4000000, 1, 3);
        benchShape(true, 4000000, 1, 2);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    printRatio("frame, quads: contract / scene", "quads/contract/1000000", "quads/scene/1000000");
    printRatio("frame, quads zoomed 20 times: contract / scene", "quads-zoomed/contract/1000000",
               "quads-zoomed/scene/1000000");
    printRatio("frame, hexahedra: contract / scene", "hexahedra/contract/1000000", "hexahedra/scene/1000000");
    printRatio("frame, 4 million quads: contract / scene", "quads/contract/4000000", "quads/scene/4000000");
    printRatio("frame, 4 million hexahedra: contract / scene", "hexahedra/contract/4000000", "hexahedra/scene/4000000");
    printRatio("10,000 parts of 100 / one part of 1,000,000", "parts/10000", "parts/1");
    if (fastest.count("selection/changed") && fastest.count("selection/same")) {
        std::printf("%-48s %8.2f ms\n", "1,000,000 elements change their selection",
                    fastest["selection/changed"] - fastest["selection/same"]);
    }
    return 0;
}
