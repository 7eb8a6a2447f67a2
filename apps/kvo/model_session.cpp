// Context, environment and frames.
#include "model_session.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <optional>

#include <GL/gl.h>
#include <unistd.h>

#include "bitmap_font.h"
#include "caeenv.h"
#include "empty_picture.h"
#include "file_checks.h"
#include "frame_mean.h"
#include "headless_context.h"
#include "model_source.h"
#include "mtrans.h"
#include "mview.h"
#include "offscreen.h"
#include "output_redirect.h"
#include "program_error.h"
#include "session_model.h"
#include "vocabulary.h"
#include <kvo/scene_load.h>

namespace kvo {

namespace {

const int labelHeight = 13; // pixels of the font of labels, legend and the boxes' corners

// Parts as the model file lists them, in the order of the environment.
ModelLabels labelsOf(const ModelSource& source, CAEEnv& env)
{
    ModelLabels out;
    out.directory = source.trueDirectory();
    out.model = source.trueName();
    out.parts.resize(env.numParts);
    for (const ModelPartInfo& part : source.info().parts) {
        const auto index = env.pidMap.find(part.part.id);
        if (index != env.pidMap.end() && index->second < env.numParts) {
            out.parts[index->second] = {part.part.id, part.part.name};
        }
    }
    return out;
}

// The library computes normals for its own frames and its own light only.
void initialize(CAEEnv& env, const SessionOptions& options, unsigned int fontBase)
{
    if (options.contract || options.look.light == SceneLight::Contract) {
        env.loadAndInitGL(fontBase, true, nullptr);
    } else {
        initScene(env, fontBase);
    }
}

} // namespace

// In the order of need: the redirection ends last, the context goes after everything that lives in it.
struct ModelSession::Impl
{
    SessionOptions options;
    OutputRedirect quiet;
    HeadlessContext context;
    Offscreen target;
    std::string fontProblem; // why there is no font; said once
    std::optional<BitmapFont> font;
    SessionModel model;
    CAEEnv& env = model.env();
    SessionCamera camera;
    ModelLabels labels;
    std::unique_ptr<DrawingPath> path;
    std::optional<MTransform> beforeFrame; // the last one, where it may have to be drawn again
    const std::string modelName;           // as messages name it
    std::string pictureName = "the picture";
    bool hasLegend = false;

    Impl(const ModelSource& source, const SessionOptions& o)
        : options(o), quiet(o.log), context(o.device), target(o.width, o.height, o.samples),
          model(source.dirName(), source.modelName(), o.shadeModel), camera(env, {o.width, o.height}),
          modelName(source.shownName())
    {
        try {
            font.emplace(labelHeight);
        } catch (const FontError& error) {
            fontProblem = error.what();
        }
    }

    unsigned int fontBase() const { return font ? font->base() : 0; }
    bool hasText();
    void warn(const std::string& text);
    void checkPicture(const Picture& drawn);

