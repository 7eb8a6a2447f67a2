// Passes of PickRect, what surrounds them, and the reading of their results.
#include "contract_picker.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>
#include <map>
#include <sstream>
#include <utility>

#include <GL/gl.h>

#include "caeenv.h"
#include "mtrans.h"
#include "pickrect.h"
#include "program_error.h"
#include "selection.h"

namespace kvo {

namespace {

// The environment with one more part behind its last one, empty and visible, for as long as this lives.
class TriadCatcher
{
public:
    explicit TriadCatcher(CAEEnv& e)
        : env(e), own(e.partsInfoList), records(e.partsInfoList, e.partsInfoList + e.numParts)
    {
        PartInfoStr catcher{};
        catcher.partFlag = PART_SHOWN;
        catcher.partDrawType = std::numeric_limits<unsigned int>::max(); // a type that nothing draws
        records.push_back(catcher);
        env.partsInfoList = records.data();
        ++env.numParts;
    }
    ~TriadCatcher()
    {
        delete[] records.back().partNodes.selectedNodes; // made with those of the other parts
        delete[] records.back().partElements.selectedList;
        --env.numParts;
        std::copy(records.begin(), records.end() - 1, own);
        env.partsInfoList = own;
    }
    TriadCatcher(const TriadCatcher&) = delete;
    TriadCatcher& operator=(const TriadCatcher&) = delete;

private:
    CAEEnv& env;
    PartInfoStr* own;
    std::vector<PartInfoStr> records;
};

// The last frame's matrices, put back; and its depth range, multiplied into the view for the pass.
class FrameMatrices
{
public:
    explicit FrameMatrices(MTransform& t) : trans(t)
    {
        std::copy(t.mvMatrix, t.mvMatrix + 16, model);
        std::copy(t.mvMatrixLocal, t.mvMatrixLocal + 16, local);
        std::copy(t.projMatrix, t.projMatrix + 16, projection);
        glGetDoublev(GL_MODELVIEW_MATRIX, view);
        const double spread = t.projMatrix[10] * Z_MAX_COORD; // of the frame's depths against the pass's
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        if (spread > 0 && std::isfinite(spread)) {
            glScaled(1, 1, spread);
        }
        glMultMatrixd(view);
    }
    ~FrameMatrices()
    {
        std::copy(model, model + 16, trans.mvMatrix);
        std::copy(local, local + 16, trans.mvMatrixLocal);
        std::copy(projection, projection + 16, trans.projMatrix);
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixd(view);
    }
    FrameMatrices(const FrameMatrices&) = delete;
    FrameMatrices& operator=(const FrameMatrices&) = delete;

private:
    MTransform& trans;
    double model[16];
    double local[16];
    double projection[16];
    double view[16];
};

// Keeps what is written to the standard output stream, and passes it on in the end.
class OutputTap
{
public:
    OutputTap() : before(std::cout.rdbuf(kept.rdbuf())) {}
    ~OutputTap()
    {
        std::cout.rdbuf(before);
        std::cout << kept.str();
    }
    OutputTap(const OutputTap&) = delete;
    OutputTap& operator=(const OutputTap&) = delete;

    bool says(const std::string& text) const { return kept.str().find(text) != std::string::npos; }

private:
    std::ostringstream kept;
    std::streambuf* before;
};

// The selection buffer ran over: a result of 0 alone may as well mean that nothing is there.
[[noreturn]] void failOverflow(unsigned int type)
{
    const unsigned int words = type == PICK_TYPE_PART ? 4 : 5;
    throw ProgramError("more than " + std::to_string(SELECT_BUFFER_SIZE / words) +
                       " hits, and so many the selection buffer does not hold: pick a smaller region");
}

void pass(PickRect& rect, CAEEnv& env, const PickRequest& request, int method, int pictureHeight)
{
    const PictureRegion& region = request.region;
    float place[4] = {region.left + region.width / 2,
                      static_cast<float>(pictureHeight) - (region.top + region.height / 2), region.width,
                      region.height};
    CAEEnv::setPtr(&env);
    OutputTap output;
    const int count = rect.process(static_cast<int>(request.type), method, place);
    if (count == 0 && output.says("ERROR: Too many items")) {
        failOverflow(request.type);
    }
}

using Entity = std::pair<unsigned int, unsigned int>; // part and member, from 0
using Depths = std::map<Entity, float>;

// The nearest depth of everything that a pass named, without the triad's hits.
Depths nearestDepths(const PickRect& rect, unsigned int numParts)
{
    Depths out;
    for (const auto& entry : rect.zPartMap) {
        const PidEidStr& names = entry.second;
        const bool member = rect.pickType != PICK_TYPE_PART;
        if (names.pid - 1 >= numParts) {
            continue;
        }
        out.emplace(Entity(names.pid - 1, member ? names.eid - 1 : 0), entry.first); // nearest first
    }
    return out;
}

PickHit hitOf(const Entity& entity, float depth)
{
    PickHit hit;
    hit.part = entity.first;
    hit.member = entity.second;
    hit.depth = depth;
    return hit;
}

PickHit toHit(const Depths::value_type& entry)
{
    return hitOf(entry.first, entry.second);
}

// The library's rule: the nearest; of equally near ones the one that is drawn first; without depth testing the one
// that is drawn last.
std::vector<PickHit> winner(const Depths& depths)
{
    if (depths.empty()) {
        return {};
    }
    if (!glIsEnabled(GL_DEPTH_TEST)) {
        return {toHit(*depths.rbegin())};
    }
    return {toHit(*std::min_element(depths.begin(), depths.end(),
                                    [](const auto& a, const auto& b) { return a.second < b.second; }))};
}

// What a rectangle pass marked in the environment, with the depths.
std::vector<PickHit> markedHits(CAEEnv& env, unsigned int type, unsigned int numParts, const Depths& depths)
{
    std::vector<PickHit> out;
    for (const SelectedMember& marked : readSelection(env, type)) {
        if (marked.part >= numParts) {
            continue;
        }
        const Entity entity(marked.part, marked.member);
        const auto found = depths.find(entity);
        out.push_back(hitOf(entity, found == depths.end() ? 1.0f : found->second));
    }
    return out;
}

std::vector<PickHit> pickInRegion(CAEEnv& env, const PickRequest& request, int pictureHeight)
{
    PickRect rect;
    const unsigned int numParts = env.numParts - 1; // without the catcher
    if (request.nearestOnly) {
        pass(rect, env, request, SELECT_PICK, pictureHeight);
        return winner(nearestDepths(rect, numParts));
    }
    pass(rect, env, request, RECT_PICK, pictureHeight);
    // A rectangle pass does not name the elements whose depths it keeps; one that only collects does.
    if (request.type == PICK_TYPE_ELEMENT && !rect.zPartMap.empty()) {
        PickRect collected;
        pass(collected, env, request, SELECT_PICK, pictureHeight);
        rect.zPartMap.swap(collected.zPartMap);
    }
    return markedHits(env, request.type, numParts, nearestDepths(rect, numParts));
}

} // namespace

std::vector<PickHit> ContractPicker::pick(CAEEnv& env, const PickRequest& request, int pictureHeight)
{
    if (!request.region.outline.empty()) {
        throw ProgramError("the drawing library's own pick takes no polygons");
    }
    const KeptSelection kept(env, request.type);
    const FrameMatrices matrices(*env.getMTransformPtr());
    const TriadCatcher catcher(env);
    return pickInRegion(env, request, pictureHeight);
}

} // namespace kvo
