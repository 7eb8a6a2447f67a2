// How long loading a model takes and how much memory it needs, against the least that any reader would.
//
//   bench_load [elements of each kind, 1000000] [Google Benchmark's options]
//
// The bound is reading every byte of the files and writing as many bytes as the part records hold, once each, to fresh
// memory. Every measurement runs in a process of its own, started afresh, with the files in the page cache. Each load
// is checked against the generator's mesh. Exit code 1 when a ratio misses its target or a load is wrong.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <new>
#include <string>
#include <vector>

#include "mantypes.h"
#include "model_generator.h"
#include "readelements.h"
#include "readids.h"
#include "readnodes.h"

namespace {

constexpr double timeTarget = 4;     // load time / bound
constexpr double memoryTarget = 1.3; // peak heap / bytes of the records
constexpr int repetitions = 9;
const char modelName[] = "generated";
constexpr unsigned int firstSolid = 1;
constexpr unsigned int firstShell = 5000001; // ids of a second range, as decks have them

} // namespace

// --- Counting the heap ---

namespace heap {

bool counting = false;
std::atomic<std::size_t> now{0};
std::atomic<std::size_t> peak{0};

// With the allocator's own word in front of each piece.
std::size_t sizeOf(void* piece)
{
    return malloc_usable_size(piece) + sizeof(std::size_t);
}

void* take(std::size_t size)
{
    void* piece = std::malloc(size);
    if (!piece) {
        throw std::bad_alloc();
    }
    if (counting) {
        const std::size_t total = now += sizeOf(piece);
        std::size_t seen = peak;
        while (total > seen && !peak.compare_exchange_weak(seen, total)) {
        }
    }
    return piece;
}

void release(void* piece)
{
    if (piece && counting) {
        now -= sizeOf(piece);
    }
    std::free(piece);
}

} // namespace heap

void* operator new(std::size_t size)
{
    return heap::take(size);
}
void* operator new[](std::size_t size)
{
    return heap::take(size);
}
void operator delete(void* piece) noexcept
{
    heap::release(piece);
}
void operator delete[](void* piece) noexcept
{
    heap::release(piece);
}
void operator delete(void* piece, std::size_t) noexcept
{
    heap::release(piece);
}
void operator delete[](void* piece, std::size_t) noexcept
{
    heap::release(piece);
}

