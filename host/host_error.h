// What every part of host/ throws when it cannot do its work: one sentence or list for the user.
#ifndef KVO_HOST_ERROR_H
#define KVO_HOST_ERROR_H

#include <stdexcept>

namespace kvo {

class HostError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace kvo

#endif
