// What scenes ask of an environment before they use it.
#ifndef KVO_SCENE_LOADED_H
#define KVO_SCENE_LOADED_H

#include <stdexcept>

#include "caeenv.h"

namespace kvo {

inline void requireLoaded(const CAEEnv& env)
{
    if (env.mView == nullptr || env.mTrans == nullptr) {
        throw std::logic_error("no model is loaded: kvo::loadScene() or CAEEnv::loadAndInitGL() comes first");
    }
}

} // namespace kvo

#endif
