#include "pick_fixture.h"

#include <GL/glu.h>

#include "pickrect.h"

namespace {

const GLuint triadName = 0xFFFFFFFE;

float normalised(GLuint word)
{
    return static_cast<float>(word) / 4294967296.0f;
}

} // namespace

unsigned int contractType(kvo::PickType type)
{
    switch (type) {
    case kvo::PickType::Part:
        return PICK_TYPE_PART;
    case kvo::PickType::Element:
        return PICK_TYPE_ELEMENT;
    default:
        return PICK_TYPE_NODE;
    }
}

std::vector<ContractHit> PickTest::contractHits(kvo::PickType type, const kvo::PickRegion& region)
{
    const kvo::OutputRedirect quiet("");
    static std::vector<GLuint> buffer(4 << 20);
    env->setPickType(contractType(type));
    GLint viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    glSelectBuffer(static_cast<GLsizei>(buffer.size()), buffer.data());
    glRenderMode(GL_SELECT);
    glInitNames();
    glPushName(triadName);
    env->mTrans->processStart();
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    gluPickMatrix(region.x, region.y, region.width, region.height, viewport);
    const float* extents = env->getExtents();
    glOrtho(extents[0], extents[1], extents[2], extents[3], Z_MAX_COORD, Z_MIN_COORD);
    env->displayPartsByElement();
    glLoadName(triadName);
    env->mTrans->processEnd();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    const GLint records = glRenderMode(GL_RENDER);
    EXPECT_GE(records, 0);
    std::vector<ContractHit> hits;
    const GLuint* next = buffer.data();
    for (GLint k = 0; k < records; ++k, next += 3 + next[0]) {
        if (next[3] != triadName) {
            hits.push_back({next[3], next[0] == 2 ? next[4] : 0, normalised(next[1]), normalised(next[2])});
        }
    }
    return hits;
}

std::vector<double> PickTest::project(double x, double y, double z) const
{
    std::vector<double> window(3);
    gluProject(x, y, z, view.modelview, view.projection, view.viewport, &window[0], &window[1], &window[2]);
    return window;
}
