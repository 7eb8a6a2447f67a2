// How fast decks are read, how much memory that takes, and how much longer the whole import is.
//
//   bench_import [elements, 1000000] [KEY...]
//
// Writes a deck per format, 7 tenths hexahedra and the rest quadrilaterals, and imports each several times in processes
// of their own that may use one core. Printed is the fastest: megabytes (10^6 bytes) a second from opening the deck to
// the finished mesh, the greatest resident memory, which has the mapped deck in it, against the deck's size, and the
// time of reading and writing together against that of reading. Every import's counts are checked. Exit code 1 when a
// figure misses its target or an import is wrong.
#include <sched.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "deck.h"
#include "model_builder.h"
#include "model_generator.h"

namespace fs = std::filesystem;

namespace {

constexpr int repetitions = 5;
constexpr double memoryTarget = 3; // (peak - model) / deck
constexpr double wholeTarget = 2;  // whole import / reading
constexpr unsigned firstShell = 5000001;

struct Model
{
    GeneratedMesh solids;
    GeneratedMesh shells;

    std::size_t nodes() const { return solids.nodeIds.size() + shells.nodeIds.size(); }
    std::size_t elements() const { return solids.elementIds.size() + shells.elementIds.size(); }
};

// --- The decks ---

// Positions with as many digits as pre-processors write.
struct Position
{
    double x, y, z;
};

Position positionOf(const GeneratedMesh& mesh, std::size_t node)
{
    const float* xyz = &mesh.xyz[3 * node];
    return {1.01234567 * xyz[0] - 31.7, 0.51237891 * xyz[1], 0.33312345 * xyz[2] + 1.0 / 3};
}

// Calls print(node id, position) for every node.
template <class Print> void eachNode(const Model& model, Print print)
{
    for (const GeneratedMesh* mesh : {&model.solids, &model.shells}) {
        for (std::size_t n = 0; n < mesh->nodeIds.size(); ++n) {
            print(mesh->nodeIds[n], positionOf(*mesh, n));
        }
    }
}

// Calls print(element id, its corners) for every element.
template <class Print> void eachElement(const GeneratedMesh& mesh, Print print)
{
    for (std::size_t e = 0; e < mesh.elementIds.size(); ++e) {
        print(mesh.elementIds[e], &mesh.corners[mesh.stride * e]);
    }
}

void writeBdf(const Model& model, std::FILE* out)
{
    std::fputs("BEGIN BULK\n", out);
    eachNode(model, [&](unsigned id, const Position& at) {
        std::fprintf(out, "GRID    %8u        %8.3f%8.3f%8.4f\n", id, at.x, at.y, at.z);
    });
    eachElement(model.solids, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, "CHEXA   %8u       1%8u%8u%8u%8u%8u%8u\n        %8u%8u\n", id, n[0], n[1], n[2], n[3], n[4],
                     n[5], n[6], n[7]);
    });
    eachElement(model.shells, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, "CQUAD4  %8u       2%8u%8u%8u%8u\n", id, n[0], n[1], n[2], n[3]);
    });
    std::fputs("ENDDATA\n", out);
}

void writeInp(const Model& model, std::FILE* out)
{
    std::fputs("*HEADING\nbenchmark\n*NODE\n", out);
    eachNode(model, [&](unsigned id, const Position& at) {
        std::fprintf(out, "%u, %.8g, %.8g, %.8g\n", id, at.x, at.y, at.z);
    });
    std::fputs("*ELEMENT, TYPE=C3D8, ELSET=BLOCK\n", out);
    eachElement(model.solids, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, "%u, %u, %u, %u, %u, %u, %u, %u, %u\n", id, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7]);
    });
    std::fputs("*ELEMENT, TYPE=S4, ELSET=SHEET\n", out);
    eachElement(model.shells, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, "%u, %u, %u, %u, %u\n", id, n[0], n[1], n[2], n[3]);
    });
    std::fputs("*SOLID SECTION, ELSET=BLOCK, MATERIAL=STEEL\n*SHELL SECTION, ELSET=SHEET, MATERIAL=STEEL\n1.5\n", out);
}

