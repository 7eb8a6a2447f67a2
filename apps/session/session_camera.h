// The camera of a session: what the command line and operations ask for, done with a kvo::Camera.
#ifndef KVO_SESSION_CAMERA_H
#define KVO_SESSION_CAMERA_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <kvo/camera.h>

#include "id_list.h"

class CAEEnv;

namespace kvo {

struct Operation;

// What a camera is fitted to.
struct FitTo
{
    enum What
    {
        Visible, // parts
        All,     // parts, hidden ones too
        Selection,
        Parts
    };
    What what = Visible;
    std::vector<IdPiece> parts;
};

// "visible", "all", "selection" or a list of part ids. Throws UsageError, naming the option.
FitTo parseFitTo(const std::string& text, const std::string& option);
std::string formatFitTo(const FitTo& wanted);

// Throws ProgramError for a part that the model does not have, and when nothing is selected.
Box boxToFit(CAEEnv& env, const FitTo& wanted);

// A view as the command line describes it.
struct ViewWish
{
    std::string view = "iso"; // kvo/view_names.h
    UpAxis up = UpAxis::Z;
    double perspective = 0; // degrees
    double zoom = 1;
    double roll = 0; // degrees
    FitTo fit;
};

class SessionCamera
{
public:
    // What of the model is seen at a pixel, y upwards; asked in perspective only, where depth matters.
    using Seen = std::function<std::optional<Point3>(Pixel)>;

    SessionCamera(CAEEnv& environment, Viewport pictureSize) : env(environment), viewport(pictureSize) {}

    // Shows the view that is wished, from now on the one that reset() returns to.
    void show(const ViewWish& wish);
    // Another view, of kvo/view_names.h, fitted anew; roll, zoom and perspective as wished.
    void turnTo(const std::string& view);
    void reset() { show(wished); }
    void fit(const FitTo& wanted);

    // An operation that moves the camera: a _TransType, ORBIT, PAN, ZOOM, BOX_ZOOM, FIT, PERSPECTIVE.
    void move(const Operation& operation, const Seen& seen);

    // A camera from elsewhere; drags turn about its target.
    void take(const Camera& camera);
    const Camera& camera() const { return now; }
    Viewport size() const { return viewport; }

    // Pixels of a line over the next frame, y upwards: rubber band or polyline.
    const std::vector<Pixel>& overlay() const { return line; }

private:
    Pixel fromTop(const float* position) const;
    void transform(const Operation& operation);
    void step(const Operation& operation);
    void turnBy(std::size_t axis, double degrees);
    void zoomBy(double share);
    void zoomTo(Pixel corner, Pixel opposite, const Seen& seen);
    std::optional<Point3> seenAt(Pixel pixel, const Seen& seen) const;

    CAEEnv& env;
    Viewport viewport;
    Camera now;
    ViewWish wished;
    Point3 pivot = {0, 0, 0};
    double fittedScale = 1;    // of the last fit
    Rotation shown;            // the orientation of the view that was last shown
    Point3 angles = {0, 0, 0}; // degrees that steps have turned the model since
    std::vector<Pixel> band;   // two corners; empty without one
    std::vector<Pixel> polyline;
    std::vector<Pixel> line;
};

} // namespace kvo

#endif
