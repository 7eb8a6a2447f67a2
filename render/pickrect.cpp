// The picking pass and the reading of its hits.
#include "pickrect.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <cstring>

#include "caeenv.h"
#include "diagnostics.h"
#include "mtrans.h"

namespace {

// The axis triad is drawn in the pass, too, and leaves a record of one name; an element pick reads two. The words
// behind what OpenGL is told of keep that inside the array when the buffer is exactly full.
constexpr unsigned int spareWords = 16;
constexpr unsigned int bufferWords = SELECT_BUFFER_SIZE + spareWords;

// Walks the words of the selection buffer; reads 0 behind its end.
class HitCursor
{
public:
    explicit HitCursor(GLuint* buffer) : next(buffer), end(buffer + bufferWords) {}
    GLuint peek() const { return next < end ? *next : 0; }
    GLuint take() { return next < end ? *next++ : 0; }

private:
    const GLuint* next;
    const GLuint* end;
};

// A name as last read, if one was.
struct LastName
{
    bool read = false;
    unsigned int value = 0;

    unsigned int set(unsigned int name)
    {
        read = true;
        value = name;
        return name;
    }
};

struct DepthRange
{
    float low;
    float high;
};

// What reading the hits carries from record to record. Part and element names are updated independently.
struct HitReading
{
    CAEEnv& env;
    PickRect& pick;
    HitCursor cursor;
    LastName part;
    LastName element;
    DepthRange depth;

    HitReading(CAEEnv& env, PickRect& pick, GLuint* buffer) : env(env), pick(pick), cursor(buffer), depth{0, 0} {}

    // Every interpreted hit goes in twice, by its nearest and by its farthest depth.
    void insert(const PidEidStr& entity)
    {
        pick.zPartMap.insert(ZPartMap::value_type(depth.low, entity));
        pick.zPartMap.insert(ZPartMap::value_type(depth.high, entity));
    }
};

// Each reads one name, or a pair, from the record; returns how many names beyond the first it consumed.
int readPartName(HitReading& hits, PidEidStr entity, bool selectNow)
{
    if (selectNow) {
        hits.env.selectPart(entity.pid);
    }
    hits.part.set(hits.cursor.take());
    hits.insert(entity);
    return 0;
}

int readElementNames(HitReading& hits, PidEidStr entity, bool selectNow)
{
    unsigned int part = hits.part.set(hits.cursor.take());
    unsigned int element = hits.element.set(hits.cursor.take());
    // deliberate(rect-element-eid-0): the rectangle pick leaves the stored element number 0; its map only counts hits.
    if (selectNow) {
        hits.env.selectElement(&part, &element);
    } else {
        entity.eid = element;
    }
    hits.insert(entity);
    return 1;
}

int readNodeNames(HitReading& hits, PidEidStr entity, bool selectNow, int numNames)
{
    if (numNames != 1 && numNames != 2) {
        return 0;
    }
    unsigned int part = hits.part.set(hits.cursor.take());
    diagnostics::print(label::partIndex, part);
    if (numNames == 1) {
        return 0;
    }
    entity.eid = hits.element.set(hits.cursor.take());
    diagnostics::print(label::nodeIndex, entity.eid);
    if (selectNow) {
        hits.env.selectNode(&part, &entity.eid);
    }
    hits.insert(entity);
    return 1;
}

// deliberate(names-not-skipped): types and methods that interpret nothing leave the cursor where it is.
int readNames(HitReading& hits, int numNames)
{
    const PidEidStr entity = {hits.cursor.peek(), 0};
    const bool selectNow = hits.pick.pickMethod == RECT_PICK;
    if (!selectNow && hits.pick.pickMethod != SELECT_PICK) {
        return 0;
    }
    switch (hits.pick.pickType) {
    case PICK_TYPE_PART:
        return readPartName(hits, entity, selectNow);
    case PICK_TYPE_ELEMENT:
        return readElementNames(hits, entity, selectNow);
    case PICK_TYPE_NODE:
        return readNodeNames(hits, entity, selectNow, numNames);
    default:
        return 0;
    }
}

float depthOf(GLuint word)
{
    return static_cast<float>(word) / 4294967296.0f;
}

void readRecord(HitReading& hits)
{
    const int numNames = static_cast<int>(hits.cursor.take());
    std::cout << " number of parts for hit = " << numNames << '\n';
    hits.depth.low = depthOf(hits.cursor.take());
    hits.depth.high = depthOf(hits.cursor.take());
    std::cout << "  z1 is " << hits.depth.low << "; z2 is " << hits.depth.high << '\n' << "   the part is ";
    for (int j = 0; j < numNames; ++j) {
        std::cout << static_cast<int>(hits.cursor.peek()) << ' ';
        j += readNames(hits, numNames);
    }
    std::cout << '\n';
}

void selectNearest(HitReading& hits)
{
    if (hits.pick.zPartMap.empty()) {
        return;
    }
    PidEidStr nearest = hits.pick.zPartMap.begin()->second;
    switch (hits.pick.pickType) {
    case PICK_TYPE_PART:
        hits.env.selectPart(nearest.pid);
        break;
    case PICK_TYPE_ELEMENT:
        std::cout << "PID=" << nearest.pid << " EID=" << nearest.eid << std::endl;
        hits.env.selectElement(&nearest.pid, &nearest.eid);
        break;
    case PICK_TYPE_NODE:
        std::cout << "PID=" << nearest.pid << " NID=" << nearest.eid << std::endl;
        hits.env.selectNode(&nearest.pid, &nearest.eid);
        break;
    default:
        break;
    }
}

// deliberate(last-record-wins): without depth testing the names read last win, and part and node may come from
// different records.
void selectLastRead(HitReading& hits)
{
    if (!hits.part.read) {
        return;
    }
    if (hits.pick.pickType == PICK_TYPE_PART) {
        hits.env.selectPart(hits.part.value);
    }
    if (!hits.element.read) {
        return;
    }
    if (hits.pick.pickType == PICK_TYPE_ELEMENT) {
        hits.env.selectElement(&hits.part.value, &hits.element.value);
    } else if (hits.pick.pickType == PICK_TYPE_NODE) {
        hits.env.selectNode(&hits.part.value, &hits.element.value);
    }
}

void setPickProjection(const float* mouse_xy, GLint* viewport, const float* extents)
{
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    gluPickMatrix(mouse_xy[0], mouse_xy[1], mouse_xy[2], mouse_xy[3], viewport);
    // Near and far reversed as in a frame (see resizeModel): depths, and so the nearest hit, follow from it.
    glOrtho(extents[0], extents[1], extents[2], extents[3], Z_MAX_COORD, Z_MIN_COORD);
}

} // namespace