void writeKeyword(const Model& model, std::FILE* out)
{
    std::fputs("*KEYWORD\n*PART\nblock\n         1         1         1\n*PART\nsheet\n         2         2         1\n"
               "*NODE\n",
               out);
    eachNode(model, [&](unsigned id, const Position& at) {
        std::fprintf(out, "%8u%16.9g%16.9g%16.9g       0       0\n", id, at.x, at.y, at.z);
    });
    std::fputs("*ELEMENT_SOLID\n", out);
    eachElement(model.solids, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, "%8u       1%8u%8u%8u%8u%8u%8u%8u%8u\n", id, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7]);
    });
    std::fputs("*ELEMENT_SHELL\n", out);
    eachElement(model.shells, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, "%8u       2%8u%8u%8u%8u\n", id, n[0], n[1], n[2], n[3]);
    });
    std::fputs("*END\n", out);
}

void writeMsh2(const Model& model, std::FILE* out)
{
    std::fprintf(out, "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n%zu\n", model.nodes());
    eachNode(model, [&](unsigned id, const Position& at) {
        std::fprintf(out, "%u %.16g %.16g %.16g\n", id, at.x, at.y, at.z);
    });
    std::fprintf(out, "$EndNodes\n$Elements\n%zu\n", model.elements());
    eachElement(model.solids, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, "%u 5 2 1 1 %u %u %u %u %u %u %u %u\n", id, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7]);
    });
    eachElement(model.shells, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, "%u 3 2 2 2 %u %u %u %u\n", id, n[0], n[1], n[2], n[3]);
    });
    std::fputs("$EndElements\n", out);
}

void writeMsh4(const Model& model, std::FILE* out)
{
    std::fprintf(out,
                 "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n$Entities\n0 0 1 1\n2 0 0 0 1 1 1 0 0\n1 0 0 0 1 1 1 0 0\n"
                 "$EndEntities\n$Nodes\n1 %zu 1 %u\n3 1 0 %zu\n",
                 model.nodes(), model.shells.nodeIds.back(), model.nodes());
    eachNode(model, [&](unsigned id, const Position&) { std::fprintf(out, "%u\n", id); });
    eachNode(model, [&](unsigned, const Position& at) { std::fprintf(out, "%.16g %.16g %.16g\n", at.x, at.y, at.z); });
    std::fprintf(out, "$EndNodes\n$Elements\n2 %zu 1 %u\n3 1 5 %zu\n", model.elements(), model.shells.elementIds.back(),
                 model.solids.elementIds.size());
    eachElement(model.solids, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, "%u %u %u %u %u %u %u %u %u\n", id, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7]);
    });
    std::fprintf(out, "2 2 3 %zu\n", model.shells.elementIds.size());
    eachElement(model.shells, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, "%u %u %u %u %u\n", id, n[0], n[1], n[2], n[3]);
    });
    std::fputs("$EndElements\n", out);
}

void writeUnv(const Model& model, std::FILE* out)
{
    std::fputs("    -1\n  2411\n", out);
    eachNode(model, [&](unsigned id, const Position& at) {
        std::fprintf(out, "%10u%10d%10d%10d\n%25.16E%25.16E%25.16E\n", id, 1, 1, 11, at.x, at.y, at.z);
    });
    std::fputs("    -1\n    -1\n  2412\n", out);
    eachElement(model.solids, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, "%10u%10d%10d%10d%10d%10d\n%10u%10u%10u%10u%10u%10u%10u%10u\n", id, 115, 1, 1, 7, 8, n[0],
                     n[1], n[2], n[3], n[4], n[5], n[6], n[7]);
    });
    eachElement(model.shells, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, "%10u%10d%10d%10d%10d%10d\n%10u%10u%10u%10u\n", id, 94, 2, 1, 7, 4, n[0], n[1], n[2], n[3]);
    });
    std::fputs("    -1\n", out);
}

