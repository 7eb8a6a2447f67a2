// Normals of a plane of quadrilaterals against a plain copy of the bytes that they must read and write.
//
//   bench_normals [--benchmark_...]
// Rows: copy/N, smooth/N, flat/N for N quadrilaterals; the last line prints the ratios of the largest N.
#include <GL/gl.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <map>
#include <string>
#include <vector>

#include "caeenv.h"
#include "mantypes.h"

namespace {

std::map<std::string, double> seconds; // per iteration, of the largest size run

// A square plane of n x n quadrilaterals in z = 0, in the layout of part records.
struct Plane
{
    unsigned int n;
    std::vector<unsigned int> indices;
    std::vector<float> values;
    PartInfoStr part;

    explicit Plane(unsigned int quads)
        : n(static_cast<unsigned int>(std::lround(std::sqrt(static_cast<double>(quads))))), part()
    {
        for (unsigned int row = 0; row <= n; ++row) {
            for (unsigned int column = 0; column <= n; ++column) {
                values.insert(values.end(), {static_cast<float>(column), static_cast<float>(row), 0.0f});
            }
        }
        for (unsigned int row = 0; row < n; ++row) {
            for (unsigned int column = 0; column < n; ++column) {
                const unsigned int first = row * (n + 1) + column;
                indices.insert(indices.end(), {first, first + 1, first + n + 2, first + n + 1});
            }
        }
        part.partDrawType = SHELL;
        part.partNodes.numNodes = static_cast<unsigned int>(values.size() / 3);
        part.partNodes.nodeValues = values.data();
        part.partElements.numElements = static_cast<unsigned int>(indices.size());
        part.partElements.nodesPerElement = 4;
        part.partElements.elmIndices = indices.data();
    }
    ~Plane() { clearNormals(); }

    void clearNormals()
    {
        delete[] part.partNodes.nodeNormals;
        delete[] part.partElements.elmNormals;
        part.partNodes.nodeNormals = part.partElements.elmNormals = nullptr;
        part.partFlag = 0;
    }
    std::size_t bytesRead() const { return indices.size() * sizeof(unsigned int) + values.size() * sizeof(float); }
    std::size_t bytesWritten(bool flat) const { return (flat ? 3ULL * n * n : values.size()) * sizeof(float); }
};

double timed(benchmark::State& state, const std::string& name, void (*run)(Plane&), void (*after)(Plane&))
{
    Plane plane(static_cast<unsigned int>(state.range(0)));
    double total = 0;
    for (auto _ : state) {
        timespec start, end;
        clock_gettime(CLOCK_MONOTONIC, &start);
        run(plane);
        clock_gettime(CLOCK_MONOTONIC, &end);
        const double elapsed =
            static_cast<double>(end.tv_sec - start.tv_sec) + 1e-9 * static_cast<double>(end.tv_nsec - start.tv_nsec);
        total += elapsed;
        state.SetIterationTime(elapsed);
        after(plane);
    }
    return seconds[name] = total / static_cast<double>(state.iterations());
}

// What is read goes into memory that is there already, what is written into a fresh array, as normals do.
void copyBytes(Plane& plane)
{
    static std::vector<char> copy;
    copy.resize(std::max(copy.size(), plane.bytesRead()));
    const std::size_t indexBytes = plane.indices.size() * sizeof(unsigned int);
    std::memcpy(copy.data(), plane.indices.data(), indexBytes);
    std::memcpy(copy.data() + indexBytes, plane.values.data(), plane.bytesRead() - indexBytes);
    benchmark::DoNotOptimize(copy.data());
    plane.part.partNodes.nodeNormals = new float[plane.values.size()];
    std::memcpy(plane.part.partNodes.nodeNormals, plane.values.data(), plane.bytesWritten(false));
    benchmark::ClobberMemory();
}

template <int shadeModel> void computeNormals(Plane& plane)
{
    static CAEEnv env("", "", shadeModel);
    env.shadeModel = shadeModel;
    env.computeShellNormals(&plane.part);
}

// Every normal of the plane points along z.
void verifyAndClear(Plane& plane)
{
    const bool flat = plane.part.partElements.elmNormals != nullptr;
    const float* normals = flat ? plane.part.partElements.elmNormals : plane.part.partNodes.nodeNormals;
    const std::size_t count = plane.bytesWritten(flat) / (3 * sizeof(float));
    for (std::size_t k = 0; k < count; ++k) {
        if (normals[3 * k] != 0 || normals[3 * k + 1] != 0 || normals[3 * k + 2] != 1) {
            std::fprintf(stderr, "bench_normals: wrong normal %zu\n", k);
            std::exit(1);
        }
    }
    plane.clearNormals();
}

void copy(benchmark::State& state)
{
    timed(state, "copy", copyBytes, [](Plane& plane) { plane.clearNormals(); });
}
void smooth(benchmark::State& state)
{
    timed(state, "smooth", computeNormals<GL_SMOOTH>, verifyAndClear);
}
void flat(benchmark::State& state)
{
    timed(state, "flat", computeNormals<GL_FLAT>, verifyAndClear);
}

} // namespace

BENCHMARK(copy)->Arg(10000)->Arg(1000000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(smooth)->Arg(10000)->Arg(1000000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(flat)->Arg(10000)->Arg(1000000)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    if (seconds["copy"] > 0) {
        std::printf("ratio smooth/copy %.2f  flat/copy %.2f\n", seconds["smooth"] / seconds["copy"],
                    seconds["flat"] / seconds["copy"]);
    }
    return 0;
}
