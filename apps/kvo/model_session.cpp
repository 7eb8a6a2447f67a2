// Context, environment and frames.
#include "model_session.h"

#include <algorithm>

#include <GL/gl.h>

#include "bitmap_font.h"
#include "caeenv.h"
#include "headless_context.h"
#include "model_frame.h"
#include "model_source.h"
#include "mtrans.h"
#include "mview.h"
#include "offscreen.h"
#include "output_redirect.h"
#include "program_error.h"

namespace kvo {

namespace {

const int labelHeight = 13; // pixels of the corner labels' font

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
    impl->env.loadAndInitGL(impl->font.base(), true, nullptr);
    const Color& c = options.background;
    glClearColor(c.r / 255.0f, c.g / 255.0f, c.b / 255.0f, 1);
}

ModelSession::~ModelSession() = default;

CAEEnv& ModelSession::env()
{
    return impl->env;
}

std::set<unsigned int> ModelSession::partIds()
{
    std::set<unsigned int> out;
    for (const auto& entry : *impl->env.getPartsMapPtr())
        out.insert(entry.first);
    return out;
}

void ModelSession::showParts(const std::set<unsigned int>& ids)
{
    std::vector<unsigned int> list(ids.begin(), ids.end());
    impl->env.processPartsByID(PART_SHOWN, &list);
}

void ModelSession::setView(int viewType)
{
    impl->env.getMViewPtr()->mViewType = viewType;
}

void ModelSession::play(const Operation& operation)
{
    if (operation.view) {
        setView(operation.view);
    } else {
        float values[4];
        windowValues(operation, impl->target.height(), values);
        impl->env.getMTransformPtr()->updateValues(operation.trans, values);
    }
    drawFrame();
}

void ModelSession::drawFrame()
{
    applyFrame(impl->env, impl->target.width(), impl->target.height());
    impl->env.renderModel();
}

Picture ModelSession::picture()
{
    return impl->target.read();
}

} // namespace kvo