void writeCdb(const Model& model, std::FILE* out)
{
    std::fprintf(out, "/PREP7\nET,1,185\nET,2,181\nNBLOCK,6,SOLID,%u,%zu\n(3i9,6e21.13e3)\n",
                 model.shells.nodeIds.back(), model.nodes());
    eachNode(model, [&](unsigned id, const Position& at) {
        std::fprintf(out, "%9u%9d%9d%21.13E%21.13E%21.13E\n", id, 0, 0, at.x, at.y, at.z);
    });
    std::fprintf(out, "N,R5.3,LOC,       -1,\nEBLOCK,19,SOLID,%u,%zu\n(19i9)\n", model.shells.elementIds.back(),
                 model.elements());
    const char head[] = "%9d%9d%9d%9d%9d%9d%9d%9d%9d%9d%9u";
    eachElement(model.solids, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, head, 1, 1, 1, 1, 0, 0, 0, 0, 8, 0, id);
        std::fprintf(out, "%9u%9u%9u%9u%9u%9u%9u%9u\n", n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7]);
    });
    eachElement(model.shells, [&](unsigned id, const unsigned* n) {
        std::fprintf(out, head, 1, 2, 2, 2, 0, 0, 0, 0, 4, 0, id);
        std::fprintf(out, "%9u%9u%9u%9u\n", n[0], n[1], n[2], n[3]);
    });
    std::fputs("       -1\nFINISH\n", out);
}

struct Format
{
    const char* key;  // of the table of formats
    const char* name; // of the deck
    void (*write)(const Model& model, std::FILE* out);
    double target; // megabytes a second
};

const Format formats[] = {
    {"nastran", "deck.bdf", writeBdf, 200},   {"abaqus", "deck.inp", writeInp, 200},
    {"keyword", "deck.k", writeKeyword, 150}, {"gmsh", "deck22.msh", writeMsh2, 150},
    {"gmsh", "deck41.msh", writeMsh4, 150},   {"unv", "deck.unv", writeUnv, 150},
    {"ansys", "deck.cdb", writeCdb, 150},
};

// --- One import ---

struct Figures
{
    double read;    // seconds
    double whole;   // seconds, with the model directory
    double peak;    // bytes
    unsigned right; // 1: the counts are the generator's
};

[[noreturn]] void giveUp(const std::string& what)
{
    std::fprintf(stderr, "bench_import: %s\n", what.c_str());
    std::exit(1);
}

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void useOneCore()
{
    cpu_set_t core;
    CPU_ZERO(&core);
    CPU_SET(static_cast<unsigned>(sched_getcpu()), &core);
    sched_setaffinity(0, sizeof core, &core);
}

Figures import(const std::string& deck, const std::string& modelDir, const Model& model)
{
    useOneCore();
    kvo::ImportLog log;
    Figures figures = {};
    const auto start = std::chrono::steady_clock::now();
    const kvo::Mesh mesh = kvo::readDeck(deck, log);
    figures.read = secondsSince(start);
    kvo::writeModelDirectory(mesh, modelDir, log);
    figures.whole = secondsSince(start);
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    figures.peak = 1024.0 * static_cast<double>(usage.ru_maxrss);
    figures.right =
        mesh.nodeCount() == model.nodes() && mesh.elementCount() == model.elements() && log.warnings().empty();
    return figures;
}

// The child's memory is its own: what the parent has it shares, and does not count twice.
Figures importInChild(const std::string& deck, const std::string& modelDir, const Model& model)
{
    int ends[2];
    if (pipe(ends) != 0) {
        giveUp("no pipe");
    }
    const pid_t child = fork();
    if (child == 0) {
        try {
            const Figures figures = import(deck, modelDir, model);
            _exit(write(ends[1], &figures, sizeof figures) == ssize_t(sizeof figures) ? 0 : 1);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
            _exit(1);
        }
    }
    close(ends[1]);
    Figures figures = {};
    const bool got = read(ends[0], &figures, sizeof figures) == ssize_t(sizeof figures);
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (!got || status != 0) {
        giveUp("the import of " + deck + " failed");
    }
    return figures;
}