namespace {

// --- Loading ---

struct Loaded
{
    unsigned int numParts = 0;
    PartInfoStr* parts = nullptr;
    UIUIMap pidMap;
};

// The calls of CAEEnv::getAll for a model of one file.
void load(const std::string& dir, Loaded& model)
{
    ReadIDS* ids = new ReadIDS(dir.c_str(), modelName);
    ReadNodes* nodes = new ReadNodes(dir.c_str(), modelName);
    if (ids->get("node_ids")) {
        nodes->getValues();
    }
    std::vector<ReadIDS*> allIds = {ids};
    std::vector<ReadNodes*> allNodes = {nodes};
    ReadElements elements(&model.pidMap, &allIds, &allNodes);
    elements.setValues(dir.c_str(), modelName, 0, ids, nodes);
    elements.getAll(&model.numParts, &model.parts);
    delete ids;
    delete nodes;
}

// The arrays of one record, as sizes.
struct PartSizes
{
    std::size_t idList, nodeValues, elmIndices, mapNodes;
    std::size_t total() const { return idList + nodeValues + elmIndices + mapNodes; }
};

// What the allocator takes for one node of a UIUIMap: three pointers and a colour, then the pair.
std::size_t mapNodeSize()
{
    void* piece = std::malloc(4 * sizeof(void*) + sizeof(UIUIMap::value_type));
    const std::size_t size = heap::sizeOf(piece);
    std::free(piece);
    return size;
}

PartSizes sizesOf(std::size_t numNodes, std::size_t numElements, unsigned int stride)
{
    return {4 * numNodes, 12 * numNodes, 4 * numElements * stride, mapNodeSize() * numElements};
}

// --- Verification ---

[[noreturn]] void wrong(const char* what)
{
    std::fprintf(stderr, "bench_load: the loaded model is wrong: %s\n", what);
    std::exit(1);
}

// Every element by its id, every corner's id and coordinates.
void verifyPart(const PartInfoStr& part, const GeneratedMesh& mesh)
{
    const PartElementsStr& elements = part.partElements;
    const PartNodesStr& nodes = part.partNodes;
    if (part.partDrawType != mesh.drawType || elements.nodesPerElement != mesh.stride) {
        wrong("draw type or stride");
    }
    if (elements.numElements != mesh.corners.size() || elements.eidMap->size() != mesh.elementIds.size()) {
        wrong("number of elements");
    }
    for (std::size_t e = 0; e < mesh.elementIds.size(); ++e) {
        const auto found = elements.eidMap->find(mesh.elementIds[e]);
        if (found == elements.eidMap->end()) {
            wrong("an element id is missing");
        }
        for (unsigned int slot = 0; slot < mesh.stride; ++slot) {
            const unsigned int index = elements.elmIndices[std::size_t{found->second} * mesh.stride + slot];
            const unsigned int id = mesh.corners[e * mesh.stride + slot];
            if (index >= nodes.numNodes || nodes.idList[index] != id) {
                wrong("a corner has another node id");
            }
            if (std::memcmp(&nodes.nodeValues[std::size_t{3} * index], &mesh.xyz[3 * std::size_t{id - mesh.nodeIds[0]}],
                            3 * sizeof(float)) != 0) {
                wrong("a corner has other coordinates");
            }
        }
    }
}

GeneratedMesh solidsOf(std::size_t count)
{
    return generateHexahedra(count, firstSolid, firstSolid);
}
GeneratedMesh shellsOf(std::size_t count)
{
    return generateQuadrilaterals(count, firstShell, firstShell);
}

void verify(const Loaded& model, std::size_t count)
{
    if (model.numParts != 2 || model.pidMap.size() != 2) {
        wrong("number of parts");
    }
    verifyPart(model.parts[0], solidsOf(count));
    verifyPart(model.parts[1], shellsOf(count));
}

// --- The bound ---

std::uint64_t readEveryByte(const std::filesystem::path& path)
{
    const int file = ::open(path.c_str(), O_RDONLY);
    const std::size_t size = std::filesystem::file_size(path);
    void* start = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    ::close(file);
    std::uint64_t sum = 0;
    for (std::size_t k = 0; k < size / sizeof sum; ++k) {
        sum += static_cast<const std::uint64_t*>(start)[k];
    }
    ::munmap(start, size);
    return sum;
}

void writeFresh(std::size_t size, std::vector<char*>& kept)
{
    kept.push_back(new char[size]);
    std::memset(kept.back(), static_cast<int>(size % 251), size);
    benchmark::DoNotOptimize(kept.back());
}

void readAndWriteOnce(const std::string& dir, const std::vector<PartSizes>& parts)
{
    for (const auto& entry : std::filesystem::directory_iterator(dir + "/" + modelName)) {
        benchmark::DoNotOptimize(readEveryByte(entry.path()));
    }
    std::vector<char*> kept;
    for (const PartSizes& part : parts) {
        for (std::size_t size : {part.idList, part.nodeValues, part.elmIndices, part.mapNodes}) {
            writeFresh(size, kept);
        }
    }
}

// --- One measurement, in a process of its own ---

std::size_t statusValue(const char* field)
{
    std::FILE* file = std::fopen("/proc/self/status", "r");
    char line[256];
    std::size_t kilobytes = 0;
    while (file && std::fgets(line, sizeof line, file)) {
        if (std::strncmp(line, field, std::strlen(field)) == 0) {
            kilobytes = std::strtoul(line + std::strlen(field), nullptr, 10);
        }
    }
    if (file) {
        std::fclose(file);
    }
    return kilobytes * 1024;
}

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct Meshes
{
    std::size_t count;
    std::vector<PartSizes> sizes;
};

Meshes meshSizes(std::size_t count)
{
    Meshes meshes = {count, {}};
    for (const GeneratedMesh& mesh : {solidsOf(count), shellsOf(count)}) {
        meshes.sizes.push_back(sizesOf(mesh.nodeIds.size(), count, mesh.stride));
    }
    return meshes;
}

int measureBound(const std::string& dir, const std::vector<PartSizes>& sizes)
{
    const auto start = std::chrono::steady_clock::now();
    readAndWriteOnce(dir, sizes);
    std::printf("%.9f\n", secondsSince(start));
    return 0;
}

int measureLoad(const std::string& dir)
{
    Loaded model;
    const auto start = std::chrono::steady_clock::now();
    load(dir, model);
    const double seconds = secondsSince(start);
    std::printf("%.9f\n", model.numParts == 2 ? seconds : -1.0);
    return 0;
}

int measureMemory(const std::string& dir, std::size_t count)
{
    const std::size_t before = statusValue("VmHWM:");
    heap::counting = true;
    Loaded model;
    load(dir, model);
    heap::counting = false;
    const std::size_t resident = statusValue("VmHWM:") - before;
    std::printf("%zu\n%zu\n", heap::peak.load(), resident);
    verify(model, count);
    return 0;
}

int measure(const std::string& what, const std::string& dir, std::size_t count, const std::vector<PartSizes>& sizes)
{
    if (what == "bound") {
        return measureBound(dir, sizes);
    }
    return what == "load" ? measureLoad(dir) : measureMemory(dir, count);
}

// The sizes travel as words, so that no mesh is generated, and no memory used up, before the measurement.
int measureFromArguments(char** arguments, int count)
{
    std::vector<PartSizes> sizes;
    for (int k = 3; k + 3 < count; k += 4) {
        sizes.push_back({std::stoul(arguments[k]), std::stoul(arguments[k + 1]), std::stoul(arguments[k + 2]),
                         std::stoul(arguments[k + 3])});
    }
    return measure(arguments[0], arguments[1], std::stoul(arguments[2]), sizes);
}

std::vector<double> runMeasurement(const std::string& what, const std::string& dir, const Meshes& meshes)
{
    char self[4096] = {};
    if (::readlink("/proc/self/exe", self, sizeof self - 1) < 0) {
        std::exit(1);
    }
    std::string command =
        std::string("'") + self + "' --measure " + what + " '" + dir + "' " + std::to_string(meshes.count);
    for (const PartSizes& s : meshes.sizes) {
        for (std::size_t size : {s.idList, s.nodeValues, s.elmIndices, s.mapNodes}) {
            command += " " + std::to_string(size);
        }
    }
    std::FILE* output = ::popen(command.c_str(), "r");
    std::vector<double> values;
    char line[64];
    while (output && std::fgets(line, sizeof line, output)) {
        values.push_back(std::strtod(line, nullptr));
    }
    if (!output || ::pclose(output) != 0 || values.empty() || values[0] < 0) {
        std::fprintf(stderr, "bench_load: measuring %s failed\n", what.c_str());
        std::exit(1);
    }
    return values;
}

// --- Report ---

// Keeps the medians beside the usual table.
class MedianReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.aggregate_name == "median") {
                medians[run.run_name.function_name] = run.GetAdjustedRealTime();
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> medians; // milliseconds
};

