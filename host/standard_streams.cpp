// Descriptors 0, 1 and 2.
#include "standard_streams.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace kvo {

void openStandardStreams()
{
    const int modes[] = {O_RDONLY, O_RDONLY, O_WRONLY}; // standard output cannot be written then
    for (int descriptor = 0; descriptor < 3; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) {
            open("/dev/null", modes[descriptor]); // gets the lowest free number: this one
        }
    }
}

} // namespace kvo
