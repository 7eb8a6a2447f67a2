// Drawing and wiping the bar.
#include "progress_bar.h"

#include <algorithm>
#include <cstdio>

#include <unistd.h>

namespace kvo {

namespace {

const int cells = 40;

} // namespace

ProgressBar::ProgressBar(const std::string& text) : label(text), terminal(isatty(STDERR_FILENO)) {}

ProgressBar::~ProgressBar()
{
    if (shown >= 0) {
        std::fputs("\r\033[K", stderr);
    }
}

void ProgressBar::update(double share)
{
    const int percent = static_cast<int>(100 * std::min(1.0, std::max(0.0, share)));
    if (!terminal || percent == shown) {
        return;
    }
    shown = percent;
    const int full = percent * cells / 100;
    std::fprintf(stderr, "\r%s [%s%s] %3d%%", label.c_str(), std::string(full, '#').c_str(),
                 std::string(cells - full, '.').c_str(), percent);
    std::fflush(stderr);
}

} // namespace kvo
