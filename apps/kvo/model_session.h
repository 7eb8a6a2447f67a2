// A model in a context without a display: loaded, framed, drawn frame by frame. What commands that draw share.
//
// The library's commentary goes to the log, or nowhere, for as long as the session lives; messages to the user are
// thrown and appear when it has ended, results are printed through it.
#ifndef KVO_MODEL_SESSION_H
#define KVO_MODEL_SESSION_H

#include <memory>
#include <string>

#include "color_by.h"
#include "drawing_path.h"
#include "model_source.h"
#include "picture.h"
#include "session_camera.h"
#include "session_player.h"

namespace kvo {

struct SessionOptions
{
    // What decks are to become: the drawing library draws, and lights, its own records only.
    ModelSource::Decks decks() const
    {
        return contract || look.light == SceneLight::Contract ? ModelSource::Decks::Directory
                                                              : ModelSource::Decks::Memory;
    }

    int width = 1280;
    int height = 960;
    int samples = 4;    // per pixel, for smooth edges
    int shadeModel = 0; // GL_FLAT or GL_SMOOTH
    Color background;
    std::string device = "auto"; // headless_context.h
    bool contract = false;       // draw and pick through the drawing library alone
    SceneLook look;              // else; the session sets the font
    ColorBy colorBy;
    std::string log; // file for the library's commentary; "" drops it
};

class ModelSession : public SessionTarget
{
public:
    // Makes the context and loads the model. Throws HostError or ProgramError. The source must outlive the session.
    ModelSession(const ModelSource& source, const SessionOptions& options);
    ~ModelSession() override;

    Picker& picker(); // for the last frame

    // What warnings call the pictures from now on, instead of "the picture".
    void namePictures(const std::string& name);

    SessionCamera* camera() override;
    void setView(const std::string& view) override;
    void resetView() override;

    SessionModel& model() override;
    CAEEnv& env() override;
    void setShade(int shadeModel) override;
    const ModelLabels& labels() const override;
    int width() const override;
    int height() const override;
    void drawFrame() override;
    // Warns on the program's standard error when it shows nothing of the model, or when text is missing.
    Picture picture() override;
    void print(const std::string& text) override; // on the program's standard output

    // The picture of a command line: to the file, or to standard output for "-".
    void writePicture(const Picture& picture, const std::string& path);
    // Puts the log in its place. Nothing is drawn or printed after it. Throws HostError.
    void finish();

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace kvo

#endif
