// Selecting by ids and reading the flags back.
#include "selection.h"

#include <algorithm>

#include "caeenv.h"
#include "program_error.h"
#include "session_model.h"

namespace kvo {

namespace {

unsigned int elementCount(const PartElementsStr& elements)
{
    return elements.nodesPerElement ? elements.numElements / elements.nodesPerElement : 0;
}

unsigned int flagOf(unsigned int type)
{
    return type == PICK_TYPE_PART      ? PART_SELECTED
           : type == PICK_TYPE_ELEMENT ? PART_ELEMENTS_SELECTED
                                       : PART_NODES_SELECTED;
}

// The marks of one part's elements or nodes; null until anything of the kind was selected.
struct Flags
{
    const char* flags;
    unsigned int count;
};

Flags flagsOf(const PartInfoStr& part, unsigned int type)
{
    if (type == PICK_TYPE_ELEMENT) {
        return {part.partElements.selectedList, elementCount(part.partElements)};
    }
    return {part.partNodes.selectedNodes, part.partNodes.numNodes};
}

void clearKind(CAEEnv& env, unsigned int type)
{
    if (type == PICK_TYPE_PART) {
        env.clearSelectedParts();
    } else if (type == PICK_TYPE_ELEMENT) {
        env.clearSelectedElements();
    } else {
        env.clearSelectedNodes();
    }
}

void clearHighlight(CAEEnv& env) // the library has no call for it
{
    for (unsigned int part = 0; part < env.numParts; ++part) {
        env.partsInfoList[part].partFlag &= ~PART_HIGHLIGHTED;
    }
}

std::vector<unsigned int> partsOf(const CAEEnv& env, const std::vector<IdPiece>& ids)
{
    std::set<unsigned int> known;
    for (const auto& entry : env.pidMap) {
        known.insert(entry.first);
    }
    std::vector<unsigned int> out;
    for (unsigned int id : resolveIds(ids, known, "part")) {
        out.push_back(env.pidMap.at(id));
    }
    return out;
}

// Selects a part's elements or nodes with these ids; returns how many there are.
std::size_t selectInPart(SessionModel& model, unsigned int type, unsigned int part, const IdPiece& ids)
{
    const IdTable& table = type == PICK_TYPE_ELEMENT ? model.elementIds(part) : model.nodeIds(part);
    const std::uint32_t low = std::max({ids.first, table.lowest(), 1u}), high = std::min(ids.last, table.highest());
    std::size_t count = 0;
    if (table.empty() || low > high) {
        return count;
    }
    const auto take = [&](std::uint32_t member) {
        select(model.env(), type, part, member);
        ++count;
    };
    if (table.ascending() && high - low < table.size()) {
        for (std::uint64_t id = low; id <= high; ++id) {
            const std::uint32_t member = table.find(static_cast<std::uint32_t>(id));
            if (member != IdTable::notFound) {
                take(member);
            }
        }
        return count;
    }
    for (std::uint32_t member = 0; member < table.size(); ++member) {
        const std::uint32_t id = table[member];
        if (id >= low && id <= high) {
            take(member);
        }
    }
    return count;
}

void selectRange(SessionModel& model, unsigned int type, const IdPiece& ids)
{
    const CAEEnv& env = model.env();
    std::size_t count = 0;
    for (unsigned int part = 0; part < env.numParts; ++part) {
        if (!ids.ofPart || env.pidMap.at(ids.part) == part) {
            count += selectInPart(model, type, part, ids);
        }
    }
    if (count == 0 && ids.single) {
        throw ProgramError((type == PICK_TYPE_ELEMENT ? "element " : "node ") + std::to_string(ids.first) +
                           " is not in " + (ids.ofPart ? "part " + std::to_string(ids.part) : "the model"));
    }
}

} // namespace

std::vector<SelectedMember> readSelection(const CAEEnv& env, unsigned int type)
{
    std::vector<SelectedMember> out;
    for (unsigned int part = 0; part < env.numParts; ++part) {
        const PartInfoStr& record = env.partsInfoList[part];
        if ((record.partFlag & flagOf(type)) == 0) {
            continue;
        }
        if (type == PICK_TYPE_PART) {
            out.push_back({part, 0});
            continue;
        }
        const Flags marks = flagsOf(record, type);
        for (unsigned int k = 0; marks.flags && k < marks.count; ++k) {
            if (marks.flags[k] == SELECTED_CHAR) {
                out.push_back({part, k});
            }
        }
    }
    return out;
}

KeptSelection::KeptSelection(CAEEnv& e, unsigned int t) : env(e), type(t), members(readSelection(e, t))
{
    for (unsigned int part = 0; part < env.numParts; ++part) {
        flags.push_back(env.partsInfoList[part].partFlag & flagOf(type));
    }
    clearKind(env, type);
}

KeptSelection::~KeptSelection()
{
    clearKind(env, type);
    for (const SelectedMember& marked : members) {
        select(env, type, marked.part, marked.member);
    }
    // A part may have the bit without a mark.
    for (unsigned int part = 0; part < env.numParts; ++part) {
        env.partsInfoList[part].partFlag |= flags[part];
    }
}

void select(CAEEnv& env, unsigned int type, unsigned int part, unsigned int member)
{
    unsigned int partNumber = part + 1, memberNumber = member + 1;
    if (type == PICK_TYPE_PART) {
        env.selectPart(partNumber);
    } else if (type == PICK_TYPE_ELEMENT) {
        env.selectElement(&partNumber, &memberNumber);
    } else {
        env.selectNode(&partNumber, &memberNumber);
    }
}

void selectIds(SessionModel& model, unsigned int type, const std::vector<IdPiece>& ids)
{
    CAEEnv& env = model.env();
    if (type == PICK_TYPE_PART) {
        for (unsigned int part : partsOf(env, ids)) {
            select(env, type, part, 0);
        }
        return;
    }
    for (const IdPiece& range : ids) {
        if (range.ofPart && !env.pidMap.count(range.part)) {
            throw ProgramError("part " + std::to_string(range.part) + " is not in the model");
        }
        selectRange(model, type, range);
    }
}

void highlightIds(CAEEnv& env, const std::vector<IdPiece>& partIds)
{
    for (unsigned int part : partsOf(env, partIds)) {
        env.highlightPart(part + 1);
    }
}

void clearSelection(CAEEnv& env, int type)
{
    if (type == 0 || type == static_cast<int>(PART_HIGHLIGHTED)) {
        clearHighlight(env);
    }
    for (unsigned int kind : {PICK_TYPE_PART, PICK_TYPE_ELEMENT, PICK_TYPE_NODE}) {
        if (type == 0 || type == static_cast<int>(kind)) {
            clearKind(env, kind);
        }
    }
}

void setVisible(CAEEnv& env, const std::vector<IdPiece>& partIds, bool visible)
{
    const unsigned int mode = visible ? PART_SHOWN : PART_HIDDEN;
    std::vector<unsigned int> parts;
    for (unsigned int part = 0; partIds.empty() && part < env.numParts; ++part) {
        parts.push_back(part);
    }
    if (!partIds.empty()) {
        parts = partsOf(env, partIds);
    }
    for (unsigned int part : parts) {
        env.setDisplay(part + 1, mode);
    }
    env.modifyExtents();
}

} // namespace kvo
