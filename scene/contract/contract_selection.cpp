// Sets of elements and nodes as the selection of an environment.
#include "caeenv.h"
#include <kvo/select_more.h>

namespace kvo {

namespace {

// One call of the environment per mark, with numbers from 1.
void selectEach(CAEEnv& env, const MarkSet& set, void (CAEEnv::*select)(unsigned int*, unsigned int*))
{
    for (unsigned int part = 0; part < set.numParts(); ++part) {
        const std::uint8_t* marks = set.of(part);
        for (std::size_t k = 0; k < set.size(part); ++k) {
            if (marks[k] != 0) {
                unsigned int partNumber = part + 1, number = static_cast<unsigned int>(k + 1);
                (env.*select)(&partNumber, &number);
            }
        }
    }
}

} // namespace

bool selectAlso(CAEEnv& env, const ElementSet& set)
{
    if (!set.fits(ElementSet(env))) {
        return false;
    }
    selectEach(env, set, &CAEEnv::selectElement);
    return true;
}

bool selectOnly(CAEEnv& env, const ElementSet& set)
{
    if (!set.fits(ElementSet(env))) {
        return false;
    }
    env.clearSelectedElements();
    selectEach(env, set, &CAEEnv::selectElement);
    return true;
}

bool selectAlso(CAEEnv& env, const NodeSet& set)
{
    if (!set.fits(NodeSet(env))) {
        return false;
    }
    selectEach(env, set, &CAEEnv::selectNode);
    return true;
}

bool selectOnly(CAEEnv& env, const NodeSet& set)
{
    if (!set.fits(NodeSet(env))) {
        return false;
    }
    env.clearSelectedNodes();
    selectEach(env, set, &CAEEnv::selectNode);
    return true;
}

} // namespace kvo
