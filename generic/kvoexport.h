// The one macro that makes a class or a free function visible to programs that link the shared libraries.
#ifndef KVOEXPORT_H
#define KVOEXPORT_H

#define KVO_EXPORT __attribute__((visibility("default")))

#endif
