// Which members of the environment draw a part, by its draw type. Private to render/.
#ifndef PART_RENDERERS_H
#define PART_RENDERERS_H

#include "caeenv.h"
#include "mantypes.h"

typedef void (CAEEnv::*PartRenderer)(PartInfoPtr, float*);

struct PartRenderers
{
    unsigned int drawType;
    PartRenderer whole;     // nothing of the part is selected by element
    PartRenderer byElement; // selected elements stand out
    PartRenderer forPick;   // a name per element
};

constexpr PartRenderers partRenderers[] = {
    {SHELL, &CAEEnv::renderShellPart, &CAEEnv::renderShells, &CAEEnv::renderShellsForPick},
    {SOLID, &CAEEnv::renderSolidPart, &CAEEnv::renderSolids, &CAEEnv::renderSolidsForPick},
    {BEAM, &CAEEnv::renderBeamPart, &CAEEnv::renderBeams, &CAEEnv::renderBeamsForPick},
    {DISCRETE, &CAEEnv::renderDiscretePart, &CAEEnv::renderDiscretes, &CAEEnv::renderDiscretesForPick},
};

// Null for a draw type that is never drawn.
inline const PartRenderers* renderersOf(unsigned int drawType)
{
    for (const PartRenderers& row : partRenderers) {
        if (row.drawType == drawType) {
            return &row;
        }
    }
    return nullptr;
}

// Selection colour before highlight colour before the part's own.
inline float* drawColor(CAEEnv& env, PartInfoStr& part)
{
    if (part.partFlag & PART_SELECTED) {
        return env.colorBlue;
    }
    if (part.partFlag & PART_HIGHLIGHTED) {
        return env.colorGreen;
    }
    return part.partColor;
}

#endif
