#include <GL/freeglut.h>
#include <algorithm>
#include <caeenv.h>
#include <mtrans.h>

static CAEEnv* env;
static float mouse[4]; // where the mouse was, where it is

static void draw() { glClear(GL_COLOR_BUFFER_BIT), env->renderModel(), glutSwapBuffers(); }
static void press(int, int, int x, int y) { mouse[2] = x, mouse[3] = y; }
static void drag(int x, int y)
{
    std::copy(mouse + 2, mouse + 4, mouse);
    press(0, 0, x, y);
    env->getMTransformPtr()->updateValues(GLOBAL_ROTATION, mouse);
    glutPostRedisplay();
}
static void resize(int w, int h) // a viewport of the model's own shape, so that nothing is stretched
{
    const float* e = env->getExtents();
    const float pixels = std::min(w / (e[1] - e[0]), h / (e[3] - e[2]));
    env->resizeModel(int(pixels * (e[1] - e[0])), int(pixels * (e[3] - e[2])));
}
int main(int argc, char** argv) // host30 DIR MODEL
{
    glutInit(&argc, argv), glutInitWindowSize(800, 800), glutInitDisplayMode(GLUT_DOUBLE | GLUT_DEPTH);
    glutCreateWindow("host30");
    env = new CAEEnv(argv[1], argv[2], GL_FLAT), env->loadAndInitGL(0, false, nullptr);
    glutDisplayFunc(draw), glutReshapeFunc(resize), glutMouseFunc(press), glutMotionFunc(drag), glutMainLoop();
}
