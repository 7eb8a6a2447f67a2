// Ways to an OpenGL context without a display, tried in order.
#include "headless_context.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>

namespace kvo {

namespace {

// One way to an EGL display.
struct Way
{
    std::string label;
    std::function<EGLDisplay()> open;
    bool mustBeSoftware = false;
};

bool hasWord(const char* list, const char* word)
{
    const std::size_t length = std::strlen(word);
    for (const char* at = list ? std::strstr(list, word) : nullptr; at; at = std::strstr(at + length, word)) {
        if ((at == list || at[-1] == ' ') && (at[length] == ' ' || at[length] == '\0')) {
            return true;
        }
    }
    return false;
}

template <class Function> Function entryPoint(const char* name)
{
    return reinterpret_cast<Function>(eglGetProcAddress(name));
}

std::string eglErrorText()
{
    static const std::map<EGLint, const char*> names = {
        {EGL_SUCCESS, "no error given"},      {EGL_NOT_INITIALIZED, "not initialised"},
        {EGL_BAD_ACCESS, "bad access"},       {EGL_BAD_ALLOC, "bad alloc"},
        {EGL_BAD_ATTRIBUTE, "bad attribute"}, {EGL_BAD_CONFIG, "bad config"},
        {EGL_BAD_DISPLAY, "bad display"},     {EGL_BAD_MATCH, "bad match"},
        {EGL_BAD_PARAMETER, "bad parameter"}, {EGL_BAD_SURFACE, "bad surface"}};
    const EGLint code = eglGetError();
    const auto found = names.find(code);
    return found != names.end() ? found->second : "EGL error " + std::to_string(code);
}

// --- Displays ---

EGLDisplay platformDisplay(EGLenum platform, void* native)
{
    const auto getDisplay = entryPoint<PFNEGLGETPLATFORMDISPLAYEXTPROC>("eglGetPlatformDisplayEXT");
    return getDisplay ? getDisplay(platform, native, nullptr) : EGL_NO_DISPLAY;
}

bool clientHas(const char* extension)
{
    return hasWord(eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS), extension);
}

// --- Devices ---

std::vector<EGLDeviceEXT> eglDevices()
{
    const auto query = entryPoint<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT");
    EGLint count = 0;
    if (!query || !clientHas("EGL_EXT_platform_device") || !query(0, nullptr, &count)) {
        return {};
    }
    std::vector<EGLDeviceEXT> devices(count);
    if (count == 0 || !query(count, devices.data(), &count)) {
        return {};
    }
    devices.resize(count);
    return devices;
}

RenderDevice describeDevice(int index, EGLDeviceEXT device)
{
    const auto text = entryPoint<PFNEGLQUERYDEVICESTRINGEXTPROC>("eglQueryDeviceStringEXT");
    RenderDevice out;
    out.index = index;
    const char* extensions = text ? text(device, EGL_EXTENSIONS) : nullptr;
    out.software = hasWord(extensions, "EGL_MESA_device_software");
    const char* name = nullptr;
    if (hasWord(extensions, "EGL_EXT_device_query_name")) {
        name = text(device, EGL_RENDERER_EXT);
    }
    if (!name && !out.software && hasWord(extensions, "EGL_EXT_device_drm")) {
        name = text(device, EGL_DRM_DEVICE_FILE_EXT);
    }
    if (!name) {
        name = out.software ? "the processor" : "graphics hardware";
    }
    out.name = name;
    return out;
}

// --- Which ways to try ---

void addDevices(std::vector<Way>& ways, bool software)
{
    const std::vector<EGLDeviceEXT> handles = eglDevices();
    for (const RenderDevice& device : listRenderDevices()) {
        if (device.software != software) {
            continue;
        }
        EGLDeviceEXT handle = handles[device.index];
        ways.push_back({"device " + std::to_string(device.index),
                        [handle] { return platformDisplay(EGL_PLATFORM_DEVICE_EXT, handle); }, false});
    }
}

void addSurfaceless(std::vector<Way>& ways, bool mustBeSoftware)
{
    if (clientHas("EGL_MESA_platform_surfaceless")) {
        ways.push_back({"surfaceless platform",
                        [] { return platformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY); },
                        mustBeSoftware});
    }
}

