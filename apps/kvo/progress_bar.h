// A progress bar on standard error, on terminals only.
#ifndef KVO_PROGRESS_BAR_H
#define KVO_PROGRESS_BAR_H

#include <string>

namespace kvo {

class ProgressBar
{
public:
    explicit ProgressBar(const std::string& label); // nothing is shown before the first update
    ~ProgressBar();                                 // wipes the bar away
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void update(double share); // 0..1; draws when a whole per cent has changed

private:
    std::string label;
    bool terminal;
    int shown = -1; // per cent
};

} // namespace kvo

#endif