double sizeOfFolder(const std::string& folder)
{
    double size = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        size += entry.is_regular_file() ? static_cast<double>(entry.file_size()) : 0;
    }
    return size;
}

// --- The table ---

void writeDeck(const Format& format, const Model& model, const std::string& path)
{
    std::FILE* out = std::fopen(path.c_str(), "wb");
    if (!out) {
        giveUp("cannot write " + path);
    }
    format.write(model, out);
    if (std::fclose(out) != 0) {
        giveUp("cannot write " + path);
    }
}

// True if all targets are met.
bool measure(const Format& format, const Model& model, const std::string& folder)
{
    const std::string deck = folder + "/" + format.name;
    const std::string modelDir = folder + "/model";
    writeDeck(format, model, deck);
    Figures best = importInChild(deck, modelDir, model);
    double ratio = best.whole / best.read;
    for (int k = 1; k < repetitions; ++k) {
        const Figures figures = importInChild(deck, modelDir, model);
        best.read = std::min(best.read, figures.read);
        best.whole = std::min(best.whole, figures.whole);
        best.right &= figures.right;
        ratio = std::min(ratio, figures.whole / figures.read);
    }
    const double size = static_cast<double>(fs::file_size(deck));
    const double rate = size / 1e6 / best.read;
    const double memory = (best.peak - sizeOfFolder(modelDir)) / size;
    std::printf("| %-10s | %7.1f | %6.3f | %6.0f | %6.0f | %8.1f | %8.2f | %9.3f | %5.2f |%s\n", format.name,
                size / 1e6, best.read, rate, format.target, best.peak / 1e6, memory, best.whole, ratio,
                best.right ? "" : " wrong counts");
    std::fflush(stdout);
    fs::remove(deck);
    fs::remove_all(modelDir);
    return best.right && rate >= format.target && memory <= memoryTarget && ratio <= wholeTarget;
}

bool isWanted(const Format& format, int argc, char** argv)
{
    bool wanted = argc < 3;
    for (int k = 2; k < argc; ++k) {
        wanted = wanted || std::strcmp(argv[k], format.key) == 0;
    }
    return wanted && kvo::findDeckFormat(format.key);
}

} // namespace

int main(int argc, char** argv)
{
    const std::size_t elements = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1000000;
    if (elements < 10) {
        giveUp("usage: bench_import [elements, 10 or more] [KEY...]");
    }
    const std::size_t solids = elements * 7 / 10;
    const Model model = {generateHexahedra(solids, 1, 1),
                         generateQuadrilaterals(elements - solids, firstShell, firstShell)};
    std::string pattern = (fs::temp_directory_path() / "kvo_bench_XXXXXX").string();
    const std::string folder = mkdtemp(pattern.data());
    std::printf("%zu elements, %zu nodes; fastest of %d on one core\n\n", model.elements(), model.nodes(), repetitions);
    std::printf("| deck       |      MB | read s |   MB/s | target |  peak MB | (p-m)/d* |   whole s | ratio |\n"
                "|------------|--------:|-------:|-------:|-------:|---------:|---------:|----------:|------:|\n");
    bool met = true;
    for (const Format& format : formats) {
        if (isWanted(format, argc, argv)) {
            met = measure(format, model, folder) && met;
        }
    }
    fs::remove_all(folder);
    std::printf(
        "\n* greatest memory less the model directory, per byte of the deck: at most %.0f. Ratio of whole import"
        " to reading: at most %.0f.\n%s\n",
        memoryTarget, wholeTarget, met ? "All targets are met." : "A target is missed.");
    return met ? 0 : 1;
}
