// Standard views: the base modelview matrix of a frame.
#ifndef MVIEW_H
#define MVIEW_H

#include <cstdio>

#include "kvoexport.h"

enum _MViewType
{
    NO_VIEW = 0, // leaves the orientation alone; the fit is still applied, not uniformly
    ISO_VIEW = 1,
    TOP_VIEW = 2,
    BOTTOM_VIEW = 3,
    LEFT_VIEW = 4,
    RIGHT_VIEW = 5,
    FRONT_VIEW = 6,
    BACK_VIEW = 7
};
typedef enum _MViewType MViewType;

// Sign class of one axis's range.
enum _AxisType
{
    AXIS_OTHER_TYPE = 0, // mixed signs
    X_BOTH_POSITIVE = 1, // min and max >= 0
    Y_BOTH_POSITIVE = 2,
    Z_BOTH_POSITIVE = 3,
    X_BOTH_NEGATIVE = 4, // min and max < 0
    Y_BOTH_NEGATIVE = 5,
    Z_BOTH_NEGATIVE = 6
};
typedef enum _AxisType AxisType;

class KVO_EXPORT MView
{
public:
    // Keeps the pointer to extents[6] (owned by the environment, read on every use), classifies it, starts in ISO_VIEW.
    explicit MView(float* extents);

    // Keeps the pointer and classifies each axis. An axis of mixed signs keeps the class that it had.
    void setExtents(float* exts);

    // Orientation by mViewType, then the fit. Once a frame, with the context current and the projection set.
    void update();

    // Replace the modelview matrix by the orientation of one view; which rotation suits depends on the axis types.
    void isoView();
    void topView();
    void bottomView();
    void leftView();
    void rightView();
    void frontView();
    void backView();

    // Fits the model's box to the viewport and brings its centre to the middle of the window (multiplies the
    // modelview).
    void getMatrices();

    // One signed 32-bit integer, mViewType, in the view state file.
    void save(FILE* fp);
    void restore(FILE* fp);

    void changeView(int); // declared only; never defined

    float* modelExtents; // xmin, xmax, ymin, ymax, zmin, zmax; not owned
    int xAxisType;
    int yAxisType;
    int zAxisType;
    int mViewType; // the host changes the view by writing it
};

#endif