Way numberedDevice(const std::string& text)
{
    const std::vector<EGLDeviceEXT> handles = eglDevices();
    char* end = nullptr;
    const unsigned long index = std::strtoul(text.c_str(), &end, 10);
    if (text.empty() || text[0] < '0' || text[0] > '9' || *end != '\0' || index >= handles.size()) {
        throw HostError("there is no device \"" + text +
                        "\"; it is auto, software or one of these numbers:" + describeRenderDevices());
    }
    EGLDeviceEXT handle = handles[index];
    return {"device " + text, [handle] { return platformDisplay(EGL_PLATFORM_DEVICE_EXT, handle); }, false};
}

std::vector<Way> waysFor(const std::string& device)
{
    std::vector<Way> ways;
    if (device == "software") {
        // Mesa chooses its processor drivers by this variable where it is not asked for a device.
        setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
        addDevices(ways, true);
        addSurfaceless(ways, true);
    } else if (device == "auto") {
        addDevices(ways, false);
        addSurfaceless(ways, false);
        addDevices(ways, true);
        ways.push_back({"default display", [] { return eglGetDisplay(EGL_DEFAULT_DISPLAY); }, false});
    } else {
        ways.push_back(numberedDevice(device));
    }
    return ways;
}

// --- Is it the OpenGL that is needed? ---

std::string glText(GLenum name)
{
    const GLubyte* text = glGetString(name);
    return text ? reinterpret_cast<const char*>(text) : "";
}

bool drawsOnProcessor(const std::string& renderer)
{
    for (const char* word : {"llvmpipe", "softpipe", "swrast", "Software"}) {
        if (renderer.find(word) != std::string::npos) {
            return true;
        }
    }
    return false;
}

// Empty when the current context will do, else the reason why not.
std::string complaint(const Way& way, ContextProfile wanted)
{
    const std::string version = glText(GL_VERSION);
    int major = 0, minor = 0;
    if (std::sscanf(version.c_str(), "%d.%d", &major, &minor) != 2) {
        return "no desktop OpenGL (version \"" + version + "\")";
    }
    GLint profile = GL_CONTEXT_COMPATIBILITY_PROFILE_BIT;
    if (major > 3 || (major == 3 && minor >= 2)) {
        glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
    }
    if (wanted == ContextProfile::Compatibility && !(profile & GL_CONTEXT_COMPATIBILITY_PROFILE_BIT)) {
        return "no compatibility profile (OpenGL " + version + ")";
    }
    if (wanted == ContextProfile::Core && !(profile & GL_CONTEXT_CORE_PROFILE_BIT)) {
        return "no core profile (OpenGL " + version + ")";
    }
    if (way.mustBeSoftware && !drawsOnProcessor(glText(GL_RENDERER))) {
        return "draws on hardware (" + glText(GL_RENDERER) + ")";
    }
    return "";
}

// Drawing on the processor takes and frees a hundred megabytes a frame for a model of a million shells. glibc would
// give them back to the kernel each time and get them anew, page by page, which makes a frame half as long again.
void keepMemoryOfFrames()
{
#ifdef __GLIBC__
    ::mallopt(M_MMAP_THRESHOLD, 32 << 20); // larger blocks than these are the kernel's own, and go back
    ::mallopt(M_TRIM_THRESHOLD, 512 << 20);
    ::mallopt(M_TOP_PAD, 4 << 20);
#endif
}

} // namespace

std::vector<RenderDevice> listRenderDevices()
{
    std::vector<RenderDevice> out;
    for (EGLDeviceEXT device : eglDevices()) {
        out.push_back(describeDevice(static_cast<int>(out.size()), device));
    }
    return out;
}

std::string describeRenderDevices()
{
    std::string out;
    for (const RenderDevice& device : listRenderDevices()) {
        out += "\n  " + std::to_string(device.index) + "  " + device.name + (device.software ? " (software)" : "");
    }
    return out.empty() ? "\n  (EGL lists no devices)" : out;
}

