// Loading for a SceneView.
#ifndef KVO_SCENE_LOAD_H
#define KVO_SCENE_LOAD_H

#include <vector>

#include <kvoexport.h>

class CAEEnv;

namespace kvo {

// As env.loadAndInitGL(fontBase, false, parts), without the normals of every face of every element: a SceneView makes
// those that it draws itself. They are 72 bytes a solid and 12 a shell when flat, and a third of the loading time.
// env.setShadeModel() computes them when the environment's own frames or SceneLight::Contract are wanted later.
KVO_EXPORT void loadScene(CAEEnv& env, unsigned int fontBase, std::vector<unsigned int>* parts = nullptr);

// The second half of it alone, as env.loadAndInitGL(fontBase, true, nullptr), where env.getAll() has run.
KVO_EXPORT void initScene(CAEEnv& env, unsigned int fontBase);

} // namespace kvo

#endif
