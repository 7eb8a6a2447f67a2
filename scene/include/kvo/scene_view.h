// SceneView: one call a frame draws a model fast and completely.
//
//   kvo::ModelView shown(model);
//   kvo::SceneView view(shown);        // the context is current from here on
//   view.look().style = kvo::SceneStyle::ShadedEdges;
//   view.draw();
//   shown.parts[2].hidden = true;      // the next frame shows it
//   view.draw();
//
// What is shown is read at every frame: hidden, selected and highlighted parts, colours, marks of elements and nodes,
// boxes. The view is that of a kvo::Camera (setCamera); without one the first frame sees the whole model from the
// isometric side. Nothing is distorted, whatever the window's shape.
//
// Of an environment (CAEEnv) flags, colours, selections and the segment part are read in the same way. Without a camera
// view, rotation, zoom and overlays are the environment's own MView and MTransform, the projection is model_frame.h's.
// The shade model, polygon mode and depth test are those of the context, as the environment's setters leave them.
//
// Needs OpenGL 3.3; of an environment in the compatibility profile, of a ModelView in any. All calls belong on the
// thread that owns the context, and the context must be current in the destructor too. Errors: std::runtime_error for a
// context that cannot do it, std::bad_alloc when memory ends, std::logic_error for a frame before a model is loaded.
#ifndef KVO_SCENE_VIEW_H
#define KVO_SCENE_VIEW_H

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <kvo/camera.h>

#include <kvo/coloring.h>
#include <kvo/pick.h>
#include <kvo/shown_model.h>
#include <kvoexport.h>

class CAEEnv;

namespace kvo {

enum class SceneLight
{
    Eye,     // two lights beside the viewer; both sides of a face are lit
    Model,   // two lights that turn with the model; both sides of a face are lit
    Contract // the context's two lights, the records' normals, and depth the other way round, which mirrors the model:
             // what CAEEnv::renderModel draws
};

enum class SceneStyle
{
    Shaded,
    ShadedEdges, // and the elements' edges
    HiddenLine,  // edges that are not covered, on faces in the colour of the background
    Wire         // all edges
};

enum class SceneCut
{
    Off,
    Slice,   // everything ends at the plane; cut solids show their cross-sections
    Elements // elements wholly on the removed side are not there, others are whole
};

struct SceneSection
{
    SceneCut cut = SceneCut::Off;
    // a, b, c, d in model coordinates: what has a x + b y + c z + d >= 0 stays. A plane without normal, or with entries
    // that are not finite, cuts nothing.
    double plane[4] = {0, 0, 1, 0};
    bool caps = true; // cross-sections of solids, in their elements' colours

