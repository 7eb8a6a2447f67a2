// File descriptors 1 and 2, pointed elsewhere and back.
#include "output_redirect.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace kvo {

namespace {

// What the program has buffered so far belongs to where it was written for.
void flushAll()
{
    std::cout.flush();
    std::cerr.flush();
    std::clog.flush();
    std::fflush(nullptr);
}

int keep(int descriptor)
{
    return fcntl(descriptor, F_DUPFD_CLOEXEC, 3);
}

// A stream that was closed from the start stays closed.
void putBack(int descriptor, int saved)
{
    if (saved < 0) {
        close(descriptor);
        return;
    }
    dup2(saved, descriptor);
    close(saved);
}

} // namespace

OutputRedirect::OutputRedirect(const std::string& file)
{
    const char* path = file.empty() ? "/dev/null" : file.c_str();
    const int target = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0666);
    if (target < 0) {
        throw HostError(std::string(path) + ": cannot be written (" + std::strerror(errno) + ")");
    }
    flushAll();
    saved[0] = keep(STDOUT_FILENO);
    saved[1] = keep(STDERR_FILENO);
    dup2(target, STDOUT_FILENO);
    dup2(target, STDERR_FILENO);
    if (target > STDERR_FILENO) {
        close(target);
    }
}

OutputRedirect::~OutputRedirect()
{
    flushAll();
    putBack(STDOUT_FILENO, saved[0]);
    putBack(STDERR_FILENO, saved[1]);
}

ErrorCapture::ErrorCapture()
{
    memory = memfd_create("captured standard error", MFD_CLOEXEC);
    if (memory < 0) {
        throw HostError(std::string("standard error cannot be captured (") + std::strerror(errno) + ")");
    }
    flushAll();
    saved = keep(STDERR_FILENO);
    dup2(memory, STDERR_FILENO);
}

ErrorCapture::~ErrorCapture()
{
    flushAll();
    putBack(STDERR_FILENO, saved);
    close(memory);
}

std::string ErrorCapture::text()
{
    flushAll();
    const off_t size = lseek(memory, 0, SEEK_END);
    std::string out(static_cast<std::size_t>(size > 0 ? size : 0), '\0');
    const ssize_t got = pread(memory, &out[0], out.size(), 0);
    out.resize(static_cast<std::size_t>(got > 0 ? got : 0));
    return out;
}

} // namespace kvo
