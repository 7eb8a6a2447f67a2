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

// A file that has no name yet, so that nothing of it stays behind when the program is ended.
int openMemory(const char* name)
{
    const int memory = memfd_create(name, MFD_CLOEXEC);
    if (memory < 0) {
        throw HostError(std::string(name) + " cannot be kept (" + std::strerror(errno) + ")");
    }
    fcntl(memory, F_SETFL, O_APPEND);
    return memory;
}

std::string contentsOf(int memory)
{
    const off_t size = lseek(memory, 0, SEEK_END);
    std::string out(static_cast<std::size_t>(size > 0 ? size : 0), '\0');
    std::size_t done = 0;
    while (done < out.size()) {
        const ssize_t got = pread(memory, &out[done], out.size() - done, static_cast<off_t>(done));
        if (got <= 0) {
            break;
        }
        done += static_cast<std::size_t>(got);
    }
    out.resize(done);
    return out;
}

int openNowhere()
{
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0) {
        throw HostError(std::string("/dev/null: cannot be opened (") + std::strerror(errno) + ")");
    }
    return nowhere;
}

} // namespace

OutputRedirect::OutputRedirect(const std::string& path)
{
    if (!path.empty()) {
        file.emplace(path);
    }
    target = file ? openMemory("what the log is to hold") : openNowhere();
    flushAll();
    saved[0] = keep(STDOUT_FILENO);
    saved[1] = keep(STDERR_FILENO);
    dup2(target, STDOUT_FILENO);
    dup2(target, STDERR_FILENO);
}

OutputRedirect::~OutputRedirect()
{
    try {
        finish();
    } catch (const HostError&) {
        // Another error is on its way to the user.
    }
}

void OutputRedirect::finish()
{
    if (finished) {
        return;
    }
    finished = true;
    flushAll();
    putBack(STDOUT_FILENO, saved[0]);
    putBack(STDERR_FILENO, saved[1]);
    const std::string text = file ? contentsOf(target) : std::string();
    close(target);
    if (file) {
        file->write(text);
    }
}

ErrorCapture::ErrorCapture()
{
    memory = openMemory("captured standard error");
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
    return contentsOf(memory);
}

} // namespace kvo
