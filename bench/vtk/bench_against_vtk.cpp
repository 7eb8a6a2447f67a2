// The same work by SceneView and by VTK 9, interleaved in one run on the same device.
//
//   xvfb-run bench_against_vtk [elements, 1000000]
//
// Frames at 1280 x 800; the way from each side's own file to the first picture and the resident memory that it leaves,
// in processes of their own; a rectangle of 200 x 120 pixels, everything in it. Prints milliseconds and ratios.
#include <EGL/egl.h>
#include <GL/gl.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>

#include "bench_model.h"
#include "mtrans.h"
#include "mview.h"
#include "vtk_side.h"
#include <kvo/scene_load.h>
#include <kvo/scene_view.h>
#include <kvo/through_picker.h>

namespace {

constexpr int windowWidth = 1280, windowHeight = 800;
constexpr int rounds = 15;

double millisecondsOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

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

GeneratedMesh meshOf(bool solids, std::size_t elements)
{
    return solids ? generateHexahedra(elements, 1, 1) : generateQuadrilaterals(elements, 1, 1);
}

void report(const char* what, double scene, double vtk, bool sceneAbove = true)
{
    std::printf("%-44s scene %9.2f  VTK %9.2f  %s %.2f\n", what, scene, vtk, sceneAbove ? "scene / VTK" : "VTK / scene",
                sceneAbove ? scene / vtk : vtk / scene);
    std::fflush(stdout);
}

// A thread has one current context, of EGL or of GLX.
void releaseScene()
{
    eglMakeCurrent(eglGetCurrentDisplay(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

// --- Frames and rectangles, interleaved ---

void compareFrames(bool solids, std::size_t elements)
{
    const GeneratedMesh mesh = meshOf(solids, elements);
    VtkScene vtk(mesh, windowWidth, windowHeight);
    vtk.draw();
    vtk.release();
    double frames[2] = {1e9, 1e9}, picks[2] = {1e9, 1e9};
    std::size_t hits[2] = {0, 0};
    {
        BenchModel model({partOf(mesh)}, windowWidth, windowHeight, GL_FLAT, "software");
        kvo::SceneView view(model.environment());
        kvo::ThroughPicker picker(model.environment());
        model.environment().mView->mViewType = solids ? ISO_VIEW : TOP_VIEW;
        for (int round = 0; round < rounds; ++round) {
            model.makeCurrent();
            view.draw(); // brings this side's buffers back into the caches
            glFinish();
            frames[0] = std::min(frames[0], millisecondsOf([&] {
                                     view.draw();
                                     glFinish();
                                 }));
            const kvo::PickView pickView = kvo::viewOf(*model.environment().getMTransformPtr());
            const auto region = kvo::PickRegion::rectangle(540, 340, 740, 460);
            picks[0] = std::min(picks[0], millisecondsOf([&] {
                                    hits[0] = picker.pick(kvo::PickType::Element, region, pickView).size();
                                }));
            releaseScene();
            vtk.draw();
            frames[1] = std::min(frames[1], millisecondsOf([&] { vtk.draw(); }));
            if (round < 3) {
                picks[1] = std::min(picks[1], millisecondsOf([&] { hits[1] = vtk.extract(540, 340, 200, 120); }));
            }
            vtk.release();
        }
        model.makeCurrent();
    }
    const std::string name = solids ? "hexahedra" : "quads";
    report((name + ", frame, ms").c_str(), frames[0], frames[1]);
    report((name + ", rectangle 200x120, ms").c_str(), picks[0], picks[1], false);
    std::printf("%-44s scene %9zu  VTK %9zu\n", (name + ", elements in the rectangle").c_str(), hits[0], hits[1]);
}

// --- First picture and memory, each in a process of its own ---

// Prints "ms MiB" on the descriptor.
void firstPicture(bool scene, const std::string& folder, int out)
{
    double ms = 0, memory = 0;
    if (scene) {
        // Shaders are compiled for a tiny model first, on both sides: neither they nor the context are compared.
        BenchModel warm({partOf(generateQuadrilaterals(4, 1, 1)), partOf(generateHexahedra(1, 1, 1))}, windowWidth,
                        windowHeight, GL_FLAT, "software");
        kvo::SceneView warmView(warm.environment());
        warmView.draw();
        glFinish();
        const double before = residentMiB();
        auto env = std::make_unique<CAEEnv>(folder.c_str(), "model", GL_FLAT);
        std::unique_ptr<kvo::SceneView> view;
        ms = millisecondsOf([&] {
            kvo::loadScene(*env, 0);
            glViewport(0, 0, windowWidth, windowHeight);
            env->resizeModel(windowWidth, windowHeight);
            view = std::make_unique<kvo::SceneView>(*env);
            view->draw();
            glFinish();
        });
        memory = residentMiB() - before;
        view.reset();
        env.reset();
    } else {
        GeneratedMesh tiny = generateQuadrilaterals(4, 1, 1);
        VtkScene warm(tiny, windowWidth, windowHeight);
        warm.draw();
        const double before = residentMiB();
        std::unique_ptr<VtkScene> vtk;
        ms = millisecondsOf([&] {
            vtk = std::make_unique<VtkScene>(folder + "/model.vtu", windowWidth, windowHeight);
            vtk->draw();
        });
        memory = residentMiB() - before;
    }
    dprintf(out, "%.3f %.3f\n", ms, memory);
}

void measureApart(bool scene, const std::string& folder, double& ms, double& memory)
{
    ms = memory = 1e9;
    for (int round = 0; round < 3; ++round) {
        const std::string command =
            std::string("/proc/") + std::to_string(getpid()) + "/exe --first " + (scene ? "scene " : "vtk ") + folder;
        std::FILE* pipe = popen(command.c_str(), "r");
        double t = 1e9, m = 1e9;
        if (!pipe || std::fscanf(pipe, "%lf %lf", &t, &m) != 2) {
            std::fprintf(stderr, "bench_against_vtk: %s gave no figures\n", command.c_str());
            std::exit(1);
        }
        pclose(pipe);
        ms = std::min(ms, t);
        memory = std::min(memory, m);
    }
}

void compareFirstPicture(bool solids, std::size_t elements)
{
    char folder[] = "/tmp/kvo-bench-XXXXXX";
    if (!mkdtemp(folder)) {
        std::exit(1);
    }
    {
        const GeneratedMesh mesh = meshOf(solids, elements);
        writeGeneratedModel(folder, "model", solids ? mesh : GeneratedMesh(), solids ? GeneratedMesh() : mesh);
        VtkScene::writeFile(mesh, std::string(folder) + "/model.vtu");
    }
    double ms[2], memory[2];
    measureApart(true, folder, ms[0], memory[0]);
    measureApart(false, folder, ms[1], memory[1]);
    std::filesystem::remove_all(folder);
    const std::string name = solids ? "hexahedra" : "quads";
    report((name + ", file to first picture, ms").c_str(), ms[0], ms[1]);
    const double scale = 1024 * 1024 / double(elements);
    report((name + ", net memory, bytes an element").c_str(), memory[0] * scale, memory[1] * scale);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::strcmp(argv[1], "--first") == 0) {
        firstPicture(std::strcmp(argv[2], "scene") == 0, argv[3], STDOUT_FILENO);
        return 0;
    }
    const std::size_t elements = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1000000;
    for (const bool solids : {true, false}) {
        compareFirstPicture(solids, elements);
        compareFrames(solids, elements);
    }
    return 0;
}
