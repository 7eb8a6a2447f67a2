// Visibility, selection and highlight of parts, by selection state and by part id; the segment part.
#include "caeenv.h"

#include "diagnostics.h"
#include "part_access.h"

namespace {

const unsigned int anySelection = PART_SELECTED | PART_ELEMENTS_SELECTED | PART_NODES_SELECTED;
const unsigned int clearFirstPart = 256;

bool hasSelection(const PartInfoStr& part)
{
    return (part.partFlag & anySelection) != 0;
}

// Before the listed ids are marked: what every part starts from.
void prepareForIDs(PartInfoStr& part, unsigned int op)
{
    if (op == PART_SHOWN) {
        hidePart(part);
    } else if (op == PART_HIDDEN) {
        showPart(part);
    } else if (op == PART_SELECTED || op == PART_HIGHLIGHTED) {
        part.partFlag &= ~op;
    }
}

// After the listed ids are marked: the other half of the visibility pair.
void repairAfterIDs(PartInfoStr& part, unsigned int op)
{
    if ((part.partFlag & op) == 0) {
        return;
    }
    if (op == PART_SHOWN) {
        part.partFlag &= ~PART_HIDDEN;
    } else if (op == PART_HIDDEN) {
        part.partFlag &= ~PART_SHOWN;
    } else if (op == PART_SELECTED || op == PART_HIGHLIGHTED) {
        showPart(part);
    }
}

// ORs bits into the flags of the listed parts; unknown ids are reported, each time they occur.
void markListedParts(CAEEnv& env, unsigned int bits, const std::vector<unsigned int>* pid_list)
{
    diagnostics::print(label::numParts, env.pidMap.size());
    if (pid_list == nullptr) {
        return;
    }
    for (unsigned int id : *pid_list) {
        const UIUIMap::const_iterator found = env.pidMap.find(id);
        if (found == env.pidMap.end()) {
            diagnostics::print(label::partNotFound, id);
        } else if (found->second < env.numParts) {
            env.partsInfoList[found->second].partFlag |= bits;
        }
    }
}

} // namespace

void CAEEnv::processParts(unsigned int op)
{
    if (op == PART_SHOWN) {
        for (i = 0; i < numParts; ++i) {
            setPartVisibility(partsInfoList[i], hasSelection(partsInfoList[i]) ? PART_SHOWN : PART_HIDDEN);
            partsInfoList[i].partFlag &= ~PART_SELECTED;
        }
    } else if (op == PART_HIDDEN) {
        // deliberate(hide-from-counter): starts where the last loop over parts left off, so it does nothing unless
        // something has moved the counter; hosts rely on that.
        for (; i < numParts; ++i) {
            if (!hasSelection(partsInfoList[i])) {
                continue;
            }
            hidePart(partsInfoList[i]);
            partsInfoList[i].partFlag &= ~PART_SELECTED;
        }
    }
    modifyExtents();
}

void CAEEnv::processPartsByID(unsigned int op, std::vector<unsigned int>* pid_list)
{
    // deliberate(clear-first-part): 256 works on the first part alone, leaves the counter there, and prints nothing.
    if (op == clearFirstPart) {
        i = 0;
        if (numParts != 0) {
            partsInfoList[0].partFlag &= ~(PART_SELECTED | PART_HIGHLIGHTED);
        }
        return;
    }
    for (i = 0; i < numParts; ++i) {
        prepareForIDs(partsInfoList[i], op);
    }
    // deliberate(raw-op-bits): any other op is ORed in as it stands, with nothing prepared or repaired.
    markListedParts(*this, op, pid_list);
    for (i = 0; i < numParts; ++i) {
        repairAfterIDs(partsInfoList[i], op);
    }
    modifyExtents();
}

void CAEEnv::selectPartsByID(std::vector<unsigned int>* pid_list)
{
    markListedParts(*this, PART_SELECTED, pid_list);
}

void CAEEnv::setSegmentPart(PartInfoPtr part)
{
    // deliberate(segment-null-ignored): null neither removes the part nor clears the flag; clearComputeFlag does.
    if (part == nullptr) {
        return;
    }
    compFlag |= SEGMENT_PART_SET;
    computeShellNormals(part);
    segmentPart = part;
    modifyExtents();
}
