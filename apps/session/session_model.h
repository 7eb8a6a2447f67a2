// The model of a session: an environment of the drawing library, which keeps flags, colours and selections, and the
// records, which are the environment's own or those of a Model.
#ifndef KVO_SESSION_MODEL_H
#define KVO_SESSION_MODEL_H

#include <memory>
#include <string>
#include <vector>

#include <kvo/model_view.h>

#include "caeenv.h"

namespace kvo {

// The drawing library's number of a kind (mantypes.h); 0 of Other.
unsigned int drawTypeOf(ElementKind kind);

class SessionModel
{
public:
    SessionModel(const std::string& directory, const std::string& name, int shadeModel);
    ~SessionModel();
    SessionModel(const SessionModel&) = delete;
    SessionModel& operator=(const SessionModel&) = delete;

    // Makes a Model the environment's, as CAEEnv::getAll makes one of a directory, but for the ids: records borrow its
    // arrays. Once, instead of getAll.
    void take(const Model& model);

    CAEEnv& env() { return environment; }
    const CAEEnv& env() const { return environment; }
    const Model* model() const { return taken ? &*taken : nullptr; } // null: the environment's own records

    // The deck's ids of a part's elements and nodes, by index; 0 stands for none.
    const IdTable& elementIds(unsigned int part) const;
    const IdTable& nodeIds(unsigned int part) const;

    // Brings a view of model() to what the environment says: hidden and selected parts, colours, elements, nodes.
    void show(ModelView& view) const;

private:
    std::unique_ptr<PartInfoStr[]> records; // of a Model; must outlive the environment, which leaves the list behind
    CAEEnv environment;
    std::unique_ptr<const Model> taken;
    mutable std::vector<std::unique_ptr<IdTable>> elements, nodes; // of the environment's records, made when asked for
};

} // namespace kvo

#endif
