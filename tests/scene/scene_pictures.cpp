// Draws the pictures of docs/scene.md:
//   kvo import examples/decks/bracket.inp -o MODELS/bracket
//   kvo import examples/decks/crashbox.inp -o MODELS/crashbox
//   kvo_scene_pictures MODELS docs/images
#include <cstdio>
#include <exception>
#include <functional>
#include <string>

#include <GL/gl.h>

#include "caeenv.h"
#include "font.h"
#include "headless_context.h"
#include "modelinfo.h"
#include "mtrans.h"
#include "mview.h"
#include "offscreen.h"
#include "output_redirect.h"
#include <kvo/scene_view.h>

namespace {

using kvo::SceneView;

constexpr int width = 420, height = 300;

struct Shot
{
    const char* name;  // docs/images/scene-NAME.png
    const char* model; // folder in MODELS
    std::function<void(CAEEnv&, SceneView&, const ModelInfo&)> prepare;
};

void copyColor(float* to, float r, float g, float b)
{
    to[0] = r;
    to[1] = g;
    to[2] = b;
    to[3] = 1;
}

void cutAtMiddle(CAEEnv& env, SceneView& view, kvo::SceneCut cut, double x, double y, double z)
{
    const float* e = env.getExtents();
    const double middle[3] = {(e[0] + e[1]) / 2.0, (e[2] + e[3]) / 2.0, (e[4] + e[5]) / 2.0}, normal[3] = {x, y, z};
    view.look().section.cut = cut;
    view.look().section.setPlane(middle, normal);
}

const Shot shots[] = {
    {"shaded", "crashbox", [](CAEEnv&, SceneView&, const ModelInfo&) {}},
    {"edges", "bracket",
     [](CAEEnv&, SceneView& view, const ModelInfo&) { view.look().style = kvo::SceneStyle::ShadedEdges; }},
    {"hidden-line", "bracket",
     [](CAEEnv&, SceneView& view, const ModelInfo&) { view.look().style = kvo::SceneStyle::HiddenLine; }},
    {"slice", "crashbox",
     [](CAEEnv& env, SceneView& view, const ModelInfo&) { cutAtMiddle(env, view, kvo::SceneCut::Slice, 0, 1, 0); }},
    {"cut-elements", "bracket",
     [](CAEEnv& env, SceneView& view, const ModelInfo&) {
         cutAtMiddle(env, view, kvo::SceneCut::Elements, 0.3, 1, 0);
         view.look().style = kvo::SceneStyle::ShadedEdges;
     }},
    {"lines", "crashbox",
     [](CAEEnv&, SceneView& view, const ModelInfo&) {
         view.look().lines.feature = view.look().lines.free = view.look().lines.branching = true;
         view.look().lines.width = 1.5f;
     }},
    {"ghosts", "crashbox",
     [](CAEEnv& env, SceneView& view, const ModelInfo& info) {
         for (unsigned int k = 0; k < env.numParts && k < info.parts.size(); ++k) {
             const std::string& name = info.parts[k].part.name;
             if (name.find("BEAM") == 0 || name.find("CRUSH") == 0) {
                 env.setDisplay(k + 1, PART_HIDDEN);
             }
         }
         view.look().ghosts = true;
     }},
    {"transparent", "crashbox",
     [](CAEEnv& env, SceneView&, const ModelInfo& info) {
         for (unsigned int k = 0; k < env.numParts && k < info.parts.size(); ++k) {
             const std::string& name = info.parts[k].part.name;
             if (name.find("BEAM") == 0 || name.find("CRUSH") == 0) {
                 env.partsInfoList[k].partColor[3] = 0.35f;
             }
         }
     }},
    {"quality", "bracket",
     [](CAEEnv& env, SceneView& view, const ModelInfo&) {
         view.setColoring(kvo::colorByQuality(env, kvo::Quality::ScaledJacobian));
     }},
    {"kinds", "crashbox",
     [](CAEEnv& env, SceneView& view, const ModelInfo&) { view.setColoring(kvo::colorByKind(env)); }},
    {"materials", "crashbox",
     [](CAEEnv& env, SceneView& view, const ModelInfo& info) { view.setColoring(kvo::colorByMaterial(env, info)); }},
    {"labels", "crashbox", [](CAEEnv&, SceneView& view, const ModelInfo&) { view.look().labels.parts = true; }},
};

void turnAndShrink(MTransform& transform, const float* extents)
{
    transform.globalRot[0] = 25;
    transform.globalRot[2] = -35;
    for (int axis = 0; axis < 3; ++axis) {
        transform.localScale[axis] = 0.75f;
        transform.localTrans[axis] = 0.25f * (extents[2 * axis] + extents[2 * axis + 1]) / 2;
    }
}

void draw(const Shot& shot, const std::string& models, const std::string& folder)
{
    kvo::Offscreen target(width, height, 4);
    kvo::Picture picture;
    {
        const kvo::OutputRedirect quiet("");
        CAEEnv env(models.c_str(), shot.model, GL_SMOOTH);
        env.loadAndInitGL(0, false, nullptr);
        ModelInfo info;
        readModelInfo(models, shot.model, &info, nullptr);
        glClearColor(1, 1, 1, 1);
        glShadeModel(GL_SMOOTH);
        glViewport(0, 0, width, height);
        {
            SceneView view(env);
            view.setFont(kvo::defaultFontFile());
            view.look().frameOverlays = false;
            copyColor(view.look().edgeColor, 0.15f, 0.15f, 0.15f);
            turnAndShrink(*env.getMTransformPtr(), env.getExtents());
            shot.prepare(env, view, info);
            view.draw();
        }
        picture = target.read();
    }
    kvo::writePng(picture, folder + "/scene-" + shot.name + ".png");
    std::printf("%s\n", shot.name);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: kvo_scene_pictures MODELS FOLDER\n");
        return 2;
    }
    try {
        const kvo::HeadlessContext context("software");
        for (const Shot& shot : shots) {
            draw(shot, argv[1], argv[2]);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
