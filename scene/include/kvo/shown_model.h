// What is drawn, picked and selected on: the records of a model and how they are shown.
//
//   kvo::ModelView shown(model);
//   kvo::SceneView view(shown);
//   kvo::Selector selector(shown);
//
// Whatever takes a ShownModel takes a ModelView or an environment of the drawing library. It keeps a reference to that
// one, which must outlive it, and reads it anew at every use: flags, colours, selections, and the list of parts.
#ifndef KVO_SCENE_SHOWN_MODEL_H
#define KVO_SCENE_SHOWN_MODEL_H

#include <memory>

#include <kvo/model_view.h>

#include <kvoexport.h>

class CAEEnv;

namespace kvo {

class KVO_EXPORT ShownModel
{
public:
    ShownModel(const ModelView& view); // NOLINT(google-explicit-constructor): see above
    ShownModel(const CAEEnv& env);     // NOLINT(google-explicit-constructor): likewise
    ShownModel(ModelView&&) = delete;  // it would be gone before it is read

    struct Impl;        // private to the library
    Impl& read() const; // brought up to date
    Impl& asRead() const { return *impl; }

private:
    std::shared_ptr<Impl> impl;
};

} // namespace kvo

#endif
