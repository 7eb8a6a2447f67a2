// Colours by what a model directory says of an environment's parts.
#include "caeenv.h"
#include "modelinfo.h"
#include <kvo/coloring.h>

namespace kvo {

namespace {

std::vector<NumberAndName> ofParts(const CAEEnv& env, const ModelInfo& info, unsigned int ModelPart::* number,
                                   std::string ModelPart::* name)
{
    std::vector<NumberAndName> out(env.numParts);
    for (const ModelPartInfo& row : info.parts) {
        const auto found = env.pidMap.find(row.part.id);
        if (found != env.pidMap.end() && found->second < env.numParts) {
            out[found->second] = {row.part.*number, row.part.*name};
        }
    }
    return out;
}

} // namespace

Coloring colorByProperty(const CAEEnv& env, const ModelInfo& info)
{
    return colorByNumber("property", ofParts(env, info, &ModelPart::propertyId, &ModelPart::propertyName));
}

Coloring colorByMaterial(const CAEEnv& env, const ModelInfo& info)
{
    return colorByNumber("material", ofParts(env, info, &ModelPart::materialId, &ModelPart::materialName));
}

} // namespace kvo