PickRect::PickRect() : pickType(0), pickMethod(0) {}
PickRect::~PickRect() {}

int PickRect::process(int pick_type, int pick_method, float* mouse_xy)
{
    GLuint buffer[bufferWords];
    std::memset(buffer, 0, sizeof buffer);
    CAEEnv* env = CAEEnv::getPtr();
    pickType = static_cast<unsigned int>(pick_type);
    pickMethod = static_cast<unsigned int>(pick_method);
    zPartMap.clear();
    if (env == nullptr || env->getMTransformPtr() == nullptr) { // nothing is loaded
        return 0;
    }
    env->setPickType(pickType);
    diagnostics::printList(label::mouseXY, mouse_xy, 4);
    GLint viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    glSelectBuffer(static_cast<GLsizei>(SELECT_BUFFER_SIZE), buffer);
    glRenderMode(GL_SELECT);
    glInitNames();
    glPushName(0xFFFFFFFFu);

    // deliberate(triad-in-pick-pass): the bracket draws its overlays in selection mode, too; they hit under the name of
    // the last visible part.
    env->getMTransformPtr()->processStart();
    setPickProjection(mouse_xy, viewport, env->getExtents());
    env->displayPartsByElement();
    env->getMTransformPtr()->processEnd();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glFlush();

    const GLint numHits = glRenderMode(GL_RENDER);
    if (numHits == -1) {
        std::cout << "ERROR: Too many items got selected. So none got picked\n";
        zPartMap.clear();
        return 0;
    }
    return numHits == 0 ? 0 : processHits(numHits, buffer);
}

int PickRect::processHits(GLint num_hits, GLuint* select_buf)
{
    CAEEnv* env = CAEEnv::getPtr();
    if (env == nullptr) {
        return 0;
    }
    HitReading hits(*env, *this, select_buf);
    std::cout << "hits = " << num_hits << '\n';
    for (GLint k = 0; k < num_hits; ++k) {
        readRecord(hits);
    }
    if (!zPartMap.empty()) {
        diagnostics::print(label::firstPart, zPartMap.begin()->second.pid);
        diagnostics::print(label::lastPart, zPartMap.rbegin()->second.pid);
    }
    if (pickMethod == SELECT_PICK) {
        if (glIsEnabled(GL_DEPTH_TEST)) {
            selectNearest(hits);
        } else {
            selectLastRead(hits);
        }
    }
    const std::size_t count = zPartMap.size() / 2;
    diagnostics::print(label::numSelected, count);
    return static_cast<int>(count);
}
