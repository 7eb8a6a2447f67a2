// Plays sessions on a model that is drawn somewhere: in a picture in memory, or in a window.
#ifndef KVO_SESSION_PLAYER_H
#define KVO_SESSION_PLAYER_H

#include <string>

#include "picked.h"
#include "picture.h"
#include "session_file.h"

class CAEEnv;

namespace kvo {

class Picker;

// What a session is played on.
class SessionModel;

class SessionTarget
{
public:
    virtual ~SessionTarget() = default;

    virtual SessionModel& model() = 0;
    virtual CAEEnv& env() = 0;                 // the model's
    virtual void setShade(int shadeModel) = 0; // GL_FLAT or GL_SMOOTH, from the next frame on
    virtual const ModelLabels& labels() const = 0;
    virtual int width() const = 0; // of the picture, in pixels
    virtual int height() const = 0;
    virtual SessionCamera* camera() = 0;               // null: the drawing library's own views, without a camera
    virtual void setView(const std::string& view) = 0; // from the next frame on; throws ProgramError for an unknown one
    virtual void resetView() = 0;                      // no rotation, pan or zoom of the user's
    virtual void drawFrame() = 0;                      // frames the visible parts and draws
    virtual Picture picture() = 0;                     // of the last frame
    virtual void print(const std::string& text) = 0;   // what picks found, in whole lines
};

// View states with the target's camera in them (state_camera.h), or the drawing library's view where it has none.
void saveState(SessionTarget& target, const std::string& file);
void restoreState(SessionTarget& target, const std::string& file);

// The region that a pick names. Throws ProgramError when it has no area or is not in the picture.
PictureRegion regionOf(const Operation& pick, int pictureWidth, int pictureHeight);

// What is in a region of the last frame.
std::vector<PickHit> pickHits(SessionTarget& target, Picker& picker, const Operation& pick);

// Carries out one operation and draws a frame. A frame must have been drawn before. A pick prints its own line, what it
// hit, a line each and indented by two blanks, and selects it. Throws ProgramError and HostError.
void playOperation(SessionTarget& target, Picker& picker, const Operation& operation);

// All of them; errors begin with "FILE:LINE: ".
void playSession(SessionTarget& target, Picker& picker, const Session& session);

} // namespace kvo

#endif
