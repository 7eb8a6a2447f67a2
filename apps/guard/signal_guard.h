// What a program does about signals that end it: its temporary folders go first, then it dies by that signal, so that
// the shell sees which it was.
#ifndef KVO_GUARD_SIGNAL_GUARD_H
#define KVO_GUARD_SIGNAL_GUARD_H

#include <sys/types.h>

namespace kvo {

// At the beginning of main(). SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGXCPU and SIGXFSZ as above, unless the
// program was started with them ignored. SIGBUS, which a mapped file sends that somebody cuts short, becomes a message
// "PROGRAM: FILE: ..." and exit status 1. program must stay valid.
void installSignalGuard(const char* program);

// The process that ends with this one (by SIGTERM); 0: none.
void guardChild(pid_t child);

} // namespace kvo

#endif
