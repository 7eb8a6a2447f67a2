// Context, environment and frames.
#include "model_session.h"

#include <cerrno>

#include <GL/gl.h>
#include <unistd.h>

#include "bitmap_font.h"
#include "caeenv.h"
#include "headless_context.h"
#include "model_frame.h"
#include "model_source.h"
#include "mview.h"
#include "offscreen.h"
#include "output_redirect.h"
#include "program_error.h"

namespace kvo {

namespace {

const int labelHeight = 13; // pixels of the corner labels' font

// Parts as the model file lists them, in the order of the environment.
ModelLabels labelsOf(const ModelSource& source, CAEEnv& env)
{
    ModelLabels out;
    out.directory = source.trueDirectory();
    out.model = source.trueName();
    out.parts.resize(env.numParts);
    for (const ModelPartInfo& part : source.info().parts) {
        const auto index = env.pidMap.find(part.part.id);
        if (index != env.pidMap.end() && index->second < env.numParts)
            out.parts[index->second] = {part.part.id, part.part.name};
    }
    return out;
}

} // namespace

// In the order of need: the redirection ends last, the context goes after everything that lives in it.
struct ModelSession::Impl
{
    SessionOptions options;
    OutputRedirect quiet;
    HeadlessContext context;
    Offscreen target;
    BitmapFont font;
    CAEEnv env;
    ModelLabels labels;

    Impl(const ModelSource& source, const SessionOptions& o)
        : options(o), quiet(o.log), context(o.device), target(o.width, o.height, o.samples), font(labelHeight),
          env(source.dirName().c_str(), source.modelName().c_str(), o.shadeModel)
    {
    }
};

ModelSession::ModelSession(const ModelSource& source, const SessionOptions& options) : impl(new Impl(source, options))
{
    loadParts(impl->env, source);
    if (impl->env.getNumParts() == 0)
        throw ProgramError(source.shownName(), "the model has no parts");
    impl->labels = labelsOf(source, impl->env);
    impl->env.loadAndInitGL(impl->font.base(), true, nullptr);
    const Color& c = options.background;
    glClearColor(c.r / 255.0f, c.g / 255.0f, c.b / 255.0f, 1);
}

ModelSession::~ModelSession() = default;

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

void ModelSession::setView(int viewType)
{
    impl->env.getMViewPtr()->mViewType = viewType;
}

void ModelSession::drawFrame()
{
    applyFrame(impl->env, width(), height());
    // Selected nodes are lit by whatever normal was given last; so that is not one of the frame before.
    glNormal3f(0, 0, 1);
    impl->env.renderModel();
}

Picture ModelSession::picture()
{
    return impl->target.read();
}

void ModelSession::print(const std::string& text)
{
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t count = write(impl->quiet.standardOutput(), text.data() + done, text.size() - done);
        if (count < 0 && errno != EINTR)
            throw ProgramError("standard output cannot be written");
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
}

} // namespace kvo
