// Standard streams that the program was started without.
#ifndef KVO_HOST_STANDARD_STREAMS_H
#define KVO_HOST_STANDARD_STREAMS_H

namespace kvo {

// Occupies descriptors 0, 1 and 2 where they are closed, so that no file that is opened later gets such a number and
// takes what is printed. Writing to a standard output that was closed goes on failing, so that a result that nobody
// gets is noticed; messages to a closed standard error go nowhere. First thing in main().
void openStandardStreams();

} // namespace kvo

#endif