void registerTimed(const char* name, const char* what, const std::string& dir, const Meshes& meshes)
{
    benchmark::RegisterBenchmark(name,
                                 [=](benchmark::State& state) {
                                     for (auto _ : state) {
                                         state.SetIterationTime(runMeasurement(what, dir, meshes)[0]);
                                     }
                                     state.SetItemsProcessed(static_cast<std::int64_t>(2 * meshes.count));
                                 })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1)
        ->Repetitions(repetitions)
        ->ReportAggregatesOnly();
}

std::size_t filesSize(const std::string& dir)
{
    std::size_t size = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dir + "/" + modelName)) {
        size += entry.file_size();
    }
    return size;
}

bool printRatio(const char* what, double value, double bound, const char* unit, double target)
{
    const double ratio = value / bound;
    std::printf("%-28s %12.2f %12.2f %-4s %8.2f %8.2f  %s\n", what, value, bound, unit, ratio, target,
                ratio <= target ? "ok" : "MISSED");
    return ratio <= target;
}

bool reportRatios(const std::string& dir, const Meshes& meshes, const std::map<std::string, double>& medians)
{
    constexpr double mega = 1e6;
    std::size_t records = 2 * sizeof(PartInfoStr);
    for (const PartSizes& s : meshes.sizes) {
        records += s.total();
    }
    const std::vector<double> memory = runMeasurement("memory", dir, meshes);
    const double residentAboveMapping = memory[1] - static_cast<double>(filesSize(dir));

    std::printf("\n%-28s %12s %12s %-4s %8s %8s\n", "", "measured", "bound", "", "ratio", "target");
    bool ok = printRatio("load time", medians.at("load"), medians.at("read_and_write_once"), "ms", timeTarget);
    ok &= printRatio("peak heap", memory[0] / mega, static_cast<double>(records) / mega, "MB", memoryTarget);
    printRatio("peak resident - files", residentAboveMapping / mega, static_cast<double>(records) / mega, "MB",
               memoryTarget);
    return ok;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 4 && std::strcmp(argv[1], "--measure") == 0) {
        return measureFromArguments(argv + 2, argc - 2);
    }
    benchmark::Initialize(&argc, argv);
    const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1000000;
    if (count == 0 || count > 4000000) {
        std::fprintf(stderr, "bench_load: elements of each kind: 1 to 4000000\n");
        return 2;
    }
    std::string dir = (std::filesystem::temp_directory_path() / "kvo-bench-XXXXXX").string();
    if (!::mkdtemp(&dir[0])) {
        return 1;
    }
    writeGeneratedModel(dir, modelName, solidsOf(count), shellsOf(count));
    const Meshes meshes = meshSizes(count);
    registerTimed("read_and_write_once", "bound", dir, meshes);
    registerTimed("load", "load", dir, meshes);
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const bool ok = reporter.medians.size() == 2 && reportRatios(dir, meshes, reporter.medians);
    std::filesystem::remove_all(dir);
    return ok ? 0 : 1;
}
