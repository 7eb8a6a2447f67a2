// What the entry points need of the recorder: each records a line, then forwards the call or applies it to the
// stand-in.
#ifndef RECORDER_H
#define RECORDER_H

#include <string>

#include <dlfcn.h>

#include "glnames.h"

namespace glrecord {
void record(const std::string& line); // nothing while stopped or inside InternalCalls
bool isForwarding();
void noteVertexPointer(const void* pointer);
void noteNormalPointer(const void* pointer);
void noteBitmap(const unsigned char* bitmap);

// While one lives, calls are forwarded and not recorded: libGLU is at work.
struct InternalCalls
{
    InternalCalls();
    ~InternalCalls();
};

// The definition that would have been called without this program's own.
template <class Function> Function* realFunction(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

template <class... Args> std::string joined(const Args&... args)
{
    std::string text;
    ((text += (text.empty() ? "" : ",") + std::string(args)), ...);
    return text;
}
} // namespace glrecord

// Ends the entry point by calling the real one while forwarding; the arguments stand in parentheses.
#define FORWARD(function, arguments)                                                                                   \
    if (isForwarding()) {                                                                                              \
        static auto* const real = realFunction<decltype(function)>(#function);                                         \
        return real arguments;                                                                                         \
    }

// Records "function(arguments)"; the arguments are texts in parentheses.
#define RECORD(function, arguments) record(std::string(#function "(") + joined arguments + ")")

#endif
