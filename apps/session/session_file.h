// Sessions: what a user does with a model, as text, an operation a line, played in order.
//
//   MODEL ../decks/bracket.inp         # optional, like SIZE; before the first operation
//   SIZE 640x480
//   VIEW left
//   GLOBAL_ROTATION 320 240 400 240    # a drag
//   PICK element at 320 240            # prints what is there and selects it
//   PICK node through rect 300 200 340 280
//   SELECT parts 1,3-5
//   PICTURE left.png
//
// A line is the name of an operation followed by its words, separated by blanks; # begins a comment; empty lines count
// for nothing; a file name with blanks stands in double quotes. Window coordinates are pixels from the picture's top
// left corner with y downwards, for every operation; playing turns them into what each operation of the library takes.
// docs/kvo.md is the format's manual.
#ifndef KVO_SESSION_FILE_H
#define KVO_SESSION_FILE_H

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "id_list.h"
#include "session_camera.h"

namespace kvo {

enum class Verb
{
    Transform, // a _TransType
    View,      // a view by its name
    Orbit,     // these six move the scene's camera
    Pan,
    Zoom,
    BoxZoom,
    Fit,
    Perspective,
    Pick,   // prints and selects what is at a place
    Select, // adds to the selection, by ids
    Clear,
    Highlight,
    Show,
    Hide,
    Shade,
    Mode,
    Save,    // view state
    Restore, // view state
    Picture
};

// Where a pick looks.
enum class PickShape
{
    Place, // a square about a pixel
    Rectangle,
    Polygon
};

// One line. What a verb does not use keeps its default, so that operations can be compared.
struct Operation
{
    std::size_t line = 0; // in its file, from 1; 0 for an operation that comes from elsewhere
    Verb verb = Verb::Transform;
    // Transform: _TransType. View: _MViewType, 0 for a view that the drawing library does not have. Orbit: 1 for a
    // turntable. Zoom: 1 about a place. Pick, Select: PICK_TYPE_... Clear: PICK_TYPE_..., PART_HIGHLIGHTED, or 0
    // for everything. Shade: GL_FLAT, GL_SMOOTH. Mode: GL_POINT, GL_LINE, GL_FILL.
    int code = 0;
    // Transform: its values. Pick: X Y SIZE, or X0 Y0 X1 Y1. Orbit, Pan, BoxZoom: X0 Y0 X1 Y1. Zoom: FACTOR X Y.
    // Perspective: degrees.
    float values[4] = {0, 0, 0, 0};
    std::string view;                   // View
    FitTo fit;                          // Fit
    PickShape shape = PickShape::Place; // Pick
    bool through = false;               // Pick: what is covered, too
    std::vector<float> outline;         // Pick of a polygon: X Y, corner after corner
    std::vector<IdPiece> ids;           // Select, Highlight, Show, Hide; empty: all (Show and Hide)
    std::string file;                   // Save, Restore, Picture
};

// The same operation, whatever its line.
bool operator==(const Operation& a, const Operation& b);

// Pixels of the square that a pick looks at when the line names no size.
constexpr float defaultPickSize = 5;

struct Session
{
    std::string file;  // where it was read from
    std::string model; // of the MODEL line, as written; "" without one
    int width = 0;     // of the SIZE line; 0 without one
    int height = 0;
    std::vector<Operation> operations;

    // The model's path: a relative one counts from the session file's folder, so that both move together.
    std::string modelPath() const;
};

// Throws ProgramError, "FILE:LINE: what", for an unknown name, wrong values or ids, and "FILE: what" for a file that
// cannot be read.
Session readSession(const std::string& path);
Session parseSession(std::istream& text, const std::string& file);

// The line, without its end, that parses to an operation equal to this one: what a recorder writes.
std::string formatOperation(const Operation& operation);
std::string formatSession(const Session& session);

// A table of the operations and their words, for manuals.
std::string describeOperations();

// "1280x800". False for what is no size.
bool parsePictureSize(const std::string& text, int& width, int& height);

} // namespace kvo

#endif