struct HeadlessContext::Impl
{
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLSurface surface = EGL_NO_SURFACE;
    EGLContext context = EGL_NO_CONTEXT;
    std::string description;

    ~Impl() { close(); }

    void close()
    {
        if (display == EGL_NO_DISPLAY) {
            return;
        }
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        if (context != EGL_NO_CONTEXT) {
            eglDestroyContext(display, context);
        }
        if (surface != EGL_NO_SURFACE) {
            eglDestroySurface(display, surface);
        }
        // The display stays initialised: EGL hands out the same one for the same way every time, and terminating it
        // would end it for other contexts of the process, too.
        display = EGL_NO_DISPLAY;
        surface = EGL_NO_SURFACE;
        context = EGL_NO_CONTEXT;
    }

    // A current context by this way, or the reason why there is none.
    std::string open(const Way& way, ContextProfile profile)
    {
        EGLDisplay opened = way.open();
        if (opened == EGL_NO_DISPLAY) {
            return "no EGL display (" + eglErrorText() + ")";
        }
        if (!eglInitialize(opened, nullptr, nullptr)) {
            return "EGL cannot be initialised (" + eglErrorText() + ")";
        }
        display = opened;
        if (!eglBindAPI(EGL_OPENGL_API)) {
            return "no desktop OpenGL (" + eglErrorText() + ")";
        }
        const std::string reason = createContext(profile);
        return reason.empty() ? complaint(way, profile) : reason;
    }

    std::string createContext(ContextProfile profile)
    {
        const bool surfaceless = hasWord(eglQueryString(display, EGL_EXTENSIONS), "EGL_KHR_surfaceless_context");
        const EGLint wanted[] = {EGL_SURFACE_TYPE, surfaceless ? 0 : EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE,
                                 EGL_OPENGL_BIT, EGL_NONE};
        EGLConfig config = nullptr;
        EGLint count = 0;
        if (!eglChooseConfig(display, wanted, &config, 1, &count) || count == 0) {
            return "no configuration for desktop OpenGL (" + eglErrorText() + ")";
        }
        const EGLint core[] = {
            EGL_CONTEXT_MAJOR_VERSION,           3,       EGL_CONTEXT_MINOR_VERSION, 3, EGL_CONTEXT_OPENGL_PROFILE_MASK,
            EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT, EGL_NONE};
        context = eglCreateContext(display, config, EGL_NO_CONTEXT, profile == ContextProfile::Core ? core : nullptr);
        if (context == EGL_NO_CONTEXT) {
            return "no context (" + eglErrorText() + ")";
        }
        if (!surfaceless) {
            const EGLint onePixel[] = {EGL_WIDTH, 1, EGL_HEIGHT, 1, EGL_NONE};
            surface = eglCreatePbufferSurface(display, config, onePixel);
            if (surface == EGL_NO_SURFACE) {
                return "no pbuffer (" + eglErrorText() + ")";
            }
        }
        if (!eglMakeCurrent(display, surface, surface, context)) {
            return "the context cannot be made current (" + eglErrorText() + ")";
        }
        return "";
    }
};

HeadlessContext::HeadlessContext(const std::string& device, ContextProfile profile) : impl(new Impl)
{
    keepMemoryOfFrames();
    std::string failures;
    for (const Way& way : waysFor(device)) {
        const std::string reason = impl->open(way, profile);
        if (reason.empty()) {
            impl->description = way.label + ": " + glText(GL_RENDERER) + ", OpenGL " + glText(GL_VERSION);
            return;
        }
        impl->close();
        failures += "\n  " + way.label + ": " + reason;
    }
    if (failures.empty()) {
        failures = "\n  EGL offers neither devices nor a platform without a display";
    }
    throw HostError("no OpenGL context without a display (device " + device + "). Tried:" + failures);
}

HeadlessContext::~HeadlessContext() = default;

void HeadlessContext::makeCurrent()
{
    if (!eglMakeCurrent(impl->display, impl->surface, impl->surface, impl->context)) {
        throw HostError("the OpenGL context cannot be made current (" + eglErrorText() + ")");
    }
}

const std::string& HeadlessContext::description() const
{
    return impl->description;
}

} // namespace kvo
