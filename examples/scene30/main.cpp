#include <GL/freeglut.h>
#include <caeenv.h>
#include <cstdio>
#include <memory>
#include <mtrans.h>
#include <scene_load.h>
#include <scene_view.h>
#include <visible_picker.h>

static CAEEnv* env;
static std::unique_ptr<kvo::SceneView> view;
static float mouse[4]; // where the mouse was, where it is

static void draw() { view->draw(), glutSwapBuffers(); }
static void press(int button, int state, int x, int y)
{
    mouse[2] = float(x), mouse[3] = float(y);
    if (button != GLUT_RIGHT_BUTTON || state != GLUT_DOWN) {
        return;
    }
    const auto region = kvo::PickRegion::click(x, glutGet(GLUT_WINDOW_HEIGHT) - y);
    if (const auto hit = kvo::VisiblePicker(*view).nearest(kvo::PickType::Element, region)) {
        std::fprintf(stderr, "element %u of part %u\n", hit->entityId, hit->partId);
    }
}
static void drag(int x, int y)
{
    mouse[0] = mouse[2], mouse[1] = mouse[3], mouse[2] = float(x), mouse[3] = float(y);
    env->getMTransformPtr()->updateValues(GLOBAL_ROTATION, mouse);
    glutPostRedisplay();
}
static void resize(int w, int h) { glViewport(0, 0, w, h); }
int main(int argc, char** argv) // scene30 DIR MODEL
{
    glutInit(&argc, argv), glutInitWindowSize(900, 700), glutInitDisplayMode(GLUT_DOUBLE | GLUT_DEPTH);
    glutCreateWindow("scene30");
    env = new CAEEnv(argv[1], argv[2], GL_SMOOTH), kvo::loadScene(*env, 0);
    view = std::make_unique<kvo::SceneView>(*env);
    glutDisplayFunc(draw), glutReshapeFunc(resize), glutMouseFunc(press), glutMotionFunc(drag), glutMainLoop();
}
