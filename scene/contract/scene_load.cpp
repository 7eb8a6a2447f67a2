#include <kvo/scene_load.h>

#include "caeenv.h"

namespace kvo {

// Normals are computed once a part and kind; parts that say they have theirs are passed over.
void initScene(CAEEnv& env, unsigned int fontBase)
{
    constexpr unsigned int normalsDone = PART_ELEMENT_NORMALS_DONE | PART_NODE_NORMALS_DONE;
    for (unsigned int part = 0; part < env.numParts; ++part) {
        env.partsInfoList[part].partFlag |= normalsDone;
    }
    env.loadAndInitGL(fontBase, true, nullptr);
    for (unsigned int part = 0; part < env.numParts; ++part) {
        env.partsInfoList[part].partFlag &= ~normalsDone;
    }
}

void loadScene(CAEEnv& env, unsigned int fontBase, std::vector<unsigned int>* parts)
{
    env.getAll(parts);
    initScene(env, fontBase);
}

} // namespace kvo
