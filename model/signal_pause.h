// Steps that no signal may come between.
#ifndef KVO_MODEL_SIGNAL_PAUSE_H
#define KVO_MODEL_SIGNAL_PAUSE_H

#include <signal.h>

namespace kvo {

// Signals to this thread wait for as long as this lives: who dies between two renamings leaves half a model, who dies
// between making a folder and opening it leaves the folder.
class SignalPause
{
public:
    SignalPause()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &before);
    }
    ~SignalPause() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }
    SignalPause(const SignalPause&) = delete;
    SignalPause& operator=(const SignalPause&) = delete;

private:
    sigset_t before;
};

} // namespace kvo

#endif