    // The plane through a point; the side that the normal points to stays.
    void setPlane(const double point[3], const double normal[3])
    {
        plane[3] = 0;
        for (int axis = 0; axis < 3; ++axis) {
            plane[axis] = normal[axis];
            plane[3] -= normal[axis] * point[axis];
        }
    }
};

// Lines along edges of the surfaces, found within each part. They are found when first shown, and again when the
// geometry or the feature angle changes.
struct SceneLines
{
    bool feature = false;   // two faces that turn more than SceneLook::featureAngle
    bool free = false;      // one face only: rims, holes, cracks
    bool branching = false; // more than two faces
    float featureColor[4] = {0, 0, 0, 1};
    float freeColor[4] = {0.85f, 0.1f, 0.1f, 1};
    float branchingColor[4] = {0.75f, 0, 0.85f, 1};
    float width = 2; // pixels
};

// Ids at what the picture shows; those that would overlap others are left out.
struct SceneLabels
{
    bool parts = false;
    bool elements = false;
    bool nodes = false;
    int spacing = 4; // pixels that stay free between labels
};

// New fields are added at the end, and the structures within do not grow: so a host that was compiled with fewer fields
// finds those that it knows. The library itself takes a SceneLook only from the view that holds it.
struct SceneLook
{
    SceneLight light = SceneLight::Eye;
    SceneStyle style = SceneStyle::Shaded;
    float featureAngle = 30;           // degrees; smooth shading breaks where faces turn more
    float edgeColor[4] = {0, 0, 0, 1}; // RGBA
    float edgeWidth = 1;               // pixels
    float lineWidth = 2;               // of beams and springs, pixels
    float nodeSize = 8;                // of selected nodes, pixels
    bool ghosts = false;               // hidden parts stay as a pale hull
    float ghostColor[4] = {0.7f, 0.75f, 0.8f, 0.12f};
    SceneSection section;
    SceneLines lines;
    SceneLabels labels;           // with a font: SceneView::setFont
    bool legend = true;           // of a colouring by category or value; with a font
    bool axes = true;             // the model's axes in the lower left corner of pictures that are not tiny
    bool frameOverlays = true;    // rubber band and marker of an operation; with SceneLight::Contract, or
                                  // without axes, also the environment's own triad at the model's origin
    bool moving = false;          // the view is being turned: see frameBudget
    float frameBudget = 0;        // milliseconds; a moving view draws a coarser surface when exact frames take
                                  // longer. 0: always exact. At rest (moving is false) always exact.
    float pixelShift[2] = {0, 0}; // the model is drawn by so many pixels further right and up, less than one each: for
                                  // pictures that are the mean of several frames (OpenGL 4.1)
    bool smooth = true;           // normals run over the faces of a ModelView; of an environment its shade model tells
};

// What the last frame cost. New fields are added at the end.
struct SceneFrameStats
{
    std::size_t faces = 0;     // faces sent to OpenGL
    std::size_t drawCalls = 0; // calls that drew faces or lines
    std::size_t culledBlocks = 0;
    bool coarse = false; // drawn with a coarser surface
};

// What a frame finds of the host's OpenGL state, and leaves.
enum class HostState
{
    Restore, // any state: it is read before each frame and put back behind it
    Defaults // the host promises that all is as in a new context but for viewport, framebuffer, clear colour and the
             // depth test, which is on: nothing of that is read, and it is so again behind the frame, but for the
             // scissor box
};

class KVO_EXPORT SceneView
{
public:
    // Keeps the reference; what is shown must outlive the view.
    explicit SceneView(const ModelView& view);
    explicit SceneView(CAEEnv& env);
    ~SceneView();
    SceneView(const SceneView&) = delete;
    SceneView& operator=(const SceneView&) = delete;

    // What the next frame is to look like; read at every frame. It lives in the library: see SceneLook.
    SceneLook& look();
    const SceneLook& look() const;

    // Coordinates, elements or the list of parts have changed: everything is read anew at the next frame.
    void geometryChanged();

    // Elements that are not there: per part one character an element, not 0 for absent. Shorter lists leave the rest
    // there. What was inside comes to light. Takes effect at the next frame.
    void setAbsentElements(std::vector<std::vector<char>> absent);

    // What colours faces, lines and cross-sections (coloring.h), until the next call. Takes effect at the next frame.
    // Its values must fit the parts and elements of the environment; those too many are not used.
    void setColoring(Coloring coloring);
    const Coloring& coloring() const;

    // The font of labels, legend and the axes' letters, from the next frame on: a file that FreeType reads, and its
    // nominal height, 4..256 pixels. Without one (an empty name, or nothing set) there are neither labels nor legend.
    // Throws std::runtime_error that names the file where it is no such font; the one before stays.
    void setFont(const std::string& file, int pixelHeight = 13);

    // From the next frame on the picture shows what this camera sees. MView and MTransform are then neither read nor
    // written, and their overlays are not drawn. Nothing moves by itself: showing and hiding parts leaves the camera.
    // With SceneLight::Contract the lights are the context's, beside the viewer as ever, and the model is not mirrored.
    void setCamera(const Camera& camera);
    // The camera that was set; nothing before.
    const std::optional<Camera>& camera() const;

    // Restore until it is set. Frames of an environment need Restore, whatever is set.
    void setHostState(HostState state);

    // The box of the parts that are not hidden (of all where all are, of +-1 where there is none), for Camera::fit.
    // Throws std::logic_error before a model is loaded.
    Box visibleBox() const;

    // One frame into the bound framebuffer and the current viewport: clears, draws, and, without a camera, captures the
    // matrices in the environment's MTransform as CAEEnv::renderModel does.
    void draw();

    // The last frame, for ThroughPicker.
    PickView pickView() const;

    const SceneFrameStats& lastFrame() const;
    std::size_t bufferBytes() const; // in OpenGL's buffers

private:
    friend class VisiblePicker;
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace kvo

#endif
