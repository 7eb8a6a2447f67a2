#include <GL/freeglut.h>
#include <cstdio>
#include <kvo/model_directory.h>
#include <kvo/scene_view.h>
#include <kvo/view_names.h>
#include <kvo/visible_picker.h>
#include <memory>

static kvo::ModelView shown;
static std::unique_ptr<kvo::SceneView> view;
static kvo::Camera camera;
static kvo::Viewport window = {900, 700};
static kvo::Pixel mouse; // y upwards

static kvo::Point3 middle()
{
    const kvo::Box box = shown.visibleBox();
    return {box.center(0), box.center(1), box.center(2)};
}
static void draw() { view->setCamera(camera), view->draw(), glutSwapBuffers(); }
static void press(int button, int state, int x, int y)
{
    mouse = {double(x), double(window.height - y)};
    if (button != GLUT_RIGHT_BUTTON || state != GLUT_DOWN) {
        return;
    }
    const auto region = kvo::PickRegion::click(mouse.x, mouse.y);
    if (const auto hit = kvo::VisiblePicker(*view).nearest(kvo::PickType::Element, region)) {
        std::printf("element %u of part %u\n", hit->entityId, hit->partId);
    }
}
static void drag(int x, int y)
{
    const kvo::Pixel to = {double(x), double(window.height - y)};
    camera = camera.orbit(mouse, to, window, middle());
    mouse = to;
    glutPostRedisplay();
}
static void resize(int w, int h) { window = {w, h}, glViewport(0, 0, w, h); }
int main(int argc, char** argv) // scene30 MODELDIR
{
    glutInit(&argc, argv), glutInitWindowSize(900, 700), glutInitDisplayMode(GLUT_DOUBLE | GLUT_DEPTH);
    glutCreateWindow("scene30"), glEnable(GL_DEPTH_TEST);
    shown = kvo::ModelView(kvo::readModelDirectory(argv[1]));
    view = std::make_unique<kvo::SceneView>(shown);
    camera.setOrientation(*kvo::viewOrientation("iso"));
    camera = camera.fit(shown.visibleBox(), window);
    glutDisplayFunc(draw), glutReshapeFunc(resize), glutMouseFunc(press), glutMotionFunc(drag), glutMainLoop();
}
