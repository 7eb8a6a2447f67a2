// Catches a file descriptor in an unnamed temporary file.
#include "outputcapture.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include <unistd.h>

namespace {
void flushAll()
{
    std::cout.flush();
    std::cerr.flush();
    std::fflush(nullptr);
}

int temporaryFile()
{
    char path[] = "/tmp/kvo-capture-XXXXXX";
    const int file = mkstemp(path);
    if (file < 0) {
        throw std::runtime_error("no temporary file for captured output");
    }
    unlink(path);
    return file;
}
} // namespace

OutputCapture::OutputCapture(int descriptor) : descriptor(descriptor), saved(-1), file(temporaryFile())
{
    flushAll();
    saved = dup(descriptor);
    dup2(file, descriptor);
}

OutputCapture::~OutputCapture()
{
    stop();
    close(file);
}

std::string OutputCapture::all()
{
    flushAll();
    std::string text(lseek(file, 0, SEEK_END), '\0');
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t got = pread(file, &text[done], text.size() - done, done);
        if (got <= 0) {
            throw std::runtime_error("captured output cannot be read back");
        }
        done += got;
    }
    return text;
}

std::string OutputCapture::take()
{
    const std::string text = all();
    const std::string fresh = text.substr(taken);
    taken = text.size();
    return fresh;
}

void OutputCapture::stop()
{
    if (saved < 0) {
        return;
    }
    flushAll();
    dup2(saved, descriptor);
    close(saved);
    saved = -1;
}

std::vector<std::string> splitLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}