    // How many frames a picture is the mean of. A driver without several samples draws single frames up to 4.
    int framesOfPicture() const
    {
        const int own = std::max(1, target.samples());
        return options.samples > 4 ? std::max(1, options.samples / own) : 1;
    }
    Picture meanOfFrames();
};

// The last frame is drawn again and again from what was before it: an operation takes effect once, and the marks of one
// frame stay in the picture.
Picture ModelSession::Impl::meanOfFrames()
{
    MTransform& transform = *env.getMTransformPtr();
    const MTransform after = transform;
    FrameMean mean;
    for (int k = 0; k < framesOfPicture(); ++k) {
        float move[2];
        frameShift(k, framesOfPicture(), std::max(1, target.samples()), move);
        path->shift(move[0], move[1]);
        transform = *beforeFrame;
        path->drawFrame(target.width(), target.height());
        mean.add(target.read());
    }
    path->shift(0, 0);
    transform = after;
    return mean.mean();
}

bool ModelSession::Impl::hasText()
{
    const SceneLabels& labelled = options.look.labels;
    const PartInfoStr* parts = env.getPartsList();
    const bool boxed = std::any_of(parts, parts + env.getNumParts(), [](const PartInfoStr& part) {
        return (part.partFlag & PART_BOX_SHOWN) && !(part.partFlag & PART_HIDDEN);
    });
    return boxed || (!options.contract && (hasLegend || labelled.parts || labelled.elements || labelled.nodes));
}

void ModelSession::Impl::warn(const std::string& text)
{
    dprintf(quiet.standardError(), "kvo: warning: %s\n", text.c_str());
}

// Most pictures show something but the background; only the others are looked into.
void ModelSession::Impl::checkPicture(const Picture& drawn)
{
    if (!fontProblem.empty() && hasText()) {
        warn(fontProblem + "; the text is left out");
        fontProblem.clear();
    }
    const bool onlyModel = !options.contract && !hasLegend && options.look.axes;
    if ((onlyModel && isMarked(drawn, options.background)) || path->showsModel()) {
        if (isBeyondDrawing(env)) {
            warn(modelName + ": " + pictureName +
                 " may be wrong: the coordinates are too large or too small to be drawn");
        }
        return;
    }
    const SceneSection section = options.contract ? SceneSection() : options.look.section;
    warn(modelName + ": " + pictureName + " shows nothing of the model" + whyEmpty(env, section));
}

ModelSession::ModelSession(const ModelSource& source, const SessionOptions& options) : impl(new Impl(source, options))
{
    if (source.model()) {
        impl->model.take(*source.model());
    } else {
        loadParts(impl->env, source);
    }
    if (impl->env.getNumParts() == 0) {
        throw ProgramError(source.shownName(), "the model has no parts");
    }
    impl->labels = labelsOf(source, impl->env);
    initialize(impl->env, impl->options, impl->fontBase());
    const Color& c = options.background;
    glClearColor(c.r / 255.0f, c.g / 255.0f, c.b / 255.0f, 1);
    if (options.contract) {
        impl->path = makeContractPath(impl->env);
    } else {
        const Coloring coloring = makeColoring(options.colorBy, impl->env, source.info());
        impl->hasLegend = options.look.legend && (coloring.byValue() || coloring.byCategory());
        impl->path = makeScenePath(impl->model, impl->camera, impl->options.look, coloring,
                                   impl->font ? defaultFontFile() : "", labelHeight);
        impl->camera.reset();
    }
}

ModelSession::~ModelSession() = default;

SessionModel& ModelSession::model()
{
    return impl->model;
}

// The library computes normals of its own with it.
void ModelSession::setShade(int shadeModel)
{
    if (impl->options.contract || impl->options.look.light == SceneLight::Contract) {
        return impl->env.setShadeModel(static_cast<unsigned int>(shadeModel));
    }
    impl->env.shadeModel = shadeModel;
    glShadeModel(static_cast<GLenum>(shadeModel));
}

CAEEnv& ModelSession::env()
{
    return impl->env;
}

const ModelLabels& ModelSession::labels() const
{
    return impl->labels;
}

int ModelSession::width() const
{
    return impl->target.width();
}

int ModelSession::height() const
{
    return impl->target.height();
}

Picker& ModelSession::picker()
{
    return impl->path->picker();
}

SessionCamera* ModelSession::camera()
{
    return impl->options.contract ? nullptr : &impl->camera;
}

void ModelSession::setView(const std::string& view)
{
    if (!impl->options.contract) {
        return impl->camera.turnTo(view);
    }
    const NamedView* standard = findView(view);
    if (!standard) {
        throw ProgramError("\"" + view + "\" is a view of the scene's camera, which --contract does without");
    }
    impl->env.getMViewPtr()->mViewType = standard->type;
}

void ModelSession::resetView()
{
    if (impl->options.contract) {
        impl->env.getMTransformPtr()->updateValues(RESET_TRANSFORM, nullptr);
    } else {
        impl->camera.reset();
    }
}

void ModelSession::drawFrame()
{
    if (impl->framesOfPicture() > 1) {
        impl->beforeFrame = *impl->env.getMTransformPtr();
    }
    impl->path->drawFrame(width(), height());
}

Picture ModelSession::picture()
{
    Picture out = impl->beforeFrame ? impl->meanOfFrames() : impl->target.read();
    impl->checkPicture(out);
    impl->target.bind();
    return out;
}

void ModelSession::writePicture(const Picture& picture, const std::string& path)
{
    if (path == standardOutputName) {
        print(encodePng(picture));
    } else {
        writePng(picture, path);
    }
}

void ModelSession::finish()
{
    impl->quiet.finish();
}

void ModelSession::namePictures(const std::string& name)
{
    impl->pictureName = name;
}

void ModelSession::print(const std::string& text)
{
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t count = write(impl->quiet.standardOutput(), text.data() + done, text.size() - done);
        if (count < 0 && errno != EINTR) {
            throw ProgramError("standard output cannot be written");
        }
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
}

} // namespace kvo
