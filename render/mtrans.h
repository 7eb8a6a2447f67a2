// The user's transformation of the view: pan, rotations, per-axis scale, and the overlays of the running operation.
#ifndef MTRANS_H
#define MTRANS_H

#include <cstdio>
#include <vector>

#include "kvoexport.h"

const float SCALE_FACTOR = 0.2f;     // step of SCALE_INCR, SCALE_DECR and the rubber-band zoom
const float MIN_SCALE_FACTOR = 0.1f; // lower bound of every localScale component
const int NUM_COORDS = 3;
const double Z_MIN_COORD = -9999.0; // depth range given to glOrtho
const double Z_MAX_COORD = 9999.0;

struct _Point3D
{
    float point[3];
};
typedef struct _Point3D Point3D;
typedef struct _Point3D* Point3DPtr;

// Operations of MTransform::updateValues. 1 to 13 wait for the next frame, 14 and above act at once.
enum _TransType
{
    NO_TRANSFORM = 0,
    RESET_TRANSFORM = 1,
    ROTATE_X_CCW = 2, // 5 degrees a step
    ROTATE_X_CW = 3,
    ROTATE_Y_CCW = 4,
    ROTATE_Y_CW = 5,
    ROTATE_Z_CCW = 6,
    ROTATE_Z_CW = 7,
    TRANS_LEFT = 8, // a fiftieth of abs(min) + abs(max) a step
    TRANS_RIGHT = 9,
    TRANS_UP = 10,
    TRANS_DOWN = 11,
    SCALE_INCR = 12,
    SCALE_DECR = 13,
    GLOBAL_TRANSLATION = 14, // values: dx, dy, width, height in pixels
    GLOBAL_SCALE = 15,       // values: scale step
    GLOBAL_ROTATION = 16,    // values: x1, y1, x2, y2 in pixels, y counted DOWNWARDS
    START_RUBBER_BAND = 17,  // values: start x, y, current x, y in window pixels, y upwards
    START_POLYLINE = 18,     // values: x, y in window pixels, y upwards
    END_RUBBER_BAND = 19,
    RECT_SCALE = 20,
    RECT_PICK = 21,   // also a pick method of PickRect
    SELECT_PICK = 22, // a pick method of PickRect; nothing here
    POLYLINE_PICK = 23,
    TRANS_MAX = 24
};
typedef enum _TransType TransType;

class KVO_EXPORT MTransform
{
public:
    // Keeps the pointer to extents[6] (owned by the environment, read on every use); the triad's arm lengths are taken
    // from it now and never again. Prints "AXIS LEN=".
    explicit MTransform(float* extents);
    // Does not free the points of pointsList; POLYLINE_PICK does.
    ~MTransform();

    // Identity rotation, pan and scale. Keeps the pending operation, the centres, the matrices and the polyline.
    void resetAll();
    // viewPort = (0, 0, w, h).
    void setViewport(int w, int h);
    // One mouse or keyboard operation (_TransType). values: see the enumeration; at least four floats for 14, 16, 17,
    // two for 18, one for 15, not read otherwise.
    void updateValues(int trans_type, float* values);
    // The view from seven numbers: rotation angles (degrees) 0-2, pan (pixels) 3-4, [5] not read, scale step 6.
    void setValues(float* values);
    void setTranslation(float* t); // localTrans = t[0..2]
    void setRotation(float* r);    // composes r[3] degrees about the axis r[0..2] onto curQuat
    void update();                 // carries out a pending operation below 14
    // The frame bracket: processStart pushes three matrices, processEnd draws the overlays, captures the matrices and
    // pops them. The model is drawn in between.
    void processStart();
    void processEnd();
    std::vector<Point3D*>& getPointsList();

    // Zoom and centre; all unproject with mvMatrix, projMatrix and viewPort of the last frame at window depth 0.5.
    void updateRect();
    void computeWindowCenter();
    void updateWindowCenter();
    void updateScaleForWindow(float sx, float sy, float sz);
    void updateLocalScaleForWindow(float scale);
    void updateLocalScaleForRubberBand();
    void moveToCOW();
    void addPoint(float* mouse_values);
    void printMatrices();

    // 476 bytes of the view state file.
    void save(FILE* fp);
    void restore(FILE* fp);

    // Declared only; never defined.
    void changeTransform(int);
    void processMouseEvents(int*);
    void getMatrices(double**, double**, int**);

    int mTransType;                   // pending operation; NO_TRANSFORM after every frame
    int depthTest;                    // non-zero: the depth test was on when processEnd began
    int onlyOnce;                     // bit value 2: compute the centre of the window at the end of the next frame
    int viewPort[4];                  // x, y, width, height in pixels
    float* modelExtents;              // xmin, xmax, ymin, ymax, zmin, zmax; not owned
    float mouseValues[4];             // rubber band: start x, y, current x, y in window pixels
    float localTrans[3];              // innermost translation, model units
    float globalRot[3];               // degrees about x, y, z; -360..360
    float globalTrans[3];             // pan in eye space, model units
    float localScale[3];              // per-axis scale; 1 after a reset
    float axisLength[3];              // arm lengths of the axis triad
    float rotMatrix[4][4];            // of curQuat, rebuilt every frame
    float curQuat[4];                 // accumulated trackball rotation (x, y, z, w)
    double mvMatrix[16];              // complete modelview of the last frame
    double mvMatrixLocal[16];         // the host's modelview with the pan added
    double projMatrix[16];            // projection of the last frame
    double centerOfScaling[3];        // model point about which scaling works; the red marker
    double centerOfWindow[3];         // pivot of all rotations
    double startOfScaling[3];         // model point under the rubber band's start corner
    double endOfScaling[3];           // model point under its current corner
    std::vector<Point3D*> pointsList; // polyline in model coordinates; each point allocated singly
};

#endif
